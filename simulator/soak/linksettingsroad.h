// Link parameters by flag, into a settings file that others replace meanwhile.
#pragma once

#include "simulator/soak/inifile.h"
#include "simulator/soak/road.h"

#include <vector>

struct LinkValue;

namespace panelkit::simulator {

struct LinkDefinition;
struct SoakProject;
class SoakPlc;

// What has been accepted has to stand in the file, beside whatever else stood there; what was refused has to
// leave the file as it was. A new session has to find the links as they were accepted.
class LinkSettingsRoad final : public Road
{
public:
    LinkSettingsRoad(const SoakProject &project, const SoakPlc &plc);

    void beginShift(Session &session) override;
    void endShift() override;
    void act(Chance &chance) override;

    // Compares the file with what is known to be in it.
    void judgeFile(const QString &occasion);

private:
    // What an operator types into the registers, key by key of the settings file.
    using Parameters = QMap<QString, int>;

    Parameters drawParameters(Chance &chance, const LinkDefinition &link) const;
    void save(Chance &chance);
    bool enter(const LinkDefinition &link, const Parameters &parameters);
    void expect(const LinkDefinition &link, const Parameters &parameters);
    void replaceSettings(Chance &chance);
    void judgeLink(const LinkDefinition &link);
    QString path() const;

    const SoakProject &m_project;
    const SoakPlc &m_plc;
    Session *m_session = nullptr;
    IniValues m_expected; // of the file
};

} // namespace panelkit::simulator
