// What is watched on a link, with the values that were read last.
#pragma once

#include "simulator/comm/modbusaddress.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <set>
#include <unordered_map>
#include <vector>

namespace panelkit::simulator {

// A range that is read again and again.
struct Watch
{
    using Time = std::chrono::steady_clock::time_point;

    enum class Value
    {
        Pending, // not asked for yet
        Fresh,   // `registers` are what the PLC answered last
        Missing  // the PLC did not answer, or refused
    };

    RegisterRange range;
    Value value = Value::Pending;
    std::vector<std::uint16_t> registers;
    bool isDue = true;    // to be asked for as soon as may be
    bool isAlone = false; // was refused together with others
    bool wasRead = true;  // by a caller, since the last round began
    int waiting = 0;      // callers that wait for the first value; it is not dropped meanwhile
    Time lastRead;        // the begin of the last round that saw it read
};

// Not locked; its owner does that. Watches keep their place until a round drops them.
class WatchList
{
public:
    bool isEmpty() const { return m_watches.empty(); }

    Watch *find(const RegisterRange &range); // or null
    Watch &add(const RegisterRange &range, Watch::Time now);

    // Those to be asked for, of the units that may be asked: the ones without any value yet before all
    // others.
    std::vector<Watch *> due(const std::function<bool(int unit)> &mayAsk);

    // Begins a round: drops what no caller has read for `forgetAfter`, makes the rest due, and gives the
    // units that are still watched.
    std::set<int> startRound(Watch::Time now, std::chrono::milliseconds forgetAfter);

    void makeDue(const RegisterRange &range); // whatever shares a register with it
    void fail(int unit);                      // all of the unit's values are missing, and due
    void failAll();
    void forgetValues(); // all are missing until they are read anew
    void joinAll();      // nobody is alone any more

private:
    std::unordered_map<std::uint64_t, Watch> m_watches;
};

} // namespace panelkit::simulator
