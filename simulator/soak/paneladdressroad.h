// The panel's own address by flag, into the system configuration, which others replace meanwhile.
#pragma once

#include "simulator/host/networksettings.h"
#include "simulator/soak/inifile.h"
#include "simulator/soak/road.h"

namespace panelkit::simulator {

// What has been accepted has to stand in the configuration, beside whatever else stood there; what was
// refused has to leave it as it was. The shell has to be handed nothing but the commands that belong to it.
class PanelAddressRoad final : public Road
{
public:
    PanelAddressRoad() : Road(QStringLiteral("panel address")) {}

    void beginShift(Session &session) override;
    void endShift() override;
    void act(Chance &chance) override;

    void judgeFile(const QString &occasion);
    void judgeCommands(const QList<QByteArray> &commands, const NetworkSettings &settings);

private:
    void save(Chance &chance);
    void expect(const NetworkSettings &settings);
    void replaceConfiguration(Chance &chance);
    QString path() const;

    Session *m_session = nullptr;
    IniValues m_expected; // of the file
};

} // namespace panelkit::simulator
