// What the headers of an ELF file tell about the file.
#pragma once

#include "link/driverfile.h"

class QIODevice;

namespace panelkit {

// Judges the open, random-access `file` from its beginning. Never Missing: a device that cannot be read
// counts as one that holds too little. Reads no more than the file header and, piece by piece, the program
// headers.
DriverFileState elfFileState(QIODevice &file);

} // namespace panelkit
