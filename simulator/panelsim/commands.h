// The commands of panelsim. Each takes its own name and its arguments, and prints its result on stdout.
#pragma once

#include "simulator/panelsim/commandline.h"

#include <QStringList>

namespace panelkit::simulator {

ExitCode runCheck(const QStringList &arguments);
ExitCode runEncoding(const QStringList &arguments);
ExitCode runExport(const QStringList &arguments);
ExitCode runGui(const QStringList &arguments);
ExitCode runInfo(const QStringList &arguments);
ExitCode runLinkParams(const QStringList &arguments);
ExitCode runLookup(const QStringList &arguments);
ExitCode runMacro(const QStringList &arguments);
ExitCode runNetwork(const QStringList &arguments);
ExitCode runServe(const QStringList &arguments);
ExitCode runShow(const QStringList &arguments);
ExitCode runSoak(const QStringList &arguments);

} // namespace panelkit::simulator
