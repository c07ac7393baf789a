// The runtime's communication interface: where every live value, link definition and system register comes
// from. The runtime implements it; libpanelkit calls it from the runtime's GUI thread and holds a pointer for
// the time of one call only.
#pragma once

#include "platform/export.h"
#include "register/registervaluechange.h"

#include <QString>

// The project's definition of one link, returned by value. libpanelkit only reads it. The unnamed rest of the
// runtime's own record is kept as reserved fields, so that the layout is the runtime's.
struct LinkValue
{
    qint32 id = 0; // the link's number; -1 (or any number below 1, for a PLC link) means no such link
    QString reservedText1;
    QString portName; // the port; a link is an Ethernet link exactly when this contains "Ethernet"
    QString reservedText3;
    QString reservedText4;
    QString driverLib; // the link's driver library
    qint32 reservedInt1 = 0;
    qint32 ip1 = 0, ip2 = 0, ip3 = 0, ip4 = 0; // the PLC's IP address, most significant byte first
    qint32 port = 0;                           // TCP or UDP port
    qint32 baud = 0, dataBits = 0, check = 0, stopBits = 0; // serial line; `check` is the parity
    qint32 reservedInt2 = 0, reservedInt3 = 0;
    qint32 station = 0;  // the link's PLC station
    qint32 interval = 0; // milliseconds between polls
    qint32 timeout = 0;  // milliseconds
    qint32 retry = 0;
    qint32 addmore = 0;      // 1: each address names its own station; 0: the link talks to one station
    qint32 addrInterval = 0; // the largest gap, in registers, that one request bridges
    qint32 reservedInt4 = 0;
    QString reservedText5;
    QString reservedText6;
};

// The table of virtual operations is an interface of the runtime: each is called by its place. The first
// three places are known, and that writeRegisters stands right before readRegisters; a subclass puts nothing
// between. For a panel with operations in between see docs/panel.md. Results that are not described are not
// looked at.
class PANELKIT_EXPORT InterfaceComm
{
public:
    virtual void reservedOperation() {} // holds the first place of the table; never called here

    // The definition of a link by number or by name. An unknown link is no error: the runtime's empty record
    // comes back, with an `id` that is no valid link number.
    virtual LinkValue getLinkValue(quint16 linkNumber) = 0;
    virtual LinkValue getLinkValueByName(const QString &linkName) = 0;

    // The register index to watch for a script variable: its link number, block name, index text, and the two
    // numbers of its declaration.
    virtual int resolveAddressIndex(int linkId, const QString &blockName, const QString &indexText, int extra,
                                    int dataType) = 0;

    // Reads `count` words (16 bits each, the processor's byte order, first word first) of the register `reg`
    // into `buffer`. A failed read leaves the buffer as it is.
    virtual int readAddressWords(const RegisterValueChange *reg, int count, void *buffer) = 0;

    // Write or read `count` consecutive system registers, one word each, starting at the decimal `address`:
    // area 0 holds the word registers, area 1 the flag registers.
    virtual int writeRegisters(int area, int address, int count, const void *buffer) = 0;
    virtual int readRegisters(int area, int address, int count, void *buffer) = 0;

protected:
    ~InterfaceComm() = default; // not virtual: it would take places of the table; the runtime owns the object
};
