#include "link/elfheader.h"

#include <QIODevice>

#include <algorithm>
#include <cstring>

#include <elf.h>
#include <link.h>

// The linker puts this at the beginning of the library: its own header says what this processor runs.
extern "C" __attribute__((visibility("hidden"))) const ElfW(Ehdr) __ehdr_start;

namespace panelkit {

namespace {

typedef ElfW(Ehdr) FileHeader;
typedef ElfW(Phdr) ProgramHeader;

// Whether the `length` bytes from `offset` on lie within the file.
bool liesWithin(quint64 offset, quint64 length, quint64 fileSize)
{
    return offset <= fileSize && length <= fileSize - offset;
}

// Whether all loadable segments of the `count` program headers at the device's position end within the file.
bool holdsItsSegments(QIODevice &file, int count, quint64 fileSize)
{
    ProgramHeader headers[16];
    while (count > 0) {
        const int portion = std::min(count, 16);
        const qint64 bytes = portion * static_cast<qint64>(sizeof(ProgramHeader));
        if (file.read(reinterpret_cast<char *>(headers), bytes) != bytes)
            return false;
        for (int i = 0; i < portion; ++i)
            if (headers[i].p_type == PT_LOAD &&
                !liesWithin(headers[i].p_offset, headers[i].p_filesz, fileSize))
                return false;
        count -= portion;
    }
    return true;
}

} // namespace

DriverFileState elfFileState(QIODevice &file)
{
    FileHeader header;
    const qint64 headerSize = sizeof(header);
    const qint64 got = file.seek(0) ? file.read(reinterpret_cast<char *>(&header), headerSize) : 0;
    if (got < SELFMAG || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0)
        return DriverFileState::NotALibrary;
    if (got < headerSize)
        return DriverFileState::Truncated;
    if (header.e_ident[EI_CLASS] != __ehdr_start.e_ident[EI_CLASS] ||
        header.e_ident[EI_DATA] != __ehdr_start.e_ident[EI_DATA] ||
        header.e_machine != __ehdr_start.e_machine)
        return DriverFileState::ForeignProcessor;
    if (header.e_type != ET_DYN || header.e_phentsize != sizeof(ProgramHeader))
        return DriverFileState::NotALibrary;

    const quint64 fileSize = static_cast<quint64>(file.size());
    const bool isWhole = header.e_phoff <= fileSize && file.seek(static_cast<qint64>(header.e_phoff)) &&
                         holdsItsSegments(file, header.e_phnum, fileSize);
    return isWhole ? DriverFileState::Complete : DriverFileState::Truncated;
}

} // namespace panelkit
