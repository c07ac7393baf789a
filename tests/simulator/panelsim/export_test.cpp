#include "tests/simulator/panelsim/program.h"
#include "tests/simulator/stillplc.h"
#include "tests/support/pdffile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <optional>

using namespace panelkit::testing;
using ::testing::HasSubstr;

namespace {

class PanelsimExport : public ::testing::Test
{
protected:
    PanelsimExport() { qputenv("FONTCONFIG_FILE", PANELKIT_TEST_FONTS); }

    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    QString file(const char *name, const QByteArray &contents) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(contents), contents.size());
        return path(name);
    }

    static QByteArray contents(const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }

    static ProgramRun exportOf(const QStringList &arguments)
    {
        return runPanelsim(QStringList(QStringLiteral("export")) + arguments);
    }

private:
    QTemporaryDir m_folder;
};

const QByteArray chineseInGbk = "\xCE\xC2\xB6\xC8";
const QByteArray tableInGbk = chineseInGbk + ",a b\n1," + chineseInGbk + "\n\"2\",x,y\n";
// As the library writes it: cells are raw.
const QByteArray exportedTable = chineseInGbk + ",a b\n1," + chineseInGbk + "\n2,x,y\n";

QByteArray utf16(const QString &text, bool littleEndian)
{
    QByteArray bytes;
    for (const QChar unit : QString(QChar(QChar::ByteOrderMark)) + text) {
        bytes += static_cast<char>(littleEndian ? unit.unicode() & 0xff : unit.unicode() >> 8);
        bytes += static_cast<char>(littleEndian ? unit.unicode() >> 8 : unit.unicode() & 0xff);
    }
    return bytes;
}

} // namespace

TEST_F(PanelsimExport, WritesAProjectsValuesToACsvFile)
{
    const StillPlc plc;
    const QString file = path("values.csv");
    const ProgramRun run = exportOf({QStringLiteral("--csv"), file, QStringLiteral("--plc"), plc.address()});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.isEmpty()) << run.err.toStdString();
    const QStringList lines = QString::fromLatin1(contents(file)).trimmed().split(QLatin1Char('\n'));
    EXPECT_EQ(run.out, QStringLiteral("%1: %2 rows, the file has %3 bytes\n")
                           .arg(file)
                           .arg(lines.size() - 1)
                           .arg(QFileInfo(file).size()));
    EXPECT_EQ(lines.first(), QStringLiteral("Time,Item,Address,Value"));
    const QRegularExpression tank(
        QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d,Tank level,3x2,87\\.5$"));
    EXPECT_EQ(lines.filter(tank).size(), 1);
}

TEST_F(PanelsimExport, AppendsRowsWithoutAHeader)
{
    const QString table = file("table.csv", tableInGbk);
    const QString out = path("out.csv");
    const QStringList arguments = {QStringLiteral("--csv"), out, QStringLiteral("--from"), table,
                                   QStringLiteral("--append")};
    EXPECT_EQ(exportOf(arguments).exitCode, 0);
    const QByteArray rows = exportedTable.mid(exportedTable.indexOf('\n') + 1);
    EXPECT_EQ(contents(out), rows);
    EXPECT_EQ(exportOf(arguments).exitCode, 0);
    EXPECT_EQ(contents(out), rows + rows);
}

TEST_F(PanelsimExport, TakesATableInEveryEncodingItRecognises)
{
    const QByteArray inUtf8 = "温度,a b\r\n1,温度\r\n\"2\",x,y";
    const struct
    {
        const char *name;
        QByteArray contents;
    } rows[] = {{"GBK", tableInGbk},
                {"UTF-8", inUtf8},
                {"UTF-8 with a mark", "\xEF\xBB\xBF" + inUtf8},
                {"UTF-16, little-endian", utf16(QString::fromUtf8(inUtf8), true)},
                {"UTF-16, big-endian", utf16(QString::fromUtf8(inUtf8), false)}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const QString table = file(row.name, row.contents);
        const ProgramRun run =
            exportOf({QStringLiteral("--from"), table, QStringLiteral("--csv"), path("out.csv")});
        EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
        EXPECT_EQ(contents(path("out.csv")), exportedTable);
    }
}

