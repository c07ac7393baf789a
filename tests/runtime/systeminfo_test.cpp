#include "runtime/systeminfo.h"

#include "runtime/systemfigures.h"
#include "tests/support/ordinaryuser.h"
#include "tests/support/panelroot.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/sysinfo.h>

using panelkit::testing::OrdinaryUser;
using panelkit::testing::PanelRoot;

namespace {

// A folder of its own as the working directory.
class WorkingDirectory : public ::testing::Test
{
protected:
    WorkingDirectory() : m_before(QDir::currentPath()) { QDir::setCurrent(folder.path()); }
    ~WorkingDirectory() override { QDir::setCurrent(m_before); }

    static bool write(const QString &path, const QByteArray &content)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
    }

    QTemporaryDir folder;

private:
    QString m_before;
};

using FileExists = WorkingDirectory;
using TestLog = WorkingDirectory;

const int directory = 1;
const int regularFile = 2;

const char *const probe = "/usr/tesk42/iot_work/iotRunTime/driver/libsiemens_s7_200_ppi.so";

} // namespace

TEST_F(FileExists, CreatesAMissingDirectoryAndStillAnswersFalse)
{
    EXPECT_FALSE(tools_file_exists(QStringLiteral("a/b/c"), directory, true));
    EXPECT_TRUE(QFileInfo(QStringLiteral("a/b/c")).isDir());
    EXPECT_TRUE(tools_file_exists(QStringLiteral("a/b/c"), directory, true));
}

TEST_F(FileExists, CreatesNothingUnasked)
{
    EXPECT_FALSE(tools_file_exists(QStringLiteral("a/b"), directory, false));
    EXPECT_FALSE(QFileInfo::exists(QStringLiteral("a")));
}

TEST_F(FileExists, FindsARelativeDirectoryBelowTheWorkingDirectoryAndAnAbsoluteOneAnywhere)
{
    ASSERT_TRUE(QDir().mkdir(QStringLiteral("here")));
    EXPECT_TRUE(tools_file_exists(QStringLiteral("here"), directory, false));
    EXPECT_TRUE(tools_file_exists(folder.filePath(QStringLiteral("here")), directory, false));
    EXPECT_TRUE(tools_file_exists(QStringLiteral("/"), directory, false));
}

TEST_F(FileExists, TakesAFileForADirectoryThatExists)
{
    ASSERT_TRUE(write(QStringLiteral("file"), "x"));
    EXPECT_TRUE(tools_file_exists(QStringLiteral("file"), directory, true));
    EXPECT_TRUE(QFileInfo(QStringLiteral("file")).isFile());
}

TEST_F(FileExists, OfAFileIsTrueForRegularFilesAndLinksToThem)
{
    ASSERT_TRUE(write(QStringLiteral("file"), "x"));
    ASSERT_TRUE(QFile::link(QStringLiteral("file"), QStringLiteral("link")));
    ASSERT_TRUE(QFile::link(QStringLiteral("nowhere"), QStringLiteral("broken")));
    ASSERT_TRUE(QDir().mkdir(QStringLiteral("folder")));
    EXPECT_TRUE(tools_file_exists(QStringLiteral("file"), regularFile, false));
    EXPECT_TRUE(tools_file_exists(QStringLiteral("link"), regularFile, false));
    EXPECT_FALSE(tools_file_exists(QStringLiteral("broken"), regularFile, false));
    EXPECT_FALSE(tools_file_exists(QStringLiteral("folder"), regularFile, false));
    EXPECT_FALSE(tools_file_exists(QStringLiteral("/dev/null"), regularFile, false));
}

TEST_F(FileExists, NeverCreatesAFile)
{
    EXPECT_FALSE(tools_file_exists(QStringLiteral("file"), regularFile, true));
    EXPECT_FALSE(QFileInfo::exists(QStringLiteral("file")));
}

TEST_F(FileExists, OfAnyOtherKindIsFalseAndCreatesNothing)
{
    ASSERT_TRUE(write(QStringLiteral("file"), "x"));
    for (int kind : {-1, 0, 3, 2147483647}) {
        EXPECT_FALSE(tools_file_exists(QStringLiteral("file"), kind, true));
        EXPECT_FALSE(tools_file_exists(QStringLiteral("folder"), kind, true));
    }
    EXPECT_FALSE(QFileInfo::exists(QStringLiteral("folder")));
}

