#include "simulator/window/devicepage.h"

#include "runtime/systemroot.h"
#include "simulator/comm/communication.h"
#include "tests/simulator/window/pagefixture.h"

#include <QFile>

using namespace panelkit::simulator;
using namespace panelkit::testing;

namespace {

class DevicePageTest : public PageOnEveryScreen
{
protected:
    void SetUp() override
    {
        PageOnEveryScreen::SetUp();
        open<DevicePage>();
    }

    static void setModel(const QByteArray &model)
    {
        QFile file(tools_systemRoot() + QStringLiteral("/usr/tesk42/config.ini"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_GT(file.write("MODEL=" + model + '\n'), 0);
    }
};

} // namespace

INSTANTIATE_ON_EVERY_SCREEN(DevicePageTest);

TEST_P(DevicePageTest, ShowsTheFiguresOfThePanel)
{
    WAIT_FOR(textOf("load").endsWith(QStringLiteral(" %")));
    EXPECT_TRUE(textOf("memory").endsWith(QStringLiteral(" MiB")));
    EXPECT_GT(textOf("disk").section(QLatin1Char(' '), 0, 0).toDouble(), 0);
    EXPECT_LE(textOf("diskFree").section(QLatin1Char(' '), 0, 0).toDouble(),
              textOf("disk").section(QLatin1Char(' '), 0, 0).toDouble() * 1024);
    EXPECT_EQ(textOf("deviceKind"), QStringLiteral("panel"));
    EXPECT_EQ(textOf("model"), QStringLiteral("not set"));
    EXPECT_EQ(textOf("iotVersion"), QStringLiteral("1"));
    EXPECT_EQ(textOf("libraryVersion"), QStringLiteral("panelkit " PANELKIT_VERSION));
}

TEST_P(DevicePageTest, FollowsThePanel)
{
    setModel("Keld 2");
    WAIT_FOR(textOf("model") == QStringLiteral("Keld 2"));
    EXPECT_EQ(textOf("deviceKind"), QStringLiteral("gateway box with the IoT runtime"));
    expectWellLaidOut();
}

TEST_P(DevicePageTest, ShowsEachLinkWithItsParameters)
{
    EXPECT_EQ(textOf("linkName1"), QStringLiteral("1  Line PLC"));
    EXPECT_EQ(textOf("linkParameters1"),
              QStringLiteral("127.0.0.1:%1, in the project 127.0.0.1:502\n"
                             "station 1, every 200 ms, time-out 1000 ms, retries: 2")
                  .arg(session->plcAddress().port));
    EXPECT_EQ(textOf("linkParameters3"),
              QStringLiteral("COM1, 19200 baud, 8 data bits, even parity, stop bits: 1\n"
                             "station 4, every 500 ms, time-out 1500 ms, retries: 3"));
    EXPECT_EQ(textOf("linkState3"), QStringLiteral("Without connection"));
    LinkValue link = session->communication().getLinkValue(1);
    link.timeout = 900;
    session->communication().updateLink(link);
    WAIT_FOR(textOf("linkParameters1").contains(QStringLiteral("time-out 900 ms")));
}

TEST_P(DevicePageTest, ShowsTheAddressToWhichTheOperatorMovedALink)
{
    LinkValue link = session->communication().getLinkValue(2);
    link.ip4 = 9;
    link.port = 1502;
    ASSERT_TRUE(session->communication().updateLink(link));
    WAIT_FOR(textOf("linkParameters2").startsWith(QStringLiteral("127.0.0.9:1502\n")));
    EXPECT_TRUE(textOf("linkParameters1").contains(QStringLiteral("in the project")));
}

TEST_P(DevicePageTest, ShowsHowALinkIsDoing)
{
    EXPECT_EQ(textOf("linkState1"), QStringLiteral("Idle"));
    watch(1, 1);
    WAIT_FOR(textOf("linkState1") == QStringLiteral("Connected"));
    EXPECT_EQ(partOf("linkState1"), QStringLiteral("notice"));
    watch(2, 2);
    watch(2, 9); // nobody there
    WAIT_FOR(textOf("linkState2").startsWith(QStringLiteral("Connected, but not with station 9: ")));
    EXPECT_EQ(partOf("linkState2"), QStringLiteral("refusal"));
}

TEST_P(DevicePageTest, IsTranslatedWhileItIsInFront)
{
    watch(1, 1);
    WAIT_FOR(textOf("linkState1") == QStringLiteral("Connected"));
    speak("zh_CN");
    EXPECT_EQ(page->title(), QStringLiteral("设备"));
    EXPECT_EQ(textOf("model"), QStringLiteral("未设置"));
    EXPECT_EQ(child("load")->accessibleName(), QStringLiteral("CPU负载"));
    expectWellLaidOut();
}

TEST_P(DevicePageTest, CutsNothingOff)
{
    WAIT_FOR(textOf("load").endsWith(QStringLiteral(" %")));
    expectWellLaidOut();
}
