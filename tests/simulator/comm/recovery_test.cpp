#include "simulator/comm/recovery.h"

#include <gtest/gtest.h>

using namespace panelkit::simulator;
using namespace std::chrono_literals;

namespace {

const RetryPauses pauses = {200ms, 1000ms};
constexpr Recovery::Time start{};

TEST(Recovery, MayBeTriedAtStart)
{
    const Recovery recovery;
    EXPECT_FALSE(recovery.isAway());
    EXPECT_TRUE(recovery.mayTry(start));
}

TEST(Recovery, PausesAfterAFailure)
{
    Recovery recovery;
    recovery.failed(start, 0, pauses);
    EXPECT_TRUE(recovery.isAway());
    EXPECT_FALSE(recovery.mayTry(start + 199ms));
    EXPECT_TRUE(recovery.mayTry(start + 200ms));
}

TEST(Recovery, DoublesThePauseUpToTheLongest)
{
    Recovery recovery;
    Recovery::Time now = start;
    for (const auto pause : {200ms, 400ms, 800ms, 1000ms, 1000ms}) {
        recovery.failed(now, 0, pauses);
        EXPECT_FALSE(recovery.mayTry(now + pause - 1ms)) << pause.count();
        EXPECT_TRUE(recovery.mayTry(now + pause)) << pause.count();
        now += pause;
    }
}

TEST(Recovery, RetriesAtOnceBeforeItGivesUp)
{
    Recovery recovery;
    recovery.failed(start, 2, pauses);
    recovery.failed(start, 2, pauses);
    EXPECT_FALSE(recovery.isAway());
    EXPECT_TRUE(recovery.mayTry(start));
    recovery.failed(start, 2, pauses);
    EXPECT_TRUE(recovery.isAway());
    EXPECT_FALSE(recovery.mayTry(start + 199ms));
}

TEST(Recovery, DoesNotRetryAtOnceWhileItIsAway)
{
    Recovery recovery;
    recovery.failed(start, 1, pauses);
    recovery.failed(start, 1, pauses);
    recovery.failed(start + 200ms, 1, pauses);
    EXPECT_FALSE(recovery.mayTry(start + 599ms));
    EXPECT_TRUE(recovery.mayTry(start + 600ms));
}

TEST(Recovery, ForgetsItsFailuresWithAnAnswer)
{
    Recovery recovery;
    recovery.failed(start, 1, pauses);
    recovery.answered();
    recovery.failed(start, 1, pauses);
    EXPECT_FALSE(recovery.isAway());
    recovery.failed(start, 1, pauses);
    recovery.failed(start, 1, pauses);
    recovery.answered();
    EXPECT_FALSE(recovery.isAway());
    recovery.failed(start, 0, pauses);
    EXPECT_TRUE(recovery.mayTry(start + 200ms));
}

TEST(Recovery, NeverPausesLongerThanTheLongest)
{
    Recovery recovery;
    recovery.failed(start, 0, {500ms, 100ms});
    EXPECT_TRUE(recovery.mayTry(start + 100ms));
}

} // namespace
