// A session of the sample project on a real PLC of its own, and the finger that touches its screen.
#pragma once

#include "simulator/comm/communication.h"
#include "simulator/host/session.h"
#include "tests/support/screens.h"

#include <QApplication>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include <gtest/gtest.h>

#include <memory>

namespace panelkit::testing {

// Waits for what the screen or the PLC will show; generous, since it only fails when it never comes.
#define WAIT_FOR(condition) ASSERT_TRUE(QTest::qWaitFor([&] { return (condition); }, 20000)) << #condition

class WindowFixture : public ::testing::Test
{
protected:
    explicit WindowFixture(const Screen &screen = {480, 272}, simulator::SessionOptions options = {})
    {
        options.screen = QSize(screen.width, screen.height);
        QApplication::setDoubleClickInterval(100); // a list that opens is deaf for so long
        session = simulator::Session::open(options, error);
    }

    void SetUp() override { ASSERT_TRUE(session) << error.toStdString(); }

    static void show(QWidget &window)
    {
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        // An X server without a window manager gives the focus to nobody by itself.
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    // The finger works on the window, as the screen's driver does: what it hits gets the events.
    static void tap(QWidget *widget) { tap(widget, widget->rect().center()); }
    static void tap(QWidget *widget, const QPoint &position)
    {
        QTest::mouseClick(widget->window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          widget->mapTo(widget->window(), position));
    }

    // A register of the link that the panel begins to show.
    void watch(int link, int station)
    {
        RegisterValueChange reg = {};
        reg.linkId = link;
        reg.station = station;
        reg.block[0] = '4';
        reg.block[1] = 'x';
        session->communication().watchAddress(reg, 1);
    }

    QString error;
    std::unique_ptr<simulator::Session> session;
};

// The same on each of the panels' screens: TEST_P with INSTANTIATE_ON_EVERY_SCREEN.
class WindowOnEveryScreen : public WindowFixture, public ::testing::WithParamInterface<Screen>
{
protected:
    WindowOnEveryScreen() : WindowFixture(GetParam()) {}
};

} // namespace panelkit::testing
