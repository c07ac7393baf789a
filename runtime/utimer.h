// The runtime's software timer, the wall clock, and a wait that keeps the event loop alive.
#pragma once

#include "platform/export.h"

#include <QtGlobal>

// A passive timer: it owns no thread and no system timer. The runtime's scheduler calls doTask on each tick
// with the time that has passed, and the timer decides whether its callback is due. It has no lock: its owner
// calls it from one thread. The callback may call any operation of its timer, but must not delete it.
class PANELKIT_EXPORT UTimer
{
public:
    // A new timer does not run until Start. `time` is the cycle in milliseconds: -1 means none, so that the
    // timer is due on every tick; any other value below 100 counts as 100. `count` is the number of runs, -1
    // means for ever. `arg` is handed to the callback; `flag` is kept for the runtime and never read here.
    UTimer(void (*callback)(void *), void *arg, long long time, int count, bool flag);
    virtual ~UTimer();

    void Start();
    void Pause(); // keeps the time that is left and the runs that are left
    void Stop();  // the next Start begins the whole series anew

    // Takes effect when the countdown is next reloaded. Unlike the constructor it has no lower limit.
    void setCycleTime(int milliseconds);
    void setTimeID(int id);          // an identifier for the runtime's use
    void setDelayCB(void *callback); // a void (*)(void *), or null for none
    void *getDelayCB();

    // One tick, `elapsed` milliseconds after the last; the argument is only read. Returns
    //   0  nothing was run: the timer does not run, or has no runs left
    //   1  the callback was run for the last time, and the timer has stopped itself
    //   2  the timer is due and has no callback
    //   3  the callback was run, and more runs follow
    //   4  still waiting
    int doTask(long long &elapsed);

    // Runs the callback at once, whether the timer runs or not, and begins a new cycle. Returns as doTask;
    // with no runs left the callback has been run all the same, and the result is 0.
    int doTaskNow();

    // The wall clock in milliseconds since the start of 1970, UTC.
    static long long MsecOfTime();

    // Handles the events of the calling thread until at least `ms` milliseconds have passed, and sleeps while
    // there are none. Returns at once when `ms` is below 1. On a thread without an event dispatcher it only
    // sleeps.
    static void MsecSleep(int ms);

private:
    enum State : qint32
    {
        NotRunning = 0,
        Running = 3
    };

    void reload();

    void (*m_callback)(void *);
    void *m_callbackArg;
    qint64 m_cycleTime; // milliseconds; -1 means no cycle
    qint32 m_repeatCount;
    State m_state;
    qint32 m_countdown; // milliseconds until the next run
    qint32 m_runsLeft;  // -1 means without limit
    qint64 m_timeID;
    bool m_flag;
};
