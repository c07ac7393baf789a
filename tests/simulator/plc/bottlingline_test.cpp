#include "simulator/plc/bottlingline.h"

#include <gtest/gtest.h>

using namespace panelkit::simulator;
using namespace std::chrono_literals;

namespace {

constexpr ModbusTable coils = ModbusTable::Coils;
constexpr ModbusTable discretes = ModbusTable::DiscreteInputs;
constexpr ModbusTable inputs = ModbusTable::InputRegisters;
constexpr ModbusTable holdings = ModbusTable::HoldingRegisters;

// Registers are named here by the number that an author types, as in "3x 5".
class BottlingLineTest : public ::testing::Test
{
protected:
    int word(int unit, ModbusTable table, int number) { return memory.value(unit, table, number - 1); }
    void set(int unit, ModbusTable table, int number, int value)
    {
        memory.setValue(unit, table, number - 1, value);
    }
    std::uint32_t doubleWord(int unit, ModbusTable table, int number)
    {
        std::uint32_t value = 0;
        memory.with(unit, [&](PlcTables &tables) { value = tables.doubleWord(table, number - 1); });
        return value;
    }
    float single(int unit, ModbusTable table, int number)
    {
        float value = 0;
        memory.with(unit, [&](PlcTables &tables) { value = tables.single(table, number - 1); });
        return value;
    }
    void ticks(int count) { line.advance(count * BottlingLine::tick); }

