#include "network/freespace.h"

#include <QString>
#include <QTemporaryFile>

#include <cerrno>
#include <fcntl.h>

namespace panelkit {

bool hasRoomBeside(const QString &fileName, qint64 size)
{
    QTemporaryFile probe(fileName + QLatin1String(".XXXXXX"));
    if (!probe.open())
        return true;
    const int error = posix_fallocate(probe.handle(), 0, static_cast<off_t>(size));
    return error != ENOSPC && error != EDQUOT && error != EFBIG;
}

} // namespace panelkit
