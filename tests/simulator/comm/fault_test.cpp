// What a fault of the PLC does to a link, fault by fault.
#include "tests/simulator/comm/commfixture.h"

#include <sys/socket.h>

using namespace panelkit::simulator;
using namespace panelkit::testing;
using namespace std::chrono_literals;

namespace {

class FaultTest : public PlcFixture
{
protected:
    FaultTest() { setWords(1, Table::HoldingRegisters, 0, {4711}); }

    // The value is there; it is gone with the fault, and the link says why; it comes back with the fault's
    // end.
    void expectAway(PlcFault fault, TransferStatus reason, int timeout = 20'000)
    {
        LinkRecord link = linkTo(server.port());
        link.value.timeout = timeout;
        Communication comm({link}, briefPauses());
        const RegisterValueChange reg = address(1, 1, "4x", 0);
        readWord(comm, reg);
        ASSERT_TRUE(waitForCondition(comm, LinkCondition::Connected));
        ASSERT_TRUE(waitForFreshValues(comm));
        EXPECT_EQ(readWord(comm, reg), 4711);

        setFault(fault);
        ASSERT_TRUE(waitForCondition(comm, LinkCondition::Away));
        EXPECT_EQ(readWord(comm, reg), std::nullopt);
        const LinkState before = comm.linkState(1);
        EXPECT_GE(before.failures, 1U);

        // It is tried again and again meanwhile.
        ASSERT_TRUE(comm.waitForLink(
            1, [&](const LinkState &now) { return now.failures >= before.failures + 2; }, eventually));
        EXPECT_EQ(readWord(comm, reg), std::nullopt);
        const LinkState after = comm.linkState(1);
        EXPECT_EQ(after.lastFailure.status, reason) << describe(after.lastFailure);
        EXPECT_EQ(after.polls, before.polls);

        server.clearFault();
        ASSERT_TRUE(waitForCondition(comm, LinkCondition::Connected));
        ASSERT_TRUE(waitForFreshValues(comm));
        EXPECT_EQ(readWord(comm, reg), 4711);
    }
};

TEST_F(FaultTest, LateAnswersAreNotTaken)
{
    expectAway(PlcFault::Late, TransferStatus::TimedOut, 200);
}

TEST_F(FaultTest, SilenceIsATimeOut)
{
    expectAway(PlcFault::Silent, TransferStatus::TimedOut, 200);
}

TEST_F(FaultTest, AnswersCutOffAreNotTaken)
{
    expectAway(PlcFault::CutOff, TransferStatus::Closed);
}

TEST_F(FaultTest, TruncatedAnswersAreATimeOut)
{
    expectAway(PlcFault::Truncated, TransferStatus::TimedOut, 200);
}

TEST_F(FaultTest, ShortAnswersAreNotTaken)
{
    expectAway(PlcFault::Short, TransferStatus::Malformed);
}

TEST_F(FaultTest, AnswersOfAnotherTransactionAreNotTaken)
{
    expectAway(PlcFault::WrongTransaction, TransferStatus::WrongTransaction);
}

TEST_F(FaultTest, AnswersOfAnotherUnitAreNotTaken)
{
    expectAway(PlcFault::WrongUnit, TransferStatus::WrongUnit);
}

TEST_F(FaultTest, APlcThatIsGoneComesBack)
{
    expectAway(PlcFault::Gone, TransferStatus::NotConnected);
}

TEST_F(FaultTest, ARefusalTakesTheValueButNotTheLink)
{
    Communication comm({linkTo(server.port())}, briefPauses());
    const RegisterValueChange reg = address(1, 1, "4x", 0);
    ASSERT_EQ(readWord(comm, reg), 4711);
    PlcFaultSetting busy;
    busy.fault = PlcFault::Exception;
    busy.exceptionCode = 6;
    server.setFault(busy);
    ASSERT_TRUE(waitForFreshValues(comm));
    EXPECT_EQ(readWord(comm, reg), std::nullopt);
    const LinkState state = comm.linkState(1);
    EXPECT_EQ(state.condition, LinkCondition::Connected);
    EXPECT_EQ(state.lastRefusal.status, TransferStatus::Refused);
    EXPECT_EQ(state.lastRefusal.detail, 6);
    EXPECT_EQ(state.failures, 0U);
    server.clearFault();
    ASSERT_TRUE(waitForFreshValues(comm));
    EXPECT_EQ(readWord(comm, reg), 4711);
}

TEST_F(FaultTest, TheAnswerToARequestThatWasGivenUpIsNotTakenForTheNext)
{
    // The first answer comes after its time-out, when the second request has long been sent.
    PlcFaultSetting late;
    late.fault = PlcFault::Late;
    late.answers = 1;
    late.delay = 400ms;
    server.setFault(late);
    LinkRecord link = linkTo(server.port());
    link.value.timeout = 200;
    setWords(1, Table::HoldingRegisters, 1, {5});
    Communication comm({link}, briefPauses());
    quint16 word = 0;
    EXPECT_EQ(comm.readAddressNow(address(1, 1, "4x", 0), 1, &word).status, TransferStatus::TimedOut);
    while (!comm.readAddressNow(address(1, 1, "4x", 1), 1, &word))
        continue;
    EXPECT_EQ(word, 5);
}

TEST_F(FaultTest, RetriesAreTriedBeforeAValueIsLost)
{
    LinkRecord link = linkTo(server.port());
    link.value.retry = 2;
    CommunicationOptions patient;
    patient.firstPause = patient.longestPause = 1h;
    Communication comm({link}, patient);
    const RegisterValueChange reg = address(1, 1, "4x", 0);
    ASSERT_EQ(readWord(comm, reg), 4711);
    PlcFaultSetting twice;
    twice.fault = PlcFault::CutOff;
    twice.answers = 2;
    server.setFault(twice);
    ASSERT_TRUE(comm.waitForLink(
        1, [](const LinkState &state) { return state.failures == 2; }, eventually));
    EXPECT_EQ(readWord(comm, reg), 4711);
    ASSERT_TRUE(waitForFreshValues(comm));
    EXPECT_EQ(comm.linkState(1).condition, LinkCondition::Connected);

    // Three failures in a row are one too many; then the pause is on.
    twice.answers = 3;
    server.setFault(twice);
    ASSERT_TRUE(waitForCondition(comm, LinkCondition::Away));
    EXPECT_EQ(comm.linkState(1).failures, 5U);
    EXPECT_EQ(readWord(comm, reg), std::nullopt);
}

TEST_F(FaultTest, NothingIsSentDuringThePause)
{
    setFault(PlcFault::CutOff);
    CommunicationOptions patient;
    patient.firstPause = patient.longestPause = 1h;
    Communication comm({linkTo(server.port())}, patient);
    const RegisterValueChange reg = address(1, 1, "4x", 0);
    EXPECT_EQ(readWord(comm, reg), std::nullopt);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(readWord(comm, address(1, 1, "4x", i)), std::nullopt);
        EXPECT_EQ(writeWords(comm, reg, {1}), TransferStatus::Away);
    }
    ASSERT_TRUE(waitForFreshValues(comm));
    EXPECT_EQ(server.counters().requestCount(), 1U);
    EXPECT_EQ(server.counters().connections, 1U);
}

TEST_F(FaultTest, AConnectionThatThePlcClosesBetweenTwoPollsCostsNoValue)
{
    LinkRecord link = linkTo(server.port());
    link.value.interval = 3'600'000;
    Communication comm({link}, briefPauses());
    ASSERT_EQ(readWord(comm, address(1, 1, "4x", 0)), 4711);
    setFault(PlcFault::Gone);
    server.clearFault();
    // Until the PLC listens again no connection is made; after that, no request fails.
    while (readWord(comm, address(1, 1, "4x", 1)) == std::nullopt)
        ASSERT_EQ(comm.linkState(1).lastFailure.status, TransferStatus::NotConnected);
    ASSERT_EQ(writeWords(comm, address(1, 1, "4x", 1), {3}), TransferStatus::Done);
}

TEST_F(FaultTest, ALostValueIsAskedForAfterThePauseAndNotOnlyInTheNextRound)
{
    LinkRecord link = linkTo(server.port());
    link.value.interval = 3'600'000;
    PlcFaultSetting once;
    once.fault = PlcFault::CutOff;
    once.answers = 1;
    server.setFault(once);
    Communication comm({link}, briefPauses());
    const RegisterValueChange reg = address(1, 1, "4x", 0);
    readWord(comm, reg);
    ASSERT_TRUE(waitForCondition(comm, LinkCondition::Connected));
    EXPECT_EQ(comm.linkState(1).failures, 1U);
    EXPECT_EQ(readWord(comm, reg), 4711);
}

TEST_F(FaultTest, OneStationThatIsGoneLeavesTheOthersFresh)
{
    setWords(2, Table::HoldingRegisters, 0, {22});
    setWords(3, Table::HoldingRegisters, 0, {33});
    LinkRecord link = linkTo(server.port());
    link.value.addmore = 1;
    link.value.timeout = 200;
    Communication comm({link}, briefPauses());
    const auto all = [&] {
        for (const int station : {1, 2, 3})
            readWord(comm, address(1, station, "4x", 0));
    };
    all();
    ASSERT_TRUE(waitForCondition(comm, LinkCondition::Connected));
    setFault(PlcFault::Gone, 2);
    ASSERT_TRUE(waitForCondition(comm, LinkCondition::Disturbed));
    EXPECT_EQ(comm.linkState(1).awayStations, std::vector<int>{2});
    setWords(1, Table::HoldingRegisters, 0, {12});
    setWords(3, Table::HoldingRegisters, 0, {34});
    ASSERT_TRUE(waitForFreshValues(comm));
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 0)), 12);
    EXPECT_EQ(readWord(comm, address(1, 2, "4x", 0)), std::nullopt);
    EXPECT_EQ(readWord(comm, address(1, 3, "4x", 0)), 34);
    server.clearFault(2);
    ASSERT_TRUE(waitForCondition(comm, LinkCondition::Connected));
    EXPECT_EQ(readWord(comm, address(1, 2, "4x", 0)), 22);
}

