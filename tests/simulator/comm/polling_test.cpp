#include "tests/simulator/comm/commfixture.h"
#include "tests/support/allocationcounter.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <thread>

using namespace panelkit::simulator;
using namespace panelkit::testing;

namespace {

class PollingTest : public PlcFixture
{
protected:
    LinkRecord link = linkTo(server.port());
};

TEST_F(PollingTest, ReadsAllTablesOverTcp)
{
    setWords(1, Table::HoldingRegisters, 99, {0x1234, 0xffff});
    setWords(1, Table::InputRegisters, 7, {0x8000});
    setWords(1, Table::Coils, 3, {1, 0, 1});
    setWords(1, Table::DiscreteInputs, 9, {0, 1});
    Communication comm({link});
    EXPECT_EQ(readWords(comm, address(1, 1, "4x", 99), 2), (std::vector<int>{0x1234, 0xffff}));
    EXPECT_EQ(readWord(comm, address(1, 1, "3x", 7)), 0x8000);
    EXPECT_EQ(readWords(comm, address(1, 1, "0x", 3), 3), (std::vector<int>{1, 0, 1}));
    EXPECT_EQ(readWords(comm, address(1, 1, "1x", 9), 2), (std::vector<int>{0, 1}));
    EXPECT_EQ(comm.linkState(1).condition, LinkCondition::Connected);
}

TEST_F(PollingTest, ReadsBitsOfWordsAsOneWordEach)
{
    setWords(1, Table::HoldingRegisters, 2, {0x8005, 0x0001});
    setWords(1, Table::InputRegisters, 2, {0x0010});
    Communication comm({link});
    EXPECT_EQ(readWords(comm, address(1, 1, "4x_bit", 2 * 16), 4), (std::vector<int>{1, 0, 1, 0}));
    EXPECT_EQ(readWords(comm, address(1, 1, "4x_bit", 2 * 16 + 15), 2), (std::vector<int>{1, 1}));
    EXPECT_EQ(readWord(comm, address(1, 1, "3x_bit", 2 * 16 + 4)), 1);
    EXPECT_EQ(readWord(comm, address(1, 1, "3x_bit", 2 * 16 + 5)), 0);
}

TEST_F(PollingTest, HandsWordsOverInTheOrderOfTheRegisters)
{
    setWords(1, Table::HoldingRegisters, 0, {0x5678, 0x1234});
    Communication comm({link});
    const RegisterValueChange reg = address(1, 1, "4x", 0);
    std::uint32_t value = 0;
    ASSERT_EQ(comm.readAddressWords(&reg, 2, &value), 0);
    EXPECT_EQ(value, 0x12345678U);
}

TEST_F(PollingTest, ReadsAsManyWordsAsARequestHolds)
{
    std::vector<int> values(125);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<int>(i) * 500;
    setWords(1, Table::HoldingRegisters, 1000, values);
    Communication comm({link});
    EXPECT_EQ(readWords(comm, address(1, 1, "4x", 1000), 125), values);
    EXPECT_EQ(readWords(comm, address(1, 1, "0x", 0), 2000), std::vector<int>(2000));
}

TEST_F(PollingTest, BringsWhatChangesOnThePlc)
{
    Communication comm({link});
    const RegisterValueChange reg = address(1, 1, "4x", 5);
    EXPECT_EQ(readWord(comm, reg), 0);
    for (const int value : {17, 42, 65535}) {
        setWords(1, Table::HoldingRegisters, 5, {value});
        ASSERT_TRUE(waitForFreshValues(comm));
        EXPECT_EQ(readWord(comm, reg), value);
    }
}

TEST_F(PollingTest, AsksTheLinksOwnStationWhateverAnAddressSays)
{
    setWords(2, Table::HoldingRegisters, 0, {22});
    link.value.station = 2;
    link.value.addmore = 0;
    Communication comm({link});
    EXPECT_EQ(readWord(comm, address(1, 2, "4x", 0)), 22);
    EXPECT_EQ(readWord(comm, address(1, 3, "4x", 0)), 22);
    EXPECT_EQ(server.counters().requestCount(), server.counters().requestCount(2));
}

TEST_F(PollingTest, AsksEachAddressesStationWhenTheLinkServesSeveral)
{
    setWords(1, Table::HoldingRegisters, 0, {11});
    setWords(2, Table::HoldingRegisters, 0, {22});
    setWords(3, Table::HoldingRegisters, 0, {33});
    link.value.addmore = 1;
    Communication comm({link});
    EXPECT_EQ(readWord(comm, address(1, 2, "4x", 0)), 22);
    EXPECT_EQ(readWord(comm, address(1, 3, "4x", 0)), 33);
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 0)), 11);
    EXPECT_EQ(readWord(comm, address(1, 256, "4x", 0)), std::nullopt);
    EXPECT_EQ(readWord(comm, address(1, -1, "4x", 0)), std::nullopt);
}

