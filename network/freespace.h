// Room on the disk, asked before something is written that must not be written by halves.
#pragma once

#include <QString>

namespace panelkit {

struct NewFile
{
    QString beside; // a file, or where one would be: the new one comes into its folder
    qint64 size;
};

// Whether two new files fit, both at once: on their disks, and within the largest file that this process may
// write. True also where that cannot be found out, as in a folder that takes no new file.
bool hasRoomFor(const NewFile &file, const NewFile &other);

} // namespace panelkit
