#include "simulator/lua/macrovalue.h"

#include <gtest/gtest.h>

#include <limits>

using namespace panelkit::simulator;

namespace {

RegisterWords words(quint16 low)
{
    return {{low, 0}, 1};
}

RegisterWords words(quint16 low, quint16 high)
{
    return {{low, high}, 2};
}

qint64 whole(const std::optional<MacroValue> &value)
{
    EXPECT_TRUE(value && std::holds_alternative<qint64>(*value));
    return value && std::holds_alternative<qint64>(*value) ? std::get<qint64>(*value) : -999;
}

const double infinity = std::numeric_limits<double>::infinity();

// What a number becomes in a register.
struct Stored
{
    MacroDataType type;
    MacroValue given;
    quint16 low, high;
    bool isExact;
};

void expectStored(const Stored &row)
{
    SCOPED_TRACE(row.given.index() == 0 ? static_cast<double>(std::get<qint64>(row.given))
                                        : std::get<double>(row.given));
    const auto encoded = encodeValue(row.type, row.given);
    ASSERT_TRUE(encoded);
    EXPECT_EQ(encoded->words.count, wordCountOf(row.type));
    EXPECT_EQ(encoded->words.words[0], row.low);
    EXPECT_EQ(encoded->words.words[1], row.high);
    EXPECT_EQ(encoded->isExact, row.isExact);
}

MacroValue n(qint64 value)
{
    return value;
}

MacroValue f(double value)
{
    return value;
}

} // namespace

TEST(MacroValue, TakesOneWordOrTwo)
{
    EXPECT_EQ(wordCountOf(MacroDataType::Bit), 1);
    EXPECT_EQ(wordCountOf(MacroDataType::Word), 1);
    EXPECT_EQ(wordCountOf(MacroDataType::SignedWord), 1);
    EXPECT_EQ(wordCountOf(MacroDataType::BcdWord), 1);
    EXPECT_EQ(wordCountOf(MacroDataType::DoubleWord), 2);
    EXPECT_EQ(wordCountOf(MacroDataType::SignedDoubleWord), 2);
    EXPECT_EQ(wordCountOf(MacroDataType::BcdDoubleWord), 2);
    EXPECT_EQ(wordCountOf(MacroDataType::Single), 2);
}

TEST(MacroValue, IsReadFromABit)
{
    EXPECT_EQ(whole(decodeValue(MacroDataType::Bit, words(0))), 0);
    EXPECT_EQ(whole(decodeValue(MacroDataType::Bit, words(1))), 1);
    EXPECT_EQ(whole(decodeValue(MacroDataType::Bit, words(0x8000))), 1);
}

TEST(MacroValue, IsReadFromOneWord)
{
    EXPECT_EQ(whole(decodeValue(MacroDataType::Word, words(0xFFFF))), 65535);
    EXPECT_EQ(whole(decodeValue(MacroDataType::Word, words(0x8000))), 32768);
    EXPECT_EQ(whole(decodeValue(MacroDataType::SignedWord, words(0xFFFF))), -1);
    EXPECT_EQ(whole(decodeValue(MacroDataType::SignedWord, words(0x8000))), -32768);
    EXPECT_EQ(whole(decodeValue(MacroDataType::SignedWord, words(0x7FFF))), 32767);
    EXPECT_EQ(whole(decodeValue(MacroDataType::BcdWord, words(0x1234))), 1234);
    EXPECT_EQ(whole(decodeValue(MacroDataType::BcdWord, words(0x9999))), 9999);
}

TEST(MacroValue, IsReadFromTwoWordsTheLowOneFirst)
{
    EXPECT_EQ(whole(decodeValue(MacroDataType::DoubleWord, words(0x0001, 0x0002))), 131073);
    EXPECT_EQ(whole(decodeValue(MacroDataType::DoubleWord, words(0xFFFF, 0xFFFF))), 4294967295);
    EXPECT_EQ(whole(decodeValue(MacroDataType::SignedDoubleWord, words(0xFFFF, 0xFFFF))), -1);
    EXPECT_EQ(whole(decodeValue(MacroDataType::SignedDoubleWord, words(0x0000, 0x8000))), -2147483648);
    EXPECT_EQ(whole(decodeValue(MacroDataType::BcdDoubleWord, words(0x5678, 0x1234))), 12345678);
    const auto single = decodeValue(MacroDataType::Single, words(0x0000, 0xC0A8)); // -5.25
    ASSERT_TRUE(single && std::holds_alternative<double>(*single));
    EXPECT_EQ(std::get<double>(*single), -5.25);
}

TEST(MacroValue, IsMissingWhereADigitIsNoDecimalOne)
{
    EXPECT_FALSE(decodeValue(MacroDataType::BcdWord, words(0x12A4)));
    EXPECT_FALSE(decodeValue(MacroDataType::BcdWord, words(0xF000)));
    EXPECT_FALSE(decodeValue(MacroDataType::BcdDoubleWord, words(0x0000, 0xA000)));
    EXPECT_FALSE(decodeValue(MacroDataType::BcdDoubleWord, words(0x000F, 0x0000)));
    EXPECT_EQ(whole(decodeValue(MacroDataType::BcdWord, words(0x1234, 0xFFFF))), 1234);
}

