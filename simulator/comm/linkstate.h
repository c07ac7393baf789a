// How a link is doing.
#pragma once

#include "simulator/comm/transfer.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace panelkit::simulator {

enum class LinkCondition
{
    Unknown,           // there is no link of that number
    Internal,          // the panel's own memory
    WithoutConnection, // not Modbus over Ethernet: every value is missing, nothing is sent
    Idle,              // nothing has been asked for yet, or the first answer is still to come
    Connected,         // every station that is asked answers
    Disturbed,         // some stations answer and some do not
    Away               // nobody answers; tried again after a pause that grows
};

struct LinkState
{
    LinkCondition condition = LinkCondition::Unknown;
    bool isAskedFor = false;    // something of it is watched, or waits to be read or written
    std::uint64_t rounds = 0;   // rounds through everything that is watched
    std::uint64_t polls = 0;    // requests of these rounds that brought values
    std::uint64_t refusals = 0; // requests of any kind that the PLC refused with an exception code
    std::uint64_t failures = 0; // connections not made, and requests without an answer, or with a wrong one
    TransferResult lastFailure; // the last of these; `Done` while there was none
    TransferResult lastRefusal; // the last one that was refused; `Done` while there was none
    std::vector<int> awayStations; // those that do not answer
};

// One line for people, as "away: no connection to the PLC: Connection refused".
QString describe(const LinkState &state);

} // namespace panelkit::simulator
