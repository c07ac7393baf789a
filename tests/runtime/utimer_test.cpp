#include "runtime/utimer.h"

#include "tests/support/allocationcounter.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <limits>
#include <thread>

#include <sys/resource.h>

using panelkit::testing::AllocationCounter;

namespace {

void countRun(void *counter)
{
    ++*static_cast<int *>(counter);
}

void call(void *function)
{
    (*static_cast<std::function<void()> *>(function))();
}

int tick(UTimer &timer, long long elapsed)
{
    const long long before = elapsed;
    const int result = timer.doTask(elapsed);
    EXPECT_EQ(elapsed, before) << "a tick must not change its argument";
    return result;
}

double milliseconds(std::chrono::steady_clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

double millisecondsOf(const std::function<void()> &work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return milliseconds(std::chrono::steady_clock::now() - start);
}

double processorMilliseconds()
{
    rusage usage = {};
    getrusage(RUSAGE_THREAD, &usage);
    const auto sum = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return sum(usage.ru_utime) + sum(usage.ru_stime);
}

} // namespace

TEST(UTimer, DoesNotRunUntilItIsStarted)
{
    int runs = 0;
    UTimer timer(countRun, &runs, 100, -1, true);
    EXPECT_EQ(tick(timer, 50), 0);
    EXPECT_EQ(tick(timer, 1000), 0);
    EXPECT_EQ(runs, 0);
    timer.Start();
    EXPECT_EQ(tick(timer, 99), 4);
    EXPECT_EQ(tick(timer, 1), 3);
    EXPECT_EQ(runs, 1);
}

TEST(UTimer, RaisesShortCyclesTo100Milliseconds)
{
    for (const long long time : {50LL, 99LL, 0LL, -2LL, std::numeric_limits<long long>::min()}) {
        SCOPED_TRACE(time);
        int runs = 0;
        UTimer timer(countRun, &runs, time, -1, false);
        timer.Start();
        EXPECT_EQ(tick(timer, 99), 4);
        EXPECT_EQ(tick(timer, 1), 3);
        EXPECT_EQ(tick(timer, 99), 4) << "the reloaded cycle";
        EXPECT_EQ(runs, 1);
    }
}

TEST(UTimer, WithoutACycleIsDueOnEveryTick)
{
    int runs = 0;
    UTimer timer(countRun, &runs, -1, -1, false);
    timer.Start();
    EXPECT_EQ(tick(timer, -1), 3) << "not even 0 is waited for";
    EXPECT_EQ(tick(timer, 0), 3);
    EXPECT_EQ(tick(timer, 0), 3);
    EXPECT_EQ(tick(timer, 7), 3);
    EXPECT_EQ(runs, 4);
}

TEST(UTimer, TakesAnyNewCycleAtTheNextReload)
{
    int runs = 0;
    UTimer timer(countRun, &runs, 200, -1, false);
    timer.Start();
    timer.setCycleTime(10);
    EXPECT_EQ(tick(timer, 199), 4) << "the countdown that runs keeps its length";
    EXPECT_EQ(tick(timer, 1), 3);
    EXPECT_EQ(tick(timer, 9), 4);
    EXPECT_EQ(tick(timer, 1), 3);
    EXPECT_EQ(runs, 2);
}

TEST(UTimer, WaitsAWholeCycleAfterEachRun)
{
    for (const int count : {-1, 3}) {
        SCOPED_TRACE(count);
        int runs = 0;
        UTimer timer(countRun, &runs, 1000, count, true);
        timer.Start();
        EXPECT_EQ(tick(timer, 400), 4);
        EXPECT_EQ(tick(timer, 600), 3);
        EXPECT_EQ(tick(timer, 700), 4);
        EXPECT_EQ(tick(timer, 300), 3);
        EXPECT_EQ(runs, 2);
    }
}

TEST(UTimer, StopsItselfAfterItsLastRunAndCanRepeatTheSeries)
{
    int runs = 0;
    UTimer timer(countRun, &runs, 100, 2, false);
    for (int series = 1; series <= 2; ++series) {
        SCOPED_TRACE(series);
        timer.Start();
        EXPECT_EQ(tick(timer, 100), 3);
        EXPECT_EQ(tick(timer, 100), 1);
        EXPECT_EQ(tick(timer, 100), 0) << "stopped";
        EXPECT_EQ(runs, 2 * series);
    }
}

TEST(UTimer, WithCountZeroRunsOnlyWhenToldToRunNow)
{
    int runs = 0;
    UTimer timer(countRun, &runs, 100, 0, false);
    timer.Start();
    EXPECT_EQ(tick(timer, 40), 4);
    EXPECT_EQ(tick(timer, 60), 0);
    EXPECT_EQ(runs, 0);
    EXPECT_EQ(tick(timer, 99), 4) << "the due tick reloads the countdown";
    EXPECT_EQ(timer.doTaskNow(), 0);
    EXPECT_EQ(runs, 1);
}

TEST(UTimer, WithANegativeCountOtherThanMinusOneNeverRunsOnATick)
{
    int runs = 0;
    UTimer timer(countRun, &runs, 100, -2, false);
    timer.Start();
    EXPECT_EQ(tick(timer, 100), 0);
    EXPECT_EQ(tick(timer, 100), 0);
    EXPECT_EQ(runs, 0);
}

TEST(UTimer, KeepsItsCountdownAndItsRunsWhilePaused)
{
    int runs = 0;
    UTimer timer(countRun, &runs, 100, 2, false);
    timer.Start();
    EXPECT_EQ(tick(timer, 100), 3);
    EXPECT_EQ(tick(timer, 40), 4);
    timer.Pause();
    EXPECT_EQ(tick(timer, 30), 0);
    EXPECT_EQ(tick(timer, 1000), 0);
    timer.Start();
    EXPECT_EQ(tick(timer, 59), 4);
    EXPECT_EQ(tick(timer, 1), 1);
    EXPECT_EQ(runs, 2);
}

TEST(UTimer, BeginsAnewAfterAStop)
{
    int runs = 0;
    UTimer timer(countRun, &runs, 100, 2, false);
    timer.Start();
    EXPECT_EQ(tick(timer, 100), 3);
    EXPECT_EQ(tick(timer, 40), 4);
    timer.Stop();
    EXPECT_EQ(tick(timer, 100), 0);
    timer.Start();
    EXPECT_EQ(tick(timer, 99), 4);
    EXPECT_EQ(tick(timer, 1), 3);
    EXPECT_EQ(tick(timer, 100), 1);
    EXPECT_EQ(runs, 3);
}

TEST(UTimer, WithoutACallbackSaysSoWhenItIsDue)
{
    UTimer timer(nullptr, nullptr, 100, 1, false);
    EXPECT_EQ(timer.getDelayCB(), nullptr);
    EXPECT_EQ(timer.doTaskNow(), 2);
    EXPECT_EQ(tick(timer, 100), 0) << "not running goes before";
    timer.Start();
    EXPECT_EQ(tick(timer, 99), 4);
    EXPECT_EQ(tick(timer, 1), 2);
    EXPECT_EQ(tick(timer, 1), 2) << "it stays due";
    UTimer withoutRuns(nullptr, nullptr, 100, 0, false);
    withoutRuns.Start();
    EXPECT_EQ(tick(withoutRuns, 100), 2) << "whatever the count";
}

TEST(UTimer, TakesACallbackLater)
{
    int runs = 0;
    UTimer timer(nullptr, &runs, 100, 1, false);
    timer.setDelayCB(reinterpret_cast<void *>(countRun));
    EXPECT_EQ(timer.getDelayCB(), reinterpret_cast<void *>(countRun));
    timer.Start();
    EXPECT_EQ(tick(timer, 100), 1);
    EXPECT_EQ(runs, 1);
}

TEST(UTimer, RunsNowWhateverItsStateAndBeginsANewCycle)
{
    int runs = 0;
    UTimer timer(countRun, &runs, 100, 3, false);
    EXPECT_EQ(timer.doTaskNow(), 3) << "not started";
    timer.Start();
    EXPECT_EQ(tick(timer, 40), 4);
    EXPECT_EQ(timer.doTaskNow(), 3);
    EXPECT_EQ(tick(timer, 99), 4) << "the countdown was reloaded";
    EXPECT_EQ(timer.doTaskNow(), 1);
    EXPECT_EQ(tick(timer, 100), 0) << "the last run stops it";
    timer.Start();
    EXPECT_EQ(tick(timer, 100), 3) << "with all of its runs again";
    EXPECT_EQ(runs, 4);
}

TEST(UTimer, RunsNowForEverWithoutALimit)
{
    int runs = 0;
    UTimer timer(countRun, &runs, 100, -1, false);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(timer.doTaskNow(), 3);
    EXPECT_EQ(runs, 5);
}

TEST(UTimer, CountsARunAfterItsCallbackAndReloadsLast)
{
    UTimer *self = nullptr;
    std::function<void()> stopSelf = [&self] {
        self->setCycleTime(30);
        self->Stop();
    };
    UTimer timer(call, &stopSelf, 100, 2, false);
    self = &timer;
    timer.Start();
    // The callback's Stop gives both runs back; then the run that it was in is counted.
    EXPECT_EQ(tick(timer, 100), 3);
    EXPECT_EQ(tick(timer, 1000), 0) << "stopped by its callback";
    stopSelf = [] {
    };
    timer.Start();
    EXPECT_EQ(tick(timer, 29), 4);
    EXPECT_EQ(tick(timer, 1), 1) << "one run was left";
}

TEST(UTimer, CutsATimeBeyond32BitsForTheCountdown)
{
    int runs = 0;
    UTimer timer(countRun, &runs, (1LL << 32) + 500, -1, false);
    timer.Start();
    EXPECT_EQ(tick(timer, 499), 4);
    EXPECT_EQ(tick(timer, 1), 3);
    EXPECT_EQ(tick(timer, 499), 4);
}

TEST(UTimer, SurvivesAnyElapsedTime)
{
    int runs = 0;
    UTimer timer(countRun, &runs, 100, -1, false);
    timer.Start();
    EXPECT_EQ(tick(timer, std::numeric_limits<long long>::max()), 3);
    EXPECT_EQ(tick(timer, -50), 4);
    EXPECT_EQ(tick(timer, 149), 4) << "a tick back in time makes the wait longer";
    EXPECT_EQ(tick(timer, 1), 3);
    EXPECT_EQ(tick(timer, std::numeric_limits<long long>::min()), 4);
    EXPECT_EQ(runs, 2);
}

TEST(UTimer, LeavesIdentifierAndFlagToTheRuntime)
{
    int runs = 0;
    for (const bool flag : {false, true}) {
        UTimer timer(countRun, &runs, 100, 1, flag);
        timer.setTimeID(-7);
        timer.Start();
        EXPECT_EQ(tick(timer, 100), 1);
    }
    EXPECT_EQ(runs, 2);
}

TEST(UTimer, TellsTheWallClock)
{
    using std::chrono::system_clock;
    const auto now = [] {
        const auto sinceEpoch = system_clock::now().time_since_epoch();
        return std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count();
    };
    const long long before = now();
    const long long told = UTimer::MsecOfTime();
    const long long after = now();
    EXPECT_LE(before, told);
    EXPECT_LE(told, after);
}

TEST(UTimer, TellsTheWallClockWithoutBuildingADate)
{
    UTimer::MsecOfTime();
    const AllocationCounter allocations;
    UTimer::MsecOfTime();
    EXPECT_EQ(allocations.count(), 0);
}

TEST(MsecSleep, ReturnsAtOnceBelowOneMillisecond)
{
    bool eventHandled = false;
    QTimer::singleShot(0, [&] { eventHandled = true; });
    for (const int ms : {0, -1, std::numeric_limits<int>::min()})
        EXPECT_LT(millisecondsOf([ms] { UTimer::MsecSleep(ms); }), 1000.0);
    EXPECT_FALSE(eventHandled);
    QCoreApplication::processEvents();
    EXPECT_TRUE(eventHandled);
}

TEST(MsecSleep, NeverEndsEarly)
{
    for (int ms = 1; ms <= 20; ++ms)
        EXPECT_GE(millisecondsOf([ms] { UTimer::MsecSleep(ms); }), ms);
}

TEST(MsecSleep, EndsSoonAfterItsTime)
{
    // The machine may be busy: the best of some tries counts.
    double best = std::numeric_limits<double>::max();
    for (int attempt = 0; attempt < 10; ++attempt)
        best = qMin(best, millisecondsOf([] { UTimer::MsecSleep(20); }));
    EXPECT_LT(best, 40.0);
}

TEST(MsecSleep, KeepsTheEventLoopAlive)
{
    int ticks = 0;
    QTimer ticking;
    QObject::connect(&ticking, &QTimer::timeout, [&] { ++ticks; });
    ticking.start(10);
    UTimer::MsecSleep(300);
    EXPECT_GE(ticks, 3);
    EXPECT_LE(ticks, 31);
}

TEST(MsecSleep, NeverEndsEarlyUnderAFloodOfEvents)
{
    long handled = 0;
    QTimer flood;
    QObject::connect(&flood, &QTimer::timeout, [&] { ++handled; });
    flood.start(0);
    EXPECT_GE(millisecondsOf([] { UTimer::MsecSleep(100); }), 100.0);
    EXPECT_GT(handled, 10);
}

TEST(MsecSleep, WaitsInsteadOfSpinning)
{
    UTimer::MsecSleep(10); // what is set up once
    const double before = processorMilliseconds();
    UTimer::MsecSleep(1000);
    EXPECT_LT(processorMilliseconds() - before, 20.0) << "2 % of a core";
}

TEST(MsecSleep, SleepsInsideASleep)
{
    double inner = 0;
    QTimer::singleShot(10, [&] { inner = millisecondsOf([] { UTimer::MsecSleep(100); }); });
    const double outer = millisecondsOf([] { UTimer::MsecSleep(50); });
    EXPECT_GE(inner, 100.0);
    EXPECT_GE(outer, 100.0) << "the outer sleep cannot end before the inner one";
}

TEST(MsecSleep, SleepsOnAThreadWithoutEvents)
{
    double slept = 0;
    std::thread thread([&] { slept = millisecondsOf([] { UTimer::MsecSleep(30); }); });
    thread.join();
    EXPECT_GE(slept, 30.0);
}
