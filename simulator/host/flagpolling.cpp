#include "simulator/host/flagpolling.h"

#include "network/panelip.h"
#include "simulator/comm/communication.h"
#include "simulator/comm/systemregisters.h"

namespace panelkit::simulator {

namespace {

QString groupOf(int linkNumber)
{
    return QStringLiteral("link%1").arg(linkNumber);
}

} // namespace

LinkValue withParameters(LinkValue link, const dynamecslinkParam_t &param)
{
    link.station = param.station;
    link.interval = param.interval;
    link.timeout = param.timeout;
    link.retry = param.retry;
    link.addmore = param.addmore;
    link.addrInterval = param.addrInterval;
    if (param.isEthernet == 1) {
        link.ip1 = param.ip1;
        link.ip2 = param.ip2;
        link.ip3 = param.ip3;
        link.ip4 = param.ip4;
        link.port = param.port;
    } else {
        link.baud = param.baud;
        link.dataBits = param.dataBits;
        link.check = param.check;
        link.stopBits = param.stopBits;
    }
    return link;
}

FlagPolling::FlagPolling(Communication &communication, const QString &linkSettingsFile)
    : m_communication(communication),
      m_linkSettings(linkSettingsFile, QSettings::IniFormat)
{
}

void FlagPolling::loadLinks()
{
    for (const int number : m_communication.linkNumbers()) {
        const LinkValue link = m_communication.getLinkValue(static_cast<quint16>(number));
        dynamecslinkParam_t param = {};
        if (loadDynamicsLinkFromFile(&m_linkSettings, &param, groupOf(number), link) == 1)
            m_communication.updateLink(withParameters(link, param));
    }
}

FlagPolling::Outcome FlagPolling::poll()
{
    Outcome outcome;
    dynamecslinkParam_t param = {};
    if (saveDynamicsLinkParam(&m_linkSettings, &m_communication, &param) == 1) {
        outcome.savedLink = param.linkId;
        const LinkValue link = m_communication.getLinkValue(static_cast<quint16>(param.linkId));
        m_communication.updateLink(withParameters(link, param));
    }

    // Behind the save: a screen that enters number and parameters at once keeps what it entered.
    quint16 editedLink = 0;
    m_communication.readRegisters(wordArea, linkNumberRegister, 1, &editedLink);
    if (editedLink != m_editedLink) {
        m_editedLink = editedLink;
        loadDynamicsLinkParam(&m_linkSettings, &m_communication);
    }

    outcome.savedAddress = saveHMIIP();
    outcome.loadedAddress = loadHMIIP(false);
    return outcome;
}

bool FlagPolling::isStored(int linkNumber)
{
    dynamecslinkParam_t param = {};
    const LinkValue link = m_communication.getLinkValue(static_cast<quint16>(linkNumber));
    return loadDynamicsLinkFromFile(&m_linkSettings, &param, groupOf(linkNumber), link) == 1;
}

} // namespace panelkit::simulator
