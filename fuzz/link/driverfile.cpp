// The bytes of a driver file, as far as they are looked at before it is loaded.

#include "link/elfheader.h"

#include <QBuffer>
#include <QByteArray>

#include <cstddef>
#include <cstdint>

namespace {

DriverFileState stateOf(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return panelkit::elfFileState(buffer);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const DriverFileState state = stateOf(bytes);
    // A longer file is never worse, and a complete one stays complete.
    bytes.append(QByteArray(64, '\0'));
    const DriverFileState longer = stateOf(bytes);
    if (state == DriverFileState::Missing || (state == DriverFileState::Complete && longer != state))
        __builtin_trap();
    return 0;
}
