// A register address as the text that an operator sees, in the notation in which authors type it.
#pragma once

#include "platform/export.h"
#include "register/registervaluechange.h"

#include <QString>

class InterfaceComm;

// Writes the address `reg` to `out`. A block that begins with "LB", "LW" or "RWI" is internal and becomes
// block and index ("LW100"), without asking `comm`. Any other address becomes the link number and "/" (from
// link 2 on), the station and "#" (when the link's `addmore` is exactly 1), the block, and `indexText`, the
// index in the driver's own notation: "2/3#D200". A link that `comm` does not know (`id` -1) gives an empty
// text. `comm` is asked for the low 16 bits of the link number. `indexText` and `out` may be the same object.
//
// Returns false, with an empty `out`, only for an address that is not internal when `comm` is null. An `out`
// that already reads so is left alone; one that is unshared and large enough is overwritten without an
// allocation.
PANELKIT_EXPORT bool conversionAddr2UIText(const RegisterValueChange &reg, const QString &indexText,
                                           InterfaceComm *comm, QString &out);
