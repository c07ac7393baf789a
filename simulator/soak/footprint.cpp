#include "simulator/soak/footprint.h"

#include <QFile>

#include <chrono>
#include <thread>

#include <dirent.h>
#include <malloc.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace panelkit::simulator {

namespace {

qint64 heapInUse()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
#else
    const struct mallinfo2 information = mallinfo2();
    return static_cast<qint64>(information.uordblks) + static_cast<qint64>(information.hblkhd);
#endif
}

qint64 residentBytes()
{
    QFile file(QStringLiteral("/proc/self/statm")); // pages: all, and those in memory
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

const char *const threadFolder = "/proc/self/task";

int entryCount(const char *folder)
{
    int count = 0;
    if (DIR *entries = opendir(folder)) {
        while (const dirent *entry = readdir(entries))
            count += entry->d_name[0] != '.';
        closedir(entries);
    }
    return count;
}

void compare(QStringList &found, const char *what, qint64 before, qint64 after, qint64 bound)
{
    if (after > before + bound)
        found << QStringLiteral("%1 grew from %2 to %3, by more than %4")
                     .arg(QLatin1String(what))
                     .arg(before)
                     .arg(after)
                     .arg(bound);
}

} // namespace

Footprint Footprint::now()
{
    Footprint footprint;
    footprint.heap = heapInUse();
    footprint.resident = residentBytes();
    footprint.descriptors = entryCount("/proc/self/fd"); // one of them is the listing's own, every time
    footprint.threads = entryCount(threadFolder);
    return footprint;
}

Footprint Footprint::settled(int threadCount)
{
    for (int wait = 0; wait < 100 && entryCount(threadFolder) > threadCount; ++wait)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return now();
}

QStringList growth(const Footprint &before, const Footprint &after, const FootprintBounds &bounds)
{
    QStringList found;
    compare(found, "the heap", before.heap, after.heap, bounds.heap);
    compare(found, "resident memory", before.resident, after.resident, bounds.resident);
    compare(found, "the number of open descriptors", before.descriptors, after.descriptors, 0);
    compare(found, "the number of threads", before.threads, after.threads, 0);
    return found;
}

} // namespace panelkit::simulator
