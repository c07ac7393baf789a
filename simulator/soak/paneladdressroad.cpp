#include "simulator/soak/paneladdressroad.h"

#include "network/panelip.h"
#include "platform/sys_base.h"
#include "runtime/systemroot.h"
#include "simulator/comm/communication.h"
#include "simulator/host/flagpolling.h"
#include "simulator/host/operatormessages.h"
#include "simulator/host/panelfiles.h"
#include "simulator/host/session.h"
#include "simulator/platform/systembase.h"
#include "simulator/soak/chance.h"
#include "simulator/soak/fulldisk.h"

#include <optional>

namespace panelkit::simulator {

namespace {

QString randomAddress(Chance &chance, int highestPart)
{
    QStringList parts;
    for (int i = 0; i < 4; ++i)
        parts << QString::number(chance.between(0, highestPart));
    return parts.join(QLatin1Char('.'));
}

QByteArray gatewayCommand(const QByteArray &gateway)
{
    return "touch /usr/tesk42/IOT/gateway.sh && echo \"route add default gw " + gateway +
           "\n"
           "echo 1 >/proc/sys/net/ipv4/ip_forward\n"
           "iptables -t nat -A POSTROUTING -o eth0 -j MASQUERADE\" > /usr/tesk42/IOT/gateway.sh && chmod +x "
           "/usr/tesk42/IOT/gateway.sh";
}

} // namespace

QString PanelAddressRoad::path() const
{
    return tools_systemRoot() + QLatin1String(configurationPath);
}

void PanelAddressRoad::beginShift(Session &session)
{
    m_session = &session;
    judgeFile(QStringLiteral("after a restart"));
}

void PanelAddressRoad::endShift()
{
    judgeFile(QStringLiteral("before a restart"));
    m_session = nullptr;
}

void PanelAddressRoad::act(Chance &chance)
{
    if (chance.oneIn(5))
        replaceConfiguration(chance);
    else
        save(chance);
}

void PanelAddressRoad::save(Chance &chance)
{
    const bool areValid = !chance.oneIn(4);
    NetworkSettings wanted;
    for (QString *text : {&wanted.ip, &wanted.netMask, &wanted.gateway, &wanted.dns})
        *text = randomAddress(chance, areValid ? 255 : 65535);
    const bool isDiskFull = chance.oneIn(4);
    const auto room = static_cast<rlim_t>(chance.between(0, 300));

    const bool mayBeSaved = checkIPAddr(wanted.ip) && checkIPAddr(wanted.netMask) &&
                            checkIPAddr(wanted.gateway) && checkIPAddr(wanted.dns);
    clearRecordedCommands();
    takeOperatorMessages();
    ask();
    enterNetworkSettings(m_session->communication(), wanted);
    bool isSaved = false;
    {
        std::optional<FullDisk> disk;
        if (isDiskFull)
            disk.emplace(room);
        isSaved = m_session->flags().poll().savedAddress;
    }
    sys_base_init_config(); // from the file, which decides what is kept
    const bool isStored = isSaved && storedNetworkSettings() == wanted;
    settle(isStored);

    if (isSaved != mayBeSaved || takeOperatorMessages().size() != 1)
        lose(QStringLiteral("%1 was %2 or the operator was not told")
                 .arg(wanted.ip, isSaved ? QStringLiteral("accepted") : QStringLiteral("refused")));
    if (isStored)
        expect(wanted);
    else if (isSaved && !isDiskFull)
        lose(QStringLiteral("%1 was accepted and not stored").arg(wanted.ip));
    judgeFile(isStored ? QStringLiteral("after an address was accepted")
                       : QStringLiteral("after an address was refused"));
    judgeCommands(recordedCommands(), isSaved ? wanted : NetworkSettings());
}

void PanelAddressRoad::expect(const NetworkSettings &settings)
{
    m_expected.insert(QStringLiteral("network/ip"), settings.ip);
    m_expected.insert(QStringLiteral("network/netmask"), settings.netMask);
    m_expected.insert(QStringLiteral("network/gateway"), settings.gateway);
    m_expected.insert(QStringLiteral("network/dns"), settings.dns);
}

// Another program sets the address; the screen asks for it and has to get it.
void PanelAddressRoad::replaceConfiguration(Chance &chance)
{
    const QString ip = randomAddress(chance, 255);
    const QByteArray content = "[network]\nip=" + ip.toLatin1() +
                               "\n\n[other]\nvalue=" + QByteArray::number(chance.between(0, 1 << 30)) + "\n";
    if (!replaceFile(path(), content))
        lose(QStringLiteral("%1 could not be replaced").arg(path()));
    m_expected = iniValues(content);

    ask();
    sys_base_init_config();
    requestNetworkSettings(m_session->communication());
    const bool isLoaded = m_session->flags().poll().loadedAddress;
    settle(isLoaded);
    const QString shown = registeredNetworkSettings(m_session->communication()).ip;
    if (shown != ip)
        lose(QStringLiteral("the registers have %1, where the configuration has %2").arg(shown, ip));
}

void PanelAddressRoad::judgeFile(const QString &occasion)
{
    const QString fault = difference(m_expected, iniValues(fileBytes(path())));
    if (!fault.isEmpty())
        lose(QStringLiteral("%1, the configuration is not as it was stored: %2").arg(occasion, fault));
}

// Empty settings stand for a refusal, after which nothing may be run.
void PanelAddressRoad::judgeCommands(const QList<QByteArray> &commands, const NetworkSettings &settings)
{
    QList<QByteArray> expected;
    if (!settings.ip.isEmpty())
        expected << gatewayCommand(settings.gateway.toLatin1()) << QByteArray("sync");
    if (commands != expected)
        lose(QStringLiteral("the shell was handed: %1")
                 .arg(QString::fromUtf8(commands.join("; ")).replace(QLatin1Char('\n'), QLatin1Char(' '))));
    clearRecordedCommands();
}

} // namespace panelkit::simulator
