// The parameters of one PLC link, between the panel's system registers, a settings file that outlasts a
// restart, and the link's definition in the project.
//
// The link is the one whose number stands in word register 64000. Its parameters stand in the word registers
// 64002 to 64007 (station, interval, time-out, retries, add-more, address interval), 64020 to 64024 (IP
// address and port) or 64040 to 64045 (serial mode, baud rate in two words with the low one first, data bits,
// parity, stop bits). A link is an Ethernet link when its port's name contains "Ethernet", else a serial one.
//
// The settings file has one group a link, "link3" for link 3, with the keys "driLib" (the link's driver
// library), "plcStation", "interval", "timeout", "retry", "addmore", "addrinterval" and, for the kind of
// link, "ip1" to "ip4", "port" or "mode", "baudlow", "data", "check", "stop". It keeps registers as they are;
// a key that is missing or no number reads as 0. Keys of the other kind of link that stand in a group are
// left alone.
//
// The caller owns the QSettings object, chooses its file and format, and asks it about failures: when the
// file may not be written, its status() is QSettings::AccessError after the save, and the change stays in the
// object, so that a later sync() may still bring it to the disk. A file that is no settings file reads as far
// as it can be read; status() may then be QSettings::FormatError.
//
// With Qt 5 and 6 the earlier settings on disk stay whole when a save fails: the new file is written beside
// the old one and then put in its place. Qt 4.8 writes into the old file, which a loss of power may cut off.
// The room on the disk is asked for before the file is written; with every Qt, settings are cut off when
// somebody else takes that room in between.
//
// All functions run on the runtime's GUI thread, keep no state, and do not look at the results of register
// operations.
#pragma once

#include "platform/export.h"
#include "register/interfacecomm.h"

#include <QString>
#include <QtGlobal>

class QSettings;

// One link's parameters. Filled here, owned by the caller.
struct dynamecslinkParam_t
{
    qint32 isEthernet, linkId; // 1 or 0; the `id` of the link's definition
    qint32 station, interval, timeout, retry, addmore, addrInterval;
    qint32 ip1, ip2, ip3, ip4, port;
    qint32 mode, baud, dataBits, check, stopBits; // `mode` is 0, 1 or 2: whatever else is stored counts as 2
};

// Saves the registers of the link to the group of its number when the operator has asked for it: flag
// register 60212 must be exactly 1, and is cleared before anything else is done. `param`, which may be null,
// gets what was saved, with 0 in the fields of the other kind of link.
//
// Returns 1 when a group was written; whether it reached the disk, `settings` knows. Returns 0, with
// `settings` and `param` untouched, without the request, for a link that is unknown (its `id` is not above
// 0), when the disk has no room for the settings, and when `settings` or `comm` is null.
PANELKIT_EXPORT int saveDynamicsLinkParam(QSettings *settings, InterfaceComm *comm,
                                          dynamecslinkParam_t *param);

// Fills the registers of the link from its group, or, where there is none or it was saved for another driver
// library, from the link's definition in the project; serial mode is then 0, and so is a parity other than 0,
// 1 and 2. All registers of both kinds of link are written, those of the other kind with 0, and the low 16
// bits of what does not fit one word. The caller decides when to load; there is no flag.
//
// Returns 1 when the registers were written; 0, with no register written, for an unknown link and when
// `settings` or `comm` is null.
PANELKIT_EXPORT int loadDynamicsLinkParam(QSettings *settings, InterfaceComm *comm);

// Reads the group named `group` into `param` if it was saved for the driver library of `link`. The fields of
// the other kind of link keep what the caller put there.
//
// Returns 1 when the record was filled. Returns 0, with `param` untouched, when there is no such group, when
// it belongs to another driver library, and when `settings` or `param` is null or `group` is empty.
PANELKIT_EXPORT int loadDynamicsLinkFromFile(QSettings *settings, dynamecslinkParam_t *param,
                                             QString const &group, LinkValue const &link);
