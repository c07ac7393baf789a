// How the addresses of one register block are written and counted, and what a driver answers about them.
#pragma once

#include "simulator/drivers/drivercode.h"

#include <QString>
#include <QStringList>

namespace panelkit::simulator {

// A block is a row of units: bits, bytes or words of a PLC. A register covers `unitsPerRegister` of them and
// begins at a multiple of that; or it is one bit of a unit, written "unit.bit".
struct AddressRule
{
    const char *name;
    bool isBit;      // takes bit access; else word access
    int radix;       // 8 or 10: the notation of the unit's number
    int firstNumber; // the number of the first unit
    int unitCount;
    int unitsPerRegister;
    int bitsPerUnit; // 1 where a register is not a bit of a unit
};

// The driver's block of that name (compared exactly), or null. Each driver defines it over its own table.
const AddressRule *findRule(const QString &block);

// The answer of "intf_checkAddr" for a block with that rule, or for an unknown block without one. Accepted,
// it stores the index (of the unit, or unit * bitsPerUnit + bit) and takes blanks and leading zeros from
// `number`; else it changes nothing. A length below 1 counts as 1 when it is 0 and is refused when negative.
DriverCode checkAddress(const AddressRule *rule, QString &number, int &index, int addrType, int length);

// The answer of "intf_checkAddrValidity": the same index, when `width` is the block's and the number is
// one of its; else `index` is left alone.
void findIndex(const AddressRule *rule, const QString &number, int &index, int width);

// The answer of "intf_getRegDiscription": name, first number, last number, bits of a unit (1 where the
// numbers have no bit), and "bit" or "word".
QStringList describeBlock(const AddressRule &rule);

} // namespace panelkit::simulator
