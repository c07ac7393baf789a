// The arithmetic behind the figures of systeminfo.h, apart from the system that supplies the numbers.
#pragma once

#include "runtime/systeminfo.h"

namespace panelkit {

// A file system of `blocks` blocks, `freeBlocks` of them free, of `blockSize` bytes each.
DevDiskInfo diskSpace(quint64 blocks, quint64 freeBlocks, quint64 blockSize);

// `units` units of `unitSize` bytes in KiB, in 32-bit arithmetic.
quint32 kibibytes(quint32 units, quint32 unitSize);

// Reads a line of "/proc/stat", a NUL-terminated text, into the name (11 characters at most) and the counters
// of `sample` as far as the line goes; the rest stays as it was.
void parseProcessorLine(const char *line, cpu_info &sample);

} // namespace panelkit
