// The address of one PLC register, or of a run of registers, and how a screen item's node becomes one.
#pragma once

#include "platform/export.h"

#include <QtGlobal>

struct object;

// One register address. The record is handed by pointer to the panel's event library, so its field order and
// widths are an interface: 52 bytes, with `block` at offset 16 and `flag` at 48.
struct RegisterValueChange
{
    qint32 linkId;   // number of the link; 0 is the panel's internal storage
    qint32 station;  // PLC station on that link; -1 where there is none
    qint32 index;    // register within the block, as the link's driver counts
    qint32 reserved; // the event library's; 0 from here, or as the caller set it
    char block[32];  // block name in Latin-1, padded with NULs; a name of 32 characters has no NUL behind it
    quint8 flag;     // the event library's; 0 from here, or as the caller set it
};

// The same with the number of registers (words) that the address spans. 56 bytes, `length` at offset 52.
struct RegisterValueChangeSize : RegisterValueChange
{
    qint32 length;
};

// Fills the address of the item `node` into `out`: `linkId` and `station` from the link named by the property
// "Link", `block` (cut at 32 bytes) from "Block" and `index` from "index". The station is the item's own
// property "station" when the link serves several stations (its `addmore` is not 0), else the link's. Missing
// properties are empty texts or 0, an unknown link is whatever the communication interface answers for it.
// `reserved` and `flag` keep what the caller set.
//
// Returns false, with `out` untouched, when `node` is null or the runtime has no communication interface.
PANELKIT_EXPORT bool ObjectAddress2RegisterValueChange(object *node, RegisterValueChange &out);

// The same, and `length` from the property "length" (0 when missing). `length` is untouched on failure.
PANELKIT_EXPORT bool ObjectAddress2RegisterValueChangeSize(object *node, RegisterValueChangeSize &out);

// Announces to the runtime that register `index` of the internal block "LWF" has changed: link 0, no station,
// everything else 0. Returns what the event library returns.
PANELKIT_EXPORT int SendLWFRegMessage(int index);