TEST(MacroValue, IsWrittenAsItIsWhereItFits)
{
    const Stored rows[] = {
        {MacroDataType::Bit, n(0), 0, 0, true},
        {MacroDataType::Bit, n(1), 1, 0, true},
        {MacroDataType::Word, n(0), 0, 0, true},
        {MacroDataType::Word, n(65535), 0xFFFF, 0, true},
        {MacroDataType::Word, f(7.0), 7, 0, true},
        {MacroDataType::SignedWord, n(-1), 0xFFFF, 0, true},
        {MacroDataType::SignedWord, n(-32768), 0x8000, 0, true},
        {MacroDataType::SignedWord, n(32767), 0x7FFF, 0, true},
        {MacroDataType::BcdWord, n(1234), 0x1234, 0, true},
        {MacroDataType::BcdWord, n(9999), 0x9999, 0, true},
        {MacroDataType::DoubleWord, n(131073), 1, 2, true},
        {MacroDataType::DoubleWord, n(4294967295), 0xFFFF, 0xFFFF, true},
        {MacroDataType::SignedDoubleWord, n(-2147483648LL), 0, 0x8000, true},
        {MacroDataType::SignedDoubleWord, n(-2), 0xFFFE, 0xFFFF, true},
        {MacroDataType::BcdDoubleWord, n(12345678), 0x5678, 0x1234, true},
        {MacroDataType::BcdDoubleWord, n(99999999), 0x9999, 0x9999, true},
        {MacroDataType::Single, f(-5.25), 0, 0xC0A8, true},
        {MacroDataType::Single, n(1), 0, 0x3F80, true},
        {MacroDataType::Single, f(0.1), 0xCCCD, 0x3DCC, true},
    };
    for (const Stored &row : rows)
        expectStored(row);
}

TEST(MacroValue, IsRoundedWhereTheTypeHasNoFractions)
{
    const Stored rows[] = {
        {MacroDataType::Word, f(12.4), 12, 0, false},
        {MacroDataType::Word, f(12.5), 13, 0, false},
        {MacroDataType::Word, f(-0.4), 0, 0, false},
        {MacroDataType::SignedWord, f(-12.5), 0xFFF3, 0, false},
        {MacroDataType::BcdWord, f(99.5), 0x0100, 0, false},
        {MacroDataType::DoubleWord, f(65535.75), 0, 1, false},
        {MacroDataType::SignedDoubleWord, f(-0.5), 0xFFFF, 0xFFFF, false},
    };
    for (const Stored &row : rows)
        expectStored(row);
}

TEST(MacroValue, BecomesTheLargestOrTheSmallestOfItsType)
{
    const Stored rows[] = {
        {MacroDataType::Bit, n(2), 1, 0, false},
        {MacroDataType::Bit, n(-1), 1, 0, false},
        {MacroDataType::Bit, f(0.25), 1, 0, false},
        {MacroDataType::Word, n(65536), 0xFFFF, 0, false},
        {MacroDataType::Word, n(-1), 0, 0, false},
        {MacroDataType::Word, f(65535.5), 0xFFFF, 0, false},
        {MacroDataType::Word, f(1e300), 0xFFFF, 0, false},
        {MacroDataType::Word, f(infinity), 0xFFFF, 0, false},
        {MacroDataType::Word, n(std::numeric_limits<qint64>::max()), 0xFFFF, 0, false},
        {MacroDataType::SignedWord, n(32768), 0x7FFF, 0, false},
        {MacroDataType::SignedWord, n(-32769), 0x8000, 0, false},
        {MacroDataType::SignedWord, f(-infinity), 0x8000, 0, false},
        {MacroDataType::BcdWord, n(10000), 0x9999, 0, false},
        {MacroDataType::BcdWord, n(-1), 0, 0, false},
        {MacroDataType::DoubleWord, n(4294967296), 0xFFFF, 0xFFFF, false},
        {MacroDataType::DoubleWord, n(-1), 0, 0, false},
        {MacroDataType::SignedDoubleWord, n(2147483648), 0xFFFF, 0x7FFF, false},
        {MacroDataType::SignedDoubleWord, n(std::numeric_limits<qint64>::min()), 0, 0x8000, false},
        {MacroDataType::BcdDoubleWord, n(100000000), 0x9999, 0x9999, false},
        {MacroDataType::Single, f(1e39), 0xFFFF, 0x7F7F, false},
        {MacroDataType::Single, f(-1e39), 0xFFFF, 0xFF7F, false},
        {MacroDataType::Single, f(infinity), 0xFFFF, 0x7F7F, false},
    };
    for (const Stored &row : rows)
        expectStored(row);
}

TEST(MacroValue, ThatIsNotANumberIsNotWritten)
{
    for (int type = 0; type < macroDataTypeCount; ++type)
        EXPECT_FALSE(
            encodeValue(static_cast<MacroDataType>(type), f(std::numeric_limits<double>::quiet_NaN())))
            << type;
}
