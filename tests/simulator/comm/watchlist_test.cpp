#include "simulator/comm/watchlist.h"

#include <gtest/gtest.h>

using namespace panelkit::simulator;
using namespace std::chrono_literals;

namespace {

constexpr Watch::Time start{};
constexpr auto holdings = ModbusTable::HoldingRegisters;

bool everyUnit(int)
{
    return true;
}

class WatchListTest : public ::testing::Test
{
protected:
    Watch &add(int unit, int first, Watch::Value value = Watch::Value::Pending, bool isDue = true)
    {
        Watch &watch = list.add({unit, holdings, first, 2}, start);
        watch.value = value;
        watch.isDue = isDue;
        return watch;
    }

    WatchList list;
};

TEST_F(WatchListTest, TellsEveryPartOfARangeApart)
{
    const RegisterRange ranges[] = {
        {1, holdings, 10, 2}, {2, holdings, 10, 2}, {1, ModbusTable::InputRegisters, 10, 2},
        {1, holdings, 11, 2}, {1, holdings, 10, 3}, {255, ModbusTable::Coils, 65535, 1},
    };
    for (const RegisterRange &range : ranges)
        EXPECT_EQ(list.find(range), nullptr);
    for (const RegisterRange &range : ranges)
        list.add(range, start);
    for (const RegisterRange &range : ranges) {
        ASSERT_NE(list.find(range), nullptr);
        EXPECT_EQ(list.find(range)->range, range);
        EXPECT_EQ(list.find(range)->registers.size(), static_cast<std::size_t>(range.count));
    }
}

TEST_F(WatchListTest, AsksForWhatHasNoValueYetBeforeAllOthers)
{
    Watch &fresh = add(1, 0, Watch::Value::Fresh);
    Watch &pending = add(1, 10);
    add(1, 20, Watch::Value::Fresh, false);
    EXPECT_EQ(list.due(everyUnit), std::vector<Watch *>{&pending});
    pending.isDue = false;
    EXPECT_EQ(list.due(everyUnit), std::vector<Watch *>{&fresh});
    fresh.isDue = false;
    EXPECT_TRUE(list.due(everyUnit).empty());
}

TEST_F(WatchListTest, AsksOnlyUnitsThatMayBeAsked)
{
    add(1, 0);
    Watch &other = add(2, 0, Watch::Value::Missing);
    EXPECT_EQ(list.due([](int unit) { return unit == 2; }), std::vector<Watch *>{&other});
}

TEST_F(WatchListTest, MakesEverythingDueInANewRound)
{
    Watch &watch = add(7, 0, Watch::Value::Fresh, false);
    add(3, 0);
    EXPECT_EQ(list.startRound(start, 10s), (std::set<int>{3, 7}));
    EXPECT_TRUE(watch.isDue);
}

TEST_F(WatchListTest, DropsWhatNobodyHasReadForLong)
{
    add(1, 0);
    Watch &read = add(1, 10);
    list.startRound(start, 10s);
    list.startRound(start + 5s, 10s);
    read.wasRead = true;
    list.startRound(start + 8s, 10s);
    EXPECT_FALSE(read.wasRead);
    list.startRound(start + 10s, 10s);
    EXPECT_NE(list.find({1, holdings, 0, 2}), nullptr);
    list.startRound(start + 10001ms, 10s);
    EXPECT_EQ(list.find({1, holdings, 0, 2}), nullptr);
    EXPECT_NE(list.find({1, holdings, 10, 2}), nullptr);
    list.startRound(start + 18001ms, 10s);
    EXPECT_TRUE(list.isEmpty());
}

TEST_F(WatchListTest, KeepsWhatACallerWaitsFor)
{
    Watch &watch = add(1, 0);
    watch.wasRead = false;
    watch.waiting = 1;
    list.startRound(start + 1h, 10s);
    ASSERT_EQ(list.find({1, holdings, 0, 2}), &watch);
    watch.waiting = 0;
    list.startRound(start + 1h + 10001ms, 10s);
    EXPECT_TRUE(list.isEmpty());
}

TEST_F(WatchListTest, MakesDueWhatSharesARegister)
{
    Watch &before = add(1, 0, Watch::Value::Fresh, false);
    Watch &first = add(1, 2, Watch::Value::Fresh, false);
    Watch &second = add(1, 3, Watch::Value::Fresh, false);
    Watch &behind = add(1, 5, Watch::Value::Fresh, false);
    Watch &other = add(2, 3, Watch::Value::Fresh, false);
    list.makeDue({1, holdings, 3, 1});
    EXPECT_FALSE(before.isDue);
    EXPECT_TRUE(first.isDue);
    EXPECT_TRUE(second.isDue);
    EXPECT_FALSE(behind.isDue);
    EXPECT_FALSE(other.isDue);
}

TEST_F(WatchListTest, TakesTheValuesOfOneUnitOrOfAll)
{
    Watch &one = add(1, 0, Watch::Value::Fresh, false);
    Watch &two = add(2, 0, Watch::Value::Fresh, false);
    Watch &pending = add(2, 10);
    list.fail(2);
    EXPECT_EQ(one.value, Watch::Value::Fresh);
    EXPECT_FALSE(one.isDue);
    EXPECT_EQ(two.value, Watch::Value::Missing);
    EXPECT_TRUE(two.isDue);
    EXPECT_EQ(pending.value, Watch::Value::Missing);
    list.failAll();
    EXPECT_EQ(one.value, Watch::Value::Missing);
}

TEST_F(WatchListTest, ForgetsValuesAndLeavesPendingOnesToBeWaitedFor)
{
    Watch &fresh = add(1, 0, Watch::Value::Fresh, false);
    Watch &pending = add(1, 10);
    list.forgetValues();
    EXPECT_EQ(fresh.value, Watch::Value::Missing);
    EXPECT_TRUE(fresh.isDue);
    EXPECT_EQ(pending.value, Watch::Value::Pending);
}

} // namespace
