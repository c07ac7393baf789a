// The codes by which the sample drivers refuse an address. Each is one that an address checker takes as
// invalid.
#pragma once

#include <QLatin1String>
#include <QString>

namespace panelkit::simulator {

enum class DriverCode : int
{
    Accepted = 0,
    WrongAccess = 1,      // a bit address for word access, or the other way round
    OutOfRange = 2,       // no register of the block has this number
    UnknownBlock = 3,     // the driver has no such block
    UnreadableNumber = 4, // not written in the block's notation
    Unaligned = 11,       // a word or double word that would begin within another
    NotOctal = 12,        // a digit 8 or 9 where octal numbers are written
    BadBit = 14,          // the bit behind the "." is missing or beyond the width
    RunTooLong = 16       // the registers from the address on reach beyond the end of the block
};

// Whether a driver of that base name answers with these codes, and describes its blocks by their name, first
// number, last number, width and access.
inline bool isSampleDriver(const QString &baseName)
{
    return baseName == QLatin1String("Modbus") || baseName == QLatin1String("ByteAddressed");
}

} // namespace panelkit::simulator
