#include "export/tableexport.h"

#include "export/csvfile.h"
#include "simulator/platform/systembase.h"
#include "tests/export/plainexport.h"
#include "tests/support/allocationcounter.h"
#include "tests/support/heapinuse.h"
#include "tests/support/randomtext.h"
#include "tests/support/systemprogram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTextCodec>

#include <gtest/gtest.h>

using namespace panelkit::testing;

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QStringList texts(std::initializer_list<const char *> utf8)
{
    QStringList list;
    for (const char *entry : utf8)
        list << text(entry);
    return list;
}

class CsvExport : public ::testing::Test
{
protected:
    CsvExport() { panelkit::simulator::clearRecordedCommands(); }
    ~CsvExport() override { panelkit::simulator::setSystemBaseObserver({}); }

    QString path(const char *name) const { return m_folder.filePath(text(name)); }

    static QByteArray contents(const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }

    static QList<QByteArray> commands() { return panelkit::simulator::recordedCommands(); }

private:
    QTemporaryDir m_folder;
};

const QList<QByteArray> synced = {"sync"};

// Rows of Chinese and Latin text, as a panel's log has them.
QList<QStringList> logRows(int count)
{
    QList<QStringList> rows;
    for (int i = 0; i < count; ++i)
        rows << QStringList{QStringLiteral("2026-01-02 10:%1:12").arg(i % 60, 2, 10, QLatin1Char('0')),
                            text("灌装机%1号").arg(i % 7), text("压力过高，请检查阀门"),
                            QString::number(i % 100 * 1.25)};
    return rows;
}

} // namespace

TEST_F(CsvExport, WritesHeaderLinesAndRowsInGbk)
{
    const QString file = path("table.csv");
    tools_exportToCsv(texts({"温度", "a,b"}), {texts({"1", "中文", "x"}), texts({"only"}), {}, texts({""})},
                      file, 0);
    EXPECT_EQ(contents(file), QByteArray("\xCE\xC2\xB6\xC8\n"
                                         "a,b\n"
                                         "1,\xD6\xD0\xCE\xC4,x\n"
                                         "only\n"
                                         "\n"
                                         "\n"));
    EXPECT_EQ(commands(), synced);
}

TEST_F(CsvExport, SyncsWhenTheWholeFileIsWritten)
{
    const QString file = path("table.csv");
    QList<QByteArray> seen;
    panelkit::simulator::setSystemBaseObserver(
        [&](const QByteArray &line) { seen << line << contents(file); });
    tools_exportToCsv(texts({"温度"}), {texts({"1", "x"})}, file, 0);
    EXPECT_EQ(seen, (QList<QByteArray>{"sys_base_do_system sync", "\xCE\xC2\xB6\xC8\n1,x\n"}));
}

TEST_F(CsvExport, WritesCellsRawSoThatACommaMakesAColumnMore)
{
    const QString file = path("raw.csv");
    tools_exportToCsv({}, {texts({"a,b", "say \"hi\"", "c;d"})}, file, 0);
    EXPECT_EQ(contents(file), QByteArray("a,b,say \"hi\",c;d\n"));
}

TEST_F(CsvExport, ReplacesTheFileUnlessItAppends)
{
    const QString file = path("twice.csv");
    tools_exportToCsv(texts({"first, and longer"}), {texts({"row"})}, file, 0);
    tools_exportToCsv(texts({"second"}), {}, file, 0);
    EXPECT_EQ(contents(file), QByteArray("second\n"));
}

TEST_F(CsvExport, AppendsRowsWithoutAHeader)
{
    const QString file = path("append.csv");
    tools_exportToCsv(texts({"header"}), {texts({"1"})}, file, 0);
    tools_exportToCsv(texts({"header"}), {texts({"2"})}, file, 1);
    tools_exportToCsv(texts({"header"}), {texts({"3"})}, file, -7);
    EXPECT_EQ(contents(file), QByteArray("header\n1\n2\n3\n"));
    EXPECT_EQ(commands(), (QList<QByteArray>{"sync", "sync", "sync"}));
}

TEST_F(CsvExport, AppendsWithoutAHeaderToANewFileToo)
{
    const QString file = path("new.csv");
    tools_exportToCsv(texts({"header"}), {texts({"1", "2"})}, file, 1);
    EXPECT_EQ(contents(file), QByteArray("1,2\n"));
}

TEST_F(CsvExport, LeavesAnEmptyFileForAnEmptyTable)
{
    const QString file = path("empty.csv");
    tools_exportToCsv({}, {}, file, 0);
    EXPECT_EQ(contents(file), QByteArray());
    EXPECT_EQ(commands(), synced);
}

