#include "simulator/comm/watchlist.h"

namespace panelkit::simulator {

namespace {

// Unit (8 bits), table (2), first register (16) and count (11) in one number.
std::uint64_t keyOf(const RegisterRange &range)
{
    const auto bits = [](auto value) {
        return static_cast<std::uint64_t>(value);
    };
    return bits(range.unit) << 29 | bits(range.table) << 27 | bits(range.first) << 11 | bits(range.count);
}

void miss(Watch &watch)
{
    watch.value = Watch::Value::Missing;
    watch.isDue = true;
}

} // namespace

Watch *WatchList::find(const RegisterRange &range)
{
    const auto found = m_watches.find(keyOf(range));
    return found == m_watches.end() ? nullptr : &found->second;
}

Watch &WatchList::add(const RegisterRange &range, Watch::Time now)
{
    Watch &watch = m_watches[keyOf(range)];
    watch.range = range;
    watch.registers.resize(static_cast<std::size_t>(range.count));
    watch.lastRead = now;
    return watch;
}

std::vector<Watch *> WatchList::due(const std::function<bool(int)> &mayAsk)
{
    std::vector<Watch *> pending;
    std::vector<Watch *> all;
    for (auto &[key, watch] : m_watches) {
        if (!watch.isDue || !mayAsk(watch.range.unit))
            continue;
        all.push_back(&watch);
        if (watch.value == Watch::Value::Pending)
            pending.push_back(&watch);
    }
    return pending.empty() ? all : pending;
}

std::set<int> WatchList::startRound(Watch::Time now, std::chrono::milliseconds forgetAfter)
{
    std::set<int> units;
    for (auto entry = m_watches.begin(); entry != m_watches.end();) {
        Watch &watch = entry->second;
        if (watch.wasRead || watch.waiting > 0)
            watch.lastRead = now;
        if (now - watch.lastRead > forgetAfter) {
            entry = m_watches.erase(entry);
            continue;
        }
        watch.wasRead = false;
        watch.isDue = true;
        units.insert(watch.range.unit);
        ++entry;
    }
    return units;
}

void WatchList::makeDue(const RegisterRange &range)
{
    for (auto &[key, watch] : m_watches)
        if (overlap(watch.range, range))
            watch.isDue = true;
}

void WatchList::fail(int unit)
{
    for (auto &[key, watch] : m_watches)
        if (watch.range.unit == unit)
            miss(watch);
}

void WatchList::failAll()
{
    for (auto &[key, watch] : m_watches)
        miss(watch);
}

void WatchList::forgetValues()
{
    for (auto &[key, watch] : m_watches) {
        if (watch.value == Watch::Value::Fresh)
            watch.value = Watch::Value::Missing;
        watch.isDue = true;
    }
}

void WatchList::joinAll()
{
    for (auto &[key, watch] : m_watches)
        watch.isAlone = false;
}

} // namespace panelkit::simulator
