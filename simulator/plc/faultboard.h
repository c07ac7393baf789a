// Which faults of a PLC are switched on.
#pragma once

#include "simulator/plc/plcfault.h"

#include <map>
#include <optional>

namespace panelkit::simulator {

// Not locked; the server that asks it does that. Times are given, so that it needs no clock.
class FaultBoard
{
public:
    using Time = std::chrono::steady_clock::time_point;

    void set(const PlcFaultSetting &setting, Time now); // instead of what the same unit had
    void clear(int unit);

    // The fault that a request to `unit` meets, the unit's own before that of all units. Counts as one
    // answer.
    std::optional<PlcFaultSetting> take(int unit, Time now);

    bool isGone(Time now); // altogether, not a single unit

    // When the earliest fault with a duration ends.
    std::optional<Time> nextEnd() const;

private:
    struct Entry
    {
        PlcFaultSetting setting;
        std::optional<Time> end;
        int answersLeft;
    };

    void expire(Time now);

    std::map<int, Entry> m_entries; // by unit
};

} // namespace panelkit::simulator
