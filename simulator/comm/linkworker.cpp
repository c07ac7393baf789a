#include "simulator/comm/linkworker.h"

#include <modbus.h>

#include <signal.h>

#include <algorithm>
#include <cstring>

namespace panelkit::simulator {

namespace {

// However many writes there are, values stay fresh.
constexpr int jobsBeforeAPoll = 10;

// Whether a refusal may be for the sake of one of the registers that were asked for.
bool isOfARegister(const TransferResult &result)
{
    return result.status == TransferStatus::Refused &&
           (result.detail == MODBUS_EXCEPTION_ILLEGAL_DATA_ADDRESS ||
            result.detail == MODBUS_EXCEPTION_ILLEGAL_DATA_VALUE);
}

} // namespace

LinkWorker::LinkWorker(const LinkParameters &parameters, const LinkTiming &timing)
    : m_timing(timing),
      m_parameters(parameters),
      m_newParameters(parameters),
      m_patience(parameters.timeout),
      m_patienceTaken(Clock::now()),
      m_thread([this] { run(); })
{
}

LinkWorker::~LinkWorker()
{
    {
        const Lock lock(m_mutex);
        m_isStopping = true;
    }
    m_wake.notify_one();
    m_client.interrupt();
    m_thread.join();
}

void LinkWorker::setParameters(const LinkParameters &parameters)
{
    const Lock lock(m_mutex);
    m_newParameters = parameters;
    m_areParametersNew = true;
    m_connection = Recovery();
    m_stations.clear();
    m_hasAnswered = false;
    m_watches.forgetValues();
    m_wake.notify_one();
    m_changed.notify_all();
}

bool LinkWorker::readLatest(const ModbusSpan &span, void *words)
{
    Lock lock(m_mutex);
    Watch &watch = watched(span.range);
    if (watch.value == Watch::Value::Pending)
        waitForFirstValue(lock, watch);
    if (watch.value != Watch::Value::Fresh)
        return false;
    unpackWords(span, watch.registers.data(), words);
    return true;
}

bool LinkWorker::watch(const ModbusSpan &span)
{
    const Lock lock(m_mutex);
    return watched(span.range).value != Watch::Value::Pending;
}

// The watch of that range, marked as read. A new one is asked for at once, unless a pause is on.
Watch &LinkWorker::watched(const RegisterRange &range)
{
    Watch *watch = m_watches.find(range);
    if (watch == nullptr) {
        const Clock::time_point now = Clock::now();
        if (m_watches.isEmpty())
            m_nextRound = now + m_newParameters.interval;
        watch = &m_watches.add(range, now);
        if (isAway(range.unit))
            watch->value = Watch::Value::Missing;
        m_areWatchesNew = true;
        m_wake.notify_one();
    }
    watch->wasRead = true;
    return *watch;
}

void LinkWorker::waitForFirstValue(Lock &lock, Watch &watch)
{
    const auto start = Clock::now();
    const auto earned = std::chrono::floor<std::chrono::milliseconds>(start - m_patienceTaken);
    m_patience = std::min(m_patience + earned, m_newParameters.timeout);
    m_patienceTaken = start;
    ++watch.waiting;
    m_changed.wait_for(lock, m_patience, [&] { return watch.value != Watch::Value::Pending; });
    --watch.waiting;
    const auto end = Clock::now();
    m_patience -= std::min(m_patience, std::chrono::ceil<std::chrono::milliseconds>(end - start));
    m_patienceTaken = end;
}

TransferResult LinkWorker::readNow(const ModbusSpan &span, void *words)
{
    const auto job = std::make_shared<Job>();
    job->span = span;
    const TransferResult result = carryOut(job);
    if (result)
        unpackWords(span, job->registers.data(), words);
    return result;
}

TransferResult LinkWorker::write(const ModbusSpan &span, const void *words)
{
    const auto job = std::make_shared<Job>();
    job->span = span;
    job->words.resize(static_cast<std::size_t>(span.wordCount));
    std::memcpy(job->words.data(), words, job->words.size() * sizeof(std::uint16_t));
    return carryOut(job);
}

TransferResult LinkWorker::carryOut(const std::shared_ptr<Job> &job)
{
    Lock lock(m_mutex);
    m_jobs.push_back(job);
    m_wake.notify_one();
    m_changed.wait_for(lock, m_newParameters.timeout, [&] { return job->stage == Job::Stage::Finished; });
    if (job->stage == Job::Stage::Finished)
        return job->result;
    if (job->stage == Job::Stage::Running)
        return {TransferStatus::TimedOut};
    m_jobs.erase(std::find(m_jobs.begin(), m_jobs.end(), job));
    return {TransferStatus::NotSent};
}

LinkState LinkWorker::state() const
{
    const Lock lock(m_mutex);
    return currentState();
}

bool LinkWorker::waitFor(const std::function<bool(const LinkState &)> &condition,
                         std::chrono::milliseconds timeout) const
{
    Lock lock(m_mutex);
    return m_changed.wait_for(lock, timeout, [&] { return condition(currentState()); });
}

LinkState LinkWorker::currentState() const
{
    LinkState state = m_counted;
    state.isAskedFor = !m_watches.isEmpty() || !m_jobs.empty();
    for (const auto &[unit, station] : m_stations)
        if (station.isAway())
            state.awayStations.push_back(unit);
    if (m_connection.isAway() || (!m_stations.empty() && state.awayStations.size() == m_stations.size()))
        state.condition = LinkCondition::Away;
    else if (!state.awayStations.empty())
        state.condition = LinkCondition::Disturbed;
    else
        state.condition = m_hasAnswered ? LinkCondition::Connected : LinkCondition::Idle;
    return state;
}

void LinkWorker::run()
{
    // Signals are for the threads of the program that has this one for its use.
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, nullptr);

