// What a process holds of the system.
#pragma once

#include <QStringList>

namespace panelkit::simulator {

struct Footprint
{
    qint64 heap = 0;     // bytes in use, as the allocator counts them
    qint64 resident = 0; // bytes of memory that the process occupies
    int descriptors = 0; // open
    int threads = 0;

    static Footprint now();

    // The same once there are no more than so many threads, after a second at the latest: the kernel lists a
    // thread for a moment after it has been joined.
    static Footprint settled(int threadCount);
};

// How much more a process may hold after work that leaves nothing behind: room for what the toolkit and the
// allocator keep, and nothing for descriptors and threads.
struct FootprintBounds
{
    qint64 heap = Q_INT64_C(512) * 1024;
    qint64 resident = Q_INT64_C(16) * 1024 * 1024;
};

// A sentence for each that has grown beyond the bounds.
QStringList growth(const Footprint &before, const Footprint &after, const FootprintBounds &bounds = {});

} // namespace panelkit::simulator
