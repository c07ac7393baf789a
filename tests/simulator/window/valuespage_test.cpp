#include "simulator/window/linklamp.h"
#include "simulator/window/valuespage.h"
#include "tests/simulator/window/panelwindowfixture.h"

#include <QEvent>
#include <QScrollArea>
#include <QScrollBar>

using namespace panelkit::simulator;
using panelkit::testing::PanelWindowFixture;
using panelkit::testing::PanelWindowOnEveryScreen;

namespace {

// Counts how often widgets are painted.
class PaintCounter : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }
    int count = 0;
};

class ValuesPageTest : public PanelWindowFixture
{
};

class ValuesPageScreen : public PanelWindowOnEveryScreen
{
};

} // namespace

TEST_P(ValuesPageScreen, ShowsAValueAsThePlcChangesIt)
{
    ValueTile *level = tile("Tank level");
    WAIT_FOR(level->text() == QLatin1String("87.5") && !level->isDim());
    memory.setValue(1, ModbusTable::InputRegisters, 1, 123);
    WAIT_FOR(level->text() == QLatin1String("12.3"));
}

TEST_P(ValuesPageScreen, DimsWhatIsNotCurrentAndKeepsItsText)
{
    ValueTile *level = tile("Tank level");
    WAIT_FOR(!level->isDim());
    cutOff();
    WAIT_FOR(level->isDim());
    EXPECT_EQ(level->text(), QStringLiteral("87.5"));
    memory.setValue(1, ModbusTable::InputRegisters, 1, 500);
    comeBack();
    WAIT_FOR(!level->isDim());
    EXPECT_EQ(level->text(), QStringLiteral("50.0"));
}

TEST_P(ValuesPageScreen, ScrollsByFinger)
{
    auto *area = window->currentPage()->findChild<QScrollArea *>();
    QScrollBar *bar = area->verticalScrollBar();
    ASSERT_GT(bar->maximum(), 0);
    const QPoint from = area->mapTo(&*window, QPoint(area->width() / 2, area->height() - 20));
    QWindow *handle = window->windowHandle();
    QTest::mousePress(handle, Qt::LeftButton, Qt::NoModifier, from);
    for (int step = 1; step <= 8; ++step)
        QTest::mouseMove(handle, from - QPoint(0, step * 15), 5);
    QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, from - QPoint(0, 120), 5);
    WAIT_FOR(bar->value() > 0);
    EXPECT_EQ(window->currentPageName(), QStringLiteral("values"));
}

INSTANTIATE_ON_EVERY_SCREEN(ValuesPageScreen);

TEST_F(ValuesPageTest, ShowsADashForALinkThatIsNotConnected)
{
    ValueTile *steam = tile("Steam pressure");
    auto *area = window->currentPage()->findChild<QScrollArea *>();
    area->ensureWidgetVisible(steam);
    WAIT_FOR(!tile("Operator")->isDim());
    EXPECT_TRUE(steam->isDim());
    EXPECT_EQ(steam->text(), QString(QChar(0x2013)));
}

TEST_F(ValuesPageTest, ReadsOnlyWhatCanBeSeen)
{
    ValueTile *hidden = tile("Pallets finished");
    WAIT_FOR(!tile("Tank level")->isDim());
    ASSERT_TRUE(hidden->visibleRegion().isEmpty());
    EXPECT_TRUE(hidden->isDim());
    window->currentPage()->findChild<QScrollArea *>()->ensureWidgetVisible(hidden);
    WAIT_FOR(!hidden->isDim());
    EXPECT_EQ(hidden->text(), QStringLiteral("282"));
}

TEST_F(ValuesPageTest, PaintsOnlyWhatHasChanged)
{
    ValueTile *level = tile("Tank level");
    ValueTile *limit = tile("Temperature limit");
    WAIT_FOR(!level->isDim() && !limit->isDim());
    QTest::qWait(1); // what is still to be painted of that
    PaintCounter levelPaints;
    PaintCounter limitPaints;
    level->installEventFilter(&levelPaints);
    limit->installEventFilter(&limitPaints);
    memory.setValue(1, ModbusTable::InputRegisters, 1, 345);
    WAIT_FOR(levelPaints.count > 0);
    EXPECT_EQ(level->text(), QStringLiteral("34.5"));
    EXPECT_EQ(limitPaints.count, 0);
}

TEST_F(ValuesPageTest, LampsFollowTheLinks)
{
    const auto lamps = window->findChildren<LinkLamp *>();
    ASSERT_EQ(lamps.size(), 3);
    WAIT_FOR(lamps.at(0)->condition() == LinkCondition::Connected);
    EXPECT_EQ(lamps.at(2)->condition(), LinkCondition::WithoutConnection);
    cutOff();
    WAIT_FOR(lamps.at(0)->condition() == LinkCondition::Away);
    EXPECT_TRUE(lamps.at(0)->toolTip().startsWith(QLatin1String("Line PLC: away")))
        << lamps.at(0)->toolTip().toStdString();
}
