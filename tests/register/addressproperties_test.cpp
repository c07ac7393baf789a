// Which properties of an item's node are asked for, in which order: here the object library itself listens.
// The event library answers with a number of its own.

#include "platform/device_struct.h"
#include "platform/hmi_event.h"
#include "register/registervaluechange.h"
#include "tests/support/panelfixture.h"

#include <QStringList>

struct object
{
    QStringList asked; // name and default of each property asked for
};

QString object_get_property_value_type_string(object *node, const char *name, const QString &defaultValue)
{
    node->asked << QString::fromLatin1(name) + QLatin1Char('=') + defaultValue;
    return defaultValue;
}

int object_get_property_value_type_int32(object *node, const char *name, int defaultValue)
{
    node->asked << QString::fromLatin1(name) + QLatin1Char('=') + QString::number(defaultValue);
    return defaultValue;
}

namespace {

const int answer = 4711;

} // namespace

int hmiEVent_addressChang_Msg(const RegisterValueChange *)
{
    return answer;
}

class RegisterAddressProperties : public panelkit::testing::PanelFixture
{
protected:
    object node;
};

TEST_F(RegisterAddressProperties, AreAskedForInOrderWithTheirDefaults)
{
    const QStringList expected = {QStringLiteral("Link="), QStringLiteral("Block="),
                                  QStringLiteral("station=0"), QStringLiteral("index=0")};
    RegisterValueChange address = {};
    ASSERT_TRUE(ObjectAddress2RegisterValueChange(&node, address));
    EXPECT_EQ(node.asked, expected);
}

TEST_F(RegisterAddressProperties, IncludeTheStationEvenWhenTheLinksOwnReplacesIt)
{
    LinkValue link;
    link.station = 7;
    link.addmore = 0;
    comm.linksByName.insert(QString(), link);
    RegisterValueChange address = {};
    ASSERT_TRUE(ObjectAddress2RegisterValueChange(&node, address));
    EXPECT_EQ(address.station, 7);
    EXPECT_TRUE(node.asked.contains(QStringLiteral("station=0")));
}

TEST_F(RegisterAddressProperties, EndWithTheLengthForAnAddressWithASize)
{
    RegisterValueChangeSize address = {};
    ASSERT_TRUE(ObjectAddress2RegisterValueChangeSize(&node, address));
    EXPECT_EQ(node.asked.size(), 5);
    EXPECT_EQ(node.asked.last(), QStringLiteral("length=0"));
}

TEST_F(RegisterAddressProperties, AreNotAskedForWithoutCommunication)
{
    takeCommunicationAway();
    RegisterValueChangeSize address = {};
    EXPECT_FALSE(ObjectAddress2RegisterValueChangeSize(&node, address));
    EXPECT_TRUE(node.asked.isEmpty());
}

// Any question about it would go to the node.
TEST_F(RegisterAddressProperties, AreNotAskedOfANodeThatIsNull)
{
    RegisterValueChange address = {};
    EXPECT_FALSE(ObjectAddress2RegisterValueChange(nullptr, address));
    RegisterValueChangeSize addressWithSize = {};
    EXPECT_FALSE(ObjectAddress2RegisterValueChangeSize(nullptr, addressWithSize));
}

TEST(LwfRegMessage, GivesTheEventLibrarysAnswer)
{
    EXPECT_EQ(SendLWFRegMessage(5), answer);
}