    PlcMemory memory{BottlingLine::units(), BottlingLine::registersPerTable};
    BottlingLine line{memory};
};

TEST_F(BottlingLineTest, StartsInTheMiddleOfAShift)
{
    EXPECT_EQ(word(1, inputs, 1), 0x0003);
    EXPECT_EQ(word(1, inputs, 2), 875);
    EXPECT_FLOAT_EQ(single(1, inputs, 3), 4.0F);
    EXPECT_EQ(doubleWord(1, inputs, 5), 81350U);
    EXPECT_EQ(word(1, inputs, 7), 120);
    EXPECT_EQ(word(1, inputs, 8), 0xffdd); // -35
    EXPECT_EQ(word(1, inputs, 9), 0xfa24); // -1500, low word first
    EXPECT_EQ(word(1, inputs, 10), 0xffff);
    EXPECT_EQ(word(1, inputs, 11), 0x0600);
    EXPECT_EQ(doubleWord(1, inputs, 12), 0x00406750U);
    EXPECT_EQ(word(1, inputs, 14), 0);
    EXPECT_EQ(word(1, holdings, 1), 120);
    EXPECT_EQ(word(1, holdings, 2), 500);
    EXPECT_FLOAT_EQ(single(1, holdings, 3), 6.0F);
    EXPECT_EQ(word(1, holdings, 5), 0x7700); // 96000, low word first
    EXPECT_EQ(word(1, holdings, 6), 1);
    EXPECT_EQ(word(1, holdings, 7), 0xfff4); // -12
    EXPECT_EQ(word(1, holdings, 8), 0x0417);
    EXPECT_EQ(word(1, holdings, 11), 'L' | 'O' << 8);
    EXPECT_EQ(word(1, holdings, 15), '-' | 'A' << 8);
    EXPECT_EQ(word(1, holdings, 16), 0);
    EXPECT_EQ(word(1, holdings, 19), 0x00f5);
    EXPECT_EQ(word(1, coils, 1), 1);
    EXPECT_EQ(word(1, coils, 2), 0);
    EXPECT_EQ(word(1, coils, 3), 0);
    EXPECT_EQ(word(1, discretes, 1), 0);
    EXPECT_EQ(word(1, discretes, 2), 1);
    EXPECT_EQ(word(1, discretes, 3), 0);
    EXPECT_EQ(doubleWord(2, inputs, 1), 13558U);
    EXPECT_EQ(word(2, inputs, 3), 2);
    EXPECT_EQ(word(2, inputs, 4), 7);
    EXPECT_EQ(word(2, holdings, 1), 6);
    EXPECT_EQ(word(2, coils, 1), 1);
    EXPECT_EQ(word(3, inputs, 1), 282);
    EXPECT_EQ(word(3, inputs, 2), 22);
    EXPECT_FLOAT_EQ(single(3, inputs, 3), 70.4F);
    EXPECT_EQ(word(3, holdings, 1), 48);
    EXPECT_EQ(word(3, coils, 1), 0);
}

TEST_F(BottlingLineTest, MovesAtWholeTicksOnlyAndKeepsTheRest)
{
    line.advance(99ms);
    EXPECT_EQ(word(1, inputs, 2), 875);
    line.advance(1ms);
    EXPECT_EQ(word(1, inputs, 2), 874);
    EXPECT_EQ(word(1, inputs, 1), 0x8003);
    EXPECT_FLOAT_EQ(single(1, inputs, 3), 4.01F);
    line.advance(100ms);
    EXPECT_EQ(word(1, inputs, 1), 0x0003);
}

TEST_F(BottlingLineTest, FillsABottleEveryFifthTickAtItsStartSpeed)
{
    ticks(4);
    EXPECT_EQ(doubleWord(1, inputs, 5), 81350U);
    EXPECT_EQ(word(1, discretes, 1), 0);
    ticks(1);
    EXPECT_EQ(doubleWord(1, inputs, 5), 81351U);
    EXPECT_EQ(word(1, discretes, 1), 1);
    EXPECT_EQ(static_cast<std::int32_t>(doubleWord(1, inputs, 9)), -2000);
    EXPECT_EQ(doubleWord(1, inputs, 12), 0x00406755U);
    EXPECT_EQ(word(2, inputs, 3), 3);
    ticks(595);
    EXPECT_EQ(doubleWord(1, inputs, 5), 81470U);
    EXPECT_EQ(word(1, inputs, 11), 0x0601);
}

TEST_F(BottlingLineTest, KeepsTheRestOfATenthOfALitreForTheNextBottle)
{
    set(1, holdings, 2, 330);
    ticks(5);
    EXPECT_EQ(doubleWord(1, inputs, 12), 0x00406753U); // 330 ml
    ticks(10);
    EXPECT_EQ(doubleWord(1, inputs, 12), 0x00406759U); // 990 ml
    ticks(5);
    EXPECT_EQ(doubleWord(1, inputs, 12), 0x00406763U); // 1320 ml
}

TEST_F(BottlingLineTest, FollowsTheSpeedSetPointByOneATick)
{
    set(1, holdings, 1, 123);
    ticks(2);
    EXPECT_EQ(word(1, inputs, 7), 122);
    ticks(5);
    EXPECT_EQ(word(1, inputs, 7), 123);
    set(1, holdings, 1, 60000);
    ticks(200);
    EXPECT_EQ(word(1, inputs, 7), 240);
}

TEST_F(BottlingLineTest, ComesToAStandWhenTheRunCoilIsCleared)
{
    set(1, coils, 1, 0);
    ticks(1);
    EXPECT_EQ(word(1, inputs, 7), 119);
    EXPECT_EQ(word(1, inputs, 1), 0x800a); // filling, alarm, the blinking bit
    EXPECT_EQ(word(1, inputs, 14), 0x0004);
    EXPECT_EQ(word(1, discretes, 3), 1);
    ticks(119);
    EXPECT_EQ(word(1, inputs, 7), 0);
    EXPECT_EQ(word(1, inputs, 1), 0x0008);
    const int level = word(1, inputs, 2);
    const std::uint32_t bottles = doubleWord(1, inputs, 5);
    ticks(50);
    EXPECT_EQ(word(1, inputs, 2), level);
    EXPECT_EQ(doubleWord(1, inputs, 5), bottles);
}

TEST_F(BottlingLineTest, RefillsTheTankFromTwentyToNinetyFivePerCent)
{
    ticks(674);
    EXPECT_EQ(word(1, inputs, 2), 201);
    EXPECT_EQ(word(1, inputs, 1) & 0x0004, 0);
    ticks(1);
    EXPECT_EQ(word(1, inputs, 2), 200);
    EXPECT_EQ(word(1, inputs, 1) & 0x0004, 4);
    EXPECT_EQ(word(1, inputs, 8), 85);
    const auto balance = static_cast<std::int32_t>(doubleWord(1, inputs, 9));
    EXPECT_EQ(balance, -1500 - 135 * 500);
    ticks(1);
    EXPECT_EQ(word(1, inputs, 2), 204);
    EXPECT_EQ(static_cast<std::int32_t>(doubleWord(1, inputs, 9)), balance + 2500);
    ticks(186);
    EXPECT_EQ(word(1, inputs, 2), 948);
    EXPECT_EQ(word(1, inputs, 8), 85);
    ticks(1);
    EXPECT_EQ(word(1, inputs, 2), 952);
    EXPECT_EQ(word(1, inputs, 8), 0xffdd);
    EXPECT_EQ(word(1, inputs, 1) & 0x0004, 0);
    ticks(1);
    EXPECT_EQ(word(1, inputs, 2), 951);
}

TEST_F(BottlingLineTest, WarmsUpAndCoolsDown)
{
    ticks(240);
    EXPECT_FLOAT_EQ(single(1, inputs, 3), 6.40F);
    ticks(1);
    EXPECT_FLOAT_EQ(single(1, inputs, 3), 6.39F);
    ticks(239);
    EXPECT_FLOAT_EQ(single(1, inputs, 3), 4.0F);
    ticks(1);
    EXPECT_FLOAT_EQ(single(1, inputs, 3), 4.01F);
}

TEST_F(BottlingLineTest, KeepsAnAlarmUntilItsCauseIsGoneAndItIsAcknowledged)
{
    ticks(200);
    EXPECT_EQ(word(1, inputs, 14), 0); // 6.00 is not above 6.0
    ticks(1);
    EXPECT_EQ(word(1, inputs, 14), 1);
    EXPECT_EQ(word(1, inputs, 1) & 0x0008, 8);
    set(1, coils, 2, 1);
    ticks(1);
    EXPECT_EQ(word(1, coils, 2), 0);
    EXPECT_EQ(word(1, inputs, 14), 1);
    ticks(78);
    EXPECT_FLOAT_EQ(single(1, inputs, 3), 6.0F);
    EXPECT_EQ(word(1, inputs, 14), 1);
    set(1, coils, 2, 1);
    ticks(1);
    EXPECT_EQ(word(1, inputs, 14), 0);
    EXPECT_EQ(word(1, discretes, 3), 0);
}

TEST_F(BottlingLineTest, WarnsOfALowTank)
{
    ticks(625);
    EXPECT_EQ(word(1, inputs, 2), 250);
    EXPECT_EQ(word(1, inputs, 14) & 2, 0);
    ticks(1);
    EXPECT_EQ(word(1, inputs, 14) & 2, 2);
}

TEST_F(BottlingLineTest, ResetsItsCountersOnRequest)
{
    set(1, coils, 3, 1);
    ticks(1);
    EXPECT_EQ(word(1, coils, 3), 0);
    EXPECT_EQ(doubleWord(1, inputs, 5), 0U);
    EXPECT_EQ(doubleWord(1, inputs, 9), 0U);
    EXPECT_EQ(doubleWord(1, inputs, 12), 0U);
    EXPECT_EQ(doubleWord(2, inputs, 1), 13558U);
}

TEST_F(BottlingLineTest, StartsTheFlowBalanceAgainBeyondAMillion)
{
    set(1, holdings, 2, 65535); // counts as 5000
    ticks(5);
    EXPECT_EQ(static_cast<std::int32_t>(doubleWord(1, inputs, 9)), -6500);
    ticks(4 * 5);
    EXPECT_EQ(static_cast<std::int32_t>(doubleWord(1, inputs, 9)), -26500);
    // 200 bottles and, from tick 675 on, 325 ticks with 188 of refill: the two cancel to a value in range.
    int lowest = 0;
    for (int i = 0; i < 5000; ++i) {
        ticks(1);
        lowest = std::min(lowest, static_cast<int>(doubleWord(1, inputs, 9)));
    }
    EXPECT_LT(lowest, -900'000);
    EXPECT_GE(lowest, -1'000'000);
}

TEST_F(BottlingLineTest, PacksCasesAndPallets)
{
    ticks(4 * 5);
    EXPECT_EQ(doubleWord(2, inputs, 1), 13559U);
    EXPECT_EQ(word(2, inputs, 3), 0);
    EXPECT_EQ(word(3, inputs, 2), 23);
    EXPECT_FLOAT_EQ(single(3, inputs, 3), 73.6F);
    ticks(25 * 6 * 5); // 25 cases more fill the pallet
    EXPECT_EQ(word(3, inputs, 1), 283);
    EXPECT_EQ(word(3, inputs, 2), 0);
    EXPECT_EQ(word(2, inputs, 4), 8); // 154 bottles, one of them was rejected
}

TEST_F(BottlingLineTest, CountsCasesOfNoBottlesAsCasesOfOne)
{
    set(2, holdings, 1, 0);
    set(3, holdings, 1, 0);
    ticks(5);
    EXPECT_EQ(doubleWord(2, inputs, 1), 13559U);
    EXPECT_EQ(word(2, inputs, 3), 0);
    EXPECT_EQ(word(3, inputs, 1), 283);
    EXPECT_EQ(word(3, inputs, 2), 0);
}

TEST_F(BottlingLineTest, TurnsItsClockOverAtMidnight)
{
    line.advance(18h - 100ms);
    EXPECT_EQ(word(1, inputs, 11), 0x2359);
    ticks(1);
    EXPECT_EQ(word(1, inputs, 11), 0x0000);
}

TEST_F(BottlingLineTest, GivesTheSameValuesForTheSameTimeHoweverItPasses)
{
    PlcMemory otherMemory(BottlingLine::units(), BottlingLine::registersPerTable);
    BottlingLine other(otherMemory);
    other.advance(500s);
    for (int i = 0; i < 20'000; ++i)
        line.advance(25ms);
    for (const int unit : BottlingLine::units())
        for (int number = 1; number <= 20; ++number)
            EXPECT_EQ(word(unit, inputs, number), otherMemory.value(unit, inputs, number - 1))
                << "unit " << unit << " number " << number;
}

TEST_F(BottlingLineTest, FollowsTheRealTimeWhenAClockDrivesIt)
{
    const BottlingLineClock clock(line);
    while (word(1, inputs, 2) > 873)
        std::this_thread::yield();
    EXPECT_LE(word(1, inputs, 2), 873);
}

} // namespace
