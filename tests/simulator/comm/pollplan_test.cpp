#include "simulator/comm/pollplan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace panelkit::simulator;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

namespace panelkit::simulator {

void PrintTo(const RegisterRange &range, std::ostream *out)
{
    *out << "unit " << range.unit << " table " << static_cast<int>(range.table) << " from " << range.first
         << " count " << range.count;
}

} // namespace panelkit::simulator

namespace {

constexpr ModbusTable coils = ModbusTable::Coils;
constexpr ModbusTable holdings = ModbusTable::HoldingRegisters;
constexpr ModbusTable inputs = ModbusTable::InputRegisters;

PollRange holding(int first, int count)
{
    return {{1, holdings, first, count}, false};
}

PollRange alone(int first, int count)
{
    return {{1, holdings, first, count}, true};
}

std::vector<RegisterRange> requested(const std::vector<PollRange> &ranges, int largestGap)
{
    std::vector<RegisterRange> result;
    for (const PollRequest &request : planPolls(ranges, largestGap))
        result.push_back(request.range);
    return result;
}

TEST(PollPlan, AsksForNothingWhenNothingIsWatched)
{
    EXPECT_TRUE(planPolls({}, 10).empty());
}

TEST(PollPlan, JoinsNeighboursAndOverlapsInOneRequest)
{
    EXPECT_THAT(requested({holding(0, 2), holding(2, 1), holding(3, 4)}, 0),
                ElementsAre(RegisterRange{1, holdings, 0, 7}));
    EXPECT_THAT(requested({holding(10, 4), holding(12, 4), holding(11, 1)}, 0),
                ElementsAre(RegisterRange{1, holdings, 10, 6}));
}

TEST(PollPlan, DoesNotDependOnTheOrderOfTheRanges)
{
    const auto requests = planPolls({holding(3, 4), holding(0, 2), holding(2, 1)}, 0);
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0].range, (RegisterRange{1, holdings, 0, 7}));
    EXPECT_THAT(requests[0].served, UnorderedElementsAre(0U, 1U, 2U));
}

TEST(PollPlan, BridgesAGapOfExactlyTheLargest)
{
    EXPECT_THAT(requested({holding(0, 1), holding(6, 1)}, 5), ElementsAre(RegisterRange{1, holdings, 0, 7}));
    EXPECT_THAT(requested({holding(0, 1), holding(7, 1)}, 5),
                ElementsAre(RegisterRange{1, holdings, 0, 1}, RegisterRange{1, holdings, 7, 1}));
}

TEST(PollPlan, BridgesNothingWithoutAGap)
{
    EXPECT_THAT(requested({holding(0, 1), holding(2, 1)}, 0),
                ElementsAre(RegisterRange{1, holdings, 0, 1}, RegisterRange{1, holdings, 2, 1}));
    EXPECT_THAT(requested({holding(0, 1), holding(1, 1)}, -3), ElementsAre(RegisterRange{1, holdings, 0, 2}));
}

TEST(PollPlan, KeepsTablesAndStationsApart)
{
    const std::vector<PollRange> ranges = {
        {{1, holdings, 0, 1}}, {{1, inputs, 1, 1}}, {{2, holdings, 1, 1}}, {{1, coils, 1, 1}}};
    EXPECT_THAT(requested(ranges, 100),
                UnorderedElementsAre(RegisterRange{1, holdings, 0, 1}, RegisterRange{1, inputs, 1, 1},
                                     RegisterRange{2, holdings, 1, 1}, RegisterRange{1, coils, 1, 1}));
}

TEST(PollPlan, AsksForAtMost125Registers)
{
    EXPECT_THAT(requested({holding(0, 1), holding(1, 124)}, 0),
                ElementsAre(RegisterRange{1, holdings, 0, 125}));
    EXPECT_THAT(requested({holding(0, 2), holding(2, 124)}, 0),
                ElementsAre(RegisterRange{1, holdings, 0, 2}, RegisterRange{1, holdings, 2, 124}));
    EXPECT_THAT(requested({holding(0, 1), holding(125, 1)}, 1000),
                ElementsAre(RegisterRange{1, holdings, 0, 1}, RegisterRange{1, holdings, 125, 1}));
}