// The (index, count) of the polls of one whole round.
class RoundRecorder
{
public:
    explicit RoundRecorder(PlcServer &server) : m_server(server)
    {
        server.setObserver([this](const PlcRequest &request) {
            m_seen.push_back({request.index, request.count});
        });
    }
    ~RoundRecorder() { m_server.setObserver({}); }

    // Distinct requests, once the observer is off.
    std::vector<std::pair<int, int>> stop()
    {
        m_server.setObserver({});
        std::sort(m_seen.begin(), m_seen.end());
        m_seen.erase(std::unique(m_seen.begin(), m_seen.end()), m_seen.end());
        return m_seen;
    }

private:
    PlcServer &m_server;
    std::vector<std::pair<int, int>> m_seen;
};

TEST_F(PollingTest, ReadsNeighboursWithOneRequest)
{
    setWords(1, Table::HoldingRegisters, 0, {10, 11, 12, 13, 14, 15, 16});
    link.value.addrInterval = 3;
    Communication comm({link});
    for (const int index : {0, 1, 2, 6, 20})
        comm.watchAddress(address(1, 1, "4x", index), 1);
    ASSERT_TRUE(waitForFreshValues(comm));
    RoundRecorder recorder(server);
    ASSERT_TRUE(waitForFreshValues(comm));
    EXPECT_EQ(recorder.stop(), (std::vector<std::pair<int, int>>{{0, 7}, {20, 1}}));
    for (const int index : {0, 1, 2, 6})
        EXPECT_EQ(readWord(comm, address(1, 1, "4x", index)), 10 + index);
}

TEST_F(PollingTest, BridgesNoGapWhenTheLinkForbidsIt)
{
    link.value.addrInterval = 0;
    Communication comm({link});
    for (const int index : {0, 2, 3})
        comm.watchAddress(address(1, 1, "4x", index), 1);
    ASSERT_TRUE(waitForFreshValues(comm));
    RoundRecorder recorder(server);
    ASSERT_TRUE(waitForFreshValues(comm));
    EXPECT_EQ(recorder.stop(), (std::vector<std::pair<int, int>>{{0, 1}, {2, 2}}));
}

TEST_F(PollingTest, BringsTheFirstValueWithTheFirstRead)
{
    setWords(1, Table::HoldingRegisters, 0, {1, 2, 3});
    Communication comm({link});
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(readWord(comm, address(1, 1, "4x", i)), i + 1);
}

TEST_F(PollingTest, ReadsAWatchedAddressWithoutAskingAgain)
{
    link.value.interval = 3'600'000;
    Communication comm({link});
    const RegisterValueChange reg = address(1, 1, "4x", 0);
    ASSERT_EQ(readWord(comm, reg), 0);
    const std::uint64_t requests = server.counters().requestCount();
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(readWord(comm, reg), 0);
    EXPECT_EQ(server.counters().requestCount(), requests);
}

