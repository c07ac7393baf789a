// What a link's definition says of how its PLC is talked to.
#pragma once

#include <chrono>
#include <string>

struct LinkValue;

namespace panelkit::simulator {

struct LinkParameters
{
    std::string host; // an IP address in digits
    int port = 0;
    std::chrono::milliseconds interval{100}; // from one round of polls to the next
    std::chrono::milliseconds timeout{1000}; // for a connection, and for an answer
    int retries = 0;    // failures in a row that are tried again at once, without a pause
    int largestGap = 0; // registers between two addresses that are read along with them
};

// Whether the link is one that the communication talks to: Modbus over Ethernet. The driver is named with or
// without its folder, as "drivers/Modbus".
bool isModbusTcp(const LinkValue &link);

// Values that make no sense are brought into range: an interval from 1 ms to an hour, a time-out from 1 ms to
// a minute (1 s in place of 0 and less), up to 10 retries, gaps from 0 to the largest request. Host and port
// are taken as they are; connecting fails on bad ones.
LinkParameters linkParameters(const LinkValue &link);

} // namespace panelkit::simulator
