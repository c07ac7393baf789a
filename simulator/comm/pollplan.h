// Which requests a link sends to read everything that is watched on it.
#pragma once

#include "simulator/comm/modbusaddress.h"

#include <vector>

namespace panelkit::simulator {

struct PollRange
{
    RegisterRange range;
    bool isAlone = false; // gets a request of its own
};

struct PollRequest
{
    RegisterRange range;
    std::vector<std::size_t> served; // numbers of the ranges that its answer holds whole
};

// Every range is served by exactly one request, so that its words are of one moment. Neighbouring and
// overlapping ranges of one table of one station share a request, and so do ranges with a gap of up to
// `largestGap` registers (or bits) between them, as long as it reads no more than the protocol allows. A
// range that is empty, or larger than a request, is left out.
std::vector<PollRequest> planPolls(const std::vector<PollRange> &ranges, int largestGap);

} // namespace panelkit::simulator
