#include "simulator/comm/modbusaddress.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

using namespace panelkit::simulator;

namespace {

const ModbusBlock &block(const char *name)
{
    return *modbusBlock(QLatin1String(name));
}

std::optional<ModbusSpan> span(const char *name, int index, int wordCount, int limit = 125)
{
    return modbusSpan(block(name), 1, index, wordCount, limit);
}

TEST(ModbusAddress, FindsBlocksByTheirExactName)
{
    EXPECT_EQ(modbusBlock(QLatin1String("4x"))->table, ModbusTable::HoldingRegisters);
    EXPECT_EQ(modbusBlock(QLatin1String("0x"))->table, ModbusTable::Coils);
    EXPECT_EQ(modbusBlock(QLatin1String("4X")), nullptr);
    EXPECT_EQ(modbusBlock(QLatin1String("4")), nullptr);
    EXPECT_EQ(modbusBlock(QLatin1String("4x_bits")), nullptr);
    EXPECT_EQ(modbusBlock(QLatin1String()), nullptr);
}

TEST(ModbusAddress, TakesOneRegisterOrBitForEachWord)
{
    EXPECT_EQ(span("4x", 7, 3)->range, (RegisterRange{1, ModbusTable::HoldingRegisters, 7, 3}));
    EXPECT_EQ(span("3x", 7, 3)->range, (RegisterRange{1, ModbusTable::InputRegisters, 7, 3}));
    EXPECT_EQ(span("0x", 7, 300, 2000)->range, (RegisterRange{1, ModbusTable::Coils, 7, 300}));
    EXPECT_EQ(span("1x", 0, 1)->range, (RegisterRange{1, ModbusTable::DiscreteInputs, 0, 1}));
}

TEST(ModbusAddress, TakesTheRegistersThatHoldTheBits)
{
    const auto within = span("4x_bit", 5 * 16 + 3, 4);
    EXPECT_EQ(within->range, (RegisterRange{1, ModbusTable::HoldingRegisters, 5, 1}));
    EXPECT_EQ(within->firstBit, 3);
    EXPECT_EQ(span("4x_bit", 5 * 16 + 15, 1)->range.count, 1);
    EXPECT_EQ(span("4x_bit", 5 * 16 + 15, 2)->range.count, 2);
    EXPECT_EQ(span("3x_bit", 0, 16)->range, (RegisterRange{1, ModbusTable::InputRegisters, 0, 1}));
    EXPECT_EQ(span("3x_bit", 1, 32)->range.count, 3);
}

TEST(ModbusAddress, RefusesWhatLiesOutsideOfABlock)
{
    EXPECT_TRUE(span("4x", 65535, 1));
    EXPECT_FALSE(span("4x", 65535, 2));
    EXPECT_FALSE(span("4x", 65536, 1));
    EXPECT_FALSE(span("4x", -1, 1));
    EXPECT_FALSE(span("4x", 0, 0));
    EXPECT_FALSE(span("4x", 0, -1));
    EXPECT_FALSE(span("4x", 1, INT_MAX));
    EXPECT_FALSE(span("4x", INT_MIN, INT_MAX));
    EXPECT_TRUE(span("4x_bit", 65536 * 16 - 1, 1));
    EXPECT_FALSE(span("4x_bit", 65536 * 16 - 1, 2));
    EXPECT_FALSE(span("4x_bit", 65536 * 16, 1));
}

TEST(ModbusAddress, RefusesMoreThanARequestHolds)
{
    EXPECT_TRUE(span("4x", 0, 125));
    EXPECT_FALSE(span("4x", 0, 126));
    EXPECT_TRUE(span("4x_bit", 0, 125 * 16));
    EXPECT_FALSE(span("4x_bit", 1, 125 * 16));
}

TEST(ModbusAddress, RefusesStationsThatTheProtocolCannotName)
{
    EXPECT_TRUE(modbusSpan(block("4x"), 0, 0, 1, 125));
    EXPECT_TRUE(modbusSpan(block("4x"), 255, 0, 1, 125));
    EXPECT_FALSE(modbusSpan(block("4x"), 256, 0, 1, 125));
    EXPECT_FALSE(modbusSpan(block("4x"), -1, 0, 1, 125));
}

TEST(ModbusAddress, UnpacksBitsLowestFirstIntoOneWordEach)
{
    const std::uint16_t registers[] = {0x8001, 0x0002};
    std::uint16_t words[4] = {9, 9, 9, 9};
    unpackWords(*span("4x_bit", 15, 3), registers, words);
    EXPECT_EQ(words[0], 1);
    EXPECT_EQ(words[1], 0);
    EXPECT_EQ(words[2], 1);
    EXPECT_EQ(words[3], 9);
}

TEST(ModbusAddress, UnpacksIntoAnUnalignedBuffer)
{
    const std::uint16_t registers[] = {0x1234, 0x5678};
    unsigned char buffer[6] = {};
    unpackWords(*span("4x", 0, 2), registers, buffer + 1);
    const unsigned char expected[6] = {0, 0x34, 0x12, 0x78, 0x56, 0};
    EXPECT_EQ(std::memcmp(buffer, expected, sizeof(buffer)), 0);
}

TEST(ModbusAddress, PacksBitsAndLeavesThoseBesideThem)
{
    std::uint16_t registers[] = {0x0f0f, 0xf0f0};
    const std::uint16_t words[] = {0, 7, 0};
    packWords(*span("4x_bit", 3, 3), words, registers); // bits 3 to 5
    EXPECT_EQ(registers[0], 0x0f17);
    EXPECT_EQ(registers[1], 0xf0f0);
    packWords(*span("4x_bit", 15, 2), words + 1, registers); // the last bit of one, the first of the next
    EXPECT_EQ(registers[0], 0x8f17);
    EXPECT_EQ(registers[1], 0xf0f0);
}

TEST(ModbusAddress, PacksWordsAsTheyAreAndCoilsAsBits)
{
    const std::uint16_t words[] = {0x1234, 0};
    std::uint16_t registers[] = {9, 9};
    packWords(*span("4x", 0, 2), words, registers);
    EXPECT_EQ(registers[0], 0x1234);
    EXPECT_EQ(registers[1], 0);
    packWords(*span("0x", 0, 2), words, registers);
    EXPECT_EQ(registers[0], 1);
    EXPECT_EQ(registers[1], 0);
}

TEST(ModbusAddress, ReadsTheIndexFromWhatAnAuthorTypes)
{
    const struct
    {
        const char *block;
        const char *text;
        int index;
    } rows[] = {
        {"4x", "1", 0},
        {"4x", "100", 99},
        {"4x", "65536", 65535},
        {"4x", "0", -1},
        {"4x", "65537", -1},
        {"4x", "-1", -1},
        {"4x", "", -1},
        {"4x", "+1", -1},
        {"4x", " 007 ", 6},
        {"4x_bit", "1.-0", -1},
        {"4x", "1.0", -1},
        {"4x", "0x10", -1},
        {"4x", "99999999999", -1},
        {"0x", "8", 7},
        {"1x", "65536", 65535},
        {"3x", "12", 11},
        {"4x_bit", "1.3", 3},
        {"4x_bit", "1.0", 0},
        {"4x_bit", "2.15", 31},
        {"4x_bit", "65536.15", 1048575},
        {"4x_bit", "1.16", -1},
        {"4x_bit", "1.-1", -1},
        {"4x_bit", "0.1", -1},
        {"4x_bit", "65537.0", -1},
        {"4x_bit", "1", -1},
        {"4x_bit", "1.", -1},
        {"4x_bit", ".1", -1},
        {"4x_bit", "1.2.3", -1},
        {"3x_bit", "10.9", 153},
    };
    for (const auto &row : rows)
        EXPECT_EQ(modbusIndex(block(row.block), QLatin1String(row.text)), row.index)
            << row.block << ' ' << row.text;
}

TEST(ModbusAddress, OverlapsOnlyWithinOneTableOfOneStation)
{
    const RegisterRange range = {1, ModbusTable::HoldingRegisters, 10, 2};
    EXPECT_TRUE(overlap(range, {1, ModbusTable::HoldingRegisters, 11, 5}));
    EXPECT_TRUE(overlap(range, {1, ModbusTable::HoldingRegisters, 0, 11}));
    EXPECT_FALSE(overlap(range, {1, ModbusTable::HoldingRegisters, 12, 1}));
    EXPECT_FALSE(overlap(range, {1, ModbusTable::HoldingRegisters, 0, 10}));
    EXPECT_FALSE(overlap(range, {2, ModbusTable::HoldingRegisters, 10, 2}));
    EXPECT_FALSE(overlap(range, {1, ModbusTable::InputRegisters, 10, 2}));
}

} // namespace
