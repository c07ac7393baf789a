#include "simulator/plc/plccounters.h"

namespace panelkit::simulator {

std::uint64_t PlcCounters::requestCount() const
{
    std::uint64_t sum = 0;
    for (const auto &[key, count] : requests)
        sum += count;
    return sum;
}

std::uint64_t PlcCounters::requestCount(int unit) const
{
    std::uint64_t sum = 0;
    for (const auto &[key, count] : requests)
        if (key.first == unit)
            sum += count;
    return sum;
}

std::uint64_t PlcCounters::requestCount(int unit, int function) const
{
    const auto found = requests.find({unit, function});
    return found == requests.end() ? 0 : found->second;
}

} // namespace panelkit::simulator
