#include "network/panelip.h"

#include "macro/events.h"
#include "platform/hmi_event.h"
#include "platform/sys_base.h"
#include "register/communication.h"
#include "register/interfacecomm.h"
#include "runtime/systeminfo.h"
#include "runtime/systempath.h"

#include <QByteArray>
#include <QFile>
#include <QObject>
#include <QString>
#include <QStringList>

namespace {

const int wordArea = 0;
const int flagArea = 1;

const int saveFlag = 60213;
const int reloadFlag = 60214;

const int ipRegister = 64052;
const int netMaskRegister = 64056;
const int gatewayRegister = 64060;
const int dnsRegister = 64064;
const int partsOfAddress = 4;
const int settingCount = 4; // the registers of all settings follow one another

// Sees the flag and clears it; false when it was not set.
bool takeRequest(InterfaceComm *comm, int flag)
{
    quint16 request = 0;
    comm->readRegisters(flagArea, flag, 1, &request);
    if (request == 0)
        return false;
    const quint16 consumed = 0;
    comm->writeRegisters(flagArea, flag, 1, &consumed);
    return true;
}

void tellOperator(const QString &message)
{
    UHmiEvent::hmiEventPost(new UMessageBoxEvent(message, 30, 2), nullptr);
}

QString dottedText(const quint16 *parts)
{
    return QString::fromLatin1("%1.%2.%3.%4").arg(parts[0]).arg(parts[1]).arg(parts[2]).arg(parts[3]);
}

// What the device does at start to route its traffic: the default route, forwarding, and masquerading of what
// leaves by eth0.
QByteArray routeScript(const QByteArray &gateway)
{
    return "route add default gw " + gateway +
           "\n"
           "echo 1 >/proc/sys/net/ipv4/ip_forward\n"
           "iptables -t nat -A POSTROUTING -o eth0 -j MASQUERADE";
}

QByteArray installCommand(const QByteArray &script)
{
    return "touch /usr/tesk42/IOT/gateway.sh && echo \"" + script +
           "\" > /usr/tesk42/IOT/gateway.sh && chmod +x /usr/tesk42/IOT/gateway.sh";
}

void run(const QByteArray &command)
{
    sys_base_do_system(command.constData());
}

} // namespace

bool checkIPAddr(QString const &address)
{
    const QChar *position = address.constData();
    const QChar *const end = position + address.size();
    for (int part = 0; part < partsOfAddress; ++part) {
        if (part > 0 && (position == end || *position++ != QLatin1Char('.')))
            return false;
        int value = 0;
        int digits = 0;
        for (; position != end && digits < 3; ++position, ++digits) {
            const int digit = position->unicode() - '0';
            if (digit < 0 || digit > 9)
                break;
            value = value * 10 + digit;
        }
        if (digits == 0 || value > 255)
            return false;
    }
    return position == end;
}

void setIPInfo(InterfaceComm *comm, int firstAddress, QString const &address)
{
    if (comm == nullptr)
        return;
    const QStringList parts = address.split(QLatin1Char('.'));
    if (parts.size() != partsOfAddress)
        return;
    for (int part = 0; part < partsOfAddress; ++part) {
        const quint16 word = static_cast<quint16>(parts.at(part).toUInt());
        // Unsigned, so that no first address overflows.
        const unsigned int target = static_cast<unsigned int>(firstAddress) + static_cast<unsigned int>(part);
        comm->writeRegisters(wordArea, static_cast<int>(target), 1, &word);
    }
}

bool loadHMIIP(bool force)
{
    InterfaceComm *comm = panelkit::communication();
    if (comm == nullptr)
        return false;
    if (!force && !takeRequest(comm, reloadFlag))
        return false;

    const QString ip = sys_base_get_config_Ip(tools_isIotDevice());
    const QString netMask = sys_base_get_config_NetMask();
    const QString gateway = sys_base_get_config_Gateway();
    const QString dns = sys_base_get_config_DNS();

    setIPInfo(comm, ipRegister, ip);
    setIPInfo(comm, netMaskRegister, netMask);
    setIPInfo(comm, gatewayRegister, gateway);
    setIPInfo(comm, dnsRegister, dns);
    return true;
}

bool saveNewIP(QString const &ip, QString const &netMask, QString const &gateway, QString const &,
               QString &message)
{
    if (QFile::exists(panelkit::systemPath("/etc/config/network"))) {
        run("uci set network.eth0.ipaddr=" + ip.toLatin1() + "\n");
        run("uci set network.eth0.netmask=" + netMask.toLatin1() + "\n");
    }
    run(installCommand(routeScript(gateway.toLatin1())));
    run("sync");
    message = QObject::tr("Success.");

    if (!tools_isIotDevice()) {
        sys_base_init_config();
        loadHMIIP(true);
    }
    return true;
}

bool saveHMIIP()
{
    InterfaceComm *comm = panelkit::communication();
    if (comm == nullptr)
        return false;
    if (!takeRequest(comm, saveFlag))
        return false;

    quint16 parts[settingCount][partsOfAddress] = {};
    int target = ipRegister;
    for (auto &address : parts)
        for (quint16 &part : address)
            comm->readRegisters(wordArea, target++, 1, &part);

    static const char *const complaints[settingCount] = {
        QT_TRANSLATE_NOOP("QObject", "The IP address setting is incorrect. Please re-enter it."),
        QT_TRANSLATE_NOOP("QObject", "The subnet mask setting is incorrect. Please re-enter it."),
        QT_TRANSLATE_NOOP("QObject", "The gateway setting is incorrect. Please re-enter it."),
        QT_TRANSLATE_NOOP("QObject", "The DNS setting is incorrect. Please re-enter it.")};
    QString settings[settingCount];
    for (int i = 0; i < settingCount; ++i) {
        settings[i] = dottedText(parts[i]);
        if (!checkIPAddr(settings[i])) {
            tellOperator(QObject::tr(complaints[i]));
            return false;
        }
    }
    const QString &ip = settings[0];
    const QString &netMask = settings[1];
    const QString &gateway = settings[2];
    const QString &dns = settings[3];

    sys_base_set_config_Ip(ip);
    sys_base_set_config_NetMask(netMask);
    sys_base_set_config_Gateway(gateway);
    sys_base_set_config_DNS(dns);

    QString message;
    saveNewIP(ip, netMask, gateway, dns, message);
    tellOperator(message);
    return true;
}
