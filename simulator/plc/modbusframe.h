// The bytes of Modbus TCP.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace panelkit::simulator {

// One request or answer: transaction, protocol and length (two bytes each, high byte first), unit, function,
// data.
using ModbusFrame = std::vector<std::uint8_t>;

inline constexpr std::size_t modbusHeaderLength = 7; // up to and with the unit
inline constexpr std::size_t longestModbusFrame = 260;

} // namespace panelkit::simulator
