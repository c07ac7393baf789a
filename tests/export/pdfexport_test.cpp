#include "export/tableexport.h"

#include "simulator/platform/systembase.h"
#include "tests/support/pdffile.h"

#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace panelkit::testing;

namespace {

const double tolerance = 0.01; // points

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QString lineText(int line)
{
    return text("第%1行 温度 L%1").arg(line);
}

class PdfExport : public ::testing::Test
{
protected:
    PdfExport() { panelkit::simulator::clearRecordedCommands(); }
    ~PdfExport() override { panelkit::simulator::setSystemBaseObserver({}); }

    // One column, so many lines, the first of them the header.
    PdfFile ofLines(int count)
    {
        QStringList header;
        QList<QStringList> rows;
        for (int line = 0; line < count; ++line) {
            if (line == 0)
                header << lineText(line);
            else
                rows << QStringList(lineText(line));
        }
        return of(header, rows);
    }

    PdfFile of(const QStringList &header, const QList<QStringList> &rows)
    {
        const QString path = m_folder.filePath(QString::number(++m_count) + QStringLiteral(".pdf"));
        tools_exportToPdf(header, rows, path);
        EXPECT_EQ(panelkit::simulator::recordedCommands().size(), m_count);
        EXPECT_EQ(panelkit::simulator::recordedCommands().last(), QByteArray("sync"));
        return PdfFile(path);
    }

    QString path(const char *name) const { return m_folder.filePath(text(name)); }

private:
    QTemporaryDir m_folder;
    int m_count = 0;
};

} // namespace

TEST_F(PdfExport, MakesA4PagesOfEightyLinesAndThenEightyOne)
{
    const struct
    {
        int lines, pages, onLastPage;
    } rows[] = {{0, 1, 0}, {1, 1, 1}, {80, 1, 80}, {81, 2, 1}, {161, 2, 81}, {162, 3, 1}, {200, 3, 39}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.lines);
        const PdfFile pdf = ofLines(row.lines);
        EXPECT_EQ(pdf.pageCount(), row.pages);
        EXPECT_TRUE(pdf.property("Page size").endsWith(QStringLiteral("(A4)")));
        EXPECT_EQ(pdf.lines(row.pages).size(), row.onLastPage);
    }
}

TEST_F(PdfExport, HoldsEachLineInItsOrder)
{
    const PdfFile pdf = ofLines(200);
    QStringList lines;
    for (int page = 1; page <= 3; ++page)
        lines << pdf.lines(page);
    ASSERT_EQ(lines.size(), 200);
    for (int line = 0; line < 200; ++line)
        EXPECT_EQ(lines.at(line), lineText(line));
    EXPECT_EQ(pdf.lines(1).last(), lineText(79));
    EXPECT_EQ(pdf.lines(2).first(), lineText(80));
    EXPECT_EQ(pdf.lines(2).last(), lineText(160));
    EXPECT_EQ(pdf.lines(3).first(), lineText(161));
}

// The printer's default margins are 42 pixels wide, and a pixel is 0.24 points.
TEST_F(PdfExport, BeginsItsPagesAtTheStatedPlaces)
{
    const PdfFile pdf = ofLines(200);
    const PdfWord first = pdf.words(1).first();
    EXPECT_EQ(first.text, text("第0行"));
    EXPECT_NEAR(first.left, 12.48, tolerance);
    EXPECT_NEAR(first.top, 23.886, tolerance);
    EXPECT_NEAR(first.bottom, 30.638, tolerance);
    const PdfWord last = pdf.words(1).last();
    EXPECT_EQ(last.text, text("L79"));
    EXPECT_NEAR(last.top, first.top + 79 * 9.6, tolerance);
    for (const int page : {2, 3}) {
        SCOPED_TRACE(page);
        EXPECT_NEAR(pdf.words(page).first().left, first.left, tolerance);
        EXPECT_NEAR(pdf.words(page).first().top, first.top - 9.6, tolerance);
    }
}

// A Chinese character is as wide as its font's pixel size.
TEST_F(PdfExport, ChoosesTheFontsSizeByTheColumns)
{
    const struct
    {
        int columns, pixels;
    } rows[] = {{0, 24},  {1, 24},  {8, 24},  {9, 20},  {12, 20}, {13, 18},
                {16, 18}, {17, 16}, {20, 16}, {21, 14}, {24, 14}, {25, 10}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.columns);
        QStringList header;
        if (row.columns > 0)
            header << QString(row.columns - 1, QLatin1Char(','));
        const PdfFile pdf = of(header, {QStringList(text("温度压力"))});
        const QList<PdfWord> words = pdf.words(1);
        ASSERT_EQ(words.size(), 1);
        EXPECT_NEAR(words.first().right - words.first().left, 4 * row.pixels * 0.24, tolerance);
    }
}

TEST_F(PdfExport, TakesTheColumnsOfTheWidestHeaderEntry)
{
    const PdfFile pdf = of({text("温度"), text("a,b,c,d,e,f,g,h,i"), text("a")}, {});
    EXPECT_NEAR(pdf.words(1).first().right - pdf.words(1).first().left, 2 * 20 * 0.24, tolerance);
}

