#include "simulator/soak/linksettingsroad.h"
#include "simulator/soak/paneladdressroad.h"

#include "simulator/comm/communication.h"
#include "simulator/host/panelfiles.h"
#include "tests/simulator/soak/roadfixture.h"

using namespace panelkit::simulator;

namespace {

class LinkSettingsRoadOnASession : public panelkit::testing::RoadFixture
{
protected:
    LinkSettingsRoadOnASession() { road.beginShift(*session); }

    QString path() const { return root.path() + QLatin1String(linkSettingsPath); }

    LinkSettingsRoad road{project, plc};
};

class PanelAddressRoadOnASession : public panelkit::testing::RoadFixture
{
protected:
    PanelAddressRoadOnASession() { road.beginShift(*session); }

    QString path() const { return root.path() + QLatin1String(configurationPath); }

    PanelAddressRoad road;
};

} // namespace

TEST_F(LinkSettingsRoadOnASession, LosesNothingOnAFullDiskAndInReplacedFiles)
{
    act(road, 120);
    road.endShift();
    EXPECT_EQ(firstLoss(road), "");
    EXPECT_TRUE(road.count().isComplete());
    EXPECT_GT(road.count().answered, 50u);
    EXPECT_GT(road.count().refused, 5u);
}

TEST_F(LinkSettingsRoadOnASession, FindsASettingThatIsNotOnTheDisk)
{
    act(road, 20);
    ASSERT_EQ(firstLoss(road), "");
    QByteArray content = fileBytes(path());
    const auto at = content.indexOf("timeout=");
    ASSERT_GE(at, 0);
    ASSERT_TRUE(replaceFile(path(), content.remove(at, content.indexOf('\n', at) - at)));
    road.judgeFile(QStringLiteral("at last"));
    EXPECT_NE(firstLoss(road).find("timeout is 'missing'"), std::string::npos) << firstLoss(road);
}

TEST_F(LinkSettingsRoadOnASession, FindsALinkThatDoesNotWorkAsItWasAccepted)
{
    for (quint64 action = 0; fileBytes(path()).indexOf("[link1]") < 0; ++action) {
        Chance chance(17, action);
        road.act(chance);
    }
    LinkValue link = session->communication().getLinkValue(1);
    link.retry += 3;
    ASSERT_TRUE(session->communication().updateLink(link));
    road.beginShift(*session);
    EXPECT_NE(firstLoss(road).find("link 1 works with retry"), std::string::npos) << firstLoss(road);
}

TEST_F(PanelAddressRoadOnASession, LosesNothingOnAFullDiskAndInReplacedFiles)
{
    act(road, 120);
    road.endShift();
    EXPECT_EQ(firstLoss(road), "");
    EXPECT_TRUE(road.count().isComplete());
    EXPECT_GT(road.count().answered, 50u);
    EXPECT_GT(road.count().refused, 10u);
}

TEST_F(PanelAddressRoadOnASession, FindsAnAddressThatIsNotOnTheDisk)
{
    act(road, 20);
    ASSERT_EQ(firstLoss(road), "");
    ASSERT_TRUE(replaceFile(path(), "[network]\n"));
    road.judgeFile(QStringLiteral("at last"));
    EXPECT_EQ(firstLoss(road).find("panel address: at last, the configuration is not as it was stored"), 0u)
        << firstLoss(road);
}

TEST_F(PanelAddressRoadOnASession, FindsACommandThatIsNoneOfThePanels)
{
    road.judgeCommands({}, {});
    EXPECT_EQ(firstLoss(road), "");
    road.judgeCommands({"sync"}, {}); // nothing was accepted
    EXPECT_EQ(firstLoss(road), "panel address: the shell was handed: sync");
}

TEST_F(PanelAddressRoadOnASession, FindsAGatewayThatBringsACommandAlong)
{
    NetworkSettings settings{QStringLiteral("10.0.0.2"), QStringLiteral("255.0.0.0"),
                             QStringLiteral("10.0.0.1"), QStringLiteral("10.0.0.1")};
    const QByteArray before = "touch /usr/tesk42/IOT/gateway.sh && echo \"route add default gw ";
    const QByteArray behind =
        "\necho 1 >/proc/sys/net/ipv4/ip_forward\niptables -t nat -A POSTROUTING -o eth0 -j "
        "MASQUERADE\" > /usr/tesk42/IOT/gateway.sh && chmod +x /usr/tesk42/IOT/gateway.sh";
    road.judgeCommands({before + "10.0.0.1" + behind, "sync"}, settings);
    EXPECT_EQ(firstLoss(road), "");
    road.judgeCommands({before + "10.0.0.1;reboot" + behind, "sync"}, settings);
    EXPECT_NE(firstLoss(road), "");
}
