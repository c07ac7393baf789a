#include "simulator/host/macroworker.h"
#include "tests/simulator/lua/memoryregisters.h"

#include <gtest/gtest.h>

#include <vector>

using namespace panelkit::simulator;
using panelkit::testing::MemoryRegisters;

namespace {

class MacroWorkerTest : public ::testing::Test
{
protected:
    // Limits that no test lives to see.
    static MacroLimits endless()
    {
        MacroLimits limits;
        limits.instructions = 1'000'000'000'000;
        limits.time = std::chrono::hours(1);
        return limits;
    }

    std::function<void(const MacroWorker::Ended &)> keep()
    {
        return [this](const MacroWorker::Ended &one) {
            {
                const std::lock_guard<std::mutex> lock(m_mutex);
                m_ended.push_back(one);
            }
            m_news.notify_one();
        };
    }

    // The first `count` that have ended, waited for.
    std::vector<MacroWorker::Ended> ended(std::size_t count)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        EXPECT_TRUE(m_news.wait_for(lock, std::chrono::seconds(60), [&] { return m_ended.size() >= count; }));
        return m_ended;
    }

    MemoryRegisters registers;

private:
    std::mutex m_mutex;
    std::condition_variable m_news;
    std::vector<MacroWorker::Ended> m_ended;
};

} // namespace

TEST_F(MacroWorkerTest, RunsMacrosInTheOrderOfTheRequests)
{
    MacroWorker worker(registers, MacroLimits(), keep());
    for (std::size_t item = 0; item < 5; ++item)
        worker.run({item, ITEM_MACRO_RELEASE}, QStringLiteral("item"), QStringLiteral("local x = 1"));
    const auto all = ended(5);
    ASSERT_EQ(all.size(), 5u);
    for (std::size_t item = 0; item < 5; ++item) {
        EXPECT_EQ(all[item].owner.item, item);
        EXPECT_EQ(all[item].owner.type, ITEM_MACRO_RELEASE);
        EXPECT_TRUE(all[item].result.isDone());
    }
}

TEST_F(MacroWorkerTest, TellsOfFailuresAndOfWhatWasPrinted)
{
    MacroWorker worker(registers, MacroLimits(), keep());
    worker.run({}, QStringLiteral("item"), QStringLiteral("print('one')\nerror('two')"));
    worker.run({}, QStringLiteral("item"), QStringLiteral("print('three')"));
    const auto all = ended(2);
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0].result.outcome, MacroOutcome::Failed);
    EXPECT_EQ(all[0].result.message.toStdString(), "two");
    EXPECT_EQ(all[0].printed, QStringList(QStringLiteral("one")));
    EXPECT_EQ(all[1].printed, QStringList(QStringLiteral("three")));
}

TEST_F(MacroWorkerTest, StopsWhatRunsAndDropsWhatWaitsWhenItGoes)
{
    {
        MacroWorker worker(registers, endless(), keep());
        worker.run({}, QStringLiteral("item"), QStringLiteral("local x = 1"));
        ended(1);
        worker.run({}, QStringLiteral("item"), QStringLiteral("while true do end"));
        worker.run({}, QStringLiteral("item"), QStringLiteral("local x = 2"));
    }
    EXPECT_EQ(ended(1).size(), 1u);
}
