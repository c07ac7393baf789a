// Plain numbers of numformat.h: doubles and singles as text, and the comparisons with a tolerance.

#include "register/numformat.h"

#include <QString>

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <limits>

namespace {

QString times(int count, char character)
{
    return QString(count, QLatin1Char(character));
}

} // namespace

TEST(DoubleText, CutsTheFractionAfterTheBias)
{
    const struct
    {
        double value;
        int decimals;
        const char *expected;
    } rows[] = {
        {2.999999999, 2, "3.00"},
        {-2.999999999, 2, "-3.00"},
        {2.99, 1, "2.9"},
        {-2.99, 1, "-2.9"},
        {-0.5, 1, "-0.5"},
        {-0.25, 2, "-0.25"},
        {0.25, 2, "0.25"},
        {0.0, 2, "0.00"},
        {-0.0, 2, "0.00"},
        {-0.001, 2, "-0.00"},
        {0.05, 2, "0.05"},
        {0.29, 2, "0.29"},
        {1234567.891, 3, "1234567.891"},
        {3.0, 7, "3.0000000"},
        {3.0, 8, "3.00000001"},
        {-3.0, 8, "-3.00000001"},
        {3.7, -1, "3."},
        {-0.7, -5, "-0."},
        {1e18, 1, "1000000000000000000.0"},
        {std::numeric_limits<double>::quiet_NaN(), 2, "0.00"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(doubleToQString(row.value, row.decimals), QString::fromLatin1(row.expected)) << row.value;
}

TEST(DoubleText, IsTheGeneralFormWithoutDecimals)
{
    EXPECT_EQ(doubleToQString(3.0, 0), QStringLiteral("3"));
    EXPECT_EQ(doubleToQString(0.1, 0), QStringLiteral("0.1"));
    EXPECT_EQ(doubleToQString(1234567.0, 0), QStringLiteral("1.23457e+06"));
    EXPECT_EQ(doubleToQString(-0.00001, 0), QStringLiteral("-1e-05"));
}

TEST(DoubleText, SaturatesBeyond64Bits)
{
    EXPECT_EQ(doubleToQString(1e300, 1), QStringLiteral("9223372036854775807.9223372036854775807"));
    EXPECT_EQ(doubleToQString(-1e300, 1), QStringLiteral("-9223372036854775808.9223372036854775807"));
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(doubleToQString(infinity, 1), QStringLiteral("9223372036854775807.9223372036854775807"));
    EXPECT_EQ(doubleToQString(-infinity, 1), QStringLiteral("-9223372036854775808.9223372036854775807"));
    EXPECT_EQ(doubleToQString(0.5, 30),
              QLatin1String("0.") + times(11, '0') + QLatin1String("9223372036854775807"));
}

TEST(DoubleText, IsTheLargestAndLowestOf64BitsAtTheirEnds)
{
    EXPECT_EQ(doubleToQString(9223372036854775808.0, 1), QStringLiteral("9223372036854775807.0"));
    EXPECT_EQ(doubleToQString(-9223372036854775808.0, 1), QStringLiteral("-9223372036854775808.0"));
}

TEST(DoubleText, CountsMoreThan1024DecimalsAs1024)
{
    const QString expected = QLatin1String("1.") + times(1005, '0') + QLatin1String("9223372036854775807");
    for (const int decimals : {1024, 1025, INT_MAX})
        EXPECT_EQ(doubleToQString(1.5, decimals), expected) << decimals;
    EXPECT_EQ(doubleToQString(1.5, INT_MIN), QStringLiteral("1."));
}

class SingleText : public ::testing::Test
{
protected:
    static QString text(float value)
    {
        unsigned char bytes[sizeof(value) + 1];
        std::memcpy(bytes + 1, &value, sizeof(value)); // at an odd address
        QString out = QStringLiteral("before");
        EXPECT_TRUE(ieee754TofloatStr(bytes + 1, out));
        return out;
    }
};

TEST_F(SingleText, HasAboutSevenSignificantDigits)
{
    const struct
    {
        float value;
        const char *expected;
    } rows[] = {
        {3.0F, "3"},
        {-3.0F, "-3"},
        {12.5F, "12.5"},
        {0.1F, "0.1"},
        {-0.1F, "-0.1"},
        {1.0F / 3.0F, "0.3333333"},
        {-1.0F / 3.0F, "-0.3333333"},
        {100.0F / 3.0F, "33.33333"},
        {-100.0F / 3.0F, "-33.3333"},
        {123456.789F, "123456.8"},
        {-123456.789F, "-123457"},
        {99999.99F, "99999.99"},
        {999999.94F, "999999.9"},
        {0.99999994F, "0.9999999"},
        {1e-5F, "0.00001"},
        {10.0F, "10"},
        {1000000.0F, "1000000"},
        {8388608.0F, "8388608"},
        {-16777216.0F, "-16777216"},
        {20.5F, "20.5"},
        {200.05F, "200.05"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(text(row.value), QString::fromLatin1(row.expected)) << row.value;
}

TEST_F(SingleText, IsZeroPointZeroForZeroAndForWhatIsNoNumber)
{
    const float infinity = std::numeric_limits<float>::infinity();
    for (const float value : {0.0F, -0.0F, infinity, -infinity, std::numeric_limits<float>::quiet_NaN()})
        EXPECT_EQ(text(value), QStringLiteral("0.0")) << value;
    QString out;
    EXPECT_TRUE(ieee754TofloatStr(nullptr, out));
    EXPECT_EQ(out, QStringLiteral("0.0"));
}

TEST_F(SingleText, LosesAllButItsZeroWhenItIsTiny)
{
    EXPECT_EQ(text(1e-10F), QStringLiteral("0"));
    EXPECT_EQ(text(-1e-10F), QStringLiteral("-0"));
    EXPECT_EQ(text(std::numeric_limits<float>::denorm_min()), QStringLiteral("0"));
    EXPECT_EQ(text(6e-8F), QStringLiteral("0.0000001"));
}

TEST_F(SingleText, WritesWholeNumbersInFixedNotationHoweverLarge)
{
    EXPECT_EQ(text(4294967040.0F), QStringLiteral("4294967040"));
    EXPECT_EQ(text(4294967296.0F), QStringLiteral("4294967296"));
    EXPECT_EQ(text(-1e20F), QStringLiteral("-100000002004087734272"));
    EXPECT_EQ(text(std::numeric_limits<float>::max()),
              QStringLiteral("340282346638528859811704183484516925440"));
}

TEST_F(SingleText, RoundsTiesAwayFromZero)
{
    EXPECT_EQ(text(-123456.5F), QStringLiteral("-123457"));
    EXPECT_EQ(text(1234560.5F), QStringLiteral("1234561"));
    EXPECT_EQ(text(131072.25F), QStringLiteral("131072.3"));
    EXPECT_EQ(text(-99999.25F), QStringLiteral("-99999.3"));
}

TEST_F(SingleText, LosesTheZerosOfAnIntegerThatLeavesNoRoomForDecimals)
{
    EXPECT_EQ(text(1234560.25F), QStringLiteral("123456"));
    EXPECT_EQ(text(1000000.25F), QStringLiteral("1"));
    EXPECT_EQ(text(-100000.25F), QStringLiteral("-1"));
    EXPECT_EQ(text(999999.96875F), QStringLiteral("1000000"))
        << "1000000.0 once rounded, of which the point and its zero go";
    EXPECT_EQ(text(-999999.75F), QStringLiteral("-1"));
}

TEST_F(SingleText, HasTwoPointsForSevenDigitsBehindAMinus)
{
    const struct
    {
        float value;
        const char *expected;
    } rows[] = {
        {-1000000.0625F, "-1000000..063"}, {-1000000.125F, "-1000000..13"}, {-1000000.1875F, "-1000000..19"},
        {-1000000.25F, "-1000000..25"},    {-1000000.5F, "-1000000..5"},    {-1048575.9375F, "-1048575..94"},
        {-2097151.625F, "-2097151..63"},   {-8388607.5F, "-8388607..5"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(text(row.value), QString::fromLatin1(row.expected));
}

TEST(DoubleComparison, HasATolerance)
{
    EXPECT_TRUE(doubleCmp_Equ(1.0, 1.000000005));
    EXPECT_FALSE(doubleCmp_Equ(1.0, 1.00000002));
    EXPECT_FALSE(doubleCmp_More(1.000000005, 1.0));
    EXPECT_TRUE(doubleCmp_More(1.00000002, 1.0));
    EXPECT_FALSE(doubleCmp_More(1.0, 1.00000002));
    EXPECT_FALSE(doubleCmp_Less(1.0, 1.000000005));
    EXPECT_TRUE(doubleCmp_Less(1.0, 1.00000002));
    EXPECT_FALSE(doubleCmp_Less(1.00000002, 1.0));
    EXPECT_TRUE(doubleCmp_MoreEqu(1.0, 1.000000005));
    EXPECT_FALSE(doubleCmp_MoreEqu(1.0, 1.00000002));
    EXPECT_TRUE(doubleCmp_MoreEqu(2.0, 1.0));
    EXPECT_TRUE(doubleCmp_LessEqu(1.000000005, 1.0));
    EXPECT_FALSE(doubleCmp_LessEqu(1.00000002, 1.0));
    EXPECT_TRUE(doubleCmp_LessEqu(1.0, 2.0));
}

TEST(DoubleComparison, CountsTheToleranceItselfAsEqualOnly)
{
    EXPECT_TRUE(doubleCmp_Equ(1e-8, 0.0));
    EXPECT_TRUE(doubleCmp_Equ(0.0, 1e-8));
    EXPECT_FALSE(doubleCmp_More(1e-8, 0.0));
    EXPECT_FALSE(doubleCmp_Less(0.0, 1e-8));
    EXPECT_FALSE(doubleCmp_MoreEqu(0.0, 1e-8));
    EXPECT_FALSE(doubleCmp_LessEqu(1e-8, 0.0));
}

TEST(DoubleComparison, IsFalseForWhatIsNoNumber)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const auto compare :
         {doubleCmp_More, doubleCmp_Less, doubleCmp_MoreEqu, doubleCmp_LessEqu, doubleCmp_Equ}) {
        EXPECT_FALSE(compare(nan, 1.0));
        EXPECT_FALSE(compare(1.0, nan));
        EXPECT_FALSE(compare(nan, nan));
        EXPECT_FALSE(compare(infinity, infinity)) << "their difference is none";
    }
    EXPECT_TRUE(doubleCmp_More(infinity, 1.0));
    EXPECT_TRUE(doubleCmp_Less(-infinity, 1.0));
}
