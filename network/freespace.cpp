#include "network/freespace.h"

#include <QTemporaryFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/resource.h>

namespace panelkit {

namespace {

// Asked first: reaching beyond the limit does not only fail, but sends the process a signal that ends it.
bool mayWrite(qint64 size)
{
    rlimit limit;
    return getrlimit(RLIMIT_FSIZE, &limit) != 0 || static_cast<rlim_t>(size) <= limit.rlim_cur;
}

// Takes up the room until it goes.
class Probe
{
public:
    explicit Probe(const NewFile &file) : m_size(file.size), m_file(file.beside + QLatin1String(".XXXXXX")) {}

    bool fits()
    {
        if (!mayWrite(m_size))
            return false;
        if (!m_file.open())
            return true;
        const int error = posix_fallocate(m_file.handle(), 0, static_cast<off_t>(m_size));
        return error != ENOSPC && error != EDQUOT && error != EFBIG;
    }

private:
    qint64 m_size;
    QTemporaryFile m_file;
};

} // namespace

bool hasRoomFor(const NewFile &file, const NewFile &other)
{
    Probe probe(file);
    Probe otherProbe(other);
    return probe.fits() && otherProbe.fits();
}

} // namespace panelkit
