// What a PLC in good health answers to a request.
#pragma once

#include <cstdint>
#include <vector>

typedef struct _modbus modbus_t; // NOLINT(bugprone-reserved-identifier)
// NOLINTNEXTLINE(bugprone-reserved-identifier): the library's own name
typedef struct _modbus_mapping_t modbus_mapping_t;

namespace panelkit::simulator {

// One request or answer of Modbus TCP: transaction, protocol and length (two bytes each, high byte first),
// unit, function, data.
using ModbusFrame = std::vector<std::uint8_t>;

inline constexpr std::size_t modbusHeaderLength = 7; // up to and with the unit
inline constexpr std::size_t longestModbusFrame = 260;

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
    ModbusFrame answer(const ModbusFrame &request, modbus_mapping_t *tables);

    ModbusFrame refusal(const ModbusFrame &request, int exceptionCode);

private:
    ModbusFrame takeAnswer();

    modbus_t *m_context;
    int m_sockets[2]; // libmodbus answers into the first, the second is where the answer is taken
};

} // namespace panelkit::simulator
