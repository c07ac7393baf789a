#include "simulator/plc/faultyanswer.h"

#include <modbus.h>

namespace panelkit::simulator {

namespace {

ModbusFrame firstHalf(const ModbusFrame &frame)
{
    return ModbusFrame(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(frame.size() / 2));
}

ModbusFrame shortened(ModbusFrame frame)
{
    constexpr std::size_t functionAt = modbusHeaderLength;
    constexpr std::size_t byteCountAt = functionAt + 1;
    constexpr std::size_t quantityAt = functionAt + 4; // low byte of what a write of several echoes
    const int function = frame.at(functionAt);
    const bool ofRegisters =
        function == MODBUS_FC_READ_HOLDING_REGISTERS || function == MODBUS_FC_READ_INPUT_REGISTERS;
    if (ofRegisters || function == MODBUS_FC_READ_COILS || function == MODBUS_FC_READ_DISCRETE_INPUTS) {
        const int dropped = ofRegisters ? 2 : 1;
        frame.resize(frame.size() - static_cast<std::size_t>(dropped));
        frame[byteCountAt] = static_cast<std::uint8_t>(frame[byteCountAt] - dropped);
        frame[5] = static_cast<std::uint8_t>(frame[5] - dropped); // low byte of the header's length
    } else if (function == MODBUS_FC_WRITE_MULTIPLE_COILS || function == MODBUS_FC_WRITE_MULTIPLE_REGISTERS) {
        frame[quantityAt] = static_cast<std::uint8_t>(frame[quantityAt] - 1);
    }
    return frame;
}

} // namespace

FaultyAnswer faultyAnswer(PlcFault fault, const ModbusFrame &healthy)
{
    FaultyAnswer answer = {healthy, false};
    switch (fault) {
    case PlcFault::Late:
    case PlcFault::Exception:
        break;
    case PlcFault::Silent:
    case PlcFault::Gone:
        answer.bytes.clear();
        break;
    case PlcFault::CutOff:
        answer = {firstHalf(healthy), true};
        break;
    case PlcFault::Truncated:
        answer.bytes = firstHalf(healthy);
        break;
    case PlcFault::Short:
        answer.bytes = shortened(healthy);
        break;
    case PlcFault::WrongTransaction:
        answer.bytes.at(1) = static_cast<std::uint8_t>(healthy.at(1) + 1);
        break;
    case PlcFault::WrongUnit:
        answer.bytes.at(modbusHeaderLength - 1) =
            static_cast<std::uint8_t>(healthy.at(modbusHeaderLength - 1) + 1);
        break;
    }
    return answer;
}

} // namespace panelkit::simulator
