// A panel with a screen, and the finger that touches it.
#pragma once

#include "tests/support/panelfixture.h"
#include "tests/support/screens.h"

#include <QApplication>
#include <QTest>
#include <QWidget>
#include <QWindow>

namespace panelkit::testing {

class WidgetFixture : public PanelFixture
{
protected:
    WidgetFixture() { useScreen({480, 272}); }

    void useScreen(const Screen &screen)
    {
        record.screenWidth = screen.width;
        record.screenHeight = screen.height;
    }

    void takeRecordAway() { simulator::setApplicationRecord(nullptr); }

    // Shows the window and waits until it stands on the screen.
    static void show(QWidget &window)
    {
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    // The finger works on the window, as the screen's driver does: what it hits gets the events.
    static void tap(QWidget *widget) { tap(widget, widget->rect().center()); }
    static void tap(QWidget *widget, const QPoint &position)
    {
        QWidget *const window = widget->window();
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          widget->mapTo(window, position));
    }
    static void drag(QWidget *widget, const QPoint &from, const QPoint &to)
    {
        const int steps = 20;
        const int stepMilliseconds = 5;
        QWidget *const window = widget->window();
        QWindow *const screen = window->windowHandle();
        const QPoint start = widget->mapTo(window, from);
        QTest::mousePress(screen, Qt::LeftButton, Qt::NoModifier, start);
        for (int i = 1; i <= steps; ++i)
            QTest::mouseMove(screen, start + (to - from) * i / steps, stepMilliseconds);
        QTest::mouseRelease(screen, Qt::LeftButton, Qt::NoModifier, start + to - from, stepMilliseconds);
    }
};

// The same on each of the panels' screens: TEST_P with INSTANTIATE_ON_EVERY_SCREEN.
class EveryScreen : public WidgetFixture, public ::testing::WithParamInterface<Screen>
{
protected:
    EveryScreen() { useScreen(GetParam()); }
    QSize screenSize() const { return QSize(GetParam().width, GetParam().height); }
};

} // namespace panelkit::testing
