#include "simulator/panelsim/texttable.h"

#include <gtest/gtest.h>

using namespace panelkit::simulator;

TEST(TextTable, AlignsColumnsWithTwoBlanksBetween)
{
    EXPECT_EQ(alignedRows({{QStringLiteral("a"), QStringLiteral("bb"), QStringLiteral("c")},
                           {QStringLiteral("aaaa"), QStringLiteral("b"), QStringLiteral("cc")}}),
              QStringLiteral("a     bb  c\naaaa  b   cc\n"));
}

TEST(TextTable, EndsNoLineWithBlanks)
{
    EXPECT_EQ(alignedRows({{QStringLiteral("a"), QString()}, {QStringLiteral("bb"), QStringLiteral("c")}}),
              QStringLiteral("a\nbb  c\n"));
}

TEST(TextTable, GivesAChineseCharacterTwoCells)
{
    EXPECT_EQ(displayWidth(QString::fromUtf8("液位")), 4);
    EXPECT_EQ(alignedRows({{QString::fromUtf8("液位"), QStringLiteral("1")},
                           {QStringLiteral("abcde"), QStringLiteral("2")}}),
              QString::fromUtf8("液位   1\nabcde  2\n"));
}

TEST(TextTable, WritesControlCharactersAsTheirNames)
{
    EXPECT_EQ(alignedRows({{QStringLiteral("a\nb\tc\x1b[H")}}), QStringLiteral("a\\nb\\tc\\x1b[H\n"));
}

TEST(TextTable, IsEmptyWithoutRows)
{
    EXPECT_TRUE(alignedRows({}).isEmpty());
}