TEST_F(PollingTest, ReadsAWatchedAddressWithoutAnAllocation)
{
    Communication comm({link});
    const RegisterValueChange word = address(1, 1, "4x", 0);
    const RegisterValueChange bits = address(1, 1, "4x_bit", 3);
    const RegisterValueChange internal = address(0, -1, "RWI", 3);
    quint16 words[8] = {};
    ASSERT_EQ(comm.readAddressWords(&word, 4, words), 0);
    ASSERT_EQ(comm.readAddressWords(&bits, 8, words), 0);
    const AllocationCounter counter;
    comm.readAddressWords(&word, 4, words);
    comm.readAddressWords(&bits, 8, words);
    comm.readAddressWords(&internal, 8, words);
    EXPECT_EQ(counter.count(), 0);
}

TEST_F(PollingTest, StopsPollingWhatNobodyReads)
{
    CommunicationOptions options = briefPauses();
    options.forgetAfter = std::chrono::milliseconds(1);
    Communication comm({link}, options);
    ASSERT_EQ(readWord(comm, address(1, 1, "4x", 0)), 0);
    // The address is let go; then nothing is left to be watched and the rounds end.
    std::uint64_t rounds = 0;
    do {
        rounds = comm.linkState(1).rounds;
    } while (comm.waitForLink(
        1, [=](const LinkState &state) { return state.rounds > rounds; }, std::chrono::milliseconds(200)));
    setWords(1, Table::HoldingRegisters, 0, {5});
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 0)), 5); // watched again, by a read of the present value
}

TEST_F(PollingTest, KeepsPollingWhatIsRead)
{
    CommunicationOptions options = briefPauses();
    options.forgetAfter = std::chrono::hours(1);
    Communication comm({link}, options);
    comm.watchAddress(address(1, 1, "4x", 0), 1);
    for (int i = 0; i < 20; ++i)
        ASSERT_TRUE(waitForFreshValues(comm));
}

