#include "runtime/systempath.h"
#include "runtime/systemroot.h"

#include <QString>

#include <gtest/gtest.h>

class SystemRoot : public ::testing::Test
{
protected:
    void TearDown() override { tools_setSystemRoot(QString()); }
};

TEST_F(SystemRoot, IsEmptyAtStartAndLeavesPathsAsTheyAre)
{
    EXPECT_TRUE(tools_systemRoot().isEmpty());
    EXPECT_EQ(panelkit::systemPath("/proc/stat"), QStringLiteral("/proc/stat"));
}

TEST_F(SystemRoot, GoesBeforeEveryPathOnceItIsSet)
{
    tools_setSystemRoot(QStringLiteral("/tmp/panel"));
    EXPECT_EQ(tools_systemRoot(), QStringLiteral("/tmp/panel"));
    EXPECT_EQ(panelkit::systemPath("/etc/config/network"), QStringLiteral("/tmp/panel/etc/config/network"));
    EXPECT_EQ(panelkit::systemPath(QStringLiteral("/a")), QStringLiteral("/tmp/panel/a"));
}

TEST_F(SystemRoot, DropsSlashesAtItsEnd)
{
    for (const char *root : {"/tmp/panel/", "/tmp/panel//"}) {
        tools_setSystemRoot(QLatin1String(root));
        EXPECT_EQ(tools_systemRoot(), QStringLiteral("/tmp/panel"));
    }
    tools_setSystemRoot(QStringLiteral("/"));
    EXPECT_EQ(panelkit::systemPath("/proc/stat"), QStringLiteral("/proc/stat"));
}

TEST_F(SystemRoot, IsSetByNoEnvironmentVariable)
{
    for (const char *name : {"SYSTEM_ROOT", "PANELKIT_ROOT", "PANELKIT_SYSTEM_ROOT"}) {
        qputenv(name, "/elsewhere");
        EXPECT_TRUE(tools_systemRoot().isEmpty()) << name;
        qunsetenv(name);
    }
}
