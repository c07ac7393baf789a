#include "simulator/plc/plcserver.h"

#include "simulator/plc/descriptor.h"
#include "simulator/plc/faultboard.h"
#include "simulator/plc/faultyanswer.h"
#include "simulator/plc/modbusresponder.h"

#include <modbus.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <deque>
#include <list>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

namespace panelkit::simulator {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t maximumClients = 64;

// Answers that may wait for a client; one that has so many is not listened to until it takes some.
constexpr std::size_t enoughAnswers = 16;

struct PendingAnswer
{
    ModbusFrame bytes;
    Clock::time_point due;
    bool thenClose = false;
};

struct Client
{
    Descriptor socket;
    ModbusFrame received = {}; // the beginning of the next request
    std::deque<PendingAnswer> answers = {};
    bool isClosed = false;
};

// What to wait for on a client's socket. Of one that is not listened to, only that it goes away.
short eventsOf(const Client &client, Clock::time_point now)
{
    const bool isBlocked = !client.answers.empty() && client.answers.front().due <= now;
    const int incoming = client.answers.size() < enoughAnswers ? POLLIN : POLLRDHUP;
    return static_cast<short>(isBlocked ? incoming | POLLOUT : incoming);
}

int wordAt(const ModbusFrame &frame, std::size_t at)
{
    return at + 1 < frame.size() ? frame[at] << 8 | frame[at + 1] : 0;
}

PlcRequest describe(const ModbusFrame &frame)
{
    PlcRequest request;
    request.transaction = wordAt(frame, 0);
    request.unit = frame.at(modbusHeaderLength - 1);
    request.function = frame.at(modbusHeaderLength);
    request.index = wordAt(frame, modbusHeaderLength + 1);
    const bool ofOne = request.function == MODBUS_FC_WRITE_SINGLE_COIL ||
                       request.function == MODBUS_FC_WRITE_SINGLE_REGISTER;
    request.count = ofOne ? 1 : wordAt(frame, modbusHeaderLength + 3);
    return request;
}

// A socket bound there, or a closed one and errno. Several may be bound to one port, as long as only one of
// them listens.
Descriptor boundSocket(const std::string &address, std::uint16_t port)
{
    sockaddr_in where = {};
    where.sin_family = AF_INET;
    where.sin_port = htons(port);
    Descriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const int on = 1;
    if (::inet_pton(AF_INET, address.c_str(), &where.sin_addr) != 1)
        errno = EADDRNOTAVAIL;
    else if (::setsockopt(socket.number(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on)) == 0 &&
             ::bind(socket.number(), reinterpret_cast<const sockaddr *>(&where), sizeof(where)) == 0)
        return socket;
    return Descriptor();
}

Descriptor openOrThrow(Descriptor socket, const PlcServer::Options &options)
{
    const int reason = errno;
    if (!socket.isOpen())
        throw std::system_error(reason, std::generic_category(),
                                "cannot listen on " + options.address + " port " +
                                    std::to_string(options.port));
    return socket;
}

std::uint16_t portOf(const Descriptor &socket)
{
    sockaddr_in where = {};
    socklen_t length = sizeof(where);
    ::getsockname(socket.number(), reinterpret_cast<sockaddr *>(&where), &length);
    return ntohs(where.sin_port);
}

} // namespace

class PlcServer::Private
{
public:
    Private(PlcMemory &theMemory, const Options &options)
        : memory(theMemory),
          address(options.address),
          holder(openOrThrow(boundSocket(address, options.port), options)),
          port(portOf(holder)),
          listener(openOrThrow(listeningSocket(), options)),
          wakeUp(openOrThrow(Descriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), options)),
          thread([this] { run(); })
    {
    }

    ~Private()
    {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            isStopping = true;
        }
        wake();
        thread.join();
    }

    void wake() const
    {
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = ::write(wakeUp.number(), &one, sizeof(one));
    }

    void run();
    bool followPresence();
    void awaitPresence(std::unique_lock<std::mutex> &lock);
    Descriptor listeningSocket() const;
    int pollTimeout(Clock::time_point now);
    void acceptClients();
    void receive(Client &client);
    void handle(Client &client, const ModbusFrame &request);
    void deliver(Client &client, Clock::time_point now);
    void dropClosedClients();

    PlcMemory &memory;
    const std::string address;
    const Descriptor holder; // bound and never listening: keeps the port while the PLC is gone
    const std::uint16_t port;

    // Of the server's thread.
    Descriptor listener; // closed while the PLC is gone
    std::list<Client> clients;
    ModbusResponder responder;

    mutable std::mutex mutex;
    mutable std::condition_variable changed;
    FaultBoard faults;
    PlcCounters counters;
    std::function<void(const PlcRequest &)> observer;
    bool isListening = true;
    bool hasFailedToListen = false; // and tries again
    bool isStopping = false;

    const Descriptor wakeUp;
    std::thread thread;
};