TEST(PollPlan, AsksForAtMost2000Bits)
{
    EXPECT_THAT(requested({{{1, coils, 0, 1}}, {{1, coils, 1999, 1}}}, 2000),
                ElementsAre(RegisterRange{1, coils, 0, 2000}));
    EXPECT_THAT(requested({{{1, coils, 0, 1}}, {{1, coils, 2000, 1}}}, 2000),
                ElementsAre(RegisterRange{1, coils, 0, 1}, RegisterRange{1, coils, 2000, 1}));
}

TEST(PollPlan, NeverDividesARange)
{
    // The second range would begin inside of a full request and end behind it.
    EXPECT_THAT(requested({holding(0, 124), holding(124, 2)}, 0),
                ElementsAre(RegisterRange{1, holdings, 0, 124}, RegisterRange{1, holdings, 124, 2}));
    EXPECT_THAT(requested({holding(0, 100), holding(50, 100)}, 0),
                ElementsAre(RegisterRange{1, holdings, 0, 100}, RegisterRange{1, holdings, 50, 100}));
}

TEST(PollPlan, AsksForALoneRangeByItself)
{
    const auto requests = planPolls({holding(0, 1), alone(1, 1), holding(2, 1), alone(3, 1)}, 5);
    ASSERT_EQ(requests.size(), 3U);
    EXPECT_EQ(requests[0].range, (RegisterRange{1, holdings, 0, 3}));
    EXPECT_THAT(requests[0].served, ElementsAre(0U, 2U));
    EXPECT_EQ(requests[1].range, (RegisterRange{1, holdings, 1, 1}));
    EXPECT_THAT(requests[1].served, ElementsAre(1U));
    EXPECT_EQ(requests[2].range, (RegisterRange{1, holdings, 3, 1}));
    EXPECT_THAT(requests[2].served, ElementsAre(3U));
}

TEST(PollPlan, LeavesOutWhatNoRequestCanHold)
{
    EXPECT_THAT(
        requested({holding(0, 0), holding(5, -1), holding(9, 126), {{1, coils, 0, 2001}}, holding(3, 1)}, 0),
        ElementsAre(RegisterRange{1, holdings, 3, 1}));
}

TEST(PollPlan, ReachesTheLastRegister)
{
    EXPECT_THAT(requested({holding(65534, 1), holding(65535, 1)}, 0),
                ElementsAre(RegisterRange{1, holdings, 65534, 2}));
}

TEST(PollPlan, ServesEveryRangeOnceAndWholeWhateverIsWatched)
{
    std::mt19937 random(1);
    const auto number = [&](int smallest, int largest) {
        return std::uniform_int_distribution<int>(smallest, largest)(random);
    };
    for (int run = 0; run < 200; ++run) {
        SCOPED_TRACE(run);
        std::vector<PollRange> ranges;
        for (int i = number(0, 60); i > 0; --i)
            ranges.push_back(
                {{number(1, 2), static_cast<ModbusTable>(number(0, 3)), number(0, 300), number(1, 125)},
                 number(0, 9) == 0});
        std::vector<int> served(ranges.size());
        for (const PollRequest &request : planPolls(ranges, number(0, 20))) {
            EXPECT_LE(request.range.count, isBitTable(request.range.table) ? 2000 : 125);
            for (const std::size_t i : request.served) {
                ++served[i];
                EXPECT_EQ(ranges[i].range.unit, request.range.unit);
                EXPECT_EQ(ranges[i].range.table, request.range.table);
                EXPECT_GE(ranges[i].range.first, request.range.first);
                EXPECT_LE(ranges[i].range.end(), request.range.end());
            }
        }
        EXPECT_EQ(served, std::vector<int>(ranges.size(), 1));
    }
}

} // namespace
