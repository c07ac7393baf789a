// The thread of one link: it polls what is watched, and carries out writes and direct reads in between.
#pragma once

#include "simulator/comm/linkparameters.h"
#include "simulator/comm/linkstate.h"
#include "simulator/comm/modbusclient.h"
#include "simulator/comm/pollplan.h"
#include "simulator/comm/recovery.h"
#include "simulator/comm/watchlist.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

namespace panelkit::simulator {

struct LinkTiming
{
    RetryPauses pauses;
    std::chrono::milliseconds forgetAfter{10'000}; // an address that nobody reads for so long is let go
};

// Works from construction to destruction, which interrupts whatever is waited for. Every operation may be
// called from any thread.
class LinkWorker
{
public:
    LinkWorker(const LinkParameters &parameters, const LinkTiming &timing);
    ~LinkWorker();
    LinkWorker(const LinkWorker &) = delete;
    LinkWorker &operator=(const LinkWorker &) = delete;

    // Connects anew, with these. Values are missing until they have been read there.
    void setParameters(const LinkParameters &parameters);

    // Copies the values that were read last; false, with nothing copied, when they are missing. What was not
    // watched is from now on, and its first value is waited for unless the station is away: all such waits
    // together take one time-out at most, and one more for each time-out that has passed since.
    bool readLatest(const ModbusSpan &span, void *words);
    bool watch(const ModbusSpan &span); // the same without a wait; false where readLatest would wait

    // Carried out in the order of the calls, before the polls that are still to come. The caller waits for
    // one time-out at most.
    TransferResult readNow(const ModbusSpan &span, void *words);
    TransferResult write(const ModbusSpan &span, const void *words);

    LinkState state() const;

    // Waits until the state satisfies `condition`; false when it has not after `timeout`.
    bool waitFor(const std::function<bool(const LinkState &)> &condition,
                 std::chrono::milliseconds timeout) const;

private:
    using Clock = std::chrono::steady_clock;
    using Lock = std::unique_lock<std::mutex>;

    struct Job
    {
        enum class Stage
        {
            Queued,
            Running,
            Finished
        };

        ModbusSpan span;
        std::vector<std::uint16_t> words; // to write; none: to read
        std::vector<std::uint16_t> registers;
        Stage stage = Stage::Queued;
        TransferResult result;
    };

    // For callers, with the lock held.
    Watch &watched(const RegisterRange &range);
    void waitForFirstValue(Lock &lock, Watch &watch);
    LinkState currentState() const;

    TransferResult carryOut(const std::shared_ptr<Job> &job);

    // Of the worker's thread, with the lock held; those that are given the lock let go of it meanwhile.
    void run();
    bool isCalled() const;
    void takeParameters();
    void runJob(Lock &lock);
    bool pollDue(Lock &lock);
    void poll(Lock &lock, const PollRequest &request, const std::vector<Watch *> &watches);
    void rest(Lock &lock);
    Clock::time_point nextTurn(Clock::time_point now) const;
    void startRound(Clock::time_point now);
    bool isAway(int unit) const;
    bool mayAsk(int unit, Clock::time_point now) const;
    TransferResult transact(Lock &lock, int unit, const std::function<TransferResult()> &work);
    void noteFailure(int unit, const TransferResult &failure, bool isOfConnection);

    TransferResult execute(Job &job); // without the lock

    const LinkTiming m_timing;
    ModbusClient m_client;       // of the worker's thread, but for interrupt
    LinkParameters m_parameters; // as the worker's thread uses them

    mutable std::mutex m_mutex;                // of all that follows
    mutable std::condition_variable m_changed; // there is news for callers
    std::condition_variable m_wake;            // there is something to do for the worker
    bool m_isStopping = false;

    LinkParameters m_newParameters; // as they were set last
    bool m_areParametersNew = false;

    std::deque<std::shared_ptr<Job>> m_jobs;

    WatchList m_watches;
    bool m_areWatchesNew = false;
    bool m_isRoundOpen = false;
    Clock::time_point m_nextRound;

    Recovery m_connection;
    std::map<int, Recovery> m_stations; // those that have been asked
    bool m_hasAnswered = false;
    LinkState m_counted; // the counters of the state, and its last failure

    std::chrono::milliseconds m_patience; // how long callers may still wait for first values
    Clock::time_point m_patienceTaken;    // when that was so

    std::thread m_thread;
};

} // namespace panelkit::simulator