TEST_F(FileExists, OfAnEmptyPathIsFalse)
{
    for (int kind : {directory, regularFile})
        EXPECT_FALSE(tools_file_exists(QString(), kind, true));
}

TEST_F(FileExists, LooksWhereTheCallerSaysWhateverTheSystemRoot)
{
    const PanelRoot root;
    EXPECT_TRUE(tools_file_exists(QStringLiteral("/dev"), directory, false));
    EXPECT_FALSE(tools_file_exists(QStringLiteral("/etc/config"), directory, false));
}

TEST_F(FileExists, StaysFalseWhereNothingCanBeCreated)
{
    ASSERT_TRUE(QDir().mkdir(QStringLiteral("closed")));
    ASSERT_EQ(chmod(".", 0555), 0);
    ASSERT_EQ(chmod("closed", 0555), 0);
    {
        const OrdinaryUser user;
        ASSERT_TRUE(user.holds());
        EXPECT_FALSE(tools_file_exists(QStringLiteral("closed/new"), directory, true));
        EXPECT_FALSE(tools_file_exists(QStringLiteral("closed/new"), directory, true));
    }
    ASSERT_EQ(chmod(".", 0755), 0);
}

TEST(IotVersion, IsTwoWhereTheProbeDriverLies)
{
    const PanelRoot root;
    EXPECT_EQ(tools_iot_version(), 1);
    ASSERT_TRUE(root.write(probe, ""));
    EXPECT_EQ(tools_iot_version(), 2);
}

TEST(DeviceKind, FollowsTheModel)
{
    const struct
    {
        const char *model;
        bool isIot, isBox;
    } rows[] = {{"W10", true, false}, {"Keld", true, true},  {"G2-Keld-4", true, true},
                {"T7W", true, false}, {"w10", false, false}, {"keld", false, false},
                {"T7", false, false}, {"", false, false}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.model);
        const PanelRoot root; // the settings class may not notice two writes within a millisecond
        EXPECT_FALSE(tools_isIotDevice());
        EXPECT_FALSE(tools_isBoxDevice());
        ASSERT_TRUE(root.write("/usr/tesk42/config.ini", QByteArray("MODEL=") + row.model + "\n"));
        EXPECT_EQ(tools_isIotDevice(), row.isIot);
        EXPECT_EQ(tools_isBoxDevice(), row.isBox);
    }
}

TEST(DiskSpace, OfNoPathOrOfAMissingOneIsThreeZeros)
{
    for (const char *path : {static_cast<const char *>(nullptr), "", "/there/is/no/such/path"}) {
        const DevDiskInfo info = tools_get_dev_disk(path);
        EXPECT_EQ(info.totalMB, 0.0f);
        EXPECT_EQ(info.usedMB, 0.0f);
        EXPECT_EQ(info.freeMB, 0.0f);
    }
}

TEST(DiskSpace, OfThisMachineIsWhatTheSystemSays)
{
    // The figure moves; between two equal looks it stands still.
    struct statfs before = {};
    struct statfs after = {};
    DevDiskInfo info = {};
    int looks = 0;
    do {
        ASSERT_EQ(statfs("/", &before), 0);
        info = tools_get_dev_disk("/");
        ASSERT_EQ(statfs("/", &after), 0);
    } while (before.f_bfree != after.f_bfree && ++looks < 10000);
    ASSERT_EQ(before.f_bfree, after.f_bfree);
    const double block = static_cast<double>(after.f_bsize) / 1048576;
    EXPECT_FLOAT_EQ(info.totalMB, static_cast<float>(static_cast<double>(after.f_blocks) * block));
    EXPECT_FLOAT_EQ(info.freeMB, static_cast<float>(static_cast<double>(after.f_bfree) * block));
    EXPECT_FLOAT_EQ(info.usedMB, info.totalMB - info.freeMB);
}