TEST_F(PanelsimExport, TakesAnEmptyTable)
{
    const ProgramRun run =
        exportOf({QStringLiteral("--from"), file("empty", ""), QStringLiteral("--csv"), path("out.csv")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(contents(path("out.csv")), QByteArray());
}

TEST_F(PanelsimExport, ReadsAPipeOnce)
{
    QFile::remove(path("out.csv"));
    QProcess process;
    process.start(QStringLiteral(PANELSIM),
                  {QStringLiteral("export"), QStringLiteral("--from"), QStringLiteral("/dev/stdin"),
                   QStringLiteral("--csv"), path("out.csv")});
    process.write(tableInGbk);
    process.closeWriteChannel();
    ASSERT_TRUE(process.waitForFinished(programDeadline));
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
    EXPECT_EQ(contents(path("out.csv")), exportedTable);
}

TEST_F(PanelsimExport, RefusesATableThatHasNoEndOrCannotBeReadAndKeepsTheTarget)
{
    const QString out = file("out.csv", "kept\n");
    const QString large = file("large.csv", "");
    ASSERT_TRUE(QFile::resize(large, Q_INT64_C(64) * 1024 * 1024 + 1));
    const QString tooLarge = QStringLiteral(": larger than the 64 MiB that a table may have: split it");
    const struct
    {
        QString from;
        QString complaint;
    } rows[] = {
        {large, large + tooLarge},
        {QStringLiteral("/dev/zero"), QStringLiteral("/dev/zero") + tooLarge},
        {QStringLiteral("/proc/self/mem"),
         QStringLiteral("/proc/self/mem: Input/output error: name a file that can be read")},
    };
    for (const auto &row : rows) {
        const ProgramRun run = exportOf({QStringLiteral("--from"), row.from, QStringLiteral("--csv"), out});
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.err, QStringLiteral("panelsim: ") + row.complaint + QLatin1Char('\n'));
        EXPECT_EQ(contents(out), "kept\n");
    }
}

TEST_F(PanelsimExport, WritesATableOverTheFileThatItCameFrom)
{
    const QString same = file("same.csv", tableInGbk);
    ASSERT_TRUE(QFile::setPermissions(same, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
    const auto permissions = QFile::permissions(same);
    EXPECT_EQ(exportOf({QStringLiteral("--from"), same, QStringLiteral("--csv"), same}).exitCode, 0);
    EXPECT_EQ(contents(same), exportedTable);
    EXPECT_EQ(QFile::permissions(same), permissions);
}

TEST_F(PanelsimExport, WritesThroughALinkAndIntoAPipe)
{
    const QString table = file("table.csv", tableInGbk);
    const QString target = file("target.csv", "old\n");
    ASSERT_TRUE(QFile::link(target, path("link.csv")));
    ASSERT_TRUE(QFile::link(path("new.csv"), path("dangling.csv")));
    for (const char *link : {"link.csv", "dangling.csv"}) {
        EXPECT_EQ(exportOf({QStringLiteral("--from"), table, QStringLiteral("--csv"), path(link)}).exitCode,
                  0);
        EXPECT_TRUE(QFileInfo(path(link)).isSymLink());
        EXPECT_EQ(contents(path(link)), exportedTable);
    }
    const ProgramRun run = exportOf({QStringLiteral("--from"), path("target.csv"), QStringLiteral("--csv"),
                                     QStringLiteral("/dev/stdout")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.out.endsWith(QStringLiteral("2,x,y\n/dev/stdout: 2 rows\n"))) << run.out.toStdString();
}

TEST_F(PanelsimExport, WritesAPdfFileWithoutAScreen)
{
    const QString table = file("table.csv", tableInGbk);
    const ProgramRun run =
        exportOf({QStringLiteral("--from"), table, QStringLiteral("--pdf"), path("out.pdf")});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.isEmpty()) << run.err.toStdString();
    EXPECT_THAT(run.out.toStdString(), HasSubstr("out.pdf: 2 rows, the file has "));
    const PdfFile pdf(path("out.pdf"));
    EXPECT_EQ(pdf.pageCount(), 1);
    EXPECT_EQ(pdf.lines(1), (QStringList{QString::fromUtf8("温度 a b"), QString::fromUtf8("1 温度"),
                                         QStringLiteral("2 x y")}));
}

TEST_F(PanelsimExport, WritesAPdfIntoAPipe)
{
    const ProgramRun run = runInShell("\"$0\" export --from \"$1\" --pdf /dev/stdout | tail -n 2",
                                      {file("table.csv", tableInGbk)});
    EXPECT_EQ(run.err.toStdString(), "");
    EXPECT_EQ(run.out.toStdString(), "%%EOF\n/dev/stdout: 2 rows\n");
}

TEST_F(PanelsimExport, ExportsAndSaysThatAPlcDidNotAnswer)
{
    std::optional<StillPlc> plc(std::in_place);
    const QString address = plc->address();
    plc.reset();
    const ProgramRun run =
        exportOf({QStringLiteral("--csv"), path("values.csv"), QStringLiteral("--plc"), address});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.err.toStdString(),
              "panelsim: warning: 28 of 39 values are left empty: the PLC did not give them; 'panelsim show' "
              "says which\n");
    EXPECT_THAT(contents(path("values.csv")).toStdString(), HasSubstr("Tank level,3x2,\n"));
}

TEST_F(PanelsimExport, LeavesAValueEmptyThatASilentPlcDidNotGive)
{
    StillPlc plc;
    plc.silence();
    const ProgramRun run =
        exportOf({QStringLiteral("--csv"), path("values.csv"), QStringLiteral("--plc"), plc.address()});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.err.toStdString(), HasSubstr("28 of 39 values are left empty"));
    EXPECT_THAT(contents(path("values.csv")).toStdString(), HasSubstr("Tank level,3x2,\n"));
    EXPECT_THAT(contents(path("values.csv")).toStdString(), HasSubstr("Night shift,LB10,0\n"));
}

TEST_F(PanelsimExport, SaysInOneLineWhatCannotBeWrittenOrRead)
{
    const QString table = file("table.csv", tableInGbk);
    const QString missing = path("missing/out");
    const QString within = table + QStringLiteral("/out");
    const struct
    {
        QStringList arguments;
        QString complaint;
    } rows[] = {
        {{QStringLiteral("--from"), table, QStringLiteral("--csv"), missing},
         missing + QStringLiteral(": No such file or directory: name a file that can be written")},
        {{QStringLiteral("--from"), table, QStringLiteral("--pdf"), missing},
         missing + QStringLiteral(": No such file or directory: name a file that can be written")},
        {{QStringLiteral("--from"), table, QStringLiteral("--csv"), within, QStringLiteral("--append")},
         within + QStringLiteral(": Not a directory: name a file that can be written")},
        {{QStringLiteral("--from"), missing, QStringLiteral("--csv"), path("out.csv")},
         missing + QStringLiteral(": No such file or directory: name a file that can be read")},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.arguments.join(QLatin1Char(' ')).toStdString());
        const ProgramRun run = exportOf(row.arguments);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.err, QStringLiteral("panelsim: ") + row.complaint + QLatin1Char('\n'));
        EXPECT_TRUE(run.out.isEmpty());
    }
    EXPECT_FALSE(QFileInfo::exists(path("out.csv")));
}

