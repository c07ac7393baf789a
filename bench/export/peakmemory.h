// How much memory a job needs at its worst.
#pragma once

#include <QByteArray>
#include <QFile>

#include <malloc.h>

namespace panelkit::bench {

// A line of /proc/self/status, in kilobytes.
inline long statusKilobytes(const char *name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith(name))
            return line.mid(static_cast<int>(qstrlen(name))).replace("kB", "").trimmed().toLong();
    return -1;
}

// By how many kilobytes the resident memory grows at most while `job` runs; what the process had once and
// gave back counts again.
template <typename Job>
long peakGrowth(const Job &job)
{
    malloc_trim(0);
    QFile references(QStringLiteral("/proc/self/clear_refs"));
    if (!references.open(QIODevice::WriteOnly) || references.write("5") != 1) // the peak begins anew
        return -1;
    references.close();
    const long before = statusKilobytes("VmRSS:");
    job();
    return statusKilobytes("VmHWM:") - before;
}

} // namespace panelkit::bench
