#include "simulator/plc/plcserver.h"

#include "tests/simulator/plc/plcclient.h"

#include <gtest/gtest.h>

#include <mutex>
#include <system_error>

using namespace panelkit::simulator;
using namespace std::chrono_literals;
using panelkit::testing::PlcClient;
using Bytes = PlcClient::Bytes;

namespace {

constexpr auto eventually = 60s;

// Each request here reads holding register 1 of unit 1, unless it says otherwise.
const Bytes readOne = {0, 7, 0, 0, 0, 6, 1, 3, 0, 0, 0, 1};
const Bytes answerOne = {0, 7, 0, 0, 0, 5, 1, 3, 2, 0x12, 0x34};

Bytes repeated(const Bytes &bytes, int times)
{
    Bytes all;
    for (int i = 0; i < times; ++i)
        all.insert(all.end(), bytes.begin(), bytes.end());
    return all;
}

class PlcServerTest : public ::testing::Test
{
protected:
    PlcServerTest() { memory.setValue(1, ModbusTable::HoldingRegisters, 0, 0x1234); }

    void setFault(PlcFault fault, int unit = PlcFaultSetting::allUnits)
    {
        PlcFaultSetting setting;
        setting.fault = fault;
        setting.unit = unit;
        server.setFault(setting);
    }

