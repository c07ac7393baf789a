// The entry points by which a driver library answers what its addresses are.
//
// A driver is a shared library that knows the blocks and the address syntax of one PLC family. It lies in
// /usr/tesk42/project/driver and exports, with C linkage, "intf_checkAddr" (CheckAddrFunction in
// link/linkinfo.h), "intf_checkAddrValidity" and "intf_getRegDiscription". All texts are copies that the
// driver may change; all calls come from the runtime's GUI thread.
#pragma once

#include <QString>
#include <QStringList>

// "intf_checkAddrValidity": stores the index of the register `addrText` of the block `regName` in `index`,
// which comes in as -1 and stays so when there is no such register. With exactly 5 entries in the block's
// description `width` is the fourth, 0 when it is no number, and `mode` 2 when it is above 1, else 1; with
// any other count of entries both are 1. The result is not looked at.
typedef int (*CheckAddrValidityFunction)(QString &regName, QString &addrText, int &index, int mode,
                                         int width);

// "intf_getRegDiscription": fills `description`, which comes in empty, for the block `regName`. Only a
// description of exactly 5 entries is read, and of it only the fourth, the width. The result is not looked
// at.
typedef int (*GetRegDiscriptionFunction)(QString &regName, QStringList &description);
