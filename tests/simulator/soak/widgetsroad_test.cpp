#include "simulator/soak/widgetsroad.h"

#include "tests/simulator/soak/roadfixture.h"

#include <QDir>

using namespace panelkit::simulator;

namespace {

class WidgetsRoadOnASession : public panelkit::testing::RoadFixture
{
protected:
    WidgetsRoadOnASession() { road.beginShift(*session); }
    ~WidgetsRoadOnASession() override { road.endShift(); }

    WidgetsRoad road;
};

} // namespace

TEST_F(WidgetsRoadOnASession, AnswersEveryTouch)
{
    act(road, 150);
    EXPECT_EQ(firstLoss(road), "");
    EXPECT_EQ(road.count().asked, 150u);
    EXPECT_EQ(road.count().answered, 150u);
}

TEST_F(WidgetsRoadOnASession, FindsAListThatIsNotWhatIsInTheFolder)
{
    road.judgeListing();
    EXPECT_EQ(firstLoss(road), "");
    ASSERT_TRUE(QDir(road.folder()).removeRecursively()); // listed as a folder that does not exist
    road.judgeListing();
    EXPECT_EQ(firstLoss(road), "widgets: the file browser does not list what is in the folder");
    EXPECT_EQ(road.count().refused, 1u);
}