    PlcMemory memory{{1, 2, 3}, 1000};
    PlcServer server{memory};
};

TEST_F(PlcServerTest, AnswersReadsOfAllFourTables)
{
    memory.setValue(2, ModbusTable::Coils, 4, 1);
    memory.setValue(2, ModbusTable::DiscreteInputs, 5, 1);
    memory.setValue(2, ModbusTable::InputRegisters, 6, 0xabcd);
    PlcClient client(server.port());
    EXPECT_EQ(client.ask(readOne, 11), answerOne);
    EXPECT_EQ(client.ask({0, 8, 0, 0, 0, 6, 2, 1, 0, 0, 0, 8}, 10), (Bytes{0, 8, 0, 0, 0, 4, 2, 1, 1, 0x10}));
    EXPECT_EQ(client.ask({0, 9, 0, 0, 0, 6, 2, 2, 0, 0, 0, 8}, 10), (Bytes{0, 9, 0, 0, 0, 4, 2, 2, 1, 0x20}));
    EXPECT_EQ(client.ask({1, 0, 0, 0, 0, 6, 2, 4, 0, 6, 0, 1}, 11),
              (Bytes{1, 0, 0, 0, 0, 5, 2, 4, 2, 0xab, 0xcd}));
}

TEST_F(PlcServerTest, WritesCoilsAndHoldingRegisters)
{
    PlcClient client(server.port());
    client.ask({0, 1, 0, 0, 0, 6, 3, 5, 0, 9, 0xff, 0}, 12);
    client.ask({0, 2, 0, 0, 0, 6, 3, 6, 0, 9, 0x43, 0x21}, 12);
    client.ask({0, 3, 0, 0, 0, 11, 3, 16, 0, 10, 0, 2, 4, 0, 1, 0, 2}, 12);
    client.ask({0, 4, 0, 0, 0, 8, 3, 15, 0, 10, 0, 2, 1, 3}, 12);
    EXPECT_EQ(memory.value(3, ModbusTable::Coils, 9), 1);
    EXPECT_EQ(memory.value(3, ModbusTable::HoldingRegisters, 9), 0x4321);
    EXPECT_EQ(memory.value(3, ModbusTable::HoldingRegisters, 10), 1);
    EXPECT_EQ(memory.value(3, ModbusTable::HoldingRegisters, 11), 2);
    EXPECT_EQ(memory.value(3, ModbusTable::Coils, 10), 1);
    EXPECT_EQ(memory.value(3, ModbusTable::Coils, 11), 1);
    EXPECT_EQ(memory.value(1, ModbusTable::HoldingRegisters, 9), 0);
}

TEST_F(PlcServerTest, RefusesRegistersThatAreNotThere)
{
    PlcClient client(server.port());
    EXPECT_EQ(client.ask({0, 1, 0, 0, 0, 6, 1, 3, 0x03, 0xe7, 0, 1}, 11).size(), 11U); // the last one, 999
    EXPECT_EQ(client.ask({0, 2, 0, 0, 0, 6, 1, 3, 0x03, 0xe7, 0, 2}, 9),
              (Bytes{0, 2, 0, 0, 0, 3, 1, 0x83, 2}));
}

TEST_F(PlcServerTest, RefusesFunctionsThatItDoesNotKnow)
{
    PlcClient client(server.port());
    EXPECT_EQ(client.ask({0, 1, 0, 0, 0, 2, 1, 7}, 9), (Bytes{0, 1, 0, 0, 0, 3, 1, 0x87, 1}));
    EXPECT_EQ(client.ask({0, 2, 0, 0, 0, 2, 1, 0x65}, 9), (Bytes{0, 2, 0, 0, 0, 3, 1, 0xe5, 1}));
    EXPECT_EQ(client.ask(readOne, 11), answerOne);
}

TEST_F(PlcServerTest, SurvivesRequestsThatEndBeforeTheirData)
{
    PlcClient client(server.port());
    for (const std::uint8_t function : Bytes{1, 2, 3, 4, 5, 6, 15, 16, 22, 23}) {
        SCOPED_TRACE(static_cast<int>(function));
        PlcClient broken(server.port());
        const std::size_t header = 8; // more of an answer comes by some releases of libmodbus only
        broken.send({0, 1, 0, 0, 0, 2, 1, function});
        EXPECT_EQ(broken.receive(header).size(), header);
        broken.send({0, 1, 0, 0, 0, 6, 1, function, 0, 0, 0, 0x7b});
        EXPECT_EQ(broken.receive(header).size(), header);
        EXPECT_EQ(client.ask({0, 9, 0, 0, 0, 6, 2, 3, 0, 0, 0, 1}, 11).size(), 11U);
    }
}

TEST_F(PlcServerTest, KeepsSilentForAUnitThatIsNotThere)
{
    PlcClient client(server.port());
    client.send({0, 1, 0, 0, 0, 6, 9, 3, 0, 0, 0, 1});
    EXPECT_EQ(client.ask(readOne, 11), answerOne); // nothing came before it
    EXPECT_EQ(server.counters().requestCount(9, 3), 1U);
}

TEST_F(PlcServerTest, ServesSeveralClientsAtOnce)
{
    PlcClient first(server.port());
    PlcClient second(server.port());
    first.send(Bytes(readOne.begin(), readOne.begin() + 5)); // half a request holds nobody up
    EXPECT_EQ(second.ask(readOne, 11), answerOne);
    EXPECT_EQ(first.ask(Bytes(readOne.begin() + 5, readOne.end()), 11), answerOne);
}

TEST_F(PlcServerTest, AnswersRequestsThatCameTogetherInOrder)
{
    PlcClient client(server.port());
    Bytes both = readOne;
    both.insert(both.end(), {0, 8, 0, 0, 0, 6, 2, 3, 0, 0, 0, 1});
    Bytes answers = answerOne;
    answers.insert(answers.end(), {0, 8, 0, 0, 0, 5, 2, 3, 2, 0, 0});
    EXPECT_EQ(client.ask(both, 22), answers);
}

TEST_F(PlcServerTest, ClosesAConnectionThatDoesNotSpeakTheProtocol)
{
    for (const Bytes &bytes :
         {Bytes{'G', 'E', 'T', ' ', '/', ' '}, Bytes{0, 1, 0, 0, 0, 1}, Bytes{0, 1, 0, 0, 1, 0}}) {
        PlcClient client(server.port());
        client.send(bytes);
        EXPECT_TRUE(client.receiveAll().empty());
    }
}

TEST_F(PlcServerTest, CountsRequestsByUnitAndFunction)
{
    PlcClient client(server.port());
    client.ask(readOne, 11);
    client.ask(readOne, 11);
    client.ask({0, 1, 0, 0, 0, 6, 2, 6, 0, 0, 0, 1}, 12);
    const PlcCounters counters = server.counters();
    EXPECT_EQ(counters.requestCount(), 3U);
    EXPECT_EQ(counters.requestCount(1), 2U);
    EXPECT_EQ(counters.requestCount(1, 3), 2U);
    EXPECT_EQ(counters.requestCount(2, 6), 1U);
    EXPECT_EQ(counters.requestCount(1, 6), 0U);
    EXPECT_EQ(counters.connections, 1U);
    EXPECT_EQ(counters.faultyAnswers, 0U);
}

TEST_F(PlcServerTest, CountsTheConnectionsThatAreOpen)
{
    {
        PlcClient client(server.port());
        EXPECT_TRUE(
            server.waitUntil([](const PlcCounters &c) { return c.openConnections == 1; }, eventually));
    }
    EXPECT_TRUE(server.waitUntil([](const PlcCounters &c) { return c.openConnections == 0; }, eventually));
}

TEST_F(PlcServerTest, TellsEachRequestToItsObserver)
{
    std::vector<PlcRequest> seen;
    server.setObserver([&](const PlcRequest &request) { seen.push_back(request); });
    {
        PlcClient client(server.port());
        client.ask({9, 1, 0, 0, 0, 6, 2, 4, 1, 2, 0, 3}, 15);
        client.ask({0, 1, 0, 0, 0, 6, 1, 6, 0, 5, 0x77, 0x77}, 12);
    }
    server.setObserver({});
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[0].transaction, 0x901);
    EXPECT_EQ(seen[0].unit, 2);
    EXPECT_EQ(seen[0].function, 4);
    EXPECT_EQ(seen[0].index, 0x102);
    EXPECT_EQ(seen[0].count, 3);
    EXPECT_EQ(seen[1].index, 5);
    EXPECT_EQ(seen[1].count, 1);
}

