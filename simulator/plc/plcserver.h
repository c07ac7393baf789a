// A Modbus TCP server whose faults can be switched on by name.
#pragma once

#include "simulator/plc/plccounters.h"
#include "simulator/plc/plcfault.h"
#include "simulator/plc/plcmemory.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace panelkit::simulator {

// A request as it came in.
struct PlcRequest
{
    int transaction = 0; // the client's number of it
    int unit = 0;
    int function = 0;
    int index = 0; // counted from 0
    int count = 1; // registers or bits; 1 for the functions that write a single one
};

// Serves the units of a memory from construction to destruction, in a thread of its own, to up to 64 clients
// at once. A unit that the memory does not have is not answered, as a gateway keeps silent for a station that
// is not there. A client that does not take its answers is not listened to while 16 or more of them wait.
// Every operation may be called from any thread.
class PlcServer final
{
public:
    struct Options
    {
        std::string address = "127.0.0.1"; // IPv4
        std::uint16_t port = 0;            // 0: a free one that the system picks
    };

    // Throws std::system_error when it cannot listen there. `memory` must outlive the server.
    explicit PlcServer(PlcMemory &memory);
    PlcServer(PlcMemory &memory, const Options &options);
    ~PlcServer();
    PlcServer(const PlcServer &) = delete;
    PlcServer &operator=(const PlcServer &) = delete;

    // The port stays this server's while it lives, also while the PLC is gone.
    std::uint16_t port() const;

    // One fault at most is on for each unit and one for all units; where both are, the unit's own counts.
    // Every request taken after the return meets the fault, a PLC that is gone has no connection left, and
    // one that comes back listens.
    void setFault(const PlcFaultSetting &setting);
    void clearFault(int unit = PlcFaultSetting::allUnits);

    // Called in the server's thread for each request before it is answered. It must not call the server.
    void setObserver(std::function<void(const PlcRequest &)> observer);

    PlcCounters counters() const;

    // Waits until the counters satisfy `condition`; false when they have not after `timeout`.
    bool waitUntil(const std::function<bool(const PlcCounters &)> &condition,
                   std::chrono::milliseconds timeout) const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace panelkit::simulator
