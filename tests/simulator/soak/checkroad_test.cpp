#include "simulator/soak/checkroad.h"

#include "tests/simulator/soak/roadfixture.h"

using namespace panelkit::simulator;

namespace {

class CheckRoadOnASession : public panelkit::testing::RoadFixture
{
protected:
    CheckRoadOnASession() { road.beginShift(*session); }

    CheckRoad road{project, drivers};
};

} // namespace

TEST_F(CheckRoadOnASession, LosesNothingWhileDriversAreReplaced)
{
    act(road, 600);
    road.endShift();
    EXPECT_EQ(firstLoss(road), "");
    EXPECT_TRUE(road.count().isComplete());
    EXPECT_GT(road.count().answered, 50u);
    EXPECT_GT(road.count().refused, 50u);
}

TEST_F(CheckRoadOnASession, FindsAnotherCodeThanThatWhichHasToCome)
{
    TypedAddress address;
    address.linkName = QStringLiteral("Line PLC");
    address.block = QStringLiteral("4x");
    address.number = QStringLiteral("1");
    road.check(address, 0);
    EXPECT_EQ(firstLoss(road), "");
    road.check(address, 2);
    EXPECT_EQ(firstLoss(road), "check: (Line PLC, 4x, 1, word, length 1) got the code 0 and not 2");
}

TEST_F(CheckRoadOnASession, FindsADriverThatAnswersInThePlaceOfAnother)
{
    TypedAddress address;
    address.linkName = QStringLiteral("Soak link 901");
    address.block = QStringLiteral("901/4x");
    address.number = QStringLiteral("7");
    road.check(address, 0); // by the driver "Modbus"
    road.endShift();
    ASSERT_TRUE(drivers.place(root.path(), 901, SoakDriver::Coded));
    road.beginShift(*session);
    road.check(address, 7);
    EXPECT_EQ(firstLoss(road), "");
    road.check(address, 0);
    EXPECT_NE(firstLoss(road), "");
}
