// The panel's own network address, between the system registers, the system configuration and the operating
// system.
//
// The operator sees and edits four addresses in sixteen word registers of area 0, one byte a register, the
// most significant first: IP address 64052 to 64055, subnet mask 64056 to 64059, gateway 64060 to 64063, DNS
// server 64064 to 64067. Two flags of area 1 ask for work, and the runtime polls them by calling saveHMIIP()
// and loadHMIIP(false): 60213 to apply the registers, 60214 to fill them. A flag that is not 0 is cleared as
// soon as it has been seen, before anything else is done, so that a rejected entry is not tried again.
//
// All functions run on the runtime's GUI thread. Results of register operations, platform calls and shell
// commands are not looked at.
#pragma once

#include "platform/export.h"

#include <QString>

class InterfaceComm;

// Whether all of `address` is an IPv4 address in dotted notation: four numbers from 0 to 255 of one to three
// ASCII digits each, leading zeros included ("010.001.0.09"), with single dots between them and nothing else.
// Takes subnet masks too, whatever their bits. Does not allocate.
PANELKIT_EXPORT bool checkIPAddr(QString const &address);

// Writes the four parts of the dotted text `address` to four word registers from `firstAddress` on, one write
// each. A part that is no unsigned number gives 0, of a number beyond 16 bits the low 16 are written. Writes
// nothing when there are not exactly four parts, or when `comm` is null.
PANELKIT_EXPORT void setIPInfo(InterfaceComm *comm, int firstAddress, QString const &address);

// Fills the sixteen registers from the system configuration. Unless `force` is true this needs flag 60214,
// and consumes it. A setting that is no text of four parts leaves its registers as they are.
//
// Returns false, having done nothing, without the flag or without a communication interface.
PANELKIT_EXPORT bool loadHMIIP(bool force);

// Applies new settings to the operating system: sets address and mask by `uci` where "/etc/config/network"
// exists (and leaves the commit to the system), writes the gateway script "/usr/tesk42/IOT/gateway.sh" and
// runs "sync". A device without the IoT runtime then reads its configuration anew and has its registers
// filled from it. `dns` has no part in this: it reaches the system with the configuration.
//
// The texts are put into shell commands as they are: only texts that pass checkIPAddr may be given.
//
// `message` becomes what to tell the operator, always the translated "Success.". Always true.
PANELKIT_EXPORT bool saveNewIP(QString const &ip, QString const &netMask, QString const &gateway,
                               QString const &dns, QString &message);

// Applies the sixteen registers: checks the four addresses in their order, stores them in the system
// configuration and hands them to saveNewIP. Needs flag 60213, and consumes it. The operator is told the
// outcome in a message box, a posted UMessageBoxEvent; only the first wrong address is named.
//
// Returns true when the settings were applied. False without the flag or without a communication interface,
// and then nobody is told; false for a wrong address, and then nothing is stored or run and the registers
// keep what the operator entered.
PANELKIT_EXPORT bool saveHMIIP();
