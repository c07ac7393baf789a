#include "simulator/comm/communication.h"
#include "simulator/window/runtimenotices.h"
#include "tests/simulator/window/panelwindowfixture.h"

#include <cstring>

using namespace panelkit::simulator;
using panelkit::testing::PanelWindowFixture;
using panelkit::testing::PanelWindowOnEveryScreen;

namespace {

class OperatePageScreen : public PanelWindowOnEveryScreen
{
};

QString dataFile(const char *name)
{
    return QStringLiteral(PANELKIT_TEST_DATA "/") + QLatin1String(name);
}

// A project with macros that go wrong.
class OperatePageTest : public PanelWindowFixture
{
protected:
    OperatePageTest() : PanelWindowFixture({480, 272}, dataFile("macros.json")) {}

    void SetUp() override
    {
        PanelWindowFixture::SetUp();
        turnTo("operate");
    }
};

} // namespace

TEST_P(OperatePageScreen, AButtonsMacroChangesARegisterOfThePlc)
{
    turnTo("operate");
    ASSERT_EQ(holding(0), 120);
    tap(button(QStringLiteral("Faster")));
    WAIT_FOR(holding(0) == 130);
    WAIT_FOR(label("outcome") == QLatin1String("Faster: done"));
    EXPECT_EQ(label("details").toStdString(), "speedSetPoint: 120 → 130");
}

TEST_P(OperatePageScreen, PressAndReleaseRunAMacroEach)
{
    turnTo("operate");
    ASSERT_EQ(holding(18), 0x00f5);
    QAbstractButton *lamps = button(QStringLiteral("Lamp test"));
    press(lamps);
    WAIT_FOR(holding(18) == 0xffff);
    lift(lamps);
    WAIT_FOR(holding(18) == 0x00f5);
}

TEST_P(OperatePageScreen, ReleasesAButtonThatGoesFromUnderTheFinger)
{
    turnTo("operate");
    QAbstractButton *lamps = button(QStringLiteral("Lamp test"));
    press(lamps);
    WAIT_FOR(holding(18) == 0xffff);
    turnTo("values");
    WAIT_FOR(holding(18) == 0x00f5);
    lift(&*window);
}

TEST_P(OperatePageScreen, ReleasesAButtonThatABoxComesBefore)
{
    turnTo("operate");
    QAbstractButton *lamps = button(QStringLiteral("Lamp test"));
    press(lamps);
    WAIT_FOR(holding(18) == 0xffff);
    window->notices().show(QStringLiteral("The tank is full."), 30, 2);
    WAIT_FOR(holding(18) == 0x00f5);
    EXPECT_FALSE(lamps->isDown());
}

INSTANTIATE_ON_EVERY_SCREEN(OperatePageScreen);

TEST_F(OperatePageTest, SaysWhyAMacroFailed)
{
    tap(button(QStringLiteral("Fails")));
    WAIT_FOR(label("outcome") == QLatin1String("Fails: ended in line 2: no bottles"));
}

TEST_F(OperatePageTest, SaysWhyAMacroFailedInTheLanguageOfTheScreen)
{
    tap(button(QStringLiteral("Fails")));
    WAIT_FOR(label("outcome").contains(QLatin1String("no bottles")));
    ASSERT_TRUE(window->changeLanguage(QStringLiteral("zh_CN"), error)) << error.toStdString();
    WAIT_FOR(label("outcome") == QStringLiteral("Fails：在第2行结束：no bottles"));
}

TEST_F(OperatePageTest, StaysAliveWhileAMacroRunsToItsLimit)
{
    tap(button(QStringLiteral("Endless")));
    tap(button(QStringLiteral("Counts")));
    // The macro behind the endless one has to wait; the screen does not.
    tap(window->findChild<QWidget *>(QStringLiteral("pageRow"))->findChildren<QAbstractButton *>().first());
    EXPECT_EQ(window->currentPageName(), QStringLiteral("values"));
    WAIT_FOR(holding(0) == 121);
    WAIT_FOR(label("outcome") == QLatin1String("Counts: done"));
}

TEST_F(OperatePageTest, ShowsWhatAMacroPrints)
{
    tap(button(QStringLiteral("Prints")));
    WAIT_FOR(label("details") == QLatin1String("one\n2"));
}

TEST_F(OperatePageTest, WatchesWhatTheMacrosReadWhileItIsInFront)
{
    RegisterValueChange address = {};
    address.linkId = 1;
    address.station = 1;
    std::memcpy(address.block, "4x", 3);
    address.index = 700;
    WAIT_FOR(session->communication().watchAddress(address, 1));
    memory.setValue(1, ModbusTable::HoldingRegisters, 700, 7);
    quint16 word = 0;
    WAIT_FOR(session->communication().readAddressWords(&address, 1, &word) == 0 && word == 7);
}