void PlcServer::Private::run()
{
    while (followPresence()) {
        std::vector<pollfd> watched = {{wakeUp.number(), POLLIN, 0}, {listener.number(), POLLIN, 0}};
        const Clock::time_point now = Clock::now();
        for (const Client &client : clients)
            watched.push_back({client.socket.number(), eventsOf(client, now), 0});
        if (::poll(watched.data(), watched.size(), pollTimeout(now)) < 0)
            continue;

        std::uint64_t wakes = 0;
        while (::read(wakeUp.number(), &wakes, sizeof(wakes)) > 0)
            continue;
        std::size_t position = 2;
        for (Client &client : clients) {
            const short events = watched[position++].revents;
            if (events & POLLRDHUP)
                client.isClosed = true;
            else if (events & (POLLIN | POLLHUP | POLLERR))
                receive(client);
            deliver(client, Clock::now());
        }
        dropClosedClients();
        if (watched[1].revents & POLLIN)
            acceptClients();
    }
}

// Listens or not, as the faults have it. Returns false when the server is to stop.
bool PlcServer::Private::followPresence()
{
    std::unique_lock<std::mutex> lock(mutex);
    const bool shouldListen = !faults.isGone(Clock::now());
    if (!shouldListen && listener.isOpen()) {
        clients.clear();
        listener = Descriptor();
    } else if (shouldListen && !listener.isOpen()) {
        listener = listeningSocket();
    }
    isListening = listener.isOpen();
    hasFailedToListen = shouldListen && !isListening;
    counters.openConnections = static_cast<int>(clients.size());
    changed.notify_all();
    return !isStopping;
}

// Until the server's thread has followed the faults as they are now.
void PlcServer::Private::awaitPresence(std::unique_lock<std::mutex> &lock)
{
    changed.wait(lock, [this] {
        return faults.isGone(Clock::now()) ? !isListening : isListening || hasFailedToListen;
    });
}

// A closed one, and errno, when the port cannot be listened on.
Descriptor PlcServer::Private::listeningSocket() const
{
    Descriptor socket = boundSocket(address, port);
    return ::listen(socket.number(), SOMAXCONN) == 0 ? std::move(socket) : Descriptor();
}

