// The entry points of every sample driver; each driver adds its table of blocks by defining findRule.

#include "link/driverinterface.h"
#include "link/linkinfo.h"
#include "platform/export.h"
#include "simulator/drivers/addressrule.h"

using namespace panelkit::simulator;

extern "C" {

PANELKIT_EXPORT int intf_checkAddr(QString &block, QString &number, int &index, int addrType, int length,
                                   int /*driverArg*/)
{
    return static_cast<int>(checkAddress(findRule(block), number, index, addrType, length));
}

PANELKIT_EXPORT int intf_getRegDiscription(QString &regName, QStringList &description)
{
    if (const AddressRule *rule = findRule(regName))
        description = describeBlock(*rule);
    return 0;
}

PANELKIT_EXPORT int intf_checkAddrValidity(QString &regName, QString &addrText, int &index, int /*mode*/,
                                           int width)
{
    findIndex(findRule(regName), addrText, index, width);
    return 0;
}

} // extern "C"

static_assert(std::is_same_v<CheckAddrFunction, decltype(&intf_checkAddr)>);
static_assert(std::is_same_v<GetRegDiscriptionFunction, decltype(&intf_getRegDiscription)>);
static_assert(std::is_same_v<CheckAddrValidityFunction, decltype(&intf_checkAddrValidity)>);
