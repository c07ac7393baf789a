// The simulator's communication interface: the panel's own memory, its system registers, and PLC links by
// Modbus TCP.
#pragma once

#include "register/interfacecomm.h"
#include "register/registervaluechange.h"
#include "simulator/comm/linkstate.h"
#include "simulator/comm/transfer.h"
#include "simulator/project/linkrecord.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace panelkit::simulator {

struct CommunicationOptions
{
    // When not empty: where the PLC of every Modbus link is, in place of what the constructor's links say. A
    // name is looked up once, by the constructor. A link that updateLink moves to another address is found
    // there.
    QString plcHost;
    int plcPort = 502;

    // The pause before a PLC that is away is tried again doubles from the first to the longest.
    std::chrono::milliseconds firstPause{200};
    std::chrono::milliseconds longestPause{5000};

    // An address that nobody has read for so long is no longer polled.
    std::chrono::milliseconds forgetAfter{10'000};
};

// Where a PLC is in the network.
struct PlcPlace
{
    QString host; // an IP address in digits; of a PLC that was not found, the name by which it was looked for
    int port = 0;
};

inline bool operator==(const PlcPlace &left, const PlcPlace &right)
{
    return left.host == right.host && left.port == right.port;
}

// Where the link's definition says that its PLC is.
PlcPlace placeInDefinition(const LinkValue &link);

// A link whose driver is "Modbus" and whose port is an Ethernet port is polled by a thread of its own, as
// docs/formats/modbus.md describes. Any other link is without connection: its values are missing. Links with
// a number below 1 or above 65535, or with one that an earlier record has, are left out.
//
// Words are handed over as the PLC holds them, one register a word, so that the low word of a value of two
// words comes first where the PLC has it first. Buffers need not be aligned.
//
// Every operation may be called from any thread, none waits longer than the link's time-out, and destruction
// waits for nothing.
class Communication final : public InterfaceComm
{
public:
    explicit Communication(const std::vector<LinkRecord> &links, const CommunicationOptions &options = {});
    ~Communication();
    Communication(const Communication &) = delete;
    Communication &operator=(const Communication &) = delete;

    // An unknown link gives a record with the `id` -1. The internal storage is link 0, by name "Internal
    // storage area", with the station -1.
    LinkValue getLinkValue(quint16 linkNumber) override;
    LinkValue getLinkValueByName(const QString &linkName) override;

    // The index that a script variable is declared with, which is the link's own count from 0 on, as in the
    // calls of getdata and setdata that its macros become: the number that `indexText` holds, or -1 for what
    // is not there, and for links without connection. `extra` and `dataType` make no difference.
    int resolveAddressIndex(int linkId, const QString &blockName, const QString &indexText, int extra,
                            int dataType) override;

    // Copies the value that was read last: a register gives one word, a bit gives one word, 0 or 1. Returns
    // 0, or -1 with the buffer left as it is: when there is no such address, when the PLC is away, refuses
    // the address or has not answered yet, or when `count` is larger than one request (125 words, 2000 bits).
    //
    // The call starts to watch the address. Only the first call for an address waits, until its value is
    // there or the PLC is known to be away. All such waits on one link together take no longer than one
    // time-out, and one more for each time-out that has passed since.
    int readAddressWords(const RegisterValueChange *reg, int count, void *buffer) override;

    // System registers: area 0 or 1, addresses 0 to 65535. Return 0, or -1 with nothing done for any other.
    int writeRegisters(int area, int address, int count, const void *buffer) override;
    int readRegisters(int area, int address, int count, void *buffer) override;

    // Starts to watch an address without a wait. Whoever is about to read many new ones announces them first,
    // so that they come with few requests. False as long as readAddressWords would wait for the first value.
    bool watchAddress(const RegisterValueChange &reg, int count);

    // Write or read an address now. What is asked of one link is carried out in the order of the calls, and a
    // write whose answer does not come is not repeated. Up to 123 words or 1968 bits a write.
    TransferResult writeAddressWords(const RegisterValueChange &reg, int count, const void *words);
    TransferResult readAddressNow(const RegisterValueChange &reg, int count, void *words);

    // Replaces the definition of the link `link.id`, which keeps its name, and talks to its PLC by it from
    // now on. Returns false when there is no such PLC link.
    bool updateLink(const LinkValue &link);

    std::vector<int> linkNumbers() const; // in ascending order, the internal storage first
    QString linkName(int number) const;   // empty for an unknown one
    LinkState linkState(int number) const;

    // Where the PLC of the link is really looked for: elsewhere than its definition says when the options
    // name a PLC. Nothing for a link that is not talked to.
    std::optional<PlcPlace> plcPlace(int number) const;

    // Waits until the state of a link satisfies `condition`, which must not call the communication. False
    // when it has not after `timeout`, and at once for a link that has no thread.
    bool waitForLink(int number, const std::function<bool(const LinkState &)> &condition,
                     std::chrono::milliseconds timeout) const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace panelkit::simulator