    Lock lock(m_mutex);
    int jobsInARow = 0;
    while (!m_isStopping) {
        if (m_areParametersNew) {
            takeParameters();
        } else if (!m_jobs.empty() && jobsInARow < jobsBeforeAPoll) {
            ++jobsInARow;
            runJob(lock);
        } else {
            jobsInARow = 0;
            if (!pollDue(lock)) {
                rest(lock);
                pollDue(lock); // before any job that has come meanwhile
            }
        }
    }
}

bool LinkWorker::isCalled() const
{
    return m_isStopping || m_areParametersNew || !m_jobs.empty() || m_areWatchesNew;
}

void LinkWorker::takeParameters()
{
    m_areParametersNew = false;
    m_parameters = m_newParameters;
    m_client.disconnect();
}

void LinkWorker::runJob(Lock &lock)
{
    const std::shared_ptr<Job> job = m_jobs.front();
    m_jobs.pop_front();
    job->stage = Job::Stage::Running;
    job->result = transact(lock, job->span.range.unit, [&] { return execute(*job); });
    job->stage = Job::Stage::Finished;
    if (job->result && !job->words.empty())
        m_watches.makeDue(job->span.range);
    m_changed.notify_all();
}

TransferResult LinkWorker::execute(Job &job)
{
    const RegisterRange &range = job.span.range;
    job.registers.resize(static_cast<std::size_t>(range.count));
    if (job.words.empty() || job.span.isInWord) {
        const TransferResult result = m_client.read(range, job.registers.data());
        if (!result || job.words.empty())
            return result;
    }
    packWords(job.span, job.words.data(), job.registers.data());
    return m_client.write(range, job.registers.data());
}

// Polls what is due, until that is done or something else calls. Returns false when nothing was due.
bool LinkWorker::pollDue(Lock &lock)
{
    m_areWatchesNew = false;
    const Clock::time_point now = Clock::now();
    const std::vector<Watch *> watches = m_watches.due([&](int unit) { return mayAsk(unit, now); });
    if (watches.empty())
        return false;
    std::vector<PollRange> ranges;
    ranges.reserve(watches.size());
    for (const Watch *watch : watches)
        ranges.push_back({watch->range, watch->isAlone});
    lock.unlock(); // callers read on; the watches stay, since it is only this thread that drops them
    const std::vector<PollRequest> requests = planPolls(ranges, m_parameters.largestGap);
    lock.lock();
    for (const PollRequest &request : requests) {
        if (m_isStopping || m_areParametersNew)
            break;
        poll(lock, request, watches);
        if (isCalled())
            break;
    }
    return true;
}

