// Link parameters that are replaced while the link is at work.
#include "tests/simulator/comm/commfixture.h"

using namespace panelkit::simulator;
using namespace panelkit::testing;

namespace {

class UpdateTest : public PlcFixture
{
protected:
    UpdateTest() { setWords(1, Table::HoldingRegisters, 0, {101}); }

    bool moveToOtherPlc(Communication &comm)
    {
        LinkValue changed = link.value;
        changed.port = other.port();
        return comm.updateLink(changed);
    }

    static void silence(PlcServer &plc)
    {
        PlcFaultSetting silent;
        silent.fault = PlcFault::Silent;
        plc.setFault(silent);
    }

    LinkRecord link = linkTo(server.port());
    const RegisterValueChange reg = address(1, 1, "4x", 0);
    PlcMemory otherMemory{{1, 2}, 100};
    PlcServer other{otherMemory};
};

TEST_F(UpdateTest, UsesNewParametersFromTheMomentTheyAreSet)
{
    otherMemory.setValue(2, Table::HoldingRegisters, 0, 202);
    link.name = QStringLiteral("filler");
    Communication comm({link}, briefPauses());
    ASSERT_EQ(readWord(comm, reg), 101);

    LinkValue changed = link.value;
    changed.port = other.port();
    changed.station = 2;
    ASSERT_TRUE(comm.updateLink(changed));
    EXPECT_EQ(comm.getLinkValueByName(QStringLiteral("filler")).station, 2);
    EXPECT_EQ(readWord(comm, reg), 202); // another station, so its first value is waited for
    changed.station = 1;
    ASSERT_TRUE(comm.updateLink(changed));
    ASSERT_TRUE(waitForFreshValues(comm));
    EXPECT_EQ(readWord(comm, reg), 0); // what the other PLC holds, not what was read of the first one
    ASSERT_TRUE(server.waitUntil([](const PlcCounters &c) { return c.openConnections == 0; }, eventually));
}

TEST_F(UpdateTest, MovesALinkAwayFromTheGivenPlcOnlyWithItsAddress)
{
    otherMemory.setValue(1, Table::HoldingRegisters, 0, 202);
    CommunicationOptions options = briefPauses();
    options.plcHost = QStringLiteral("127.0.0.1");
    options.plcPort = server.port();
    link.value.port = 0;
    Communication comm({link}, options);
    ASSERT_EQ(readWord(comm, reg), 101);

    LinkValue changed = link.value;
    changed.interval = 7;
    ASSERT_TRUE(comm.updateLink(changed));
    ASSERT_TRUE(waitForFreshValues(comm));
    EXPECT_EQ(readWord(comm, reg), 101);
    changed.port = other.port();
    ASSERT_TRUE(comm.updateLink(changed));
    ASSERT_TRUE(waitForFreshValues(comm));
    EXPECT_EQ(readWord(comm, reg), 202);
}

TEST_F(UpdateTest, TellsWhereThePlcOfALinkIsReallyLookedFor)
{
    CommunicationOptions options = briefPauses();
    options.plcHost = QStringLiteral("localhost");
    options.plcPort = server.port();
    link.value.port = 502;
    Communication comm({link}, options);
    EXPECT_TRUE(comm.plcPlace(1) == (PlcPlace{QStringLiteral("127.0.0.1"), server.port()}));
    LinkValue changed = link.value;
    changed.ip4 = 9;
    ASSERT_TRUE(comm.updateLink(changed));
    EXPECT_TRUE(comm.plcPlace(1) == (PlcPlace{QStringLiteral("127.0.0.9"), 502}));
    changed.portName = QStringLiteral("COM1");
    ASSERT_TRUE(comm.updateLink(changed));
    EXPECT_EQ(comm.plcPlace(1), std::nullopt);
    EXPECT_EQ(comm.plcPlace(0), std::nullopt);
    EXPECT_EQ(comm.plcPlace(99), std::nullopt);

    EXPECT_TRUE(Communication({link}).plcPlace(1) == (PlcPlace{QStringLiteral("127.0.0.1"), 502}));
    options.plcHost = QStringLiteral("not a host");
    EXPECT_TRUE(Communication({link}, options).plcPlace(1) == (PlcPlace{options.plcHost, server.port()}));
}

TEST_F(UpdateTest, TakesTheFormerPlcsValuesAway)
{
    link.value.interval = 3'600'000;
    silence(other);
    Communication comm({link});
    ASSERT_EQ(readWord(comm, reg), 101);
    ASSERT_TRUE(moveToOtherPlc(comm));
    EXPECT_EQ(readWord(comm, reg), std::nullopt);
}

TEST_F(UpdateTest, DropsAnAnswerOfTheFormerPlcThatIsUnderWay)
{
    silence(other);
    Communication comm({link});
    ASSERT_EQ(readWord(comm, reg), 101);
    PlcFaultSetting late;
    late.fault = PlcFault::Late;
    late.delay = std::chrono::milliseconds(300);
    server.setFault(late);
    ASSERT_TRUE(server.waitUntil([](const PlcCounters &c) { return c.faultyAnswers == 1; }, eventually));
    ASSERT_TRUE(moveToOtherPlc(comm));
    ASSERT_TRUE(other.waitUntil([](const PlcCounters &c) { return c.requestCount() == 1; }, eventually));
    EXPECT_EQ(readWord(comm, reg), std::nullopt);
}

TEST_F(UpdateTest, DoesNotLayAFailureOfTheFormerPlcToTheNewOne)
{
    otherMemory.setValue(1, Table::HoldingRegisters, 0, 202);
    link.value.timeout = 60'000;
    silence(server);
    CommunicationOptions patient;
    patient.firstPause = patient.longestPause = std::chrono::hours(1);
    Communication comm({link}, patient);
    comm.watchAddress(reg, 1);
    ASSERT_TRUE(waitForRequests(1));
    ASSERT_TRUE(moveToOtherPlc(comm));
    setFault(PlcFault::Gone); // which ends the request under way
    ASSERT_TRUE(waitForCondition(comm, LinkCondition::Connected));
    EXPECT_EQ(readWord(comm, reg), 202);
    EXPECT_EQ(comm.linkState(1).failures, 0U);
}

TEST_F(UpdateTest, EndsThePauseOfAPlcThatIsAway)
{
    otherMemory.setValue(1, Table::HoldingRegisters, 0, 202);
    for (const PlcFault fault : {PlcFault::Gone, PlcFault::CutOff}) {
        SCOPED_TRACE(std::string(plcFaultName(fault)));
        setFault(fault);
        CommunicationOptions patient;
        patient.firstPause = patient.longestPause = std::chrono::hours(1);
        Communication comm({link}, patient);
        EXPECT_EQ(readWord(comm, reg), std::nullopt);
        ASSERT_EQ(comm.linkState(1).condition, LinkCondition::Away);
        ASSERT_TRUE(moveToOtherPlc(comm));
        ASSERT_TRUE(waitForCondition(comm, LinkCondition::Connected));
        EXPECT_EQ(readWord(comm, reg), 202);
    }
}

TEST_F(UpdateTest, TakesALinkIntoAndOutOfConnection)
{
    Communication comm({link});
    ASSERT_EQ(readWord(comm, reg), 101);
    LinkValue serial = link.value;
    serial.portName = QStringLiteral("COM1");
    ASSERT_TRUE(comm.updateLink(serial));
    EXPECT_EQ(comm.linkState(1).condition, LinkCondition::WithoutConnection);
    EXPECT_EQ(readWord(comm, reg), std::nullopt);
    ASSERT_TRUE(comm.updateLink(link.value));
    EXPECT_EQ(readWord(comm, reg), 101);
}

TEST_F(UpdateTest, UpdatesNoLinkThatIsNotThere)
{
    Communication comm({link});
    LinkValue changed = link.value;
    for (const int number : {0, 2, -1}) {
        changed.id = number;
        EXPECT_FALSE(comm.updateLink(changed)) << number;
    }
    EXPECT_EQ(comm.getLinkValue(0).station, -1);
}

} // namespace
