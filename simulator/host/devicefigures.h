// What a panel tells of itself: load, memory, disk and kind.
#pragma once

#include "runtime/systeminfo.h"

#include <QString>

namespace panelkit::simulator {

struct DeviceFigures
{
    double load = 0;                 // percent, since the last figures
    quint32 freeMemory = 0;          // KiB, as the panel's arithmetic has it
    quint64 freeMemoryOfMachine = 0; // KiB
    QString diskPath;
    DevDiskInfo disk = {};
    QString model;
    bool isIotDevice = false;
    bool isBoxDevice = false;
    int iotVersion = 0;

    // Whether the panel's figure of the free memory is what is left of a larger one.
    bool isMemoryWrapped() const;
};

// The space of the disk that holds `path`; zeros where it cannot be asked.
DevDiskInfo diskSpace(const QString &path);

// Figures of the panel below the system root, with the disk that holds `diskPath`. The load is that since the
// last call with the same `processor`, whose `firstCall` is set before the first one.
DeviceFigures takeDeviceFigures(cpu_info &processor, const QString &diskPath);

// What sort of device it is, for people.
QString deviceKind(const DeviceFigures &figures);

} // namespace panelkit::simulator
