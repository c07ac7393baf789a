// The drivers of a project's links: in their place on the panel, and what is wrong with one.
#pragma once

#include "link/driverfile.h"

#include <QString>

#include <vector>

namespace panelkit::simulator {

class PanelFiles;
class Session;
struct Project;

// Where the drivers that panelsim brings along lie, as "lib<name>.so".
QString ownDriverFolder();

// Puts a copy of each link's driver into the panel's driver folder, where panelsim brings that driver along
// and no file lies in its place: one that does is the user's. Copies, since the lookup of an index skips
// symbolic links and the system's loader takes two hard links for one library. False, with one line in
// `error`, when one cannot be written.
bool placeDrivers(const Project &project, const PanelFiles &files, QString &error);

struct DriverDiagnosis
{
    int linkNumber = 0;
    QString linkName;
    QString file; // where the link's driver has to lie
    DriverFileState state = DriverFileState::Missing;
    bool loads = false; // never tried unless the state is Complete
    bool hasCheckAddr = false;
    bool hasCheckAddrValidity = false;
    bool hasGetRegDiscription = false;
    QString problem; // one sentence; empty when nothing is wrong

    bool isSound() const { return hasCheckAddr && hasCheckAddrValidity && hasGetRegDiscription; }
};

// One for each link of the session's project, in its order. Each driver is loaded and unloaded again.
std::vector<DriverDiagnosis> diagnoseDrivers(const Session &session);

} // namespace panelkit::simulator
