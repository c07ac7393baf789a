#include "simulator/plc/modbusresponder.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

namespace panelkit::simulator {

namespace {

// libmodbus reads as far as a request says that it goes; behind what really came there are zeros.
std::array<std::uint8_t, longestModbusFrame> padded(const ModbusFrame &request)
{
    std::array<std::uint8_t, longestModbusFrame> bytes = {};
    std::copy_n(request.begin(), std::min(request.size(), bytes.size()), bytes.begin());
    return bytes;
}

// The tables as libmodbus wants them.
modbus_mapping_t mappingOf(PlcTables &tables)
{
    modbus_mapping_t mapping = {};
    mapping.nb_bits = mapping.nb_input_bits = tables.size();
    mapping.nb_registers = mapping.nb_input_registers = tables.size();
    mapping.tab_bits = tables.coils();
    mapping.tab_input_bits = tables.discreteInputs();
    mapping.tab_registers = tables.holdingRegisters();
    mapping.tab_input_registers = tables.inputRegisters();
    return mapping;
}

} // namespace

ModbusResponder::ModbusResponder() : m_context(modbus_new_tcp("127.0.0.1", MODBUS_TCP_DEFAULT_PORT))
{
    if (m_context == nullptr || ::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, m_sockets) != 0) {
        const int reason = errno;
        modbus_free(m_context);
        throw std::system_error(reason, std::generic_category(), "no pair of sockets");
    }
    modbus_set_socket(m_context, m_sockets[0]);
    // Before it refuses a bad value, libmodbus sleeps for one response time-out.
    modbus_set_response_timeout(m_context, 0, 1);
}

ModbusResponder::~ModbusResponder()
{
    modbus_free(m_context);
    ::close(m_sockets[0]);
    ::close(m_sockets[1]);
}

ModbusFrame ModbusResponder::answer(const ModbusFrame &request, PlcTables &tables)
{
    const auto bytes = padded(request);
    modbus_mapping_t mapping = mappingOf(tables);
    modbus_reply(m_context, bytes.data(), static_cast<int>(request.size()), &mapping);
    ModbusFrame result = takeAnswer();
    return result.empty() ? refusal(request, MODBUS_EXCEPTION_ILLEGAL_FUNCTION) : result;
}

ModbusFrame ModbusResponder::refusal(const ModbusFrame &request, int exceptionCode)
{
    const auto bytes = padded(request);
    modbus_reply_exception(m_context, bytes.data(), static_cast<unsigned>(exceptionCode));
    return takeAnswer();
}

ModbusFrame ModbusResponder::takeAnswer()
{
    ModbusFrame frame(longestModbusFrame);
    const ssize_t length = ::recv(m_sockets[1], frame.data(), frame.size(), MSG_DONTWAIT);
    frame.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return frame;
}

} // namespace panelkit::simulator