TEST_F(FaultTest, AFailureOfOneStationIsNoMatterOfAnother)
{
    LinkRecord link = linkTo(server.port());
    link.value.addmore = 1;
    link.value.interval = 3'600'000; // nothing is asked for again by itself
    CommunicationOptions patient;
    patient.firstPause = patient.longestPause = 1h;
    Communication comm({link}, patient);
    ASSERT_EQ(readWord(comm, address(1, 1, "4x", 0)), 4711);
    ASSERT_EQ(readWord(comm, address(1, 2, "4x", 0)), 0);
    setFault(PlcFault::CutOff);
    EXPECT_EQ(readWord(comm, address(1, 2, "4x", 1)), std::nullopt);
    ASSERT_TRUE(waitForCondition(comm, LinkCondition::Disturbed));
    EXPECT_EQ(readWord(comm, address(1, 2, "4x", 0)), std::nullopt);
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 0)), 4711);
}

TEST_F(FaultTest, WithoutAConnectionNoStationHasAValue)
{
    LinkRecord link = linkTo(server.port());
    link.value.addmore = 1;
    CommunicationOptions patient;
    patient.firstPause = patient.longestPause = 1h;
    Communication comm({link}, patient);
    ASSERT_EQ(readWord(comm, address(1, 1, "4x", 0)), 4711);
    ASSERT_EQ(readWord(comm, address(1, 2, "4x", 0)), 0);
    setFault(PlcFault::Gone);
    ASSERT_TRUE(waitForCondition(comm, LinkCondition::Away));
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 0)), std::nullopt);
    EXPECT_EQ(readWord(comm, address(1, 2, "4x", 0)), std::nullopt);
}

