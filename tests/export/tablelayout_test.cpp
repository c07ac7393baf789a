#include "export/tablelayout.h"

#include "tests/support/allocationcounter.h"

#include <gtest/gtest.h>

#include <climits>

using namespace panelkit;

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QString laidOutRow(const QStringList &cells, int width)
{
    QString line = text("what stood there before");
    layOutRow(cells, width, line);
    return line;
}

QString laidOutHeader(const char *entry, int width)
{
    QString line = text("what stood there before");
    layOutHeader(text(entry), width, line);
    return line;
}

} // namespace

TEST(TableLayout, CountsTheColumnsOfTheWidestHeaderEntry)
{
    EXPECT_EQ(columnCount({}), 0);
    EXPECT_EQ(columnCount({text("")}), 1);
    EXPECT_EQ(columnCount({text("a")}), 1);
    EXPECT_EQ(columnCount({text("a,b"), text(",,,"), text("c")}), 4);
}

TEST(TableLayout, ChoosesASmallerFontForMoreColumns)
{
    const struct
    {
        int columns, pixels;
    } rows[] = {{0, 24},  {1, 24},  {8, 24},  {9, 20},  {12, 20}, {13, 18},  {16, 18},
                {17, 16}, {20, 16}, {21, 14}, {24, 14}, {25, 10}, {1000, 10}};
    for (const auto &row : rows)
        EXPECT_EQ(fontPixelSize(row.columns), row.pixels) << row.columns;
}

TEST(TableLayout, SharesThePageAmongTheColumns)
{
    EXPECT_EQ(columnCharacters(2395, 15, 1), 127); // 159 characters less 32
    EXPECT_EQ(columnCharacters(2395, 15, 4), 31);
    EXPECT_EQ(columnCharacters(2395, 15, 8), 15);
    EXPECT_EQ(columnCharacters(2395, 15, 127), 1);
    EXPECT_EQ(columnCharacters(2395, 15, 128), 0);
}

TEST(TableLayout, HasNoColumnWidthWithoutColumnsRoomOrFont)
{
    EXPECT_EQ(columnCharacters(2395, 15, 0), 0);
    EXPECT_EQ(columnCharacters(100, 15, 1), 0); // less room than the margin takes
    EXPECT_EQ(columnCharacters(0, 15, 3), 0);
    EXPECT_EQ(columnCharacters(2395, 0, 3), 0);
    EXPECT_EQ(columnCharacters(2395, -1, 3), 0);
    EXPECT_EQ(columnCharacters(INT_MAX, 1, 1), INT_MAX - 32);
}

TEST(TableLayout, PadsCellsAndCutsNone)
{
    EXPECT_EQ(laidOutRow({text("a"), text("温度"), text("longer"), text("")}, 4),
              text("a   温度  longer    "));
    EXPECT_EQ(laidOutRow({text("\U0001F600"), text("a\U0001F600b"), text("c")}, 4),
              text("\U0001F600  a\U0001F600bc   ")); // one character of two units
    const QString half(QChar(0xd83d));
    EXPECT_EQ(laidOutRow({half, text("b")}, 2), half + text(" b "));
    EXPECT_EQ(laidOutRow({text("a"), text("b")}, 0), text("ab"));
    EXPECT_EQ(laidOutRow({text("%1"), text("%2")}, 3), text("%1 %2 "));
    EXPECT_EQ(laidOutRow({}, 4), text(""));
}

TEST(TableLayout, SplitsHeaderEntriesAtCommas)
{
    EXPECT_EQ(laidOutHeader("a,,bcd", 2), text("a   bcd"));
    EXPECT_EQ(laidOutHeader("时间,名称", 4), text("时间  名称  "));
    EXPECT_EQ(laidOutHeader("", 3), text("   "));
    EXPECT_EQ(laidOutHeader(",", 1), text("  "));
    EXPECT_EQ(laidOutHeader("a,b", 0), text("ab"));
}

TEST(TableLayout, ReusesTheMemoryOfItsLine)
{
    const QStringList cells = {text("2026-01-02 10:11:12"), text("灌装机1号"), text("12.5")};
    const QString header = text("时间,名称,数值");
    QString line;
    layOutRow(cells, 30, line);
    const panelkit::testing::AllocationCounter counter;
    layOutRow(cells, 30, line);
    layOutHeader(header, 30, line);
    EXPECT_EQ(counter.count(), 0);
}

TEST(LinePlaces, PutEightyLinesOnTheFirstPageAndEightyOneOnTheOthers)
{
    LinePlaces places;
    int line = 0;
    for (; line < 80; ++line) {
        EXPECT_FALSE(places.next());
        EXPECT_EQ(places.baseline(), 80 + line * 40);
    }
    for (int page = 2; page < 5; ++page) {
        for (int row = 0; row < 81; ++row, ++line) {
            EXPECT_EQ(places.next(), row == 0) << "line " << line;
            EXPECT_EQ(places.baseline(), 40 + row * 40);
        }
    }
}
