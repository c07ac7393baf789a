// What applying new network settings would do to a panel, without doing it.
#pragma once

#include "simulator/host/networksettings.h"

namespace panelkit::simulator {

struct PlanStep
{
    QString place; // "register", "flag", "setting", "command" or "message"
    QString text;
};

struct NetworkPlan
{
    bool isAccepted = false; // by the library
    QList<PlanStep> steps;
    QStringList warnings;
};

// Writes `wanted`, of which each text must have four parts, to the registers of a rehearsal and lets the
// library apply them there: with the files of the panel at `root` to look at, but its settings in memory and
// no shell. Nothing below `root` or elsewhere changes. An empty `root` stands for a panel without any file.
//
// For a process without a session: it takes the process's application record and stand-ins for itself.
NetworkPlan planNetwork(const QString &root, const NetworkSettings &wanted);

} // namespace panelkit::simulator
