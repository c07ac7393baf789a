#include "simulator/comm/modbusclient.h"

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>

namespace panelkit::simulator {

namespace {

constexpr std::size_t headerLength = 7; // transaction, protocol and length, two bytes each; unit

std::uint8_t high(int value)
{
    return static_cast<std::uint8_t>(value >> 8 & 0xff);
}

std::uint8_t low(int value)
{
    return static_cast<std::uint8_t>(value & 0xff);
}

int wordAt(const std::vector<std::uint8_t> &bytes, std::size_t at)
{
    return bytes[at] << 8 | bytes[at + 1];
}

int readFunction(ModbusTable table)
{
    switch (table) {
    case ModbusTable::Coils:
        return MODBUS_FC_READ_COILS;
    case ModbusTable::DiscreteInputs:
        return MODBUS_FC_READ_DISCRETE_INPUTS;
    case ModbusTable::InputRegisters:
        return MODBUS_FC_READ_INPUT_REGISTERS;
    case ModbusTable::HoldingRegisters:
        break;
    }
    return MODBUS_FC_READ_HOLDING_REGISTERS;
}

// Function, index and quantity, as most requests begin.
std::vector<std::uint8_t> requestFor(int function, int index, int quantity)
{
    return {low(function), high(index), low(index), high(quantity), low(quantity)};
}

std::vector<std::uint8_t> packBits(const std::uint16_t *bits, int count)
{
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(count + 7) / 8);
    for (int i = 0; i < count; ++i)
        if (bits[i] != 0)
            bytes[static_cast<std::size_t>(i / 8)] |= static_cast<std::uint8_t>(1 << i % 8);
    return bytes;
}

std::vector<std::uint8_t> writeRequest(const RegisterRange &range, const std::uint16_t *registers)
{
    const bool ofBits = range.table == ModbusTable::Coils;
    if (range.count == 1)
        return ofBits ? requestFor(MODBUS_FC_WRITE_SINGLE_COIL, range.first, *registers != 0 ? 0xff00 : 0)
                      : requestFor(MODBUS_FC_WRITE_SINGLE_REGISTER, range.first, *registers);

    std::vector<std::uint8_t> data;
    if (ofBits) {
        data = packBits(registers, range.count);
    } else {
        for (int i = 0; i < range.count; ++i)
            data.insert(data.end(), {high(registers[i]), low(registers[i])});
    }
    std::vector<std::uint8_t> request =
        requestFor(ofBits ? MODBUS_FC_WRITE_MULTIPLE_COILS : MODBUS_FC_WRITE_MULTIPLE_REGISTERS, range.first,
                   range.count);
    request.push_back(static_cast<std::uint8_t>(data.size()));
    request.insert(request.end(), data.begin(), data.end());
    return request;
}

} // namespace

ModbusClient::ModbusClient() : m_context(modbus_new_tcp(nullptr, MODBUS_TCP_DEFAULT_PORT))
{
    if (m_context == nullptr)
        throw std::bad_alloc();
    modbus_set_byte_timeout(m_context, 0, 0); // the response time-out is for the whole answer
}

ModbusClient::~ModbusClient()
{
    disconnect();
    modbus_free(m_context);
}

TransferResult ModbusClient::connect(const std::string &host, int port, std::chrono::milliseconds timeout)
{
    disconnect();
    TransferResult result = open(host, port);
    if (result)
        result = finishConnecting(timeout);
    if (!result)
        return endConnection(result);
    modbus_set_socket(m_context, m_socket);
    modbus_set_response_timeout(m_context, static_cast<std::uint32_t>(timeout.count() / 1000),
                                static_cast<std::uint32_t>(timeout.count() % 1000 * 1000));
    return result;
}

// Begins to connect. libmodbus's own way cannot be interrupted.
TransferResult ModbusClient::open(const std::string &host, int port)
{
    addrinfo wanted = {};
    wanted.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (port < 1 || port > 65535 ||
        ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &wanted, &found) != 0)
        return {TransferStatus::NotConnected, EDESTADDRREQ};
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> address(found, &::freeaddrinfo);

    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_isInterrupted)
        return {TransferStatus::Stopped};
    m_socket = ::socket(address->ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (m_socket < 0)
        return {TransferStatus::NotConnected, errno};
    if (m_socket >= FD_SETSIZE) // libmodbus waits by select
        return {TransferStatus::NotConnected, EMFILE};
    const int on = 1;
    ::setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
    if (::connect(m_socket, address->ai_addr, address->ai_addrlen) != 0 && errno != EINPROGRESS)
        return {TransferStatus::NotConnected, errno};
    return {};
}

