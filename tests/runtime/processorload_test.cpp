#include "runtime/systemfigures.h"
#include "runtime/systeminfo.h"
#include "runtime/systemroot.h"
#include "tests/support/panelroot.h"

#include <QString>

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <ctime>
#include <unistd.h>

using panelkit::testing::PanelRoot;

namespace {

using Counters = std::array<quint32, 10>;

const quint32 untouched = 7777;

cpu_info sampleOf(const Counters &counters)
{
    cpu_info sample = {};
    std::memcpy(&sample.user, counters.data(), sizeof(counters));
    return sample;
}

Counters countersOf(const cpu_info &sample)
{
    return {sample.user, sample.nice,    sample.system, sample.idle,  sample.iowait,
            sample.irq,  sample.softirq, sample.steal,  sample.guest, sample.guestNice};
}

// A record whose name and counters show whether they have been written.
cpu_info markedSample()
{
    cpu_info sample = sampleOf({untouched, untouched, untouched, untouched, untouched, untouched, untouched,
                                untouched, untouched, untouched});
    std::strcpy(sample.cpuName, "none");
    sample.firstCall = 1;
    return sample;
}

class ProcessorLoad : public ::testing::Test
{
protected:
    ~ProcessorLoad() override { tools_setSystemRoot(QString()); }

    // Puts the file "/proc/stat" of that name in place.
    void standAt(const char *name)
    {
        tools_setSystemRoot(QLatin1String(PANELKIT_TEST_DATA "/procstat/") + QLatin1String(name));
    }
};

} // namespace

TEST(ProcessorLine, IsReadFromItsBeginOn)
{
    const char text[] = "no  cpu 1 2 3";
    cpu_info sample = {};
    panelkit::parseProcessorLine(text + 2, sample);
    EXPECT_STREQ(sample.cpuName, "cpu");
    EXPECT_EQ(sample.user, 1U);
    EXPECT_EQ(sample.system, 3U);
}

