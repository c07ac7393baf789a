#include "tests/simulator/panelsim/program.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace panelkit::testing;
using ::testing::HasSubstr;

namespace {

class PanelsimEncoding : public ::testing::Test
{
protected:
    QString file(const char *name, const QByteArray &contents) const
    {
        const QString path = m_folder.filePath(QLatin1String(name));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(contents), contents.size());
        return path;
    }

    QString missing() const { return m_folder.filePath(QStringLiteral("missing")); }

private:
    QTemporaryDir m_folder;
};

} // namespace

TEST(PanelsimEncodingOfNoFile, IsNotGuessed)
{
    const ProgramRun run = runPanelsim(
        {QStringLiteral("encoding"), QStringLiteral("/proc/self/mem"), QStringLiteral("/dev/zero")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err.toStdString(),
              "panelsim: /proc/self/mem: Input/output error: name a file that can be read\n"
              "panelsim: /dev/zero: this is no regular file: copy it into one\n");
}

TEST_F(PanelsimEncoding, TellsCodeNameAndReasonOfEachFile)
{
    const struct
    {
        const char *name;
        QByteArray contents;
        const char *found;
    } rows[] = {
        {"utf8", "温度", "3 UTF-8 no mark, and all bytes are UTF-8"},
        {"marked",
         "\xEF\xBB\xBF"
         "a",
         "4 UTF-8 with a mark the mark EF BB BF"},
        {"little",
         QByteArray("\xFF\xFE"
                    "a\0",
                    4),
         "1 UTF-16, little-endian the mark FF FE"},
        {"big", QByteArray("\xFE\xFF\0a", 4), "2 UTF-16, big-endian the mark FE FF"},
        {"gbk", "ab\xCE\xC2\xB6\xC8",
         "0 local (GBK on a panel) no mark, and the byte CE at offset 2 begins no UTF-8 character"},
        {"broken",
         "a\xE6\xB8\xA9\xE6\xB8"
         "b",
         "0 local (GBK on a panel) no mark, and the byte E6 at offset 4 begins no UTF-8 character"},
        {"short", "abc", "0 local (GBK on a panel) only 3 of the 4 bytes that it takes to tell"},
        {"empty", "", "0 local (GBK on a panel) only 0 of the 4 bytes that it takes to tell"},
    };
    QStringList arguments{QStringLiteral("encoding")};
    for (const auto &row : rows)
        arguments << file(row.name, row.contents);
    const ProgramRun run = runPanelsim(arguments);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.err.isEmpty());
    const QStringList lines = run.out.trimmed().split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 1 + static_cast<int>(std::size(rows)));
    EXPECT_EQ(lines.first().simplified(), QStringLiteral("FILE CODE ENCODING WHY"));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const QString expected =
            arguments.at(static_cast<int>(i) + 1) + QLatin1Char(' ') + QLatin1String(rows[i].found);
        EXPECT_EQ(lines.at(static_cast<int>(i) + 1).simplified(), expected);
    }
}

TEST_F(PanelsimEncoding, NamesAFileThatCannotBeReadAndTellsTheOthers)
{
    const ProgramRun run =
        runPanelsim({QStringLiteral("encoding"), missing(), file("ascii", "text"), QStringLiteral("/")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.out.toStdString(), HasSubstr("ascii"));
    const QStringList complaints = run.err.trimmed().split(QLatin1Char('\n'));
    ASSERT_EQ(complaints.size(), 2);
    EXPECT_EQ(complaints.first(),
              QStringLiteral("panelsim: %1: No such file or directory: name a file that can be read")
                  .arg(missing()));
    EXPECT_TRUE(complaints.last().startsWith(QStringLiteral("panelsim: /: ")));
}

TEST_F(PanelsimEncoding, AsksForAFile)
{
    const ProgramRun run = runPanelsim({QStringLiteral("encoding")});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.err, QStringLiteral("panelsim: encoding takes the names of one or more files\n"));
}