void LinkWorker::poll(Lock &lock, const PollRequest &request, const std::vector<Watch *> &watches)
{
    std::vector<std::uint16_t> registers(static_cast<std::size_t>(request.range.count));
    const TransferResult result =
        transact(lock, request.range.unit, [&] { return m_client.read(request.range, registers.data()); });
    if (m_areParametersNew)
        return; // what came is of the past
    for (const std::size_t number : request.served) {
        Watch &watch = *watches[number];
        if (result) {
            const auto begin = registers.begin() + (watch.range.first - request.range.first);
            std::copy_n(begin, watch.range.count, watch.registers.begin());
            watch.value = Watch::Value::Fresh;
            watch.isDue = false;
        } else if (isOfARegister(result) && request.served.size() > 1) {
            watch.isAlone = true; // which of them is the wrong one shows when each is asked alone
        } else if (result.status == TransferStatus::Refused) {
            watch.value = Watch::Value::Missing;
            watch.isDue = false;
        }
    }
    m_counted.polls += static_cast<bool>(result);
    m_changed.notify_all();
}

// Ends the round, and waits until there is something to do.
void LinkWorker::rest(Lock &lock)
{
    if (m_isRoundOpen) {
        m_isRoundOpen = false;
        ++m_counted.rounds;
        m_changed.notify_all();
    }
    const auto called = [this] {
        return isCalled();
    };
    if (m_watches.isEmpty()) {
        m_wake.wait(lock, called);
        return;
    }
    m_wake.wait_until(lock, nextTurn(Clock::now()), called);
    if (const Clock::time_point now = Clock::now(); now >= m_nextRound)
        startRound(now);
}

// When there is something to do unasked: the next round, or the end of a pause.
LinkWorker::Clock::time_point LinkWorker::nextTurn(Clock::time_point now) const
{
    Clock::time_point next = m_nextRound;
    const auto consider = [&](const Recovery &recovery) {
        if (!recovery.mayTry(now))
            next = std::min(next, recovery.nextTry());
    };
    consider(m_connection);
    for (const auto &[unit, station] : m_stations)
        consider(station);
    return next;
}

void LinkWorker::startRound(Clock::time_point now)
{
    m_nextRound = std::max(m_nextRound + m_parameters.interval, now);
    m_isRoundOpen = true;
    const std::set<int> units = m_watches.startRound(now, m_timing.forgetAfter);
    for (auto station = m_stations.begin(); station != m_stations.end();) {
        const bool isForgotten = units.count(station->first) == 0 && station->second.mayTry(now);
        station = isForgotten ? m_stations.erase(station) : std::next(station);
    }
}

bool LinkWorker::isAway(int unit) const
{
    const auto station = m_stations.find(unit);
    return m_connection.isAway() || (station != m_stations.end() && station->second.isAway());
}

bool LinkWorker::mayAsk(int unit, Clock::time_point now) const
{
    const auto station = m_stations.find(unit);
    return m_connection.mayTry(now) && (station == m_stations.end() || station->second.mayTry(now));
}

// Has `work` done on the connection, which is made first where there is none.
TransferResult LinkWorker::transact(Lock &lock, int unit, const std::function<TransferResult()> &work)
{
    if (!mayAsk(unit, Clock::now()))
        return {TransferStatus::Away};
    lock.unlock();
    const bool wasConnected = m_client.isConnected();
    TransferResult result;
    if (!wasConnected)
        result = m_client.connect(m_parameters.host, m_parameters.port, m_parameters.timeout);
    const bool isConnected = static_cast<bool>(result);
    if (isConnected)
        result = work();
    lock.lock();

    if (m_areParametersNew)
        return result;
    if (isConnected && !wasConnected) {
        m_connection.answered();
        m_watches.joinAll();
    }
    if (result || result.status == TransferStatus::Refused) {
        m_stations[unit].answered();
        m_hasAnswered = true;
    } else if (result.status != TransferStatus::Stopped) {
        noteFailure(unit, result, !isConnected);
    }
    if (result.status == TransferStatus::Refused) {
        ++m_counted.refusals;
        m_counted.lastRefusal = result;
    }
    return result;
}

void LinkWorker::noteFailure(int unit, const TransferResult &failure, bool isOfConnection)
{
    ++m_counted.failures;
    m_counted.lastFailure = failure;
    const Clock::time_point now = Clock::now();
    Recovery &failed = isOfConnection ? m_connection : m_stations[unit];
    failed.failed(now, m_parameters.retries, m_timing.pauses);
    if (m_connection.isAway())
        m_watches.failAll();
    else if (failed.isAway())
        m_watches.fail(unit);
}

} // namespace panelkit::simulator
