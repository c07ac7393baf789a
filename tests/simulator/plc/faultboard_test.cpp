#include "simulator/plc/faultboard.h"
#include "simulator/plc/faultyanswer.h"

#include <gtest/gtest.h>

using namespace panelkit::simulator;
using namespace std::chrono_literals;

namespace {

constexpr FaultBoard::Time start{};

PlcFaultSetting setting(PlcFault fault, int unit = PlcFaultSetting::allUnits, int answers = 0)
{
    PlcFaultSetting result;
    result.fault = fault;
    result.unit = unit;
    result.answers = answers;
    return result;
}

TEST(PlcFaultName, NamesEveryFaultAndFindsItAgain)
{
    const struct
    {
        PlcFault fault;
        const char *name;
    } rows[] = {
        {PlcFault::Late, "late"},
        {PlcFault::Silent, "silent"},
        {PlcFault::CutOff, "cut-off"},
        {PlcFault::Truncated, "truncated"},
        {PlcFault::Short, "short"},
        {PlcFault::WrongTransaction, "wrong-transaction"},
        {PlcFault::WrongUnit, "wrong-unit"},
        {PlcFault::Exception, "exception"},
        {PlcFault::Gone, "gone"},
    };
    EXPECT_EQ(std::size(rows), plcFaultNames.size());
    for (const auto &row : rows) {
        EXPECT_EQ(plcFaultName(row.fault), row.name);
        EXPECT_EQ(plcFaultNamed(row.name), row.fault) << row.name;
    }
}

TEST(PlcFaultName, IsComparedExactly)
{
    EXPECT_EQ(plcFaultNamed(""), std::nullopt);
    EXPECT_EQ(plcFaultNamed("Late"), std::nullopt);
    EXPECT_EQ(plcFaultNamed("late "), std::nullopt);
}

TEST(FaultBoard, HasNoFaultAtStart)
{
    FaultBoard board;
    EXPECT_FALSE(board.take(1, start));
    EXPECT_FALSE(board.isGone(start));
    EXPECT_FALSE(board.nextEnd());
}

TEST(FaultBoard, PrefersAUnitsOwnFaultToThatOfAllUnits)
{
    FaultBoard board;
    board.set(setting(PlcFault::Silent), start);
    board.set(setting(PlcFault::Exception, 2), start);
    EXPECT_EQ(board.take(1, start)->fault, PlcFault::Silent);
    EXPECT_EQ(board.take(2, start)->fault, PlcFault::Exception);
    board.clear(2);
    EXPECT_EQ(board.take(2, start)->fault, PlcFault::Silent);
    board.clear(PlcFaultSetting::allUnits);
    EXPECT_FALSE(board.take(2, start));
}

TEST(FaultBoard, ReplacesAnEarlierFault)
{
    FaultBoard board;
    board.set(setting(PlcFault::Silent, 1), start);
    board.set(setting(PlcFault::Short, 1), start);
    EXPECT_EQ(board.take(1, start)->fault, PlcFault::Short);
}

TEST(FaultBoard, EndsAFaultAfterItsAnswers)
{
    FaultBoard board;
    board.set(setting(PlcFault::CutOff, PlcFaultSetting::allUnits, 2), start);
    EXPECT_TRUE(board.take(1, start));
    EXPECT_TRUE(board.take(3, start));
    EXPECT_FALSE(board.take(1, start));
}

TEST(FaultBoard, EndsAFaultAfterItsDuration)
{
    FaultBoard board;
    PlcFaultSetting gone = setting(PlcFault::Gone);
    gone.duration = 3s;
    board.set(gone, start);
    EXPECT_EQ(board.nextEnd(), start + 3s);
    EXPECT_TRUE(board.isGone(start + 2999ms));
    EXPECT_FALSE(board.isGone(start + 3s));
    EXPECT_FALSE(board.nextEnd());
}

TEST(FaultBoard, IsNotGoneForTheSakeOfOneUnit)
{
    FaultBoard board;
    board.set(setting(PlcFault::Gone, 2), start);
    EXPECT_FALSE(board.isGone(start));
    EXPECT_EQ(board.take(2, start)->fault, PlcFault::Gone);
    EXPECT_FALSE(board.take(1, start));
}

TEST(FaultBoard, BringsAnExceptionCodeIntoRange)
{
    FaultBoard board;
    PlcFaultSetting refusing = setting(PlcFault::Exception);
    refusing.exceptionCode = 200;
    board.set(refusing, start);
    EXPECT_EQ(board.take(1, start)->exceptionCode, 11);
    refusing.exceptionCode = 0;
    board.set(refusing, start);
    EXPECT_EQ(board.take(1, start)->exceptionCode, 1);
}

// Transaction 7, unit 1, two holding registers.
const ModbusFrame twoRegisters = {0, 7, 0, 0, 0, 7, 1, 3, 4, 0x12, 0x34, 0x56, 0x78};

TEST(FaultyAnswer, ChangesWhatItsNameSays)
{
    EXPECT_EQ(faultyAnswer(PlcFault::Late, twoRegisters).bytes, twoRegisters);
    EXPECT_EQ(faultyAnswer(PlcFault::Exception, twoRegisters).bytes, twoRegisters);
    EXPECT_TRUE(faultyAnswer(PlcFault::Silent, twoRegisters).bytes.empty());
    EXPECT_TRUE(faultyAnswer(PlcFault::Gone, twoRegisters).bytes.empty());
    EXPECT_EQ(faultyAnswer(PlcFault::Truncated, twoRegisters).bytes, (ModbusFrame{0, 7, 0, 0, 0, 7}));
    EXPECT_EQ(faultyAnswer(PlcFault::CutOff, twoRegisters).bytes, (ModbusFrame{0, 7, 0, 0, 0, 7}));
    EXPECT_EQ(faultyAnswer(PlcFault::WrongTransaction, twoRegisters).bytes,
              (ModbusFrame{0, 8, 0, 0, 0, 7, 1, 3, 4, 0x12, 0x34, 0x56, 0x78}));
    EXPECT_EQ(faultyAnswer(PlcFault::WrongUnit, twoRegisters).bytes,
              (ModbusFrame{0, 7, 0, 0, 0, 7, 2, 3, 4, 0x12, 0x34, 0x56, 0x78}));
}

TEST(FaultyAnswer, ClosesTheConnectionOnlyWhenItCutsOff)
{
    for (std::size_t i = 0; i < plcFaultNames.size(); ++i) {
        const auto fault = static_cast<PlcFault>(i);
        EXPECT_EQ(faultyAnswer(fault, twoRegisters).thenClose, fault == PlcFault::CutOff) << plcFaultNames[i];
    }
}

TEST(FaultyAnswer, ShortensAnAnswerAndSaysSoInIt)
{
    EXPECT_EQ(faultyAnswer(PlcFault::Short, twoRegisters).bytes,
              (ModbusFrame{0, 7, 0, 0, 0, 5, 1, 3, 2, 0x12, 0x34}));
    const ModbusFrame eightCoils = {0, 7, 0, 0, 0, 4, 1, 1, 1, 0xff};
    EXPECT_EQ(faultyAnswer(PlcFault::Short, eightCoils).bytes, (ModbusFrame{0, 7, 0, 0, 0, 3, 1, 1, 0}));
    const ModbusFrame fiveWritten = {0, 7, 0, 0, 0, 6, 1, 16, 0, 0, 0, 5};
    EXPECT_EQ(faultyAnswer(PlcFault::Short, fiveWritten).bytes,
              (ModbusFrame{0, 7, 0, 0, 0, 6, 1, 16, 0, 0, 0, 4}));
    const ModbusFrame oneWritten = {0, 7, 0, 0, 0, 6, 1, 6, 0, 0, 0, 5};
    EXPECT_EQ(faultyAnswer(PlcFault::Short, oneWritten).bytes, oneWritten);
    const ModbusFrame refused = {0, 7, 0, 0, 0, 3, 1, 0x83, 2};
    EXPECT_EQ(faultyAnswer(PlcFault::Short, refused).bytes, refused);
}

} // namespace
