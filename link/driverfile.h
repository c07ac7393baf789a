// The driver file of a link: where it lies, and whether it may be handed to the system's loader.
#pragma once

#include "platform/export.h"

#include <QString>

// What lies at the path of a driver. The system's loader reports a foreign file as an error, but dies on a
// library whose end is missing; the library therefore loads a Complete file only.
enum class DriverFileState : int
{
    Complete,         // a shared library for this processor, with all of its loadable segments
    Missing,          // no such file, or no regular file, or not readable
    NotALibrary,      // too short, no ELF file, or an ELF file of another type
    ForeignProcessor, // a shared library for another processor
    Truncated         // a shared library whose end is missing, as when a copy broke off
};

// Looks at the file's headers, and at nothing behind them.
PANELKIT_EXPORT DriverFileState tools_driverFileState(const QString &path);

// The driver file of a link, below the system root: "/usr/tesk42/project/driver/libNAME_N.so", where NAME is
// what follows the first "/" of the link's property "driverLib", or all of it, and N the link's number. Each
// link has a copy of its driver of its own.
PANELKIT_EXPORT QString tools_driverFilePath(const QString &driverLib, int linkID);

// The folder that holds the driver files, below the system root.
PANELKIT_EXPORT QString tools_driverFolder();
