// That the screen stays alive whatever the PLC does.
#include "simulator/comm/communication.h"
#include "tests/simulator/window/manyitems.h"
#include "tests/simulator/window/panelwindowfixture.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <iostream>

using namespace panelkit::simulator;
using panelkit::testing::PanelWindowFixture;
using panelkit::testing::projectOfManyItems;

namespace {

// The longest time for which this thread handled no event of a timer, which is the longest that an event had
// to wait. (A dispatcher's own signals do not tell: that of GLib handles events before it says that it woke
// up.)
class Heartbeat : public QObject
{
public:
    Heartbeat()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            longest = std::max(longest, m_sinceLast.restart());
            ++beats;
        });
        m_sinceLast.start();
        m_timer.start(interval);
    }

    static constexpr int interval = 5; // milliseconds
    qint64 longest = 0;
    int beats = 0;

private:
    QTimer m_timer;
    QElapsedTimer m_sinceLast;
};

// Two hundred displays on a link that waits twenty seconds for an answer.
class Liveness : public PanelWindowFixture
{
protected:
    static constexpr qint64 bound = 2000; // milliseconds: a stall takes ten times as long

    Liveness() : PanelWindowFixture({800, 480}, projectOfManyItems(200)) {}

    void runFor(int refreshes)
    {
        QEventLoop loop;
        QTimer timer;
        int count = 0;
        QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
            if (++count == refreshes)
                loop.quit();
            else if (count % 10 == 0)
                window->showPage(window->pageNames().at(count / 10 % window->pageNames().size()));
        });
        timer.start(100);
        loop.exec();
    }
};

} // namespace

TEST_F(Liveness, NoEventWaitsWhileThePlcIsCutOff)
{
    WAIT_FOR(!tile("Item 1")->isDim());
    cutOff();
    const Heartbeat heart;
    WAIT_FOR(tile("Item 1")->isDim());
    runFor(30);
    std::cout << "of " << heart.beats << " events none waited longer than " << heart.longest << " ms\n";
    EXPECT_GT(heart.beats, 20);
    EXPECT_LT(heart.longest, bound);
}

TEST_F(Liveness, NoEventWaitsForTheFirstAnswerOfASilentPlc)
{
    silence();
    const Heartbeat heart;
    runFor(30);
    std::cout << "of " << heart.beats << " events none waited longer than " << heart.longest << " ms\n";
    EXPECT_TRUE(tile("Item 200")->isDim());
    EXPECT_GT(heart.beats, 20);
    EXPECT_LT(heart.longest, bound);
}
