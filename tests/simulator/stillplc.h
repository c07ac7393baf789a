// A PLC whose registers stand still, so that every text is known.
#pragma once

#include "simulator/host/session.h"
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

    // For a session on this PLC.
    simulator::SessionOptions sessionOptions(const QString &projectFile = QString()) const
    {
        simulator::SessionOptions options;
        options.projectFile = projectFile;
        options.plc = simulator::PlcAddress{QStringLiteral("127.0.0.1"), server.port()};
        return options;
    }

    void cutOff() { server.setFault({simulator::PlcFault::Gone}); }
    void silence() { server.setFault({simulator::PlcFault::Silent}); }
    void comeBack() { server.clearFault(); }
};

} // namespace panelkit::testing
