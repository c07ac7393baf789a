// How a read or a write of registers ended.
#pragma once

#include <string>

namespace panelkit::simulator {

enum class TransferStatus
{
    Done,
    NoSuchLink,
    WithoutConnection, // the link is of a kind that is not talked to
    NoSuchRegister,    // unknown block, or words, a station or a count that lie outside of what it has
    ReadOnly,
    NotSent,          // it waited for the whole time-out behind others and was then given up
    Away,             // the PLC did not answer last time; the pause until the next try is not over
    NotConnected,     // `detail`: errno
    TimedOut,         // sent, but no whole answer in time: whether a write was carried out is not known
    Closed,           // the PLC closed the connection before its answer was complete
    WrongTransaction, // what came was the answer to something else,
    WrongUnit,        // or of another station,
    Malformed,        // or none that fits what was asked
    Refused,          // `detail`: the exception code
    Stopped           // the link was taken down meanwhile
};

struct TransferResult
{
    TransferStatus status = TransferStatus::Done;
    int detail = 0;

    explicit operator bool() const { return status == TransferStatus::Done; }
};

// One line for people.
std::string describe(const TransferResult &result);

} // namespace panelkit::simulator
