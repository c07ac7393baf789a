// A client that sends bytes to a PLC and takes what comes, without a view of its own of the protocol.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace panelkit::testing {

class PlcClient
{
public:
    using Bytes = std::vector<std::uint8_t>;

    explicit PlcClient(std::uint16_t port) : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        m_isConnected = ::connect(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof(address)) == 0;
        const timeval patience = {60, 0};
        ::setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience));
    }
    ~PlcClient() { ::close(m_socket); }
    PlcClient(const PlcClient &) = delete;
    PlcClient &operator=(const PlcClient &) = delete;

    bool isConnected() const { return m_isConnected; }

    void send(const Bytes &bytes) { ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL); }

    // `count` bytes; fewer when the PLC has closed the connection before.
    Bytes receive(std::size_t count)
    {
        Bytes bytes(count);
        const ssize_t length = ::recv(m_socket, bytes.data(), count, MSG_WAITALL);
        bytes.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
        return bytes;
    }

    // What there is until the PLC closes the connection.
    Bytes receiveAll()
    {
        Bytes all;
        for (Bytes byte = receive(1); !byte.empty(); byte = receive(1))
            all.push_back(byte.front());
        return all;
    }

    // Whether nothing is there to be received.
    bool isQuiet()
    {
        std::uint8_t byte = 0;
        return ::recv(m_socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT) < 0;
    }

    Bytes ask(const Bytes &request, std::size_t answerLength)
    {
        send(request);
        return receive(answerLength);
    }

private:
    int m_socket;
    bool m_isConnected = false;
};

} // namespace panelkit::testing
