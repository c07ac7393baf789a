#include "simulator/host/macroworker.h"

namespace panelkit::simulator {

MacroWorker::MacroWorker(MacroRegisters &registers, const MacroLimits &limits,
                         std::function<void(const Ended &)> ended)
    : m_ended(std::move(ended)),
      m_engine(registers, limits, [this] { return now(); }),
      m_thread([this] { work(); })
{
}

MacroWorker::~MacroWorker()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isStopping = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

// The engine's clock. Time is over for a macro that still runs when the worker goes.
std::chrono::steady_clock::time_point MacroWorker::now() const
{
    return m_isStopping ? std::chrono::steady_clock::time_point::max() : std::chrono::steady_clock::now();
}

void MacroWorker::run(const MacroOwner &owner, const QString &name, const QString &text)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_jobs.push_back({owner, name, text});
    }
    m_wake.notify_one();
}

void MacroWorker::work()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_isStopping || !m_jobs.empty(); });
        if (m_isStopping)
            return;
        const Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        lock.unlock();
        Ended ended;
        ended.owner = job.owner;
        m_engine.setOutput([&ended](const QString &line) { ended.printed << line; });
        ended.result = m_engine.run(job.name, job.text);
        if (!m_isStopping)
            m_ended(ended);
        lock.lock();
    }
}

} // namespace panelkit::simulator
