// The search for a driver, on a file system that tells no entry's type along with its name.

#include "link/driversearch.h"

#include "tests/link/driverpanel.h"
#include "tests/support/entrytypes.h"

#include <QDir>
#include <QFileInfo>

#include <unistd.h>

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

class DriverSearch : public panelkit::testing::DriverPanel, public ::testing::WithParamInterface<bool>
{
protected:
    DriverSearch() { panelkit::testing::setEntryTypesTold(GetParam()); }
    ~DriverSearch() override { panelkit::testing::setEntryTypesTold(true); }

    // The found file's name.
    static QString found(const char *driver)
    {
        return QFileInfo(panelkit::findDriverFile(text(driver))).fileName();
    }

    const QString folder = root.filePath(text("usr/tesk42/project/driver/"));
};

TEST_P(DriverSearch, FindsFilesButNoLinksAndFolders)
{
    writeFile(text("/usr/tesk42/project/driver/libabc_1.so"), "x");
    QDir(folder).mkdir(text("libfolder_1.so"));
    ASSERT_EQ(symlink("libabc_1.so", qPrintable(folder + text("liblink_1.so"))), 0);
    EXPECT_EQ(found("abc"), text("libabc_1.so"));
    EXPECT_EQ(found("folder"), QString());
    EXPECT_EQ(found("link"), QString());
}

TEST_P(DriverSearch, ReadsNamesInEveryScript)
{
    writeFile(text("/usr/tesk42/project/driver/数据"), "x");
    writeFile(text("/usr/tesk42/project/driver/lib温度_1.so"), "x");
    EXPECT_EQ(found("数据"), text("数据"));
    EXPECT_EQ(found("温度"), text("lib温度_1.so"));
}

TEST_P(DriverSearch, LeavesNoFolderOpen)
{
    const auto openFiles = [] {
        return QDir(text("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
    };
    const auto before = openFiles();
    for (int i = 0; i < 10; ++i)
        found("abc");
    EXPECT_EQ(openFiles(), before);
}

INSTANTIATE_TEST_SUITE_P(Types, DriverSearch, ::testing::Values(true, false),
                         [](const auto &types) { return types.param ? "Told" : "Untold"; });
