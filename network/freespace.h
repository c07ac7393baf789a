// Room on the disk, asked before something is written that must not be written by halves.
#pragma once

#include <QtGlobal>

class QString;

namespace panelkit {

// Whether a new file of `size` bytes fits beside the file `fileName`: on its disk, and within the largest
// file that this process may write. True also where that cannot be found out, as in a folder that takes no
// new file.
bool hasRoomBeside(const QString &fileName, qint64 size);

} // namespace panelkit
