// Runs macros beside the thread that asks for them, so that none of them holds up a screen.
#pragma once

#include "simulator/host/itemmacros.h"
#include "simulator/lua/macroengine.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace panelkit::simulator {

// One after the other, in the order in which they were asked for.
class MacroWorker
{
public:
    struct Ended
    {
        MacroOwner owner;
        MacroResult result;
        QStringList printed;
    };

    // `registers` must be fit for another thread and live as long as this. `ended` is called in that thread.
    MacroWorker(MacroRegisters &registers, const MacroLimits &limits,
                std::function<void(const Ended &)> ended);

    // Drops what waits and stops what runs, which takes as long as the register that it has in hand.
    ~MacroWorker();
    MacroWorker(const MacroWorker &) = delete;
    MacroWorker &operator=(const MacroWorker &) = delete;

    void run(const MacroOwner &owner, const QString &name, const QString &text);

private:
    struct Job
    {
        MacroOwner owner;
        QString name;
        QString text;
    };

    void work();
    std::chrono::steady_clock::time_point now() const;

    const std::function<void(const Ended &)> m_ended;
    MacroEngine m_engine;
    std::atomic<bool> m_isStopping{false};
    std::mutex m_mutex; // of the jobs
    std::condition_variable m_wake;
    std::deque<Job> m_jobs;
    std::thread m_thread;
};

} // namespace panelkit::simulator
