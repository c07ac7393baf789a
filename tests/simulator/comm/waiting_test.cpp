// Who waits for whom: callers for a PLC, links for each other, and the end of it all for nobody.
#include "tests/simulator/comm/commfixture.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <deque>
#include <memory>
#include <optional>

using namespace panelkit::simulator;
using namespace panelkit::testing;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

class WaitingTest : public PlcFixture
{
protected:
    // How long it takes to destroy links of which one waits up to a minute for the rest of an answer. Nothing
    // when no request came.
    std::optional<Clock::duration> timeOfDestructionInARequest()
    {
        LinkRecord link = linkTo(server.port());
        link.value.timeout = 60'000;
        auto comm = std::make_unique<Communication>(std::vector<LinkRecord>{link});
        comm->watchAddress(address(1, 1, "4x", 0), 1);
        if (!waitForRequests(1))
            return std::nullopt;
        const auto before = Clock::now();
        comm.reset();
        return Clock::now() - before;
    }
};

TEST_F(WaitingTest, AReadOfANewAddressWaitsNoLongerThanTheTimeOut)
{
    setFault(PlcFault::Silent);
    LinkRecord link = linkTo(server.port());
    link.value.timeout = 100;
    Communication comm({link});
    const auto before = Clock::now();
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 0)), std::nullopt);
    const auto waited = Clock::now() - before;
    EXPECT_GE(waited, 50ms);
    EXPECT_LT(waited, 20s);
}

TEST_F(WaitingTest, ManyNewAddressesWaitForOneTimeOutTogether)
{
    // Each answer takes 50 ms: one after the other, the 2000 of them would take 100 s.
    PlcFaultSetting slow;
    slow.fault = PlcFault::Late;
    slow.delay = 50ms;
    server.setFault(slow);
    LinkRecord link = linkTo(server.port());
    link.value.timeout = 500;
    Communication comm({link});
    const auto before = Clock::now();
    for (int i = 0; i < 2000; ++i)
        readWord(comm, address(1, 1, "4x", i * 2));
    EXPECT_LT(Clock::now() - before, 50s);
    EXPECT_NE(comm.linkState(1).condition, LinkCondition::Away);
}

TEST_F(WaitingTest, AReadOfAPlcKnownToBeAwayDoesNotWait)
{
    setFault(PlcFault::Gone);
    LinkRecord link = linkTo(server.port());
    link.value.timeout = 60'000;
    Communication comm({link});
    const auto before = Clock::now();
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(readWord(comm, address(1, 1, "4x", i)), std::nullopt);
    EXPECT_LT(Clock::now() - before, 30s);
}

TEST_F(WaitingTest, AReadOfAWatchedAddressDoesNotWaitForAnAnswerThatIsOverdue)
{
    LinkRecord link = linkTo(server.port());
    link.value.timeout = 60'000;
    Communication comm({link});
    const RegisterValueChange reg = address(1, 1, "4x", 0);
    ASSERT_EQ(readWord(comm, reg), 0);
    setFault(PlcFault::Silent);
    ASSERT_TRUE(server.waitUntil([](const PlcCounters &c) { return c.faultyAnswers == 1; }, eventually));
    const auto before = Clock::now();
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(readWord(comm, reg), 0); // what was read last
    EXPECT_LT(Clock::now() - before, 30s);
    EXPECT_EQ(comm.linkState(1).failures, 0U);
}

TEST_F(WaitingTest, AWatchTellsWhetherAReadWouldWait)
{
    setFault(PlcFault::Silent);
    Communication comm({linkTo(server.port())});
    const RegisterValueChange reg = address(1, 1, "4x", 0);
    EXPECT_FALSE(comm.watchAddress(reg, 1));
    EXPECT_FALSE(comm.watchAddress(reg, 1));
    EXPECT_TRUE(comm.watchAddress(address(0, -1, "LW", 0), 1));
    EXPECT_TRUE(comm.watchAddress(address(7, 1, "4x", 0), 1)) << "there is no such link";
}

TEST_F(WaitingTest, AWatchOfAnAddressThatWasReadSaysThatNothingIsWaitedFor)
{
    Communication comm({linkTo(server.port())});
    const RegisterValueChange reg = address(1, 1, "4x", 0);
    ASSERT_EQ(readWord(comm, reg), 0);
    EXPECT_TRUE(comm.watchAddress(reg, 1));
}

TEST_F(WaitingTest, AWatchOfAPlcKnownToBeAwaySaysThatNothingIsWaitedFor)
{
    setFault(PlcFault::Gone);
    Communication comm({linkTo(server.port())});
    const RegisterValueChange reg = address(1, 1, "4x", 0);
    EXPECT_EQ(readWord(comm, reg), std::nullopt);
    EXPECT_TRUE(comm.watchAddress(reg, 1));
}

TEST_F(WaitingTest, AWriteWaitsNoLongerThanTheTimeOut)
{
    setFault(PlcFault::Silent);
    LinkRecord link = linkTo(server.port());
    link.value.timeout = 100;
    Communication comm({link});
    const auto before = Clock::now();
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x", 0), {1}), TransferStatus::TimedOut);
    EXPECT_LT(Clock::now() - before, 20s);
}

