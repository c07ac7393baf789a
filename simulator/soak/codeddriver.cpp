// A driver that answers the code that an address names: the number "7" gets the code 7. For soaks and tests
// of what becomes of each code.

#include "link/driverinterface.h"
#include "link/linkinfo.h"
#include "platform/export.h"

extern "C" {

PANELKIT_EXPORT int intf_checkAddr(QString & /*block*/, QString &number, int &index, int /*addrType*/,
                                   int /*length*/, int /*driverArg*/)
{
    index = 0;
    return number.toInt();
}

PANELKIT_EXPORT int intf_getRegDiscription(QString & /*regName*/, QStringList & /*description*/)
{
    return 0;
}

PANELKIT_EXPORT int intf_checkAddrValidity(QString & /*regName*/, QString & /*addrText*/, int & /*index*/,
                                           int /*mode*/, int /*width*/)
{
    return 0;
}

} // extern "C"