TEST_F(PlcServerTest, GivesUpWaitingWhenNothingComes)
{
    EXPECT_FALSE(server.waitUntil([](const PlcCounters &c) { return c.requestCount() > 0; }, 1ms));
}

TEST_F(PlcServerTest, AnswersLate)
{
    PlcFaultSetting late;
    late.fault = PlcFault::Late;
    late.delay = 50ms;
    server.setFault(late);
    PlcClient client(server.port());
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(client.ask(readOne, 11), answerOne);
    EXPECT_GE(std::chrono::steady_clock::now() - before, 50ms);
}

TEST_F(PlcServerTest, HoldsNobodyElseUpWhileItIsLate)
{
    PlcFaultSetting late;
    late.fault = PlcFault::Late;
    late.unit = 2;
    late.delay = 1h;
    server.setFault(late);
    PlcClient patient(server.port());
    PlcClient other(server.port());
    patient.send({0, 7, 0, 0, 0, 6, 2, 3, 0, 0, 0, 1});
    ASSERT_TRUE(server.waitUntil([](const PlcCounters &c) { return c.faultyAnswers == 1; }, eventually));
    EXPECT_EQ(other.ask(readOne, 11), answerOne);
    EXPECT_TRUE(patient.isQuiet());
}

TEST_F(PlcServerTest, DoesNotListenToAClientForWhomManyAnswersWait)
{
    PlcFaultSetting late;
    late.fault = PlcFault::Late;
    late.unit = 2;
    late.delay = 1h;
    server.setFault(late);
    PlcClient other(server.port());
    {
        PlcClient flooding(server.port());
        flooding.send(repeated({0, 7, 0, 0, 0, 6, 2, 3, 0, 0, 0, 1}, 1000));
        const auto isFull = [](const PlcCounters &c) {
            return c.requestCount(2) >= 16;
        };
        ASSERT_TRUE(server.waitUntil(isFull, eventually));
        // In each turn in which it serves one client, it would take 21 requests of the other.
        for (int i = 0; i < 100; ++i)
            ASSERT_EQ(other.ask(readOne, 11), answerOne);
        EXPECT_LE(server.counters().requestCount(2), 16U + 21U);
    }
    EXPECT_TRUE(server.waitUntil([](const PlcCounters &c) { return c.openConnections == 1; }, eventually));
}

