#include "runtime/utimer.h"

#include "platform/qtcompat.h"

#include <QAbstractEventDispatcher>
#include <QDateTime>
#include <QElapsedTimer>
#include <QTimer>

#include <chrono>
#include <thread>

namespace {

const qint64 noCycle = -1;
const qint64 shortestCycle = 100; // milliseconds
const qint32 unlimited = -1;

enum Result
{
    NothingRun = 0,
    LastRun = 1,
    NoCallback = 2,
    MoreRunsFollow = 3,
    StillWaiting = 4
};

// The low 32 bits.
qint32 cut(quint64 milliseconds)
{
    return static_cast<qint32>(static_cast<quint32>(milliseconds));
}

} // namespace

UTimer::UTimer(void (*callback)(void *), void *arg, long long time, int count, bool flag)
    : m_callback(callback),
      m_callbackArg(arg),
      m_cycleTime(time == noCycle ? noCycle : qMax<qint64>(time, shortestCycle)),
      m_repeatCount(count),
      m_state(NotRunning),
      m_countdown(0),
      m_runsLeft(count),
      m_timeID(0),
      m_flag(flag)
{
    reload();
}

UTimer::~UTimer() = default;

void UTimer::Start()
{
    m_state = Running;
}

void UTimer::Pause()
{
    m_state = NotRunning;
}

void UTimer::Stop()
{
    m_state = NotRunning;
    m_runsLeft = m_repeatCount;
    reload();
}

void UTimer::setCycleTime(int milliseconds)
{
    m_cycleTime = milliseconds;
}

void UTimer::setTimeID(int id)
{
    m_timeID = id;
}

void UTimer::setDelayCB(void *callback)
{
    m_callback = reinterpret_cast<void (*)(void *)>(callback);
}

void *UTimer::getDelayCB()
{
    return reinterpret_cast<void *>(m_callback);
}

int UTimer::doTask(long long &elapsed)
{
    if (elapsed < m_countdown) {
        if (m_state != Running)
            return NothingRun;
        m_countdown = cut(static_cast<quint64>(m_countdown) - static_cast<quint64>(elapsed));
        return StillWaiting;
    }
    if (m_state != Running)
        return NothingRun;
    if (m_callback == nullptr)
        return NoCallback;
    if (m_runsLeft == unlimited) {
        m_callback(m_callbackArg);
        reload();
        return MoreRunsFollow;
    }
    if (m_runsLeft <= 0) {
        reload();
        return NothingRun;
    }
    m_callback(m_callbackArg);
    const bool last = --m_runsLeft == 0;
    if (last)
        Stop();
    reload();
    return last ? LastRun : MoreRunsFollow;
}

int UTimer::doTaskNow()
{
    if (m_callback == nullptr)
        return NoCallback;
    m_callback(m_callbackArg);
    reload();
    if (m_runsLeft == unlimited)
        return MoreRunsFollow;
    if (m_runsLeft <= 0)
        return NothingRun;
    if (--m_runsLeft > 0)
        return MoreRunsFollow;
    Stop();
    return LastRun;
}

void UTimer::reload()
{
    m_countdown = cut(static_cast<quint64>(m_cycleTime));
}

long long UTimer::MsecOfTime()
{
    return QDateTime::currentMSecsSinceEpoch();
}

void UTimer::MsecSleep(int ms)
{
    QAbstractEventDispatcher *const events = QAbstractEventDispatcher::instance();
    if (events == nullptr) {
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
        return;
    }
    // Waiting for more events ends only with an event: the timer makes sure of one when the time is over.
    QElapsedTimer spent;
    spent.start();
    QTimer wakeUp;
    panelkit::setPrecise(wakeUp);
    for (qint64 left = ms; left > 0; left = ms - spent.elapsed()) {
        wakeUp.start(static_cast<int>(left));
        events->processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
}
