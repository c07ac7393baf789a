// The sample project that is part of the programs: a small bottling line.
#pragma once

#include <QByteArray>

namespace panelkit::simulator {

// The bytes of the sample's project file, as readProject takes them.
QByteArray sampleProject();

} // namespace panelkit::simulator