TEST_F(PlcServerTest, AnswersAllThatAClientHasAskedBeforeItTakesTheFirst)
{
    PlcFaultSetting late;
    late.fault = PlcFault::Late;
    late.delay = 20ms;
    server.setFault(late);
    PlcClient client(server.port());
    client.send(repeated(readOne, 100));
    EXPECT_EQ(client.receive(100 * answerOne.size()), repeated(answerOne, 100));
}

TEST_F(PlcServerTest, CutsAnAnswerOff)
{
    setFault(PlcFault::CutOff);
    PlcClient client(server.port());
    client.send(readOne);
    EXPECT_EQ(client.receiveAll(), (Bytes{0, 7, 0, 0, 0}));
}

TEST_F(PlcServerTest, TruncatesAnAnswerAndKeepsTheConnection)
{
    PlcFaultSetting truncated;
    truncated.fault = PlcFault::Truncated;
    truncated.answers = 1;
    server.setFault(truncated);
    PlcClient client(server.port());
    EXPECT_EQ(client.ask(readOne, 5), (Bytes{0, 7, 0, 0, 0}));
    EXPECT_EQ(client.ask(readOne, 11), answerOne);
}

TEST_F(PlcServerTest, AnswersWithWrongIdentification)
{
    PlcClient client(server.port());
    setFault(PlcFault::WrongTransaction);
    EXPECT_EQ(client.ask(readOne, 11), (Bytes{0, 8, 0, 0, 0, 5, 1, 3, 2, 0x12, 0x34}));
    setFault(PlcFault::WrongUnit);
    EXPECT_EQ(client.ask(readOne, 11), (Bytes{0, 7, 0, 0, 0, 5, 2, 3, 2, 0x12, 0x34}));
}

TEST_F(PlcServerTest, RefusesWithTheGivenException)
{
    PlcFaultSetting refusing;
    refusing.fault = PlcFault::Exception;
    refusing.exceptionCode = 6;
    server.setFault(refusing);
    PlcClient client(server.port());
    EXPECT_EQ(client.ask(readOne, 9), (Bytes{0, 7, 0, 0, 0, 3, 1, 0x83, 6}));
}

TEST_F(PlcServerTest, LimitsAFaultToOneUnit)
{
    setFault(PlcFault::Silent, 2);
    PlcClient client(server.port());
    client.send({0, 1, 0, 0, 0, 6, 2, 3, 0, 0, 0, 1});
    EXPECT_EQ(client.ask(readOne, 11), answerOne);
    server.clearFault(2);
    EXPECT_EQ(client.ask({0, 1, 0, 0, 0, 6, 2, 3, 0, 0, 0, 1}, 11).size(), 11U);
}

TEST_F(PlcServerTest, IsGoneAndComesBackOnItsPort)
{
    PlcClient client(server.port());
    ASSERT_EQ(client.ask(readOne, 11), answerOne);
    setFault(PlcFault::Gone);
    EXPECT_TRUE(client.receiveAll().empty()); // closed
    EXPECT_EQ(server.counters().openConnections, 0);
    EXPECT_FALSE(PlcClient(server.port()).isConnected());
    server.clearFault();
    PlcClient again(server.port());
    ASSERT_TRUE(again.isConnected());
    EXPECT_EQ(again.ask(readOne, 11), answerOne);
}

TEST_F(PlcServerTest, ComesBackByItselfWhenItWasGoneForATime)
{
    PlcFaultSetting gone;
    gone.fault = PlcFault::Gone;
    gone.duration = 30ms;
    server.setFault(gone);
    for (;;) {
        PlcClient again(server.port());
        if (!again.isConnected())
            continue;
        EXPECT_EQ(again.ask(readOne, 11), answerOne);
        break;
    }
}

TEST_F(PlcServerTest, SaysWhyItCannotListen)
{
    PlcServer::Options options;
    options.port = server.port();
    try {
        PlcServer second(memory, options);
        FAIL() << "two servers listen on one port";
    } catch (const std::system_error &error) {
        EXPECT_EQ(error.code(), std::errc::address_in_use);
        EXPECT_NE(std::string(error.what()).find(std::to_string(server.port())), std::string::npos);
    }
    options.address = "panel.example";
    EXPECT_THROW(PlcServer(memory, options), std::system_error);
}

} // namespace
