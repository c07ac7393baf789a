// That the screen stays alive whatever the PLC does.
#include "simulator/comm/communication.h"
#include "tests/simulator/window/manyitems.h"
#include "tests/simulator/window/panelwindowfixture.h"

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <iostream>

using namespace panelkit::simulator;
using panelkit::testing::PanelWindowFixture;
using panelkit::testing::projectOfManyItems;

namespace {

// The longest time for which the event loop of this thread did not come round, which is the longest that an
// event had to wait.
class LoopWatch : public QObject
{
public:
    LoopWatch()
    {
        auto *dispatcher = QAbstractEventDispatcher::instance();
        connect(dispatcher, &QAbstractEventDispatcher::awake, this, [this] { m_turn.start(); });
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, [this] {
            if (m_turn.isValid())
                longest = std::max(longest, m_turn.elapsed());
            m_turn.invalidate();
            ++turns;
        });
    }

    qint64 longest = 0; // milliseconds
    int turns = 0;

private:
    QElapsedTimer m_turn;
};

// Two hundred displays on a link that waits twenty seconds for an answer.
class Liveness : public PanelWindowFixture
{
protected:
    static constexpr qint64 bound = 5000; // milliseconds: a stall takes four times as long

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
    LoopWatch loop;
    cutOff();
    WAIT_FOR(tile("Item 1")->isDim());
    runFor(30);
    std::cout << "the longest turn of " << loop.turns << " took " << loop.longest << " ms\n";
    EXPECT_GT(loop.turns, 20);
    EXPECT_LT(loop.longest, bound);
}

TEST_F(Liveness, NoEventWaitsForTheFirstAnswerOfASilentPlc)
{
    silence();
    LoopWatch loop;
    runFor(30);
    std::cout << "the longest turn of " << loop.turns << " took " << loop.longest << " ms\n";
    EXPECT_TRUE(tile("Item 200")->isDim());
    EXPECT_GT(loop.turns, 20);
    EXPECT_LT(loop.longest, bound);
}
