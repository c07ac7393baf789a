// The panel's own address as its system configuration keeps it.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class InterfaceComm;

namespace panelkit::simulator {

// Dotted texts; empty where nothing is set.
struct NetworkSettings
{
    QString ip;
    QString netMask;
    QString gateway;
    QString dns;
};

inline bool operator==(const NetworkSettings &one, const NetworkSettings &other)
{
    return one.ip == other.ip && one.netMask == other.netMask && one.gateway == other.gateway &&
           one.dns == other.dns;
}

// What the system configuration holds now.
NetworkSettings storedNetworkSettings();

// The four numbers of a dotted text, or none when it is not four numbers from 0 to 65535, as registers hold
// them.
QList<quint16> partsOfAddress(const QString &text);

// What the registers hold.
NetworkSettings registeredNetworkSettings(InterfaceComm &comm);

// Sets the flag that asks for the registers to be filled with what is stored.
void requestNetworkSettings(InterfaceComm &comm);

// Writes four texts of four numbers each to the registers and sets the flag that asks for them to be applied,
// as an operator does on a screen.
void enterNetworkSettings(InterfaceComm &comm, const NetworkSettings &settings);

// Whether a request by one of the two flags still stands.
bool isNetworkRequestPending(InterfaceComm &comm);

// What the library lets pass in four addresses that it accepts, and what may yet cut the panel off; one
// sentence each; English unless a translator is installed.
QStringList networkWarnings(const NetworkSettings &settings);

} // namespace panelkit::simulator
