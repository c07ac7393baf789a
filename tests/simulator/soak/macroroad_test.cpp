#include "simulator/soak/macroroad.h"

#include "tests/simulator/soak/roadfixture.h"

using namespace panelkit::simulator;

namespace {

class MacroRoadOnASession : public panelkit::testing::RoadFixture
{
protected:
    MacroRoad road{project, plc};
};

} // namespace

TEST_F(MacroRoadOnASession, CountsInThePlc)
{
    road.beginShift(*session);
    act(road, 60);
    road.endShift();
    EXPECT_EQ(firstLoss(road), "");
    EXPECT_EQ(road.count().asked, 60u);
    EXPECT_GT(road.count().answered, 40u);
    EXPECT_TRUE(road.count().isComplete());
    quint32 counted = 0;
    for (const SoakProject::Counter &counter : project.counters)
        counted += plc.doubleWord(counter.station, counter.index);
    EXPECT_GT(counted, 0u);
}

TEST_F(MacroRoadOnASession, RefusesAMacroThatTakesTooMuchMemory)
{
    road.beginShift(*session);
    act(road, 400);
    road.endShift();
    EXPECT_EQ(firstLoss(road), "");
    EXPECT_GT(road.count().refused, 0u);
}

TEST_F(MacroRoadOnASession, FindsAWriteThatWasSaidToBeDone)
{
    road.judgeCount(1, SoakPlc::firstCounter, 5, true); // the PLC has 0
    EXPECT_EQ(firstLoss(road), "macro: unit 1 has 0 in its holding register 600, where 5 was written");
}

TEST_F(MacroRoadOnASession, FindsACountThatHasGoneBack)
{
    road.judgeCount(1, SoakPlc::firstCounter, 0, true);
    EXPECT_EQ(firstLoss(road), "");
    road.judgeCount(1, SoakPlc::firstCounter, 8, false); // it read 7
    EXPECT_EQ(firstLoss(road), "macro: unit 1 had 7 in its holding register 600, where 0 was written");
}

TEST_F(MacroRoadOnASession, LetsAWriteComeThatWasNotAnswered)
{
    road.judgeCount(1, SoakPlc::firstCounter, 0, false); // may stand there yet
    road.judgeCount(1, SoakPlc::firstCounter, 1, true);
    EXPECT_EQ(firstLoss(road), "");
}
