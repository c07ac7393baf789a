// A finger that knows nothing of the screen. PANELKIT_TOUCH_SECONDS (5) says for how long it touches, and
// PANELKIT_TOUCH_SEED (1) where.
#include "simulator/comm/communication.h"
#include "tests/simulator/window/panelwindowfixture.h"

#include <QElapsedTimer>

#include <iostream>
#include <random>

using namespace panelkit::simulator;
using panelkit::testing::PanelWindowFixture;
using panelkit::testing::Screen;

namespace {

int fromEnvironment(const char *name, int otherwise)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : otherwise;
}

class RandomTouch : public PanelWindowFixture
{
protected:
    RandomTouch() : PanelWindowFixture(screens[seed() % std::size(screens)]), m_random(seed()) {}

    static unsigned seed() { return static_cast<unsigned>(fromEnvironment("PANELKIT_TOUCH_SEED", 1)); }

    int below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }

    QPoint anywhereIn(const QWidget &widget) { return {below(widget.width()), below(widget.height())}; }

    // What a finger would hit: a list that is open, a box that waits for an answer, else what lies on top.
    QWidget *touched()
    {
        if (QWidget *popup = QApplication::activePopupWidget())
            return popup;
        if (QWidget *modal = QApplication::activeModalWidget())
            return modal;
        QList<QWidget *> shown;
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (widget->isVisible() && widget->windowHandle() != nullptr)
                shown << widget;
        return shown.isEmpty() ? nullptr : shown.at(below(static_cast<int>(shown.size())));
    }

    void touch()
    {
        QWidget *widget = touched();
        if (widget == nullptr || widget->windowHandle() == nullptr)
            return;
        const QPointer<QWindow> handle = widget->windowHandle();
        const QPoint from = anywhereIn(*widget);
        const QPoint to = below(5) == 0 ? anywhereIn(*widget) : from;
        QTest::mousePress(handle, Qt::LeftButton, Qt::NoModifier, from);
        for (int step = 1; step <= 4 && from != to && handle != nullptr; ++step)
            QTest::mouseMove(handle, from + (to - from) * step / 4);
        if (handle != nullptr)
            QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, to);
        QCoreApplication::processEvents();
    }

    void disturbThePlc()
    {
        switch (below(4)) {
        case 0:
            cutOff();
            break;
        case 1:
            silence();
            break;
        default:
            comeBack();
            break;
        }
    }

private:
    static constexpr Screen screens[] = {{800, 480}, {480, 272}, {272, 480}};

    std::mt19937 m_random;
};

} // namespace

TEST_F(RandomTouch, LeavesTheScreenAlive)
{
    const int seconds = fromEnvironment("PANELKIT_TOUCH_SECONDS", 5);
    const BottlingLineClock clock(line);
    QElapsedTimer time;
    time.start();
    qint64 touches = 0;
    while (time.elapsed() < seconds * 1000LL) {
        touch();
        if (++touches % 50 == 0)
            QTest::qWait(60); // the line, the links and the screen's own timer go on as well
        if (touches % 500 == 0)
            disturbThePlc();
    }
    std::cout << touches << " touches in " << seconds << " s\n";

    comeBack();
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (widget != &*window)
            widget->hide();
    turnTo("values");
    for (const char *item : {"Tank level", "Product temperature"})
        WAIT_FOR(tile(item)->visibleRegion().isEmpty() || !tile(item)->isDim());
    WAIT_FOR(session->communication().linkState(1).condition == LinkCondition::Connected);
}
