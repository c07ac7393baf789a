#include <QStringList>
#include <QVector>

#include <gtest/gtest.h>

using ::testing::PrintToString;

TEST(QtPrinting, ShowsATextInQuotes)
{
    EXPECT_EQ(PrintToString(QStringLiteral("4x 100")), "\"4x 100\"");
    EXPECT_EQ(PrintToString(QString::fromUtf8("温度")), "\"温度\"");
}

TEST(QtPrinting, TellsANullTextFromAnEmptyOne)
{
    EXPECT_EQ(PrintToString(QString()), "a null text");
    EXPECT_EQ(PrintToString(QStringLiteral("")), "\"\"");
}

TEST(QtPrinting, ShowsTheTextsOfAList)
{
    EXPECT_EQ(PrintToString(QStringList{QStringLiteral("a"), QStringLiteral("b")}), "{ \"a\", \"b\" }");
    EXPECT_EQ(PrintToString(QVector<QString>{QStringLiteral("a")}), "{ \"a\" }");
}

TEST(QtPrinting, ShowsBytesThatAreNoLettersByTheirCodes)
{
    EXPECT_EQ(PrintToString(QByteArray("a\0\xd6", 3)), "\"a\\x00\\xd6\"");
}
