#include "simulator/soak/chance.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <string>

using panelkit::simulator::Chance;

TEST(Chance, DrawsTheSameForTheSameSeedAndAction)
{
    Chance one(42, 7);
    Chance other(42, 7);
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(one.bits(), other.bits()) << i;
}

TEST(Chance, DrawsAnotherForAnotherSeedOrAction)
{
    std::set<quint64> first;
    for (const quint64 seed : {0u, 1u, 2u})
        for (const quint64 action : {0u, 1u, 2u})
            first.insert(Chance(seed, action).bits());
    EXPECT_EQ(first.size(), 9u);
}

TEST(Chance, ReachesBothEndsAndNothingBeyond)
{
    Chance chance(1, 1);
    std::set<int> drawn;
    for (int i = 0; i < 1000; ++i)
        drawn.insert(chance.between(-2, 3));
    EXPECT_EQ(drawn, (std::set<int>{-2, -1, 0, 1, 2, 3}));
    EXPECT_EQ(chance.between(5, 5), 5);
    chance.between(std::numeric_limits<int>::min(), std::numeric_limits<int>::max()); // no overflow
}

TEST(Chance, TakesEveryEntryOfAList)
{
    Chance chance(1, 2);
    const std::string entries[] = {"a", "b", "c"};
    std::set<std::string> drawn;
    for (int i = 0; i < 100; ++i)
        drawn.insert(chance.of(entries));
    EXPECT_EQ(drawn, (std::set<std::string>{"a", "b", "c"}));
}
