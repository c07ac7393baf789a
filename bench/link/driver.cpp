// A driver that costs next to nothing, so that what asks it is measured.

#include "link/driverinterface.h"
#include "link/linkinfo.h"
#include "platform/export.h"

extern "C" PANELKIT_EXPORT int intf_checkAddr(QString &, QString &number, int &index, int, int, int)
{
    index = number.toInt();
    return 0;
}

extern "C" PANELKIT_EXPORT int intf_getRegDiscription(QString &, QStringList &)
{
    return 0;
}

extern "C" PANELKIT_EXPORT int intf_checkAddrValidity(QString &, QString &addrText, int &index, int, int)
{
    index = addrText.toInt();
    return 0;
}
