// One connection to a PLC by Modbus TCP.
#pragma once

#include "simulator/comm/modbusaddress.h"
#include "simulator/comm/transfer.h"

#include <modbus.h>

#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace panelkit::simulator {

// Belongs to one thread; only interrupt may be called from others. The connection and the answers are
// libmodbus's business; the requests and what an answer must look like are ours, since libmodbus looks
// neither at the unit of a TCP answer nor at the length in its header.
class ModbusClient
{
public:
    ModbusClient();
    ~ModbusClient();
    ModbusClient(const ModbusClient &) = delete;
    ModbusClient &operator=(const ModbusClient &) = delete;

    // Connects to an IP address in digits, instead of what was connected before. `timeout` bounds this wait
    // and, from then on, the wait for the whole of each answer.
    TransferResult connect(const std::string &host, int port, std::chrono::milliseconds timeout);
    void disconnect();

    // Whether a request may be sent: false also once the PLC has closed the connection, or has sent something
    // that nobody asked for.
    bool isConnected() const;

    // Transfer a range that fits into one request. Bits are one a word. Any failure but a refusal ends the
    // connection, since what comes next on it may belong to what has failed.
    TransferResult read(const RegisterRange &range, std::uint16_t *registers);
    TransferResult write(const RegisterRange &range, const std::uint16_t *registers);

    // Ends what is waited for, at once, and everything that is tried later.
    void interrupt();

private:
    using Bytes = std::vector<std::uint8_t>;

    TransferResult open(const std::string &host, int port);
    TransferResult finishConnecting(std::chrono::milliseconds timeout);
    TransferResult exchange(int unit, const Bytes &request, Bytes &answer);
    TransferResult receive(int unit, int function, Bytes &answer);
    TransferResult endConnection(TransferResult result);

    modbus_t *m_context;
    std::uint16_t m_transaction = 0;

    mutable std::mutex m_mutex; // of the two below: another thread may shut the socket down, not close it
    int m_socket = -1;
    bool m_isInterrupted = false;
};

} // namespace panelkit::simulator
