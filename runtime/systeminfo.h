// Small questions about the panel: processor load, free memory, disk space, the device model, and files.
//
// None of these functions reports an error: what cannot be read gives zero, false or nothing done. None keeps
// state between calls but in the caller's cpu_info.
#pragma once

#include "platform/export.h"

#include <QString>
#include <QtGlobal>

// One sample of the processor's time, the line "cpu" of "/proc/stat": ticks since the start of the system,
// summed over all processors, in the order of the columns. A counter beyond 32 bits keeps its low 32 bits.
struct cpu_info
{
    char cpuName[12]; // "cpu", NUL-terminated
    quint32 user, nice, system, idle, iowait, irq, softirq, steal, guest, guestNice;
    quint8 firstCall; // not 0: no sample is held yet. The owner sets it before the first use
};

// The space of a file system, in MiB.
struct DevDiskInfo
{
    float totalMB, usedMB, freeMB;
};

// For `kind` 1, whether something with the name `path` exists; where it does not and `create` is true, the
// directory is made with all missing parents. The answer is the one before creation: a call that makes the
// directory still gives false. For `kind` 2, whether `path` is a regular file or a link to one; `create` has
// no meaning. For any other `kind` false. A relative path counts from the working directory.
PANELKIT_EXPORT bool tools_file_exists(QString path, int kind, bool create);

// The generation of the IoT runtime: 2 where its driver library for the S7-200 is installed, else 1.
PANELKIT_EXPORT int tools_iot_version();

// The space of the file system that holds `path`. What is reserved for the superuser counts as free. Zeros
// when `path` is null or cannot be asked.
PANELKIT_EXPORT DevDiskInfo tools_get_dev_disk(const char *path);

// Takes a sample of now. `firstCall` is not touched; nothing is when "/proc/stat" cannot be read. Columns
// that the kernel does not have (an old one has four) leave their counters as they were.
PANELKIT_EXPORT void get_occupy(cpu_info *sample);

// The share of the processor's time, in percent, that was not idle between two samples; waiting for a device
// counts as busy. 0 when the samples are equal, and when one of them is null. The sums wrap at 32 bits as the
// counters do. A busy time that ran backwards (the kernel may correct `iowait` downwards) wraps too and gives
// a figure far outside of 0 to 100.
PANELKIT_EXPORT float cal_occupy(cpu_info *older, cpu_info *newer);

// The load since the last call with the same record, in percent. The first call, with `firstCall` set, takes
// a sample, clears `firstCall` and gives 0.
PANELKIT_EXPORT float tools_get_cpu_info(cpu_info &info);

// Memory that nothing uses, in KiB; caches do not count as free. The arithmetic has 32 bits throughout: with
// 4 GiB free or more the figure is that of the remainder.
PANELKIT_EXPORT quint32 tools_get_dev_mem();

// Removes the files of the directory `path` and of all directories below it. Directories stay, empty, and so
// do hidden entries and what may not be removed. A link to a directory below `path` stays and is not
// followed; a `path` that is itself such a link is. Of a link to a file the link is removed, the file stays.
// False only for an empty path; a path that is no directory is left alone.
PANELKIT_EXPORT bool tools_deleteDir(const QString &path);

// By the model in the device configuration file: whether the panel runs the IoT runtime (the model holds "W"
// or "Keld"), and whether it is a gateway box ("Keld"). Case matters. A panel without a model is neither.
PANELKIT_EXPORT bool tools_isIotDevice();
PANELKIT_EXPORT bool tools_isBoxDevice();

// Writes `text` as UTF-8, up to its first NUL and without a line end, to "./testLog.log" in the working
// directory: behind what is there, or in its place when `truncate` is true.
PANELKIT_EXPORT void tools_testLog(const QString &text, bool truncate);