// Four columns of 31 characters each: 2395 pixels hold 159 of 15 pixels, less 32 for the margin. A blank is
// 14 pixels wide.
TEST_F(PdfExport, PadsItsColumnsWithBlanks)
{
    const PdfFile pdf =
        of({text("a,bb,,d")}, {{text("1"), text("22"), text("333"), text("4444"), text("5")}});
    const QList<PdfWord> words = pdf.words(1);
    QMap<QString, double> left;
    for (const PdfWord &word : words)
        left.insert(word.text, word.left);
    ASSERT_EQ(left.size(), 8);
    EXPECT_NEAR(left.value(text("bb")), left.value(text("a")) + 31 * 14 * 0.24, 0.2);
    EXPECT_NEAR(left.value(text("d")), left.value(text("a")) + 93 * 14 * 0.24, 0.5);
    EXPECT_NEAR(left.value(text("22")), left.value(text("bb")), 0.2);
    EXPECT_NEAR(left.value(text("4444")), left.value(text("d")), 0.5);
    EXPECT_NEAR(left.value(text("5")), left.value(text("1")) + 124 * 14 * 0.24, 0.5);
}

TEST_F(PdfExport, PadsNothingWithoutAHeader)
{
    const PdfFile pdf = of({}, {{text("温度"), text("23.5"), text("L1")}});
    EXPECT_EQ(pdf.lines(1), QStringList(text("温度23.5L1")));
}

TEST_F(PdfExport, LetsLongLinesRunOffThePage)
{
    const QString cell = QString(300, QLatin1Char('x')) + text("end");
    const PdfFile pdf = of({text("a,b")}, {{cell, text("b")}});
    EXPECT_GT(pdf.words(1).last().right, 595);
    EXPECT_EQ(pdf.pageCount(), 1);
}

TEST_F(PdfExport, CountsEmptyHeaderEntriesAndRowsAsLines)
{
    QList<QStringList> rows;
    for (int row = 0; row < 78; ++row)
        rows << QStringList();
    rows << QStringList(QString()) << QStringList(text("81"));
    const PdfFile pdf = of({QString()}, rows);
    EXPECT_EQ(pdf.pageCount(), 2);
    EXPECT_EQ(pdf.lines(1), QStringList());
    EXPECT_EQ(pdf.lines(2), QStringList(text("81")));
}

TEST_F(PdfExport, TakesPercentSignsAsTheyAre)
{
    EXPECT_EQ(of({text("%1,%2")}, {{text("%L1"), text("99%")}}).lines(1),
              (QStringList{text("%1 %2"), text("%L1 99%")}));
}

TEST_F(PdfExport, WritesChineseInTheSystemsPlaceOfSimSun)
{
    const PdfFile pdf = of({text("名称")}, {{text("灌装机1号：温度过高，请检查《手册》第3页")}});
    EXPECT_EQ(pdf.fonts(), QStringList(text("WenQuanYiMicroHeiMono")));
    EXPECT_EQ(pdf.lines(1), (QStringList{text("名称"), text("灌装机1号：温度过高，请检查《手册》第3页")}));
}

// As a picture: ink where the lines stand, and nowhere else.
TEST_F(PdfExport, LooksLikeLinesOfText)
{
    ofLines(5);
    outputOf("pdftoppm",
             {text("-r"), text("300"), text("-png"), text("-singlefile"), path("1.pdf"), path("page")});
    const QImage page = QImage(path("page.png")).convertToFormat(QImage::Format_Grayscale8);
    ASSERT_EQ(page.width(), 2480);
    ASSERT_EQ(page.height(), 3509);
    const auto inkIn = [&page](int top, int bottom) {
        int dark = 0;
        for (int y = top; y < bottom; ++y)
            for (int x = 0; x < page.width(); ++x)
                dark += page.constScanLine(y)[x] < 128 ? 1 : 0;
        return dark;
    };
    const int margin = 42;
    for (int line = 0; line < 5; ++line) {
        SCOPED_TRACE(line);
        const int baseline = margin + 80 + 40 * line;
        EXPECT_GT(inkIn(baseline - 22, baseline + 5), 500);
        EXPECT_EQ(inkIn(baseline + 6, baseline + 16), 0);
    }
    EXPECT_EQ(inkIn(0, margin + 80 - 24), 0);
    EXPECT_EQ(inkIn(margin + 80 + 40 * 4 + 6, page.height()), 0);
}

TEST_F(PdfExport, SyncsWhenTheWholeFileIsWritten)
{
    const QString pdf = path("table.pdf");
    QList<QByteArray> seen;
    panelkit::simulator::setSystemBaseObserver([&](const QByteArray &line) {
        QFile file(pdf);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        seen << line << file.readAll().trimmed().right(5);
    });
    tools_exportToPdf({text("a,b")}, {{text("1"), text("2")}}, pdf);
    EXPECT_EQ(seen, (QList<QByteArray>{"sys_base_do_system sync", "%%EOF"}));
}

TEST_F(PdfExport, SyncsWhereTheFileCannotBeWritten)
{
    QFile file(path("file"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("kept");
    file.close();
    int count = 0;
    for (const QString &refused : {path("missing/table.pdf"), path("file/table.pdf"), path("."), QString(),
                                   path("file") + QChar(0), path("file") + QChar(0) + text(".bak/none")}) {
        SCOPED_TRACE(refused.toStdString());
        tools_exportToPdf({text("a,b")}, {{text("1"), text("2")}}, refused);
        EXPECT_EQ(panelkit::simulator::recordedCommands(),
                  QList<QByteArray>(QVector<QByteArray>(++count, "sync").toList()));
        EXPECT_EQ(QFileInfo(file).size(), 4);
    }
}

TEST_F(PdfExport, ReplacesTheFile)
{
    ofLines(200);
    const QString file = path("1.pdf");
    tools_exportToPdf({text("short")}, {}, file);
    EXPECT_EQ(PdfFile(file).pageCount(), 1);
    EXPECT_EQ(PdfFile(file).lines(1), QStringList(text("short")));
}
