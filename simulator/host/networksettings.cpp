#include "simulator/host/networksettings.h"

#include "platform/sys_base.h"
#include "register/interfacecomm.h"
#include "simulator/comm/systemregisters.h"

#include <QCoreApplication>

namespace panelkit::simulator {

namespace {

// The 32 bits of an address, most significant byte first; 0 for what is none.
quint32 bitsOf(const QString &address)
{
    quint32 bits = 0;
    for (const quint16 part : partsOfAddress(address))
        bits = bits << 8 | (part & 0xffu);
    return bits;
}

bool hasHoles(quint32 mask)
{
    const quint32 hostBits = ~mask;
    return (hostBits & (hostBits + 1)) != 0;
}

// Whether anybody but the network as a whole can have this address.
bool isHostAddress(quint32 address)
{
    const quint32 firstByte = address >> 24;
    return firstByte != 0 && firstByte != 127 && firstByte < 224;
}

struct NetworkWarning
{
    Q_DECLARE_TR_FUNCTIONS(NetworkWarning)
};

// What is said of an address that is the first, and of one that is the last of its network.
struct ReservedAddress
{
    QString first;
    QString last;
};

// Warns of an address that stands for the whole of its network. A network of one or two addresses has none
// such.
void warnOfReservedAddress(const ReservedAddress &sentences, const QString &text, quint32 mask,
                           QStringList &warnings)
{
    const quint32 hostBits = ~mask;
    if (hostBits <= 1)
        return;
    const quint32 host = bitsOf(text) & hostBits;
    if (host == 0)
        warnings << sentences.first.arg(text);
    if (host == hostBits)
        warnings << sentences.last.arg(text);
}

} // namespace

NetworkSettings storedNetworkSettings()
{
    return {sys_base_get_config_Ip(false), sys_base_get_config_NetMask(), sys_base_get_config_Gateway(),
            sys_base_get_config_DNS()};
}

QList<quint16> partsOfAddress(const QString &text)
{
    QList<quint16> parts;
    for (const QString &part : text.split(QLatin1Char('.'))) {
        bool isNumber = !part.isEmpty() && part.at(0).isDigit();
        const quint16 value = isNumber ? part.toUShort(&isNumber) : 0;
        if (!isNumber)
            return {};
        parts << value;
    }
    return parts.size() == 4 ? parts : QList<quint16>();
}

NetworkSettings registeredNetworkSettings(InterfaceComm &comm)
{
    NetworkSettings settings;
    int address = panelAddressRegister;
    for (QString *text : {&settings.ip, &settings.netMask, &settings.gateway, &settings.dns}) {
        quint16 parts[4] = {};
        comm.readRegisters(wordArea, address, 4, parts);
        *text = QStringLiteral("%1.%2.%3.%4").arg(parts[0]).arg(parts[1]).arg(parts[2]).arg(parts[3]);
        address += 4;
    }
    return settings;
}

void requestNetworkSettings(InterfaceComm &comm)
{
    const quint16 request = 1;
    comm.writeRegisters(flagArea, reloadAddressFlag, 1, &request);
}

bool isNetworkRequestPending(InterfaceComm &comm)
{
    quint16 requests[2] = {};
    comm.readRegisters(flagArea, saveAddressFlag, 2, requests);
    return requests[0] != 0 || requests[1] != 0;
}

void enterNetworkSettings(InterfaceComm &comm, const NetworkSettings &settings)
{
    int address = panelAddressRegister;
    for (const QString &text : {settings.ip, settings.netMask, settings.gateway, settings.dns})
        for (const quint16 part : partsOfAddress(text))
            comm.writeRegisters(wordArea, address++, 1, &part);
    const quint16 request = 1;
    comm.writeRegisters(flagArea, saveAddressFlag, 1, &request);
}

QStringList networkWarnings(const NetworkSettings &settings)
{
    QStringList warnings;
    const quint32 ip = bitsOf(settings.ip);
    const quint32 mask = bitsOf(settings.netMask);
    const quint32 gateway = bitsOf(settings.gateway);

    if (!isHostAddress(ip))
        warnings << NetworkWarning::tr("The IP address %1 is none that a panel can have.").arg(settings.ip);
    if (gateway == ip)
        warnings << NetworkWarning::tr("The gateway %1 is the panel itself.").arg(settings.gateway);
    if (mask == 0)
        warnings << NetworkWarning::tr("The subnet mask 0.0.0.0 makes every address a neighbour.");
    if (hasHoles(mask)) {
        warnings << NetworkWarning::tr(
                        "The subnet mask %1 has holes: its ones must all stand before its zeros.")
                        .arg(settings.netMask);
        return warnings; // what lies in the subnet is then anybody's guess
    }
    warnOfReservedAddress({NetworkWarning::tr("The IP address %1 is the address of the network itself."),
                           NetworkWarning::tr("The IP address %1 is the broadcast address of its network.")},
                          settings.ip, mask, warnings);
    if ((gateway & mask) != (ip & mask))
        warnings << NetworkWarning::tr(
                        "The gateway %1 lies outside of the panel's subnet: nothing beyond it can be "
                        "reached.")
                        .arg(settings.gateway);
    else if (gateway != ip)
        warnOfReservedAddress({NetworkWarning::tr("The gateway %1 is the address of the network itself."),
                               NetworkWarning::tr("The gateway %1 is the broadcast address of its network.")},
                              settings.gateway, mask, warnings);
    return warnings;
}

} // namespace panelkit::simulator
