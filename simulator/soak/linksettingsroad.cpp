#include "simulator/soak/linksettingsroad.h"

#include "runtime/systemroot.h"
#include "simulator/comm/communication.h"
#include "simulator/comm/systemregisters.h"
#include "simulator/host/flagpolling.h"
#include "simulator/host/panelfiles.h"
#include "simulator/host/session.h"
#include "simulator/soak/chance.h"
#include "simulator/soak/fulldisk.h"
#include "simulator/soak/soakplc.h"
#include "simulator/soak/soakproject.h"

#include <QFile>

#include <optional>

namespace panelkit::simulator {

namespace {

struct Parameter
{
    const char *key; // in the settings file
    int firstRegister;
    qint32 LinkValue::*field; // of the link; null where it has none
};

const Parameter commonParameters[] = {
    {"plcStation", 64002, &LinkValue::station}, {"interval", 64003, &LinkValue::interval},
    {"timeout", 64004, &LinkValue::timeout},    {"retry", 64005, &LinkValue::retry},
    {"addmore", 64006, &LinkValue::addmore},    {"addrinterval", 64007, &LinkValue::addrInterval},
};
const Parameter ethernetParameters[] = {
    {"ip1", 64020, &LinkValue::ip1}, {"ip2", 64021, &LinkValue::ip2},   {"ip3", 64022, &LinkValue::ip3},
    {"ip4", 64023, &LinkValue::ip4}, {"port", 64024, &LinkValue::port},
};
const Parameter serialParameters[] = {
    {"mode", 64040, nullptr},
    {"baudlow", 64041, &LinkValue::baud}, // two registers, the low word first
    {"data", 64043, &LinkValue::dataBits},
    {"check", 64044, &LinkValue::check},
    {"stop", 64045, &LinkValue::stopBits},
};

std::vector<Parameter> parametersOf(const LinkDefinition &link)
{
    std::vector<Parameter> parameters(std::begin(commonParameters), std::end(commonParameters));
    if (link.isEthernet())
        parameters.insert(parameters.end(), std::begin(ethernetParameters), std::end(ethernetParameters));
    else
        parameters.insert(parameters.end(), std::begin(serialParameters), std::end(serialParameters));
    return parameters;
}

QString keyOf(const LinkDefinition &link, const QString &key)
{
    return QStringLiteral("link%1/%2").arg(link.number).arg(key);
}

} // namespace

LinkSettingsRoad::LinkSettingsRoad(const SoakProject &project, const SoakPlc &plc)
    : Road(QStringLiteral("link settings")),
      m_project(project),
      m_plc(plc)
{
}

QString LinkSettingsRoad::path() const
{
    return tools_systemRoot() + QLatin1String(linkSettingsPath);
}

void LinkSettingsRoad::beginShift(Session &session)
{
    m_session = &session;
    judgeFile(QStringLiteral("after a restart"));
    for (const LinkDefinition &link : m_project.project.links)
        judgeLink(link);
}

void LinkSettingsRoad::endShift()
{
    judgeFile(QStringLiteral("before a restart"));
    m_session = nullptr;
}

void LinkSettingsRoad::act(Chance &chance)
{
    if (m_project.project.links.empty())
        return;
    if (chance.oneIn(6))
        replaceSettings(chance);
    else
        save(chance);
}

LinkSettingsRoad::Parameters LinkSettingsRoad::drawParameters(Chance &chance,
                                                              const LinkDefinition &link) const
{
    Parameters parameters;
    for (const Parameter &parameter : parametersOf(link))
        parameters.insert(QLatin1String(parameter.key), chance.between(0, 65535));
    if (!link.isEthernet()) {
        parameters[QStringLiteral("baudlow")] = chance.between(300, 4000000);
        return parameters;
    }
    // Such that nobody waits for long, and that only a PLC of the soak is ever talked to.
    parameters[QStringLiteral("plcStation")] = chance.of(m_plc.units());
    parameters[QStringLiteral("interval")] = chance.between(1, 200);
    parameters[QStringLiteral("timeout")] = chance.between(20, 400);
    parameters[QStringLiteral("retry")] = chance.between(0, 2);
    parameters[QStringLiteral("addmore")] = chance.between(0, 1);
    parameters[QStringLiteral("addrinterval")] = chance.between(0, 200);
    const bool isAsInProject = chance.oneIn(4);
    const int port = chance.oneIn(6) ? m_plc.deadPort() : m_plc.port();
    const std::array<quint8, 4> loopback = {127, 0, 0, 1};
    const std::array<quint8, 4> &ip = isAsInProject ? link.ip : loopback;
    for (std::size_t i = 0; i < ip.size(); ++i)
        parameters[QStringLiteral("ip%1").arg(i + 1)] = ip[i];
    parameters[QStringLiteral("port")] = isAsInProject ? link.tcpPort : port;
    return parameters;
}

void LinkSettingsRoad::save(Chance &chance)
{
    const LinkDefinition &link = chance.of(m_project.project.links);
    const Parameters parameters = drawParameters(chance, link);
    const bool isDiskFull = chance.oneIn(4);
    const int room = chance.between(0, 1000); // bytes; the file has some hundred
    bool isAccepted = false;
    ask();
    if (isDiskFull) {
        const FullDisk disk(static_cast<rlim_t>(room));
        isAccepted = enter(link, parameters);
    } else {
        isAccepted = enter(link, parameters);
    }
    settle(isAccepted);
    if (isAccepted)
        expect(link, parameters);
    else if (!isDiskFull)
        lose(QStringLiteral("the parameters of link %1 were refused without a reason").arg(link.number));
    judgeFile(isAccepted ? QStringLiteral("after they were accepted")
                         : QStringLiteral("after others were refused"));
    if (isAccepted)
        judgeLink(link);
}

// As an operator does on a screen. Whether the parameters were accepted.
bool LinkSettingsRoad::enter(const LinkDefinition &link, const Parameters &parameters)
{
    Communication &comm = m_session->communication();
    const auto number = static_cast<quint16>(link.number);
    comm.writeRegisters(wordArea, linkNumberRegister, 1, &number);
    m_session->flags().poll();
    for (const Parameter &parameter : parametersOf(link)) {
        const auto value = static_cast<quint32>(parameters.value(QLatin1String(parameter.key)));
        const quint16 words[2] = {static_cast<quint16>(value), static_cast<quint16>(value >> 16)};
        const bool isWide = parameter.firstRegister == 64041;
        comm.writeRegisters(wordArea, parameter.firstRegister, isWide ? 2 : 1, words);
    }
    const quint16 request = 1;
    comm.writeRegisters(flagArea, saveLinkFlag, 1, &request);
    return m_session->flags().poll().savedLink == link.number &&
           m_session->flags().linkSettingsStatus() != QSettings::AccessError;
}

void LinkSettingsRoad::expect(const LinkDefinition &link, const Parameters &parameters)
{
    m_expected.insert(keyOf(link, QStringLiteral("driLib")), link.driver);
    for (auto value = parameters.cbegin(); value != parameters.cend(); ++value)
        m_expected.insert(keyOf(link, value.key()), QString::number(value.value()));
}

// Another program puts a settings file in the place of this one: with a note of its own, with another
// time-out or without a group, or only with the first part of what stood there.
void LinkSettingsRoad::replaceSettings(Chance &chance)
{
    QByteArray content = fileBytes(path());
    switch (chance.between(1, 4)) {
    case 1:
        content += "\n[soak]\nnote=" + QByteArray::number(chance.between(0, 1 << 30)) + "\n";
        break;
    case 2:
        content.clear();
        for (int i = chance.between(0, 3); i > 0; --i)
            content += "[note" + QByteArray::number(i) +
                       "]\nvalue=" + QByteArray::number(chance.between(0, 1 << 30)) + "\n";
        break;
    case 3: { // whole lines
        const auto cut = content.lastIndexOf('\n', chance.between(0, static_cast<int>(content.size())));
        content.truncate(qMax<int>(0, static_cast<int>(cut) + 1));
        break;
    }
    default:
        content += "\nthis line is no setting\n";
    }
    if (!replaceFile(path(), content))
        lose(QStringLiteral("%1 could not be replaced").arg(path()));
    m_expected = iniValues(content);
}

void LinkSettingsRoad::judgeFile(const QString &occasion)
{
    const QString fault = difference(m_expected, iniValues(fileBytes(path())));
    if (!fault.isEmpty())
        lose(QStringLiteral("%1, the settings file is not as it was accepted: %2").arg(occasion, fault));
}

// The link has to work with what is stored for its driver.
void LinkSettingsRoad::judgeLink(const LinkDefinition &link)
{
    if (m_expected.value(keyOf(link, QStringLiteral("driLib"))) != link.driver)
        return;
    const LinkValue value = m_session->communication().getLinkValue(static_cast<quint16>(link.number));
    for (const Parameter &parameter : parametersOf(link)) {
        if (parameter.field == nullptr)
            continue;
        const QString stored = m_expected.value(keyOf(link, QLatin1String(parameter.key)));
        if (value.*parameter.field != stored.toInt())
            lose(QStringLiteral("link %1 works with %2 = %3, where %4 was accepted")
                     .arg(link.number)
                     .arg(QLatin1String(parameter.key))
                     .arg(value.*parameter.field)
                     .arg(stored));
    }
}

} // namespace panelkit::simulator
