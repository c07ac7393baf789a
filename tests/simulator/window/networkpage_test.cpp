#include "simulator/window/networkpage.h"

#include "platform/sys_base.h"
#include "simulator/comm/communication.h"
#include "simulator/host/networksettings.h"
#include "simulator/host/operatormessages.h"
#include "simulator/platform/systembase.h"
#include "tests/simulator/window/pagefixture.h"

using namespace panelkit::simulator;
using namespace panelkit::testing;

namespace {

class NetworkPageTest : public PageOnEveryScreen
{
protected:
    void SetUp() override
    {
        PageOnEveryScreen::SetUp();
        sys_base_set_config_Ip(QStringLiteral("192.168.1.10"));
        sys_base_set_config_NetMask(QStringLiteral("255.255.255.0"));
        sys_base_set_config_Gateway(QStringLiteral("192.168.1.1"));
        sys_base_set_config_DNS(QStringLiteral("192.168.1.2"));
        sys_base_init_config();
        open<NetworkPage>();
        WAIT_FOR(field("ip") == QStringLiteral("192.168.1.10"));
    }

    QString field(const char *name) const { return child<QLineEdit>(name)->text(); }

    bool isMessageWhole() const
    {
        const QWidget *message = child("message");
        return message->visibleRegion().boundingRect() == message->rect();
    }

    bool hasAnswer() const { return partOf("message") != QStringLiteral("hint"); }
};

} // namespace

INSTANTIATE_ON_EVERY_SCREEN(NetworkPageTest);

TEST_P(NetworkPageTest, IsFilledThroughTheRegisters)
{
    EXPECT_EQ(field("netMask"), QStringLiteral("255.255.255.0"));
    EXPECT_EQ(field("gateway"), QStringLiteral("192.168.1.1"));
    EXPECT_EQ(field("dns"), QStringLiteral("192.168.1.2"));
    quint16 parts[4] = {};
    session->communication().readRegisters(0, 64056, 4, parts);
    EXPECT_EQ(parts[0], 255);
    EXPECT_EQ(parts[3], 0);
}

TEST_P(NetworkPageTest, AppliesWhatWasTypedByTheFlag)
{
    type("ip", QStringLiteral("192.168.1.20"));
    type("dns", QStringLiteral("192.168.1.3"));
    touch("apply");
    WAIT_FOR(hasAnswer());
    EXPECT_EQ(partOf("message"), QStringLiteral("notice"));
    EXPECT_EQ(textOf("message"), QStringLiteral("The panel now has the IP address 192.168.1.20."));
    sys_base_init_config(); // from the file
    const NetworkSettings stored = storedNetworkSettings();
    EXPECT_EQ(stored.ip, QStringLiteral("192.168.1.20"));
    EXPECT_EQ(stored.netMask, QStringLiteral("255.255.255.0"));
    EXPECT_EQ(stored.gateway, QStringLiteral("192.168.1.1"));
    EXPECT_EQ(stored.dns, QStringLiteral("192.168.1.3"));
    EXPECT_EQ(takeOperatorMessages(), QStringList(QStringLiteral("Success.")));
    EXPECT_TRUE(recordedCommands().last().startsWith("sync"));
}

TEST_P(NetworkPageTest, SaysWhyThePanelRefusesAnAddress)
{
    type("gateway", QStringLiteral("192.168.1.300"));
    touch("apply");
    WAIT_FOR(hasAnswer());
    EXPECT_EQ(partOf("message"), QStringLiteral("refusal"));
    EXPECT_EQ(textOf("message"),
              QStringLiteral("The gateway is not four numbers from 0 to 255 with dots between."));
    WAIT_FOR(isMessageWhole());
    EXPECT_EQ(takeOperatorMessages(),
              QStringList(QStringLiteral("The gateway setting is incorrect. Please re-enter it.")));
    EXPECT_EQ(storedNetworkSettings().gateway, QStringLiteral("192.168.1.1"));
    EXPECT_EQ(field("gateway"), QStringLiteral("192.168.1.300")) << "to be mended, not typed anew";
}

TEST_P(NetworkPageTest, AsksForNothingThatNoRegisterCanHold)
{
    type("ip", QStringLiteral("192.168.1"));
    touch("apply");
    EXPECT_EQ(partOf("message"), QStringLiteral("refusal"));
    EXPECT_EQ(textOf("message"),
              QStringLiteral("The IP address is not four numbers from 0 to 255 with dots between."));
    EXPECT_FALSE(isNetworkRequestPending(session->communication()));
    EXPECT_EQ(storedNetworkSettings().ip, QStringLiteral("192.168.1.10"));
}

TEST_P(NetworkPageTest, WarnsBeforeItAppliesWhatMayCutThePanelOff)
{
    type("gateway", QStringLiteral("192.168.2.1"));
    touch("apply");
    EXPECT_EQ(partOf("message"), QStringLiteral("refusal"));
    EXPECT_EQ(textOf("message"),
              QStringLiteral("The gateway 192.168.2.1 lies outside of the panel's subnet: nothing beyond it "
                             "can be reached."));
    EXPECT_EQ(child<QPushButton>("apply")->text(), QStringLiteral("Apply anyway"));
    EXPECT_EQ(storedNetworkSettings().gateway, QStringLiteral("192.168.1.1"));
    expectWellLaidOut();
    WAIT_FOR(isMessageWhole());

    touch("apply");
    WAIT_FOR(partOf("message") == QStringLiteral("notice"));
    EXPECT_EQ(storedNetworkSettings().gateway, QStringLiteral("192.168.2.1"));
    EXPECT_EQ(child<QPushButton>("apply")->text(), QStringLiteral("Apply"));
}

TEST_P(NetworkPageTest, WarnsAnewOfAnotherMistake)
{
    type("gateway", QStringLiteral("192.168.2.1"));
    touch("apply");
    type("gateway", QStringLiteral("192.168.3.1"));
    EXPECT_EQ(child<QPushButton>("apply")->text(), QStringLiteral("Apply"));
    touch("apply");
    EXPECT_EQ(partOf("message"), QStringLiteral("refusal"));
    EXPECT_EQ(storedNetworkSettings().gateway, QStringLiteral("192.168.1.1"));
}

TEST_P(NetworkPageTest, LeavesAloneWhatIsBeingTypedUntilItIsAskedToReload)
{
    type("ip", QStringLiteral("10.0.0.5"));
    requestNetworkSettings(session->communication());
    WAIT_FOR(!isNetworkRequestPending(session->communication()));
    QTest::qWait(100); // some refreshes
    EXPECT_EQ(field("ip"), QStringLiteral("10.0.0.5"));
    touch("reload");
    WAIT_FOR(field("ip") == QStringLiteral("192.168.1.10"));
}

TEST_P(NetworkPageTest, LeavesTheCursorWhereItIs)
{
    touch("ip");
    child<QLineEdit>("ip")->setCursorPosition(3);
    QTest::qWait(100); // some refreshes
    EXPECT_EQ(child<QLineEdit>("ip")->cursorPosition(), 3);
}

TEST_P(NetworkPageTest, SpeaksChineseWithItsWarnings)
{
    speak("zh_CN");
    EXPECT_EQ(page->title(), QStringLiteral("网络"));
    EXPECT_EQ(child("netMask")->accessibleName(), QStringLiteral("子网掩码"));
    type("gateway", QStringLiteral("192.168.2.1"));
    touch("apply");
    EXPECT_EQ(child<QPushButton>("apply")->text(), QStringLiteral("仍要应用"));
    expectWellLaidOut();
}

TEST_P(NetworkPageTest, CutsNothingOff)
{
    expectWellLaidOut();
}
