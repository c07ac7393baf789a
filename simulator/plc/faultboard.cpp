#include "simulator/plc/faultboard.h"

#include <algorithm>

namespace panelkit::simulator {

void FaultBoard::set(const PlcFaultSetting &setting, Time now)
{
    Entry entry = {setting, std::nullopt, setting.answers};
    entry.setting.exceptionCode = std::clamp(setting.exceptionCode, 1, 11);
    if (setting.duration.count() > 0)
        entry.end = now + setting.duration;
    m_entries.insert_or_assign(setting.unit, entry);
}

void FaultBoard::clear(int unit)
{
    m_entries.erase(unit);
}

std::optional<PlcFaultSetting> FaultBoard::take(int unit, Time now)
{
    expire(now);
    auto found = m_entries.find(unit);
    if (found == m_entries.end())
        found = m_entries.find(PlcFaultSetting::allUnits);
    if (found == m_entries.end())
        return std::nullopt;
    const PlcFaultSetting setting = found->second.setting;
    if (setting.answers > 0 && --found->second.answersLeft == 0)
        m_entries.erase(found);
    return setting;
}

bool FaultBoard::isGone(Time now)
{
    expire(now);
    const auto found = m_entries.find(PlcFaultSetting::allUnits);
    return found != m_entries.end() && found->second.setting.fault == PlcFault::Gone;
}

std::optional<FaultBoard::Time> FaultBoard::nextEnd() const
{
    std::optional<Time> end;
    for (const auto &[unit, entry] : m_entries)
        if (entry.end && (!end || *entry.end < *end))
            end = entry.end;
    return end;
}

void FaultBoard::expire(Time now)
{
    for (auto entry = m_entries.begin(); entry != m_entries.end();)
        entry = entry->second.end && *entry->second.end <= now ? m_entries.erase(entry) : std::next(entry);
}

} // namespace panelkit::simulator