TEST_F(CsvExport, DoesNothingWhereTheFileCannotBeOpened)
{
    QFile file(path("file"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("kept");
    file.close();
    for (const QString &refused :
         {path("missing/table.csv"), path("file/table.csv"), path(""), QString(), path("file") + QChar(0),
          path("file") + QChar(0) + text(".bak/none"), QChar(0) + path("file")}) {
        SCOPED_TRACE(refused.toStdString());
        tools_exportToCsv(texts({"header"}), {texts({"1"})}, refused, 0);
        tools_exportToCsv(texts({"header"}), {texts({"1"})}, refused, 1);
        EXPECT_EQ(commands(), QList<QByteArray>());
        EXPECT_EQ(contents(path("file")), QByteArray("kept"));
    }
}

TEST_F(CsvExport, WritesInTheLocalesEncodingWhereTheCodecIsMissing)
{
    const QString file = path("locale.csv");
    for (const char *locale : {"ISO-8859-1", "UTF-8"}) {
        SCOPED_TRACE(locale);
        QTextCodec::setCodecForLocale(QTextCodec::codecForName(locale));
        panelkit::exportToCsv(texts({"é"}), {texts({"1", "ü"})}, file, 0, nullptr);
        EXPECT_EQ(contents(file), QTextCodec::codecForName(locale)->fromUnicode(text("é\n1,ü\n")));
    }
    QTextCodec::setCodecForLocale(nullptr);
}

TEST_F(CsvExport, EndsQuietlyOnAFullDevice)
{
    tools_exportToCsv(texts({"header"}), logRows(10000), QStringLiteral("/dev/full"), 0);
    EXPECT_EQ(commands(), synced);
}

TEST_F(CsvExport, WritesWhatATextStreamWrites)
{
    RandomText random(5);
    QList<QStringList> rows;
    for (int row = 0; row < 4000; ++row) {
        QStringList cells;
        for (int cell = random.number(0, 6); cell > 0; --cell)
            cells << random.ofAnything(random.number(0, 20));
        rows << cells;
    }
    // Beyond what a text stream gathers before it encodes.
    rows << QStringList{random.ofAnything(50000), random.ofAnything(50000)};
    const QStringList header = {random.ofAnything(30), QString(), text("a,b")};
    tools_exportToCsv(header, rows, path("ours.csv"), 0);
    plainExportToCsv(header, rows, path("plain.csv"));
    EXPECT_TRUE(contents(path("ours.csv")) == contents(path("plain.csv")));
}

TEST_F(CsvExport, IsConvertedByIconvWithoutALoss)
{
    const QList<QStringList> rows = logRows(1000);
    tools_exportToCsv(texts({"时间,名称,内容,数值"}), rows, path("log.csv"), 0);
    QStringList lines = texts({"时间,名称,内容,数值"});
    for (const QStringList &cells : rows)
        lines << cells.join(QLatin1Char(','));
    EXPECT_TRUE(outputOf("iconv", {text("-f"), text("GBK"), text("-t"), text("UTF-8"), path("log.csv")}) ==
                (lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8());
}

TEST_F(CsvExport, AllocatesNothingForARow)
{
    const QList<QStringList> few = logRows(100);
    const QList<QStringList> many = logRows(20000);
    const QString file = path("log.csv");
    const auto allocationsFor = [&file](const QList<QStringList> &rows) {
        panelkit::simulator::clearRecordedCommands();
        const AllocationCounter counter;
        tools_exportToCsv({}, rows, file, 0);
        return counter.count();
    };
    allocationsFor(few); // the toolkit finds its codec
    EXPECT_EQ(allocationsFor(few), allocationsFor(many));
}

// What it writes with is still there when the disk is synced; nothing that grows with the rows ever is.
TEST_F(CsvExport, HoldsLessThan256KilobytesBesideTheRows)
{
    const QList<QStringList> rows = logRows(20000);
    tools_exportToCsv({}, rows, path("log.csv"), 0); // the toolkit finds its codec
    std::size_t during = 0;
    panelkit::simulator::setSystemBaseObserver([&](const QByteArray &) { during = heapInUse(); });
    const std::size_t before = heapInUse();
    tools_exportToCsv({}, rows, path("log.csv"), 0);
    ASSERT_GT(during, before);
    EXPECT_LT(during - before, 256U * 1024);
}

TEST(ExportedRecord, HasItsDateTimeNameAndContent)
{
    const DataContent record =
        tools_strList2DataContent(texts({"7", "2020-01-02 10:11:12", "温度过高", "more"}), text("alarm"));
    EXPECT_EQ(record.date, text("2020-01-02"));
    EXPECT_EQ(record.time, text("10:11:12"));
    EXPECT_EQ(record.name, text("alarm"));
    EXPECT_EQ(record.content, text("温度过高"));
}

TEST(ExportedRecord, HasDateAndTimeOnlyAroundOneBlank)
{
    const struct
    {
        const char *entry, *date, *time;
    } rows[] = {
        {"2020-01-02  10:11:12", "", ""},        // two blanks are three parts
        {"2020-01-02", "", ""},                  // no blank
        {"2020-01-02 10:11:12 ", "", ""},        // a blank behind
        {"", "", ""},                            // nothing
        {" ", "", ""},                           // two empty parts
        {"2020-01-02 ", "2020-01-02", ""},       // an empty time
        {" 10:11:12", "", "10:11:12"},           // an empty date
        {"2020-01-02\t10:11:12", "", ""},        // a tab is no blank
        {"yesterday noon", "yesterday", "noon"}, // any two parts
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.entry);
        const DataContent record = tools_strList2DataContent(texts({"", row.entry, "content"}), text("name"));
        EXPECT_EQ(record.date, text(row.date));
        EXPECT_EQ(record.time, text(row.time));
        EXPECT_EQ(record.name, text("name"));
        EXPECT_EQ(record.content, text("content"));
    }
}

TEST(ExportedRecord, IsEmptyWithFewerThanThreeEntries)
{
    for (const QStringList &fields : {QStringList(), texts({"a"}), texts({"a", "2020-01-02 10:11:12"})}) {
        const DataContent record = tools_strList2DataContent(fields, text("name"));
        EXPECT_TRUE(record.date.isEmpty());
        EXPECT_TRUE(record.time.isEmpty());
        EXPECT_TRUE(record.name.isEmpty());
        EXPECT_TRUE(record.content.isEmpty());
    }
}
