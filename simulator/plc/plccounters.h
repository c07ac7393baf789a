// What a PLC has been asked.
#pragma once

#include <cstdint>
#include <map>
#include <utility>

namespace panelkit::simulator {

// Since the start of the server.
struct PlcCounters
{
    std::map<std::pair<int, int>, std::uint64_t> requests; // taken, by unit and function
    std::uint64_t faultyAnswers = 0;                       // requests that met a fault
    std::uint64_t connections = 0;                         // taken
    int openConnections = 0;                               // now

    std::uint64_t requestCount() const;
    std::uint64_t requestCount(int unit) const;
    std::uint64_t requestCount(int unit, int function) const;
};

} // namespace panelkit::simulator
