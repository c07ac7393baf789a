#include "simulator/soak/csvroad.h"
#include "simulator/soak/pdfroad.h"

#include "simulator/host/tablefile.h"
#include "tests/simulator/soak/roadfixture.h"

#include <QFile>

using namespace panelkit::simulator;

namespace {

class ExportRoads : public panelkit::testing::RoadFixture
{
protected:
    static QList<QStringList> rows(int count)
    {
        QList<QStringList> rows;
        for (int i = 0; i < count; ++i)
            rows << QStringList{QString::number(i), QStringLiteral("温度"), QStringLiteral("21.50")};
        return rows;
    }

    CsvRoad csv;
    PdfRoad pdf;
};

} // namespace

TEST_F(ExportRoads, LoseNoRowOfACsvFile)
{
    csv.beginShift(*session);
    act(csv, 150);
    csv.endShift();
    EXPECT_EQ(firstLoss(csv), "");
    EXPECT_TRUE(csv.count().isComplete());
    EXPECT_GT(csv.rowsInFiles(), 1000u);
    EXPECT_GT(csv.rowsReported(), 100u);
    EXPECT_EQ(csv.rowsExported(), csv.rowsInFiles() + csv.rowsReported());
}

TEST_F(ExportRoads, CountTheRowsOfASliceThatDoesNotFitAsReported)
{
    csv.exportSlice(rows(10));
    csv.exportSlice(rows(10), 150);
    csv.exportSlice(rows(10));
    EXPECT_EQ(firstLoss(csv), "");
    EXPECT_EQ(csv.rowsInFiles(), 20u);
    EXPECT_EQ(csv.rowsReported(), 10u);
}

TEST_F(ExportRoads, FindARowThatIsMissing)
{
    csv.exportSlice(rows(10));
    ASSERT_EQ(firstLoss(csv), "");
    const QByteArray content = fileBytes(csv.path());
    ASSERT_TRUE(QFile::resize(csv.path(), content.lastIndexOf('\n', content.size() - 2) + 1));
    csv.exportSlice(rows(1));
    EXPECT_EQ(firstLoss(csv), "CSV export: 1 rows were exported and the file does not hold them");
}

TEST_F(ExportRoads, FindRowsThatDoNotReadBack)
{
    csv.exportSlice(rows(10));
    QByteArray content = fileBytes(csv.path());
    ASSERT_TRUE(replaceFile(csv.path(), content.replace("21.50", "21.05")));
    csv.endShift();
    EXPECT_EQ(firstLoss(csv), "CSV export: 10 rows do not read back as they were exported: other rows");
}

TEST_F(ExportRoads, LoseNoRowOfAPdfFile)
{
    pdf.beginShift(*session);
    act(pdf, 30);
    pdf.endShift();
    EXPECT_EQ(firstLoss(pdf), "");
    EXPECT_TRUE(pdf.count().isComplete());
    EXPECT_GT(pdf.count().answered, 5u);
    EXPECT_GT(pdf.count().refused, 0u);
}

TEST_F(ExportRoads, FindALineThatIsOnNoPage)
{
    Table table;
    table.header << QStringLiteral("Number,Item");
    for (int i = 0; i < 100; ++i)
        table.rows << QStringList{QString::number(i), QStringLiteral("Tank")};
    QString error;
    ASSERT_TRUE(exportPdf(table, pdf.path(), error)) << error.toStdString();
    pdf.judgeFile(101);
    EXPECT_EQ(firstLoss(pdf), "");
    pdf.judgeFile(102);
    EXPECT_EQ(firstLoss(pdf), "PDF export: a file of 102 lines has 2 pages with 101 texts");
}