TEST_F(PollingTest, ShowsAMissingValueForARefusedAddressAndKeepsTheOthersFresh)
{
    Communication comm({link});
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 20'000)), std::nullopt);
    const LinkState state = comm.linkState(1);
    EXPECT_EQ(state.condition, LinkCondition::Connected);
    EXPECT_GE(state.refusals, 1U);
    EXPECT_EQ(state.lastRefusal.status, TransferStatus::Refused);
    EXPECT_EQ(state.lastRefusal.detail, 2);

    const RegisterValueChange good = address(1, 1, "4x", 0);
    for (const int value : {1, 2, 3}) {
        setWords(1, Table::HoldingRegisters, 0, {value});
        readWord(comm, good);
        ASSERT_TRUE(waitForFreshValues(comm));
        EXPECT_EQ(readWord(comm, good), value);
        EXPECT_EQ(readWord(comm, address(1, 1, "4x", 20'000)), std::nullopt);
    }
    EXPECT_EQ(comm.linkState(1).failures, 0U);
}

TEST_F(PollingTest, FindsTheWrongOneAmongNeighboursThatAreRefusedTogether)
{
    setWords(1, Table::HoldingRegisters, 9'998, {8, 9}); // 9999 is the last one
    Communication comm({link});
    for (const int index : {9'998, 9'999, 10'000})
        comm.watchAddress(address(1, 1, "4x", index), 1);
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 9'998)), 8);
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 9'999)), 9);
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 10'000)), std::nullopt);
    setWords(1, Table::HoldingRegisters, 9'998, {18, 19});
    ASSERT_TRUE(waitForFreshValues(comm));
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 9'998)), 18);
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 9'999)), 19);
}

TEST_F(PollingTest, TriesNeighboursTogetherAgainOnANewConnection)
{
    Communication comm({link}, briefPauses());
    for (const int index : {9'998, 9'999, 10'000})
        comm.watchAddress(address(1, 1, "4x", index), 1);
    ASSERT_TRUE(waitForFreshValues(comm));
    ASSERT_EQ(readWord(comm, address(1, 1, "4x", 9'999)), 0);
    RoundRecorder recorder(server);
    ASSERT_TRUE(waitForFreshValues(comm));
    setFault(PlcFault::Gone);
    EXPECT_EQ(recorder.stop(), (std::vector<std::pair<int, int>>{{9'998, 1}, {9'999, 1}, {10'000, 1}}));
    ASSERT_TRUE(waitForCondition(comm, LinkCondition::Away));
    RoundRecorder again(server);
    server.clearFault();
    ASSERT_TRUE(waitForCondition(comm, LinkCondition::Connected));
    ASSERT_TRUE(waitForFreshValues(comm));
    const auto requests = again.stop();
    EXPECT_NE(std::find(requests.begin(), requests.end(), std::make_pair(9'998, 3)), requests.end());
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 9'999)), 0);
}

TEST_F(PollingTest, KeepsNeighboursTogetherWhenTheWholePlcRefuses)
{
    Communication comm({link});
    for (const int index : {0, 1, 2})
        comm.watchAddress(address(1, 1, "4x", index), 1);
    ASSERT_TRUE(waitForFreshValues(comm));
    PlcFaultSetting busy;
    busy.fault = PlcFault::Exception;
    busy.exceptionCode = 6;
    server.setFault(busy);
    ASSERT_TRUE(waitForFreshValues(comm));
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 1)), std::nullopt);
    RoundRecorder recorder(server);
    ASSERT_TRUE(waitForFreshValues(comm));
    EXPECT_EQ(recorder.stop(), (std::vector<std::pair<int, int>>{{0, 3}}));
}

TEST_F(PollingTest, TalksToTheGivenPlcInPlaceOfTheLinks)
{
    setWords(1, Table::HoldingRegisters, 0, {77});
    link.value.ip1 = 0;
    link.value.ip4 = 0;
    link.value.port = 0;
    CommunicationOptions options = briefPauses();
    options.plcHost = QStringLiteral("localhost");
    options.plcPort = server.port();
    Communication comm({link}, options);
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 0)), 77);
    EXPECT_EQ(comm.getLinkValue(1).port, 0); // the link's definition stays what it is
}

TEST_F(PollingTest, KnowsAddressesOfBothFamilies)
{
    CommunicationOptions options = briefPauses();
    options.plcHost = QStringLiteral("::1"); // where the PLC, which is at 127.0.0.1, does not listen
    options.plcPort = server.port();
    Communication comm({link}, options);
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 0)), std::nullopt);
    EXPECT_EQ(comm.linkState(1).lastFailure.status, TransferStatus::NotConnected);
    EXPECT_NE(comm.linkState(1).lastFailure.detail, EDESTADDRREQ);
}

TEST_F(PollingTest, CannotConnectToAHostThatIsNotThere)
{
    CommunicationOptions options = briefPauses();
    options.plcHost = QStringLiteral("not a host");
    Communication comm({link}, options);
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 0)), std::nullopt);
    EXPECT_EQ(comm.linkState(1).condition, LinkCondition::Away);
    EXPECT_EQ(comm.linkState(1).lastFailure.status, TransferStatus::NotConnected);
    EXPECT_EQ(comm.linkState(1).lastFailure.detail, EDESTADDRREQ);
}

TEST_F(PollingTest, ServesSeveralReadersAtOnce)
{
    setWords(1, Table::HoldingRegisters, 0, {0, 0});
    Communication comm({link});
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i)
        readers.emplace_back([&comm, i] {
            for (int round = 0; round < 500; ++round) {
                const auto words = readWords(comm, address(1, 1, "4x", round % 50 * (i % 2)), 2);
                ASSERT_TRUE(words);
                comm.linkState(1);
            }
        });
    for (std::thread &reader : readers)
        reader.join();
}

} // namespace
