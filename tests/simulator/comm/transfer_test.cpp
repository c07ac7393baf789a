// Writes, and reads that are made now.
#include "tests/simulator/comm/commfixture.h"

#include <algorithm>
#include <thread>

using namespace panelkit::simulator;
using namespace panelkit::testing;
using namespace std::chrono_literals;

namespace {

class TransferTest : public PlcFixture
{
protected:
    LinkRecord link = linkTo(server.port());
};

TEST_F(TransferTest, WritesEveryWritableBlock)
{
    setWords(1, Table::HoldingRegisters, 30, {0x00f0});
    Communication comm({link});
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x", 10), {0x1234}), TransferStatus::Done);
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x", 11), {0x5678, 0x9abc}), TransferStatus::Done);
    EXPECT_EQ(writeWords(comm, address(1, 1, "0x", 20), {7}), TransferStatus::Done);
    EXPECT_EQ(writeWords(comm, address(1, 1, "0x", 21), {0, 1, 2}), TransferStatus::Done);
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x_bit", 30 * 16), {1}), TransferStatus::Done);
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x_bit", 30 * 16 + 4), {0, 1, 0}), TransferStatus::Done);
    EXPECT_EQ(memory.value(1, Table::HoldingRegisters, 10), 0x1234);
    EXPECT_EQ(memory.value(1, Table::HoldingRegisters, 11), 0x5678);
    EXPECT_EQ(memory.value(1, Table::HoldingRegisters, 12), 0x9abc);
    EXPECT_EQ(memory.value(1, Table::Coils, 20), 1);
    EXPECT_EQ(memory.value(1, Table::Coils, 21), 0);
    EXPECT_EQ(memory.value(1, Table::Coils, 22), 1);
    EXPECT_EQ(memory.value(1, Table::Coils, 23), 1);
    EXPECT_EQ(memory.value(1, Table::HoldingRegisters, 30), 0x00a1);
}

TEST_F(TransferTest, WritesAsManyWordsAsARequestHolds)
{
    Communication comm({link});
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x", 0), std::vector<quint16>(123, 7)), TransferStatus::Done);
    EXPECT_EQ(memory.value(1, Table::HoldingRegisters, 122), 7);
    EXPECT_EQ(memory.value(1, Table::HoldingRegisters, 123), 0);
    EXPECT_EQ(writeWords(comm, address(1, 1, "0x", 0), std::vector<quint16>(1968, 1)), TransferStatus::Done);
    EXPECT_EQ(memory.value(1, Table::Coils, 1967), 1);
    EXPECT_EQ(memory.value(1, Table::Coils, 1968), 0);
}

TEST_F(TransferTest, WritesToTheStationOfTheAddress)
{
    link.value.addmore = 1;
    Communication comm({link});
    EXPECT_EQ(writeWords(comm, address(1, 3, "4x", 0), {33}), TransferStatus::Done);
    EXPECT_EQ(memory.value(3, Table::HoldingRegisters, 0), 33);
    EXPECT_EQ(memory.value(1, Table::HoldingRegisters, 0), 0);
}

TEST_F(TransferTest, CarriesWritesOutInTheirOrder)
{
    std::vector<int> indexes;
    server.setObserver([&](const PlcRequest &request) {
        if (request.function == 6)
            indexes.push_back(request.index);
    });
    Communication comm({link});
    comm.watchAddress(address(1, 1, "4x", 500), 1); // polls go on between them
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(writeWords(comm, address(1, 1, "4x", i), {1}), TransferStatus::Done);
    server.setObserver({});
    ASSERT_EQ(indexes.size(), 100U);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(indexes[static_cast<std::size_t>(i)], i);
}

TEST_F(TransferTest, GivesEachRequestANumberOfItsOwn)
{
    std::vector<int> transactions;
    server.setObserver([&](const PlcRequest &request) { transactions.push_back(request.transaction); });
    Communication comm({link});
    for (int i = 0; i < 10; ++i)
        ASSERT_EQ(writeWords(comm, address(1, 1, "4x", i), {1}), TransferStatus::Done);
    server.setObserver({});
    std::sort(transactions.begin(), transactions.end());
    EXPECT_EQ(std::unique(transactions.begin(), transactions.end()) - transactions.begin(), 10);
}

TEST_F(TransferTest, ReadsNowWhatWasJustWritten)
{
    Communication comm({link});
    for (quint16 i = 1; i <= 50; ++i) {
        ASSERT_EQ(writeWords(comm, address(1, 1, "4x", 0), {i}), TransferStatus::Done);
        quint16 word = 0;
        ASSERT_TRUE(comm.readAddressNow(address(1, 1, "4x", 0), 1, &word));
        ASSERT_EQ(word, i);
    }
}

TEST_F(TransferTest, ReadsNowFromEveryBlock)
{
    setWords(1, Table::HoldingRegisters, 0, {0x8001, 2});
    setWords(1, Table::DiscreteInputs, 4, {1});
    Communication comm({link});
    quint16 words[2] = {};
    ASSERT_TRUE(comm.readAddressNow(address(1, 1, "4x", 0), 2, words));
    EXPECT_EQ(words[0], 0x8001);
    EXPECT_EQ(words[1], 2);
    ASSERT_TRUE(comm.readAddressNow(address(1, 1, "4x_bit", 14), 2, words));
    EXPECT_EQ(words[0], 0);
    EXPECT_EQ(words[1], 1);
    ASSERT_TRUE(comm.readAddressNow(address(1, 1, "1x", 4), 1, words));
    EXPECT_EQ(words[0], 1);
}

TEST_F(TransferTest, PollsWhatAWriteChangedAtOnce)
{
    link.value.interval = 3'600'000; // no round will come to its help
    Communication comm({link});
    const RegisterValueChange reg = address(1, 1, "4x", 8);
    ASSERT_EQ(readWords(comm, reg, 4), (std::vector<int>{0, 0, 0, 0}));
    const std::uint64_t polls = comm.linkState(1).polls;
    ASSERT_EQ(writeWords(comm, address(1, 1, "4x", 10), {6}), TransferStatus::Done);
    ASSERT_TRUE(comm.waitForLink(
        1, [=](const LinkState &state) { return state.polls > polls; }, eventually));
    EXPECT_EQ(readWords(comm, reg, 4), (std::vector<int>{0, 0, 6, 0}));
}

TEST_F(TransferTest, SaysWhyThePlcRefuses)
{
    Communication comm({link});
    const TransferResult result = comm.writeAddressWords(address(1, 1, "4x", 20'000), 1, "ab");
    EXPECT_EQ(result.status, TransferStatus::Refused);
    EXPECT_EQ(result.detail, 2);
    EXPECT_EQ(comm.linkState(1).condition, LinkCondition::Connected);
    EXPECT_EQ(comm.linkState(1).refusals, 1U);
}

TEST_F(TransferTest, NeverRepeatsAWrite)
{
    PlcFaultSetting once;
    once.fault = PlcFault::CutOff;
    once.answers = 1;
    server.setFault(once);
    link.value.retry = 5;
    Communication comm({link}, briefPauses());
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x", 0), {1}), TransferStatus::Closed);
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x", 1), {1}), TransferStatus::Done);
    EXPECT_EQ(server.counters().requestCount(1, 6), 2U);
}

TEST_F(TransferTest, RefusesAnswersToAWriteThatDoNotFitIt)
{
    setFault(PlcFault::Short);
    Communication comm({link}, briefPauses());
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x", 0), {1, 2, 3}), TransferStatus::Malformed);
}

TEST_F(TransferTest, GivesUpAWriteThatWaitedBehindOthersForTheWholeTimeOut)
{
    // The link is in a request whose answer does not come; its time-out is longer than that of the caller,
    // who comes after the link's was shortened.
    link.value.timeout = 60'000;
    setFault(PlcFault::Silent);
    Communication comm({link});
    comm.watchAddress(address(1, 1, "4x", 0), 1);
    ASSERT_TRUE(waitForRequests(1));
    LinkValue changed = link.value;
    changed.timeout = 50;
    ASSERT_TRUE(comm.updateLink(changed));
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x", 0), {1}), TransferStatus::NotSent);

    // It is not sent later either, when the link goes on with another PLC.
    PlcMemory otherMemory({1}, 100);
    PlcServer other(otherMemory);
    changed.timeout = 20'000;
    changed.port = other.port();
    ASSERT_TRUE(comm.updateLink(changed));
    setFault(PlcFault::Gone); // which ends the request under way
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x", 1), {2}), TransferStatus::Done);
    EXPECT_EQ(otherMemory.value(1, Table::HoldingRegisters, 1), 2);
    EXPECT_EQ(otherMemory.value(1, Table::HoldingRegisters, 0), 0);
}

TEST_F(TransferTest, SaysAtOnceThatThePlcIsAway)
{
    setFault(PlcFault::Gone);
    CommunicationOptions patient;
    patient.firstPause = patient.longestPause = 1h;
    Communication comm({link}, patient);
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x", 0), {1}), TransferStatus::NotConnected);
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x", 0), {1}), TransferStatus::Away);
    quint16 word = 9;
    EXPECT_EQ(comm.readAddressNow(address(1, 1, "4x", 0), 1, &word).status, TransferStatus::Away);
    EXPECT_EQ(word, 9);
}

TEST_F(TransferTest, WritesBetweenThePollsOfALongRound)
{
    PlcFaultSetting slow;
    slow.fault = PlcFault::Late;
    slow.delay = 50ms;
    server.setFault(slow);
    link.value.interval = 3'600'000;
    Communication comm({link});
    for (int i = 0; i < 100; ++i) // 100 requests, 5 seconds
        comm.watchAddress(address(1, 1, "4x", i * 2), 1);
    ASSERT_TRUE(waitForRequests(2));
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x", 500), {1}), TransferStatus::Done);
    EXPECT_LT(server.counters().requestCount(1, 3), 100U);
}

TEST_F(TransferTest, PollsGoOnHoweverMuchIsWritten)
{
    // While the first write is carried out all the others come to wait behind it.
    int writesInARow = 0;
    int mostInARow = 0;
    server.setObserver([&](const PlcRequest &request) {
        writesInARow = request.function == 6 ? writesInARow + 1 : 0;
        mostInARow = std::max(mostInARow, writesInARow);
    });
    PlcFaultSetting slow;
    slow.fault = PlcFault::Late;
    slow.delay = 10ms;
    server.setFault(slow);
    link.value.interval = 1;
    Communication comm({link});
    ASSERT_EQ(readWord(comm, address(1, 1, "4x", 100)), 0);
    std::vector<std::thread> writers;
    for (int i = 0; i < 25; ++i)
        writers.emplace_back(
            [&comm, i] { EXPECT_EQ(writeWords(comm, address(1, 1, "4x", i), {1}), TransferStatus::Done); });
    for (std::thread &writer : writers)
        writer.join();
    server.setObserver({});
    EXPECT_LE(mostInARow, 10);
}

TEST_F(TransferTest, ServesSeveralWritersAtOnce)
{
    Communication comm({link});
    std::vector<std::thread> writers;
    for (int i = 0; i < 4; ++i)
        writers.emplace_back([&comm, i] {
            for (quint16 round = 1; round <= 50; ++round)
                EXPECT_EQ(writeWords(comm, address(1, 1, "4x", i), {round}), TransferStatus::Done);
        });
    for (std::thread &writer : writers)
        writer.join();
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(memory.value(1, Table::HoldingRegisters, i), 50);
}

} // namespace
