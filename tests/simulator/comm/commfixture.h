// A PLC on a port of its own, links to it, and verbs for both.
#pragma once

#include "simulator/comm/communication.h"
#include "simulator/plc/plcserver.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>

namespace panelkit::testing {

// Long enough for the slowest machine. Nothing that works waits for it.
inline constexpr std::chrono::seconds eventually{60};

inline simulator::LinkRecord linkTo(std::uint16_t port, int number = 1)
{
    simulator::LinkRecord link;
    link.name = QStringLiteral("PLC%1").arg(number);
    link.value.id = number;
    link.value.portName = QStringLiteral("Ethernet1");
    link.value.driverLib = QStringLiteral("drivers/Modbus");
    link.value.ip1 = 127;
    link.value.ip4 = 1;
    link.value.port = port;
    link.value.station = 1;
    link.value.interval = 5;
    link.value.timeout = 20'000;
    return link;
}

// Pauses that do not make a test wait.
inline simulator::CommunicationOptions briefPauses()
{
    simulator::CommunicationOptions options;
    options.firstPause = std::chrono::milliseconds(1);
    options.longestPause = std::chrono::milliseconds(20);
    return options;
}

inline RegisterValueChange address(int link, int station, const char *block, int index)
{
    RegisterValueChange reg = {};
    reg.linkId = link;
    reg.station = station;
    reg.index = index;
    std::memcpy(reg.block, block, qstrnlen(block, sizeof(reg.block)));
    return reg;
}

// The words of an address, or nothing when the read fails. The buffer must then be as it was.
inline std::optional<std::vector<int>> readWords(simulator::Communication &comm,
                                                 const RegisterValueChange &reg, int count)
{
    std::vector<quint16> words(static_cast<std::size_t>(count), 0xbeef);
    if (comm.readAddressWords(&reg, count, words.data()) == 0)
        return std::vector<int>(words.begin(), words.end());
    EXPECT_EQ(words, std::vector<quint16>(words.size(), 0xbeef)) << "a failed read has changed the buffer";
    return std::nullopt;
}

inline std::optional<int> readWord(simulator::Communication &comm, const RegisterValueChange &reg)
{
    const auto words = readWords(comm, reg, 1);
    return words ? std::optional<int>(words->front()) : std::nullopt;
}

inline simulator::TransferStatus writeWords(simulator::Communication &comm, const RegisterValueChange &reg,
                                            const std::vector<quint16> &words)
{
    return comm.writeAddressWords(reg, static_cast<int>(words.size()), words.data()).status;
}

// Waits for two ends of a round, so that everything watched was asked for after the call.
inline bool waitForFreshValues(const simulator::Communication &comm, int link = 1)
{
    const std::uint64_t rounds = comm.linkState(link).rounds;
    return comm.waitForLink(
        link, [=](const simulator::LinkState &state) { return state.rounds >= rounds + 2; }, eventually);
}

inline bool waitForCondition(const simulator::Communication &comm, simulator::LinkCondition condition,
                             int link = 1)
{
    return comm.waitForLink(
        link, [=](const simulator::LinkState &state) { return state.condition == condition; }, eventually);
}

class PlcFixture : public ::testing::Test
{
protected:
    using Table = simulator::ModbusTable;

    void setWords(int unit, Table table, int index, const std::vector<int> &values)
    {
        memory.with(unit, [&](simulator::PlcTables &tables) {
            for (const int value : values)
                tables.setValue(table, index++, value);
        });
    }

    void setFault(simulator::PlcFault fault, int unit = simulator::PlcFaultSetting::allUnits)
    {
        simulator::PlcFaultSetting setting;
        setting.fault = fault;
        setting.unit = unit;
        setting.delay = std::chrono::hours(1);
        server.setFault(setting);
    }

    bool waitForRequests(std::uint64_t count)
    {
        return server.waitUntil(
            [=](const simulator::PlcCounters &counters) { return counters.requestCount() >= count; },
            eventually);
    }

    simulator::PlcMemory memory{{1, 2, 3}, 10'000};
    simulator::PlcServer server{memory};
};

} // namespace panelkit::testing
