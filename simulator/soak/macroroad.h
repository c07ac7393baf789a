// From a touch to registers: macros run by event, and every count that they write is looked for.
#pragma once

#include "simulator/host/runtimeevents.h"
#include "simulator/lua/linkregisters.h"
#include "simulator/soak/road.h"
#include "simulator/soak/soakproject.h"

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <utility>

namespace panelkit::simulator {

class SoakPlc;

class MacroRoad final : public Road
{
public:
    MacroRoad(const SoakProject &project, SoakPlc &plc);
    ~MacroRoad() override;

    void beginShift(Session &session) override;
    void endShift() override;
    void act(Chance &chance) override;

    // What a counter's macro has done: `count` is what it has written and was told is written, or, when it
    // failed, what it may have written.
    void judgeCount(int unit, int index, quint32 count, bool isDone);

private:
    struct Shift; // what is open on a session

    // What stands in two registers, as far as macros know it.
    struct Count
    {
        std::optional<quint32> answered; // the last one that was said to be written
        std::deque<quint32> unanswered;  // that may have come, or come yet
    };

    void run(std::size_t item, ITEM_MACRO_TYPE type);
    void runCounter(const SoakProject::Counter &counter, std::size_t item);

    const SoakProject &m_project;
    SoakPlc &m_plc;
    std::unique_ptr<Shift> m_shift;
    std::vector<std::size_t> m_items; // that have a macro
    std::optional<MacroResult> m_result;
    std::map<std::pair<int, int>, Count> m_counts; // by unit and index
};

} // namespace panelkit::simulator
