// The index of a register as its link's driver counts it.
#pragma once

#include "link/driverfile.h"
#include "platform/export.h"

#include <QString>

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
// Later calls use what was read then, whatever they ask for. For one thread at a time; later calls may run at
// once where their driver lets them.
PANELKIT_EXPORT int tools_getAddrIndexFromDriverName(QString linkName, QString regName, QString addrText,
                                                     bool useProjectLinks);

// An index and how it came about.
struct AddressIndexOrigin
{
    enum Source : int
    {
        Driver,            // asked; -1 is its own answer, or that it gave none
        DriverNotLoadable, // -1; fileState says why, and is Complete where the system's loader refused
        DriverIncomplete,  // -1; the file lacks one of the two entry points
        TextWithoutDriver, // the text as a number: no driver is known for the link
        TextWithoutFile    // the text as a number: no file is named like the driver
    };

    enum List : int
    {
        NoList, // none with an element in it has been found yet
        ProjectList,
        IotList
    };

    int index = -1;
    Source source = TextWithoutDriver;
    List list = NoList; // that was read, by this call or an earlier one
    QString driver;     // its name, in lower case
    QString file;       // the absolute path of the file that was taken
    DriverFileState fileState = DriverFileState::Missing;
    int mode = 0; // what the driver was told; 0 when it was not asked
    int width = 0;
};

// The same lookup as tools_getAddrIndexFromDriverName, which is this function's index.
PANELKIT_EXPORT AddressIndexOrigin tools_explainAddrIndex(const QString &linkName, const QString &regName,
                                                          const QString &addrText, bool useProjectLinks);