TEST_F(ProcessorLoad, SampleHoldsWhatTheKernelGives)
{
    const quint32 u = untouched;
    const struct
    {
        const char *name;
        const char *cpuName;
        Counters counters;
    } rows[] = {
        {"linux-2.4", "cpu", {59372, 1204, 18221, 4719203, u, u, u, u, u, u}},
        {"linux-2.6.0", "cpu", {10132153, 290696, 3084719, 46828483, 16683, 0, 25195, u, u, u}},
        {"linux-2.6.11", "cpu", {46828, 0, 16683, 1208393, 2215, 195, 1175, 6, u, u}},
        {"linux-2.6.24", "cpu", {357, 12, 224, 9031, 41, 3, 17, 8, 5, u}},
        {"linux-2.6.33", "cpu", {357, 12, 224, 9031, 41, 3, 17, 8, 5, 2}},
        {"half-before", "cpu", {9627, 2479, 5759, 386609, 585, 0, 78, 42, 0, 0}},
        {"later-columns", "cpu", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
        {"beyond-32-bits", "cpu", {4294967295u, 0, 5, 0, 4294967295u, 0, 0, 0, 0, 0}},
        {"empty", "none", {u, u, u, u, u, u, u, u, u, u}},
        {"blank-lines", "none", {u, u, u, u, u, u, u, u, u, u}},
        {"no-numbers", "cpu", {u, u, u, u, u, u, u, u, u, u}},
        {"text-in-the-middle", "cpu", {11, 12, u, u, u, u, u, u, u, u}},
        {"no-line-end", "cpu", {21, 22, 23, u, u, u, u, u, u, u}},
        {"nul-in-the-line", "cpu", {61, 62, u, u, u, u, u, u, u, u}},
        {"long-name", "averylongpr", {u, u, u, u, u, u, u, u, u, u}},
        {"line-beyond-the-buffer", "cpu", {41, 42, 43, 445, u, u, u, u, u, u}}, // cut behind 2047 characters
        {"one-endless-line", "cpu", {51, 52, 53, 54, 55, 56, 57, 58, 59, 60}},
        {"rubbish", "\xff\xfe\xfd\xfc\xfb\xfa\xf9\xf8\xf7\xf6\xf5", {u, u, u, u, u, u, u, u, u, u}},
        {"there-is-no-such-file", "none", {u, u, u, u, u, u, u, u, u, u}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        standAt(row.name);
        cpu_info sample = markedSample();
        get_occupy(&sample);
        EXPECT_STREQ(sample.cpuName, row.cpuName);
        EXPECT_EQ(countersOf(sample), row.counters);
        EXPECT_EQ(sample.firstCall, 1);
    }
}

TEST_F(ProcessorLoad, SampleOfADirectoryOrOfNoRecordIsNone)
{
    const PanelRoot root;
    ASSERT_TRUE(QDir().mkpath(root.path("/proc/stat")));
    cpu_info sample = markedSample();
    get_occupy(&sample);
    EXPECT_STREQ(sample.cpuName, "none");
    get_occupy(nullptr);
}

TEST_F(ProcessorLoad, OfEqualSumsIsZero)
{
    cpu_info sample = sampleOf({9, 8, 7, 6, 5, 4, 3, 2, 1, 1});
    cpu_info other = sample;
    EXPECT_EQ(cal_occupy(&sample, &other), 0.0f);
}

TEST_F(ProcessorLoad, IsTheShareThatWasNotIdle)
{
    const struct
    {
        const char *name;
        Counters older, newer;
        float load;
    } rows[] = {
        {"a quarter", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, {25, 0, 0, 75, 0, 0, 0, 0, 0, 0}, 25.0f},
        {"all idle", {9, 9, 9, 9, 9, 9, 9, 9, 9, 9}, {9, 9, 9, 19, 9, 9, 9, 9, 9, 9}, 0.0f},
        {"all busy", {9, 9, 9, 9, 9, 9, 9, 9, 9, 9}, {10, 10, 10, 9, 10, 10, 10, 10, 10, 10}, 100.0f},
        {"waiting for a device is busy",
         {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         {0, 0, 0, 50, 50, 0, 0, 0, 0, 0},
         50.0f},
        {"every column counts",
         {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         {1, 2, 4, 489, 16, 32, 64, 128, 256, 8},
         51.1f},
        {"a third", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, {1, 0, 0, 2, 0, 0, 0, 0, 0, 0}, 33.333332f},
        // Idle passes 2 to the power 32: 4294967290 to 10 are 16 ticks.
        {"a counter that wraps",
         {0, 0, 0, 4294967290u, 0, 0, 0, 0, 0, 0},
         {4, 0, 0, 10, 0, 0, 0, 0, 0, 0},
         20.0f},
        // The total is taken as signed: 3000000000 ticks are -1294967296.
        {"a total beyond 31 bits",
         {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         {3000000000u, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         -231.66608f},
        // Equal sums, 10 more busy ticks, divided by 1.
        {"equal sums, other ticks",
         {0, 0, 0, 10, 0, 0, 0, 0, 0, 0},
         {10, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         1000.0f},
        // Busy time that ran back by 5 is 4294967291, over 95 ticks.
        {"iowait corrected",
         {0, 0, 0, 100, 50, 0, 0, 0, 0, 0},
         {0, 0, 0, 200, 45, 0, 0, 0, 0, 0},
         4521018201.05f},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        cpu_info older = sampleOf(row.older);
        cpu_info newer = sampleOf(row.newer);
        EXPECT_FLOAT_EQ(cal_occupy(&older, &newer), row.load);
    }
}

TEST_F(ProcessorLoad, OfNoSampleIsZero)
{
    cpu_info sample = {};
    EXPECT_EQ(cal_occupy(nullptr, &sample), 0.0f);
    EXPECT_EQ(cal_occupy(&sample, nullptr), 0.0f);
}

TEST_F(ProcessorLoad, FirstCallPrimesTheRecordAndGivesZero)
{
    standAt("full-after");
    cpu_info info = markedSample();
    EXPECT_EQ(tools_get_cpu_info(info), 0.0f);
    EXPECT_EQ(info.firstCall, 0);
    EXPECT_EQ(info.user, 9627u);
    EXPECT_EQ(info.idle, 386608u);
}

// Recorded on a machine with two processors, two seconds apart, with one program that never waits, then with
// two.
TEST_F(ProcessorLoad, OfRecordedSamplesIsTheLoadThatWasMade)
{
    const struct
    {
        const char *before;
        const char *after;
        float load;
    } rows[] = {
        {"half-before", "half-after", 50.375940f}, // 201 of 399 ticks
        {"full-before", "full-after", 100.0f},     // 401 of 401 ticks
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.before);
        cpu_info info = {};
        info.firstCall = 1;
        standAt(row.before);
        EXPECT_EQ(tools_get_cpu_info(info), 0.0f);
        standAt(row.after);
        EXPECT_FLOAT_EQ(tools_get_cpu_info(info), row.load);
        EXPECT_EQ(tools_get_cpu_info(info), 0.0f) << "nothing has passed since";
    }
}

// Whatever else the machine does, the time that this thread has used cannot be missing from the figure.
TEST_F(ProcessorLoad, OfThisMachineHoldsTheTimeThatWasUsed)
{
    cpu_info info = {};
    info.firstCall = 1;
    tools_get_cpu_info(info);
    const cpu_info before = info;

    const std::clock_t start = std::clock();
    const std::clock_t used = CLOCKS_PER_SEC / 2;
    while (std::clock() - start < used) {
    }

    const float load = tools_get_cpu_info(info);
    quint32 ticks = 0;
    for (std::size_t i = 0; i < 10; ++i)
        ticks += countersOf(info)[i] - countersOf(before)[i];
    const double busySeconds =
        static_cast<double>(load) / 100 * ticks / static_cast<double>(sysconf(_SC_CLK_TCK));
    EXPECT_GT(busySeconds, 0.4);
    EXPECT_LE(load, 100.0f);
}
