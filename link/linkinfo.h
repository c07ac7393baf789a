// One link of a project, as the address checker holds it.
#pragma once

#include <QString>

class QLibrary;
struct object;

// The entry point "intf_checkAddr" of a driver library (link/driverinterface.h has the others): is `number`
// an address of `block`? `addrType` is -1 for bit access and anything else for word access, `length` the
// number of consecutive registers wanted, `driverArg` passed through from the caller. 0 means valid and
// leaves the register's index in `index`, which comes in as 0; any other result is an error code. The texts
// are the driver's own copies, which it may change.
typedef int (*CheckAddrFunction)(QString &block, QString &number, int &index, int addrType, int length,
                                 int driverArg);

struct linkInfo_t
{
    object *node = nullptr; // the link's node in the project tree; the runtime's
    qint32 linkID = -1;     // the link's number
    qint32 addressMode = 0; // 1: an address names its station itself; else the link's station holds
    qint32 plcID = 0;       // the link's station
    QString linkName;
    QString blockNames; // the driver's register blocks, separated by ","
    QString spare;      // always empty
    // The link's driver file; the address checker's. Loaded when the driver is, but with Qt 6, where the
    // checker holds the driver without it: there, resolve() would load it, and nobody unload it.
    QLibrary *library = nullptr;

    CheckAddrFunction checkAddr = nullptr; // null when the driver does not load or lacks the entry point
};
