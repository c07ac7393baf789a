// What a PLC in good health answers to a request.
#pragma once

#include "simulator/plc/modbusframe.h"
#include "simulator/plc/plcmemory.h"

#include <modbus.h>

namespace panelkit::simulator {

// libmodbus, asked over a pair of sockets, so that an answer can be spoilt or held back before it is sent.
// For one thread.
class ModbusResponder
{
public:
    ModbusResponder();
    ~ModbusResponder();
    ModbusResponder(const ModbusResponder &) = delete;
    ModbusResponder &operator=(const ModbusResponder &) = delete;

    // The answer to a whole `request` (unit and function at the least, 260 bytes at most). What it writes
    // goes into `tables`. A function that libmodbus does not know is refused with exception 1.
    ModbusFrame answer(const ModbusFrame &request, PlcTables &tables);

    ModbusFrame refusal(const ModbusFrame &request, int exceptionCode);

private:
    ModbusFrame takeAnswer();

    modbus_t *m_context;
    int m_sockets[2]; // libmodbus answers into the first, the second is where the answer is taken
};

} // namespace panelkit::simulator
