// What the scheduler's tick and the wall clock cost.

#include "bench/support/comparison.h"
#include "runtime/utimer.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QTimer>

#include <memory>
#include <vector>

using namespace panelkit::bench;

namespace {

const int timerCount = 1000;

void countRun(void *counter)
{
    ++*static_cast<int *>(counter);
}

// One tick of the runtime's scheduler; the answer is the number of callbacks that it ran.
class OurTick
{
public:
    explicit OurTick(long long elapsed) : m_elapsed(elapsed), m_runs(std::make_shared<int>(0))
    {
        for (int i = 0; i < timerCount; ++i) {
            m_timers.emplace_back(countRun, m_runs.get(), 1000, -1, false);
            m_timers.back().Start();
        }
    }

    void operator()(int &runs)
    {
        *m_runs = 0;
        for (UTimer &timer : m_timers)
            timer.doTask(m_elapsed);
        runs = *m_runs;
    }

private:
    long long m_elapsed;
    std::shared_ptr<int> m_runs;
    std::vector<UTimer> m_timers;
};

// The toolkit's timers, driven by its event loop.
class PlainTick
{
public:
    explicit PlainTick(int interval) : m_runs(std::make_shared<int>(0)), m_timers(new QTimer[timerCount])
    {
        for (int i = 0; i < timerCount; ++i) {
            QObject::connect(&m_timers[i], &QTimer::timeout, [runs = m_runs.get()] { ++*runs; });
            m_timers[i].setInterval(interval);
        }
    }

    void operator()(int &runs)
    {
        startOnce();
        *m_runs = 0;
        QCoreApplication::processEvents();
        runs = *m_runs;
    }

private:
    // The ways of a comparison exist side by side, but only one of them may have its timers in the loop.
    void startOnce()
    {
        if (m_running == m_timers.get())
            return;
        for (int i = 0; m_running != nullptr && i < timerCount; ++i)
            m_running[i].stop();
        for (int i = 0; i < timerCount; ++i)
            m_timers[i].start();
        m_running = m_timers.get();
    }

    static inline QTimer *m_running = nullptr;
    std::shared_ptr<int> m_runs;
    std::shared_ptr<QTimer[]> m_timers;
};

void plainMilliseconds(bool &isPlausible)
{
    isPlausible = QDateTime::currentDateTime().toMSecsSinceEpoch() > 0;
}

void ourMilliseconds(bool &isPlausible)
{
    isPlausible = UTimer::MsecOfTime() > 0;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    compare<bool>({"MsecOfTime", 50, 0}, plainMilliseconds, ourMilliseconds);
    compare<int>({"tick of 1,000 timers, all due", 0, 0}, PlainTick(0), OurTick(1000));
    return run(argc, argv);
}
