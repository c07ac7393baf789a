#include "runtime/devicemodel.h"

#include "runtime/systemroot.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

class DeviceModel : public ::testing::Test
{
protected:
    DeviceModel() { tools_setSystemRoot(root.path()); }
    ~DeviceModel() override { tools_setSystemRoot(QString()); }

    void writeConfiguration(const char *content)
    {
        ASSERT_TRUE(QDir(root.path()).mkpath(QStringLiteral("usr/tesk42")));
        QFile file(root.filePath(QStringLiteral("usr/tesk42/config.ini")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content);
    }

    QTemporaryDir root;
};

TEST_F(DeviceModel, IsEmptyWithoutConfigurationFile)
{
    EXPECT_TRUE(panelkit::deviceModel().isEmpty());
    EXPECT_FALSE(panelkit::isBoxDevice());
    EXPECT_FALSE(panelkit::isIotDevice());
}

TEST_F(DeviceModel, IsEmptyWithoutTheKey)
{
    writeConfiguration("[General]\nNAME=W10\n[Other]\nMODEL=W10\n");
    EXPECT_TRUE(panelkit::deviceModel().isEmpty());
}

TEST_F(DeviceModel, WithWIsAnIotDeviceAndNoBox)
{
    writeConfiguration("MODEL=W10\n");
    EXPECT_EQ(panelkit::deviceModel(), QStringLiteral("W10"));
    EXPECT_TRUE(panelkit::isIotDevice());
    EXPECT_FALSE(panelkit::isBoxDevice());
}

TEST_F(DeviceModel, WithKeldIsBoth)
{
    writeConfiguration("MODEL=G-Keld-2\n");
    EXPECT_TRUE(panelkit::isIotDevice());
    EXPECT_TRUE(panelkit::isBoxDevice());
}

TEST_F(DeviceModel, IsComparedWithCase)
{
    writeConfiguration("MODEL=w10 keld KELD\n");
    EXPECT_FALSE(panelkit::isIotDevice());
    EXPECT_FALSE(panelkit::isBoxDevice());
}
