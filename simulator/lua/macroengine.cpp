#include "simulator/lua/macroengine.h"

#include "macro/events.h"
#include "macro/interfaceall.h"
#include "simulator/lua/luarun.h"

namespace panelkit::simulator {

MacroEngine::MacroEngine(MacroRegisters &registers, const MacroLimits &limits, Clock clock)
    : m_registers(registers),
      m_limits(limits),
      m_clock(clock ? std::move(clock) : Clock(std::chrono::steady_clock::now))
{
}

MacroResult MacroEngine::run(const QString &name, const QString &text)
{
    return LuaRun(m_registers, m_limits, m_clock, m_output).run(name, text);
}

std::optional<QString> MacroEngine::textOf(const UExternalFuncCallEvent &event)
{
    if (event.funcName != QLatin1String("runLua") || event.arg == nullptr || event.arg->args.isEmpty() ||
        event.arg->args.first() == nullptr)
        return std::nullopt;
    return *static_cast<const QString *>(event.arg->args.first());
}

std::optional<MacroResult> MacroEngine::run(const QString &name, const UExternalFuncCallEvent &event)
{
    const std::optional<QString> text = textOf(event);
    return text ? std::optional<MacroResult>(run(name, *text)) : std::nullopt;
}

} // namespace panelkit::simulator
