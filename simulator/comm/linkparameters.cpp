#include "simulator/comm/linkparameters.h"

#include "register/interfacecomm.h"

#include <algorithm>

namespace panelkit::simulator {

bool isModbusTcp(const LinkValue &link)
{
    const QString driver = link.driverLib.mid(link.driverLib.indexOf(QLatin1Char('/')) + 1);
    return driver == QLatin1String("Modbus") && link.portName.contains(QLatin1String("Ethernet"));
}

LinkParameters linkParameters(const LinkValue &link)
{
    LinkParameters parameters;
    parameters.host = std::to_string(link.ip1) + '.' + std::to_string(link.ip2) + '.' +
                      std::to_string(link.ip3) + '.' + std::to_string(link.ip4);
    parameters.port = link.port;
    parameters.interval = std::chrono::milliseconds(std::clamp(link.interval, 1, 3'600'000));
    if (link.timeout > 0)
        parameters.timeout = std::chrono::milliseconds(std::min(link.timeout, 60'000));
    parameters.retries = std::clamp(link.retry, 0, 10);
    parameters.largestGap = std::clamp(link.addrInterval, 0, 2000);
    return parameters;
}

} // namespace panelkit::simulator
