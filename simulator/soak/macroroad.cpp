#include "simulator/soak/macroroad.h"

#include "simulator/comm/communication.h"
#include "simulator/host/session.h"
#include "simulator/soak/chance.h"
#include "simulator/soak/soakplc.h"

#include <algorithm>

namespace panelkit::simulator {

namespace {

constexpr std::size_t mostUnanswered = 8; // older ones do not come any more

}

struct MacroRoad::Shift
{
    Shift(Session &theSession, const RuntimeEvents::Handlers &handlers)
        : session(theSession),
          macros(theSession),
          registers(theSession.communication()),
          engine(registers),
          events(theSession, macros, engine, handlers)
    {
    }

    Session &session;
    ItemMacros macros;
    LinkRegisters registers;
    MacroEngine engine;
    RuntimeEvents events;
};

MacroRoad::MacroRoad(const SoakProject &project, SoakPlc &plc)
    : Road(QStringLiteral("macro")),
      m_project(project),
      m_plc(plc)
{
    for (std::size_t i = 0; i < project.project.items.size(); ++i)
        if (project.project.items[i].macro.mode != 0)
            m_items.push_back(i);
}

MacroRoad::~MacroRoad() = default;

void MacroRoad::beginShift(Session &session)
{
    RuntimeEvents::Handlers handlers;
    handlers.macroEnded = [this](const MacroOwner &, const MacroResult &result) {
        m_result = result;
    };
    m_shift = std::make_unique<Shift>(session, handlers);
}

void MacroRoad::endShift()
{
    m_shift.reset();
}

void MacroRoad::act(Chance &chance)
{
    if (m_items.empty())
        return;
    const std::size_t item = chance.of(m_items);
    const QString &name = m_project.project.items[item].name;
    const int mode = m_project.project.items[item].macro.mode;
    const auto counter =
        std::find_if(m_project.counters.begin(), m_project.counters.end(),
                     [&name](const SoakProject::Counter &candidate) { return candidate.item == name; });
    if (counter != m_project.counters.end() && !chance.oneIn(50)) {
        runCounter(*counter, item);
        return;
    }
    const bool isPress = mode == 1 || (mode == 3 && counter == m_project.counters.end() && chance.oneIn(2));
    run(item, isPress ? ITEM_MACRO_PRESS : ITEM_MACRO_RELEASE);
    if (counter != m_project.counters.end() && m_result && m_result->isDone())
        lose(QStringLiteral("'%1' took more memory than a macro may").arg(name));
}

// Posts the macro's event, and handles it as a runtime does.
void MacroRoad::run(std::size_t item, ITEM_MACRO_TYPE type)
{
    m_result.reset();
    ask();
    helpMacroLua::runLua(m_shift->macros.macro(item), type);
    m_shift->events.handleWaiting();
    settle(m_result && m_result->isDone());
    if (!m_result)
        lose(QStringLiteral("the event of '%1' was not handled").arg(m_project.project.items[item].name));
}

void MacroRoad::runCounter(const SoakProject::Counter &counter, std::size_t item)
{
    const LinkValue link = m_shift->session.communication().getLinkValueByName(counter.link);
    const int unit = link.addmore == 0 ? link.station : counter.station;
    run(item, ITEM_MACRO_PRESS);
    if (!m_result)
        return;
    std::optional<quint32> read;
    bool hasTriedToWrite = false;
    for (const MacroAccess &access : m_result->accesses) {
        if (access.isWrite)
            hasTriedToWrite = true;
        else if (access.value && access.failure.isEmpty())
            read = static_cast<quint32>(std::get<qint64>(*access.value));
    }
    if (read && hasTriedToWrite)
        judgeCount(unit, counter.index, *read + 1, m_result->isDone());
    else if (m_result->isDone())
        lose(QStringLiteral("'%1' is done without having counted").arg(counter.item));
}

void MacroRoad::judgeCount(int unit, int index, quint32 count, bool isDone)
{
    Count &known = m_counts[{unit, index}];
    const auto mayStand = [&known](quint32 value, quint32 expected) {
        return value == expected ||
               std::find(known.unanswered.begin(), known.unanswered.end(), value) != known.unanswered.end();
    };
    if (known.answered && !mayStand(count - 1, *known.answered))
        lose(QStringLiteral("unit %1 had %2 in its holding register %3, where %4 was written")
                 .arg(unit)
                 .arg(count - 1)
                 .arg(index)
                 .arg(*known.answered));
    if (!isDone) {
        known.unanswered.push_back(count);
        if (known.unanswered.size() > mostUnanswered)
            known.unanswered.pop_front();
        return;
    }
    const quint32 found = m_plc.doubleWord(unit, index);
    if (!mayStand(found, count))
        lose(QStringLiteral("unit %1 has %2 in its holding register %3, where %4 was written")
                 .arg(unit)
                 .arg(found)
                 .arg(index)
                 .arg(count));
    known.answered = count;
}

} // namespace panelkit::simulator
