#include "simulator/comm/linkparameters.h"
#include "simulator/comm/linkstate.h"

#include "register/interfacecomm.h"

#include <gtest/gtest.h>

#include <climits>

using namespace panelkit::simulator;
using namespace std::chrono_literals;

namespace {

LinkValue linkWith(const char *driver, const char *port)
{
    LinkValue link;
    link.driverLib = QLatin1String(driver);
    link.portName = QLatin1String(port);
    return link;
}

TEST(LinkParameters, TellModbusOverEthernetFromOtherLinks)
{
    EXPECT_TRUE(isModbusTcp(linkWith("Modbus", "Ethernet1")));
    EXPECT_TRUE(isModbusTcp(linkWith("drivers/Modbus", "The Ethernet port")));
    EXPECT_FALSE(isModbusTcp(linkWith("drivers/Modbus", "COM1")));
    EXPECT_FALSE(isModbusTcp(linkWith("drivers/Modbus", "ethernet1")));
    EXPECT_FALSE(isModbusTcp(linkWith("drivers/modbus", "Ethernet1")));
    EXPECT_FALSE(isModbusTcp(linkWith("drivers/ModbusRTU", "Ethernet1")));
    EXPECT_FALSE(isModbusTcp(linkWith("a/b/Modbus", "Ethernet1")));
    EXPECT_FALSE(isModbusTcp(LinkValue()));
}

TEST(LinkParameters, ComeFromTheLinksDefinition)
{
    LinkValue link;
    link.ip1 = 192;
    link.ip2 = 168;
    link.ip3 = 1;
    link.ip4 = 20;
    link.port = 502;
    link.interval = 250;
    link.timeout = 1500;
    link.retry = 3;
    link.addrInterval = 12;
    const LinkParameters parameters = linkParameters(link);
    EXPECT_EQ(parameters.host, "192.168.1.20");
    EXPECT_EQ(parameters.port, 502);
    EXPECT_EQ(parameters.interval, 250ms);
    EXPECT_EQ(parameters.timeout, 1500ms);
    EXPECT_EQ(parameters.retries, 3);
    EXPECT_EQ(parameters.largestGap, 12);
}

TEST(LinkParameters, AreBroughtIntoRange)
{
    LinkValue link;
    LinkParameters parameters = linkParameters(link);
    EXPECT_EQ(parameters.interval, 1ms);
    EXPECT_EQ(parameters.timeout, 1s);
    link.interval = link.timeout = link.retry = link.addrInterval = INT_MAX;
    parameters = linkParameters(link);
    EXPECT_EQ(parameters.interval, 1h);
    EXPECT_EQ(parameters.timeout, 1min);
    EXPECT_EQ(parameters.retries, 10);
    EXPECT_EQ(parameters.largestGap, 2000);
    link.interval = link.timeout = link.retry = link.addrInterval = INT_MIN;
    parameters = linkParameters(link);
    EXPECT_EQ(parameters.interval, 1ms);
    EXPECT_EQ(parameters.timeout, 1s);
    EXPECT_EQ(parameters.retries, 0);
    EXPECT_EQ(parameters.largestGap, 0);
}

TEST(LinkState, IsDescribedInOneLine)
{
    LinkState state;
    const struct
    {
        LinkCondition condition;
        const char *text;
    } rows[] = {
        {LinkCondition::Unknown, "no such link"},
        {LinkCondition::Internal, "internal"},
        {LinkCondition::WithoutConnection, "without connection"},
        {LinkCondition::Idle, "idle"},
        {LinkCondition::Connected, "connected"},
        {LinkCondition::Disturbed, "connected, but not with station 2, 7: the PLC did not answer in time"},
        {LinkCondition::Away, "away: the PLC did not answer in time"},
    };
    state.awayStations = {2, 7};
    state.lastFailure.status = TransferStatus::TimedOut;
    for (const auto &row : rows) {
        state.condition = row.condition;
        EXPECT_EQ(describe(state).toStdString(), row.text);
    }
}

TEST(TransferResult, IsDescribedWithItsReason)
{
    EXPECT_EQ(describe({TransferStatus::Refused, 2}), "the PLC refuses (exception 2: Illegal data address)");
    EXPECT_EQ(describe({TransferStatus::Refused, 9}), "the PLC refuses (exception 9)");
    EXPECT_EQ(describe({TransferStatus::Refused, 200}), "the PLC refuses (exception 200)");
    EXPECT_EQ(describe({TransferStatus::NotConnected, ECONNREFUSED}),
              "no connection to the PLC: Connection refused");
    EXPECT_EQ(describe({TransferStatus::NotConnected, EDESTADDRREQ}),
              "no connection to the PLC: Not the address of a PLC");
    EXPECT_EQ(describe({TransferStatus::NotConnected, EXDEV}),
              "no connection to the PLC: error " + std::to_string(EXDEV));
    for (int status = 0; status <= static_cast<int>(TransferStatus::Stopped); ++status)
        EXPECT_FALSE(describe({static_cast<TransferStatus>(status), 0}).empty()) << status;
}

} // namespace
