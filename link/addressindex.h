// The index of a register as its link's driver counts it.
#pragma once

#include "platform/export.h"

class QString;

// The index of the register `addrText` of the block `regName` on the link `linkName`, from the driver that
// the link list names for it. The first file of the driver folder, in the folder's own order, whose name
// contains the driver's, whatever the case, is loaded for this one call.
//
// Returns -1 when that file does not load, lacks an entry point or gives no index. Without a driver name, or
// a file for it, `addrText` is read as a number instead: "12" is 12, "10.5" (word and bit) is 10 * 16 + 5,
// what is no number counts as 0.
//
// The list is read once per process, by the first call that finds a list with an element in it:
// `useProjectLinks` takes the project's list (on a gateway box the IoT runtime's), else the IoT runtime's.
// Later calls use what was read then, whatever they ask for. For one thread at a time.
PANELKIT_EXPORT int tools_getAddrIndexFromDriverName(QString linkName, QString regName, QString addrText,
                                                     bool useProjectLinks);