TransferResult ModbusClient::finishConnecting(std::chrono::milliseconds timeout)
{
    pollfd waiting = {m_socket, POLLOUT, 0};
    const int ready = ::poll(&waiting, 1, static_cast<int>(timeout.count()));
    if (ready < 0)
        return {TransferStatus::NotConnected, errno};
    if (ready == 0)
        return {TransferStatus::NotConnected, ETIMEDOUT};
    int reason = 0;
    socklen_t length = sizeof(reason);
    ::getsockopt(m_socket, SOL_SOCKET, SO_ERROR, &reason, &length);
    if (reason != 0)
        return {TransferStatus::NotConnected, reason};
    return {};
}

void ModbusClient::disconnect()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_socket >= 0)
        ::close(m_socket);
    m_socket = -1;
}

bool ModbusClient::isConnected() const
{
    std::uint8_t byte = 0;
    return m_socket >= 0 && ::recv(m_socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT) < 0 && errno == EAGAIN;
}

void ModbusClient::interrupt()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isInterrupted = true;
    if (m_socket >= 0)
        ::shutdown(m_socket, SHUT_RDWR);
}

TransferResult ModbusClient::endConnection(TransferResult result)
{
    disconnect();
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_isInterrupted ? TransferResult{TransferStatus::Stopped} : result;
}

TransferResult ModbusClient::read(const RegisterRange &range, std::uint16_t *registers)
{
    const bool ofBits = isBitTable(range.table);
    const auto count = static_cast<std::size_t>(range.count);
    const std::size_t byteCount = ofBits ? (count + 7) / 8 : count * 2;
    Bytes answer;
    const TransferResult result =
        exchange(range.unit, requestFor(readFunction(range.table), range.first, range.count), answer);
    if (!result)
        return result;
    if (answer.size() != headerLength + 2 + byteCount || answer[headerLength + 1] != byteCount)
        return endConnection({TransferStatus::Malformed});
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t data = headerLength + 2;
        registers[i] = static_cast<std::uint16_t>(ofBits ? answer[data + i / 8] >> i % 8 & 1
                                                         : wordAt(answer, data + i * 2));
    }
    return result;
}

// An answer to a write repeats the first five bytes of the request.
TransferResult ModbusClient::write(const RegisterRange &range, const std::uint16_t *registers)
{
    const Bytes request = writeRequest(range, registers);
    Bytes answer;
    const TransferResult result = exchange(range.unit, request, answer);
    if (!result)
        return result;
    if (answer.size() != headerLength + 5 ||
        !std::equal(answer.begin() + headerLength, answer.end(), request.begin()))
        return endConnection({TransferStatus::Malformed});
    return result;
}

// Sends function and data and waits for the answer to them, whole with its header.
TransferResult ModbusClient::exchange(int unit, const Bytes &request, Bytes &answer)
{
    if (m_socket < 0)
        return endConnection({TransferStatus::NotConnected, ENOTCONN});
    ++m_transaction;
    const int length = static_cast<int>(request.size()) + 1;
    Bytes frame = {high(m_transaction), low(m_transaction), 0, 0, high(length), low(length), low(unit)};
    frame.insert(frame.end(), request.begin(), request.end());
    if (::send(m_socket, frame.data(), frame.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(frame.size()))
        return endConnection({TransferStatus::Closed});
    return receive(unit, request.front(), answer);
}

TransferResult ModbusClient::receive(int unit, int function, Bytes &answer)
{
    answer.resize(MODBUS_TCP_MAX_ADU_LENGTH);
    const int received = modbus_receive_confirmation(m_context, answer.data());
    if (received < 0) {
        const int reason = errno;
        return endConnection({reason == ETIMEDOUT    ? TransferStatus::TimedOut
                              : reason == EMBBADDATA ? TransferStatus::Malformed
                                                     : TransferStatus::Closed});
    }
    answer.resize(static_cast<std::size_t>(received));
    if (answer.size() < headerLength + 2 || wordAt(answer, 2) != 0 ||
        wordAt(answer, 4) != received - static_cast<int>(headerLength) + 1)
        return endConnection({TransferStatus::Malformed});
    if (wordAt(answer, 0) != m_transaction)
        return endConnection({TransferStatus::WrongTransaction});
    if (answer[headerLength - 1] != unit)
        return endConnection({TransferStatus::WrongUnit});
    if (answer[headerLength] == (function | 0x80))
        return {TransferStatus::Refused, answer[headerLength + 1]};
    if (answer[headerLength] != function)
        return endConnection({TransferStatus::Malformed});
    return {};
}

} // namespace panelkit::simulator