TEST_F(FaultTest, AStationThatNobodyAsksForAnyMoreDisturbsNoLink)
{
    LinkRecord link = linkTo(server.port());
    link.value.addmore = 1;
    CommunicationOptions options = briefPauses();
    options.forgetAfter = 50ms;
    Communication comm({link}, options);
    setFault(PlcFault::CutOff, 2);
    EXPECT_EQ(readWord(comm, address(1, 2, "4x", 0)), std::nullopt);
    do {
        ASSERT_EQ(readWord(comm, address(1, 1, "4x", 0)), 4711);
    } while (comm.linkState(1).condition == LinkCondition::Disturbed);
    EXPECT_EQ(comm.linkState(1).condition, LinkCondition::Connected);
}

TEST_F(FaultTest, APlcThatWasNeverThereIsFoundWhenItComes)
{
    setFault(PlcFault::Gone);
    Communication comm({linkTo(server.port())}, briefPauses());
    const RegisterValueChange reg = address(1, 1, "4x", 0);
    EXPECT_EQ(readWord(comm, reg), std::nullopt);
    EXPECT_EQ(comm.linkState(1).condition, LinkCondition::Away);
    EXPECT_EQ(comm.linkState(1).lastFailure.detail, ECONNREFUSED);
    server.clearFault();
    ASSERT_TRUE(waitForCondition(comm, LinkCondition::Connected));
    EXPECT_EQ(readWord(comm, reg), 4711);
}

} // namespace