// Milliseconds until something is to be done unasked, rounded up; -1 for nothing.
int PlcServer::Private::pollTimeout(Clock::time_point now)
{
    std::optional<Clock::time_point> next;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        next = faults.nextEnd();
        if (!listener.isOpen() && !faults.isGone(now))
            next = now + std::chrono::milliseconds(100); // listening has failed; it is tried again
    }
    for (const Client &client : clients)
        if (!client.answers.empty() && client.answers.front().due > now)
            next = next ? std::min(*next, client.answers.front().due) : client.answers.front().due;
    if (!next)
        return -1;
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(*next - now).count();
    return static_cast<int>(std::clamp<long long>(wait, 0, 60'000));
}

void PlcServer::Private::acceptClients()
{
    for (;;) {
        Descriptor socket(::accept4(listener.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (!socket.isOpen())
            return;
        if (clients.size() == maximumClients)
            continue;
        const int on = 1;
        ::setsockopt(socket.number(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
        clients.push_back(Client{std::move(socket)});
        const std::lock_guard<std::mutex> lock(mutex);
        ++counters.connections;
    }
}

void PlcServer::Private::receive(Client &client)
{
    std::array<std::uint8_t, longestModbusFrame> bytes;
    const ssize_t length = ::recv(client.socket.number(), bytes.data(), bytes.size(), 0);
    if (length < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    if (length <= 0) {
        client.isClosed = true;
        return;
    }
    ModbusFrame &received = client.received;
    received.insert(received.end(), bytes.begin(), bytes.begin() + length);
    while (received.size() >= modbusHeaderLength - 1) {
        const std::size_t frameLength =
            modbusHeaderLength - 1 + static_cast<std::size_t>(wordAt(received, 4));
        if (wordAt(received, 2) != 0 || frameLength <= modbusHeaderLength ||
            frameLength > longestModbusFrame) {
            client.isClosed = true; // not this protocol
            return;
        }
        if (received.size() < frameLength)
            return;
        const auto end = received.begin() + static_cast<std::ptrdiff_t>(frameLength);
        handle(client, ModbusFrame(received.begin(), end));
        received.erase(received.begin(), end);
    }
}

void PlcServer::Private::handle(Client &client, const ModbusFrame &frame)
{
    const PlcRequest request = describe(frame);
    std::optional<PlcFaultSetting> fault;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (observer)
            observer(request);
        fault = faults.take(request.unit, Clock::now());
        ++counters.requests[{request.unit, request.function}];
        if (fault)
            ++counters.faultyAnswers;
    }
    changed.notify_all();

    PendingAnswer answer = {{}, Clock::now(), false};
    const bool isThere = memory.with(request.unit, [&](PlcTables &tables) {
        const bool refused = fault && fault->fault == PlcFault::Exception;
        answer.bytes =
            refused ? responder.refusal(frame, fault->exceptionCode) : responder.answer(frame, tables);
    });
    if (!isThere)
        return;
    if (fault) {
        const FaultyAnswer spoilt = faultyAnswer(fault->fault, answer.bytes);
        answer.bytes = spoilt.bytes;
        answer.thenClose = spoilt.thenClose;
        if (fault->fault == PlcFault::Late)
            answer.due += fault->delay;
    }
    client.answers.push_back(std::move(answer));
}

// Sends what is due, as far as the socket takes it.
void PlcServer::Private::deliver(Client &client, Clock::time_point now)
{
    while (!client.isClosed && !client.answers.empty() && client.answers.front().due <= now) {
        PendingAnswer &answer = client.answers.front();
        if (!answer.bytes.empty()) {
            const ssize_t sent =
                ::send(client.socket.number(), answer.bytes.data(), answer.bytes.size(), MSG_NOSIGNAL);
            if (sent < 0 && (errno == EAGAIN || errno == EINTR))
                return;
            if (sent < 0) {
                client.isClosed = true;
                return;
            }
            answer.bytes.erase(answer.bytes.begin(), answer.bytes.begin() + sent);
        }
        if (!answer.bytes.empty())
            return;
        client.isClosed = answer.thenClose;
        client.answers.pop_front();
    }
}

void PlcServer::Private::dropClosedClients()
{
    clients.remove_if([](const Client &client) { return client.isClosed; });
}

PlcServer::PlcServer(PlcMemory &memory) : PlcServer(memory, Options()) {}

PlcServer::PlcServer(PlcMemory &memory, const Options &options)
    : d(std::make_unique<Private>(memory, options))
{
}

PlcServer::~PlcServer() = default;

std::uint16_t PlcServer::port() const
{
    return d->port;
}

void PlcServer::setFault(const PlcFaultSetting &setting)
{
    std::unique_lock<std::mutex> lock(d->mutex);
    d->faults.set(setting, Clock::now());
    d->wake();
    d->awaitPresence(lock);
}

void PlcServer::clearFault(int unit)
{
    std::unique_lock<std::mutex> lock(d->mutex);
    d->faults.clear(unit);
    d->wake();
    d->awaitPresence(lock);
}

void PlcServer::setObserver(std::function<void(const PlcRequest &)> observer)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->observer = std::move(observer);
}

PlcCounters PlcServer::counters() const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    return d->counters;
}

bool PlcServer::waitUntil(const std::function<bool(const PlcCounters &)> &condition,
                          std::chrono::milliseconds timeout) const
{
    std::unique_lock<std::mutex> lock(d->mutex);
    return d->changed.wait_for(lock, timeout, [&] { return condition(d->counters); });
}

} // namespace panelkit::simulator
