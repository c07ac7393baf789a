#include "register/registervaluechange.h"

#include "simulator/platform/objecttree.h"
#include "tests/support/allocationcounter.h"
#include "tests/support/panelfixture.h"

class RegisterAddress : public panelkit::testing::PanelFixture
{
};

TEST_F(RegisterAddress, CounterCounts)
{
    const panelkit::testing::AllocationCounter counter;
    QString text(100, QLatin1Char('x'));
    EXPECT_EQ(counter.count(), 1);
}
