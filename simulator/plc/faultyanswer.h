// How a fault changes an answer on its way to the client.
#pragma once

#include "simulator/plc/modbusframe.h"
#include "simulator/plc/plcfault.h"

namespace panelkit::simulator {

struct FaultyAnswer
{
    ModbusFrame bytes; // none: nothing is sent
    bool thenClose = false;
};

// `healthy` is what the PLC would have sent. Faults that are no matter of the bytes (late, exception) leave
// it as it is; so does `Short` where an answer says no number of registers.
FaultyAnswer faultyAnswer(PlcFault fault, const ModbusFrame &healthy);

} // namespace panelkit::simulator
