#include "simulator/plc/plcfault.h"

#include <algorithm>

namespace panelkit::simulator {

std::string_view plcFaultName(PlcFault fault)
{
    return plcFaultNames.at(static_cast<std::size_t>(fault));
}

std::optional<PlcFault> plcFaultNamed(std::string_view name)
{
    const auto found = std::find(plcFaultNames.begin(), plcFaultNames.end(), name);
    if (found == plcFaultNames.end())
        return std::nullopt;
    return static_cast<PlcFault>(found - plcFaultNames.begin());
}

} // namespace panelkit::simulator