TEST_F(WaitingTest, TenLinksOneOfThemDeadKeepTheirRate)
{
    // The tenth PLC takes its first request and never answers; the link to it waits for a whole minute. If
    // anything were shared, the other nine would stand still that long.
    PlcMemory deadMemory({1}, 100);
    PlcServer dead(deadMemory);
    PlcFaultSetting silent;
    silent.fault = PlcFault::Silent;
    dead.setFault(silent);

    std::deque<PlcMemory> memories;
    std::deque<PlcServer> servers;
    std::vector<LinkRecord> links;
    for (int number = 1; number <= 9; ++number) {
        servers.emplace_back(memories.emplace_back(std::vector<int>{1}, 100));
        links.push_back(linkTo(servers.back().port(), number));
    }
    links.push_back(linkTo(dead.port(), 10));
    links.back().value.timeout = 60'000;
    Communication comm(links);
    comm.watchAddress(address(10, 1, "4x", 0), 1);
    ASSERT_TRUE(dead.waitUntil([](const PlcCounters &c) { return c.requestCount() == 1; }, eventually));

    const auto before = Clock::now();
    for (int number = 1; number <= 9; ++number)
        comm.watchAddress(address(number, 1, "4x", 0), 1);
    for (int number = 1; number <= 9; ++number) {
        PlcServer &plc = servers[static_cast<std::size_t>(number - 1)];
        EXPECT_TRUE(plc.waitUntil([](const PlcCounters &c) { return c.requestCount() >= 200; }, 50s))
            << number;
        EXPECT_EQ(comm.linkState(number).condition, LinkCondition::Connected) << number;
        EXPECT_EQ(comm.linkState(number).failures, 0U) << number;
    }
    ASSERT_LT(Clock::now() - before, 60s);
    EXPECT_EQ(dead.counters().requestCount(), 1U); // it was stuck in its first request all the while
    EXPECT_EQ(comm.linkState(10).polls, 0U);
}

TEST_F(WaitingTest, DestructionInterruptsAnAnswerThatIsWaitedFor)
{
    setFault(PlcFault::Silent);
    const auto waited = timeOfDestructionInARequest();
    ASSERT_TRUE(waited);
    EXPECT_LT(*waited, 30s);
}

TEST_F(WaitingTest, DestructionInterruptsAnAnswerInItsMiddle)
{
    setFault(PlcFault::Truncated);
    const auto waited = timeOfDestructionInARequest();
    ASSERT_TRUE(waited);
    EXPECT_LT(*waited, 30s);
}

TEST_F(WaitingTest, DestructionInterruptsAPause)
{
    setFault(PlcFault::Gone);
    CommunicationOptions patient;
    patient.firstPause = patient.longestPause = 1h;
    LinkRecord link = linkTo(server.port());
    link.value.interval = 3'600'000;
    auto comm = std::make_unique<Communication>(std::vector<LinkRecord>{link}, patient);
    EXPECT_EQ(readWord(*comm, address(1, 1, "4x", 0)), std::nullopt);
    const auto before = Clock::now();
    comm.reset();
    EXPECT_LT(Clock::now() - before, 30s);
}

TEST_F(WaitingTest, DestructionOfLinksThatWereNeverUsedWaitsForNothing)
{
    for (int i = 0; i < 50; ++i)
        Communication comm({linkTo(server.port(), 1), linkTo(server.port(), 2)});
    EXPECT_EQ(server.counters().connections, 0U);
}

// A port that lets connections wait for ever: its queue of one is full, and nobody takes from it.
class FullPort
{
public:
    FullPort()
    {
        sockaddr_in where = {};
        where.sin_family = AF_INET;
        where.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof(where);
        auto *const address = reinterpret_cast<sockaddr *>(&where);
        ::bind(m_listener, address, length);
        ::listen(m_listener, 0);
        ::getsockname(m_listener, address, &length);
        m_port = ntohs(where.sin_port);
        m_isFull = ::connect(m_filler, address, length) == 0;
    }
    ~FullPort()
    {
        ::close(m_filler);
        ::close(m_listener);
    }
    FullPort(const FullPort &) = delete;
    FullPort &operator=(const FullPort &) = delete;

    bool isFull() const { return m_isFull; }
    std::uint16_t port() const { return m_port; }

private:
    int m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int m_filler = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    std::uint16_t m_port = 0;
    bool m_isFull = false;
};

TEST_F(WaitingTest, AConnectionThatIsNotTakenTimesOut)
{
    const FullPort port;
    ASSERT_TRUE(port.isFull());
    LinkRecord link = linkTo(port.port());
    link.value.timeout = 100;
    Communication comm({link});
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 0)), std::nullopt);
    ASSERT_TRUE(waitForCondition(comm, LinkCondition::Away));
    EXPECT_EQ(comm.linkState(1).lastFailure.status, TransferStatus::NotConnected);
    EXPECT_EQ(comm.linkState(1).lastFailure.detail, ETIMEDOUT);
}

TEST_F(WaitingTest, DestructionInterruptsAConnectionThatIsNotTaken)
{
    const FullPort port;
    ASSERT_TRUE(port.isFull());
    LinkRecord link = linkTo(port.port());
    link.value.timeout = 60'000;
    auto comm = std::make_unique<Communication>(std::vector<LinkRecord>{link});
    comm->watchAddress(address(1, 1, "4x", 0), 1);
    EXPECT_FALSE(comm->waitForLink(
        1, [](const LinkState &state) { return state.failures > 0; }, 100ms));
    const auto before = Clock::now();
    comm.reset();
    EXPECT_LT(Clock::now() - before, 30s);
}

} // namespace