TEST(DiskSpace, IsInMebibytesAndMultipliedIn64Bits)
{
    const struct
    {
        const char *name;
        quint64 blocks, freeBlocks, blockSize;
        float total, used, free;
    } rows[] = {
        {"nothing", 0, 0, 4096, 0.0f, 0.0f, 0.0f},
        {"one block of 1 KiB", 1, 0, 1024, 0.0009765625f, 0.0009765625f, 0.0f},
        {"a panel's flash of 128 MiB", 32768, 8192, 4096, 128.0f, 96.0f, 32.0f},
        {"a memory card of 32 GiB", 8388608, 8388608, 4096, 32768.0f, 0.0f, 32768.0f},
        {"a disk of 16 TiB", 4294967296, 2147483648, 4096, 16777216.0f, 8388608.0f, 8388608.0f},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const DevDiskInfo info = panelkit::diskSpace(row.blocks, row.freeBlocks, row.blockSize);
        EXPECT_EQ(info.totalMB, row.total);
        EXPECT_EQ(info.usedMB, row.used);
        EXPECT_EQ(info.freeMB, row.free);
    }
}

TEST(FreeMemory, OfThisMachineIsWhatTheSystemSays)
{
    // The figure moves; between two equal looks it stands still.
    struct sysinfo before = {};
    struct sysinfo after = {};
    quint32 figure = 0;
    int looks = 0;
    do {
        ASSERT_EQ(sysinfo(&before), 0);
        figure = tools_get_dev_mem();
        ASSERT_EQ(sysinfo(&after), 0);
    } while (before.freeram != after.freeram && ++looks < 10000);
    ASSERT_EQ(before.freeram, after.freeram);
    EXPECT_EQ(figure, (quint64(after.freeram) * after.mem_unit & 0xffffffffu) / 1024);
}

TEST(FreeMemory, HasThirtyTwoBitsThroughout)
{
    EXPECT_EQ(panelkit::kibibytes(0, 1), 0u);
    EXPECT_EQ(panelkit::kibibytes(1023, 1), 0u);
    EXPECT_EQ(panelkit::kibibytes(134217728, 1), 131072u);    // 128 MiB
    EXPECT_EQ(panelkit::kibibytes(4294967295u, 1), 4194303u); // 4 GiB but one byte
    EXPECT_EQ(panelkit::kibibytes(1048577, 4096), 4u);        // 4 GiB and one page: the page is left
}

TEST_F(TestLog, AppendsWithoutALineEnd)
{
    tools_testLog(QStringLiteral("one"), false);
    tools_testLog(QStringLiteral("two\n"), false);
    tools_testLog(QString(), false);
    EXPECT_EQ(read(QStringLiteral("testLog.log")), "onetwo\n");
}

TEST_F(TestLog, BeginsAnewWhenTruncated)
{
    tools_testLog(QStringLiteral("a long earlier text"), false);
    tools_testLog(QStringLiteral("new"), true);
    EXPECT_EQ(read(QStringLiteral("testLog.log")), "new");
    tools_testLog(QString(), true);
    EXPECT_EQ(read(QStringLiteral("testLog.log")), "");
}

TEST_F(TestLog, IsUtf8UpToTheFirstNul)
{
    QString text = QString::fromUtf8("\xe6\xb8\xa9\xe5\xba\xa6");
    text += QChar(0);
    text += QLatin1Char('x');
    tools_testLog(text, true);
    EXPECT_EQ(read(QStringLiteral("testLog.log")), "\xe6\xb8\xa9\xe5\xba\xa6");
}

TEST_F(TestLog, LiesInTheWorkingDirectoryWhateverTheSystemRoot)
{
    const PanelRoot root;
    tools_testLog(QStringLiteral("here"), false);
    EXPECT_EQ(read(folder.filePath(QStringLiteral("testLog.log"))), "here");
}

TEST_F(TestLog, ThatCannotBeOpenedIsLeftAlone)
{
    ASSERT_TRUE(QDir().mkdir(QStringLiteral("testLog.log")));
    tools_testLog(QStringLiteral("text"), false);
    tools_testLog(QStringLiteral("text"), true);
    EXPECT_TRUE(QFileInfo(QStringLiteral("testLog.log")).isDir());
}
