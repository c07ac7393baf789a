// A PLC whose registers stand still, so that every text is known.
#pragma once

#include "simulator/plc/bottlingline.h"
#include "simulator/plc/plcserver.h"

#include <QString>

namespace panelkit::testing {

struct StillPlc
{
    simulator::PlcMemory memory{simulator::BottlingLine::units(), simulator::BottlingLine::registersPerTable};
    simulator::BottlingLine line{memory};
    simulator::PlcServer server{memory};

    QString address() const { return QStringLiteral("127.0.0.1:%1").arg(server.port()); }
};

} // namespace panelkit::testing
