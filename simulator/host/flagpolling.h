// What a panel's runtime does when a screen asks for settings: it looks at the flag registers again and again
// and calls the library.
#pragma once

#include "network/dynamiclink.h"
#include "register/interfacecomm.h"

#include <QSettings>
#include <QString>

namespace panelkit::simulator {

class Communication;

class FlagPolling
{
public:
    // `linkSettingsFile` is the INI file that keeps the parameters of links.
    FlagPolling(Communication &communication, const QString &linkSettingsFile);

    // Puts every link to work with the parameters that were stored for it and its driver; to be called once,
    // at start.
    void loadLinks();

    struct Outcome
    {
        int savedLink = 0; // the link whose parameters were saved, or 0
        bool savedAddress = false;
        bool loadedAddress = false;
    };

    // One step: saves link parameters and lets the link work with them, fills the registers of a link when
    // another number stands in register 64000, saves the panel's address, loads it. Each is done by the
    // library, when the screen has asked for it.
    Outcome poll();

    // Whether the group of that link is stored for the driver that the link has.
    bool isStored(int linkNumber);

    // Whether what was saved is on the disk.
    QSettings::Status linkSettingsStatus() const { return m_linkSettings.status(); }

private:
    Communication &m_communication;
    QSettings m_linkSettings;
    quint16 m_editedLink = 0;
};

// The definition of a link with other parameters; those of the other kind of link are left alone.
LinkValue withParameters(LinkValue link, const dynamecslinkParam_t &param);

} // namespace panelkit::simulator