// A disk that is full is played by a limit on the size of files.
TEST_F(PanelsimExport, SaysWhenAFileIsNotWholeAndKeepsTheOneThatWasThere)
{
    const QString table = file("table.csv", "header\n" + QByteArray("row\n").repeated(20000));
    for (const char *kind : {"--csv", "--pdf"}) {
        SCOPED_TRACE(kind);
        QProcess process;
        file("out", "kept\n");
        process.start(
            QStringLiteral("sh"),
            {QStringLiteral("-c"),
             QStringLiteral("trap '' XFSZ; ulimit -f 4; exec \"$0\" export --from \"$1\" \"$2\" \"$3\""),
             QStringLiteral(PANELSIM), table, QString::fromLatin1(kind), path("out")});
        ASSERT_TRUE(process.waitForFinished(programDeadline));
        EXPECT_EQ(process.exitCode(), 1);
        EXPECT_EQ(
            QString::fromUtf8(process.readAllStandardError()),
            QStringLiteral("panelsim: %1: the file is not whole: free some space or name another file\n")
                .arg(path("out")));
        EXPECT_EQ(contents(path("out")), "kept\n");
        const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        EXPECT_EQ(QFileInfo(table).dir().entryList(all),
                  (QStringList{QStringLiteral("out"), QStringLiteral("table.csv")}));
    }
}

TEST_F(PanelsimExport, RefusesOptionsThatContradictEachOther)
{
    const struct
    {
        QStringList arguments;
        const char *complaint;
    } rows[] = {
        {{}, "panelsim: export takes either --csv FILE or --pdf FILE\n"},
        {{QStringLiteral("--csv"), path("a"), QStringLiteral("--pdf"), path("b")},
         "panelsim: export takes either --csv FILE or --pdf FILE\n"},
        {{QStringLiteral("--pdf"), path("a"), QStringLiteral("--append")},
         "panelsim: export appends to CSV files only: --append goes with --csv\n"},
        {{QStringLiteral("--csv"), path("a"), QStringLiteral("--from"), path("b"),
          QStringLiteral("project.json")},
         "panelsim: export takes its table either --from a file or from a project\n"},
        {{QStringLiteral("--csv"), path("a"), QStringLiteral("--from"), path("b"), QStringLiteral("--root"),
          path("c")},
         "panelsim: export takes its table either --from a file or from a project\n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.arguments.join(QLatin1Char(' ')).toStdString());
        const ProgramRun run = exportOf(row.arguments);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_EQ(run.err.toStdString(), row.complaint);
    }
    EXPECT_FALSE(QFileInfo::exists(path("a")));
}
