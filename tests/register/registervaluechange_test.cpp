#include "register/registervaluechange.h"

#include "simulator/platform/objecttree.h"
#include "tests/support/panelfixture.h"

#include <cstring>

using panelkit::simulator::ObjectTree;

namespace {

// A record in which every byte that is not written shows.
template <typename Record>
Record untouched()
{
    Record record;
    std::memset(static_cast<void *>(&record), 0x5A, sizeof(record));
    return record;
}

constexpr int untouchedInt = 0x5A5A5A5A;

QByteArray blockOf(const RegisterValueChange &address)
{
    return {address.block, sizeof(address.block)};
}

QByteArray padded(const char *name)
{
    return QByteArray(name).leftJustified(32, '\0');
}

} // namespace

class RegisterAddress : public panelkit::testing::PanelFixture
{
protected:
    void addLink(const QString &name, int id, int station, int addmore)
    {
        LinkValue link;
        link.id = id;
        link.station = station;
        link.addmore = addmore;
        comm.linksByName.insert(name, link);
    }

    void setNode(const QString &link, const QString &block, int station, int index)
    {
        ObjectTree::setText(node, QStringLiteral("Link"), link);
        ObjectTree::setText(node, QStringLiteral("Block"), block);
        ObjectTree::setNumber(node, QStringLiteral("station"), station);
        ObjectTree::setNumber(node, QStringLiteral("index"), index);
    }

    static bool isUntouched(const RegisterValueChange &filled)
    {
        const auto expected = untouched<RegisterValueChange>();
        return std::memcmp(&filled, &expected, sizeof(filled)) == 0;
    }

    ObjectTree tree;
    object *node = tree.root();
    RegisterValueChange address = untouched<RegisterValueChange>();
};

TEST_F(RegisterAddress, IsFilledFromTheNodeAndItsLink)
{
    addLink(QStringLiteral("PLC1"), 4, 7, 1);
    setNode(QStringLiteral("PLC1"), QStringLiteral("D"), 3, 200);
    ASSERT_TRUE(ObjectAddress2RegisterValueChange(node, address));
    EXPECT_EQ(address.linkId, 4);
    EXPECT_EQ(address.station, 3);
    EXPECT_EQ(address.index, 200);
    EXPECT_EQ(blockOf(address), padded("D"));
    EXPECT_EQ(comm.calls, QStringList{QStringLiteral("getLinkValueByName PLC1")});
}

TEST_F(RegisterAddress, LeavesReservedAndFlagAsTheCallerSetThem)
{
    addLink(QStringLiteral("PLC1"), 4, 7, 1);
    setNode(QStringLiteral("PLC1"), QStringLiteral("D"), 3, 200);
    ASSERT_TRUE(ObjectAddress2RegisterValueChange(node, address));
    EXPECT_EQ(address.reserved, untouchedInt);
    EXPECT_EQ(address.flag, 0x5A);
}

TEST_F(RegisterAddress, TakesTheLinksStationWhenTheLinkServesOne)
{
    addLink(QStringLiteral("PLC1"), 1, 7, 0);
    setNode(QStringLiteral("PLC1"), QStringLiteral("D"), 3, 0);
    ASSERT_TRUE(ObjectAddress2RegisterValueChange(node, address));
    EXPECT_EQ(address.station, 7);
}

TEST_F(RegisterAddress, KeepsTheNodesStationForEveryOtherAddmore)
{
    for (const int addmore : {1, 2, -1, 256}) {
        SCOPED_TRACE(addmore);
        addLink(QStringLiteral("PLC1"), 1, 7, addmore);
        setNode(QStringLiteral("PLC1"), QStringLiteral("D"), 3, 0);
        ASSERT_TRUE(ObjectAddress2RegisterValueChange(node, address));
        EXPECT_EQ(address.station, 3);
    }
}

TEST_F(RegisterAddress, OfANodeWithoutPropertiesIsThatOfTheEmptyLinkName)
{
    addLink(QString(), 9, 11, 1);
    ASSERT_TRUE(ObjectAddress2RegisterValueChange(node, address));
    EXPECT_EQ(address.linkId, 9);
    EXPECT_EQ(address.station, 0);
    EXPECT_EQ(address.index, 0);
    EXPECT_EQ(blockOf(address), QByteArray(32, '\0'));
    EXPECT_EQ(comm.calls, QStringList{QStringLiteral("getLinkValueByName ")});

    addLink(QString(), 9, 11, 0);
    ASSERT_TRUE(ObjectAddress2RegisterValueChange(node, address));
    EXPECT_EQ(address.station, 11);
}

TEST_F(RegisterAddress, OfAnUnknownLinkCarriesTheRuntimesEmptyRecord)
{
    setNode(QStringLiteral("nowhere"), QStringLiteral("D"), 3, 200);
    ASSERT_TRUE(ObjectAddress2RegisterValueChange(node, address));
    EXPECT_EQ(address.linkId, -1);
    EXPECT_EQ(address.station, 0);
    EXPECT_EQ(address.index, 200);
}

TEST_F(RegisterAddress, CutsTheBlockAt32CharactersWithoutATerminator)
{
    const struct
    {
        const char *block;
        const char *expected;
    } rows[] = {
        {"0123456789012345678901234567890", "0123456789012345678901234567890"},
        {"01234567890123456789012345678901", "01234567890123456789012345678901"},
        {"012345678901234567890123456789012", "01234567890123456789012345678901"},
        {"0123456789012345678901234567890123456789", "01234567890123456789012345678901"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.block);
        setNode(QString(), QString::fromLatin1(row.block), 0, 0);
        ASSERT_TRUE(ObjectAddress2RegisterValueChange(node, address));
        EXPECT_EQ(blockOf(address), padded(row.expected));
        EXPECT_EQ(address.flag, 0x5A);
    }
}

TEST_F(RegisterAddress, PadsAShorterBlockOverAnEarlierName)
{
    setNode(QString(), QStringLiteral("HOLDING"), 0, 0);
    ASSERT_TRUE(ObjectAddress2RegisterValueChange(node, address));
    setNode(QString(), QStringLiteral("LW"), 0, 0);
    ASSERT_TRUE(ObjectAddress2RegisterValueChange(node, address));
    EXPECT_EQ(blockOf(address), padded("LW"));
}

TEST_F(RegisterAddress, WritesTheBlockInLatin1)
{
    setNode(QString(), QString::fromUtf8("D\xC3\xBC%1"), 0, 0);
    ASSERT_TRUE(ObjectAddress2RegisterValueChange(node, address));
    EXPECT_EQ(blockOf(address), padded("D\xFC%1"));
}

TEST_F(RegisterAddress, EndsTheBlockAtItsFirstNul)
{
    setNode(QString(), QStringLiteral("AB") + QChar(0) + QStringLiteral("CD"), 0, 0);
    ASSERT_TRUE(ObjectAddress2RegisterValueChange(node, address));
    EXPECT_EQ(blockOf(address), padded("AB"));
}

TEST_F(RegisterAddress, FailsWithoutANodeAndTouchesNothing)
{
    EXPECT_FALSE(ObjectAddress2RegisterValueChange(nullptr, address));
    EXPECT_TRUE(isUntouched(address));
    EXPECT_TRUE(comm.calls.isEmpty());
}

TEST_F(RegisterAddress, FailsWithoutCommunicationAndTouchesNothing)
{
    setNode(QStringLiteral("PLC1"), QStringLiteral("D"), 3, 200);
    takeCommunicationAway();
    EXPECT_FALSE(ObjectAddress2RegisterValueChange(node, address));
    EXPECT_TRUE(isUntouched(address));

    panelkit::simulator::setApplicationRecord(nullptr);
    EXPECT_FALSE(ObjectAddress2RegisterValueChange(node, address));
    EXPECT_TRUE(isUntouched(address));
}

TEST_F(RegisterAddress, WithASizeHasTheNodesLength)
{
    addLink(QStringLiteral("PLC1"), 4, 7, 1);
    setNode(QStringLiteral("PLC1"), QStringLiteral("D"), 3, 200);
    ObjectTree::setNumber(node, QStringLiteral("length"), 12);
    auto sized = untouched<RegisterValueChangeSize>();
    ASSERT_TRUE(ObjectAddress2RegisterValueChangeSize(node, sized));
    EXPECT_EQ(sized.linkId, 4);
    EXPECT_EQ(sized.station, 3);
    EXPECT_EQ(sized.index, 200);
    EXPECT_EQ(blockOf(sized), padded("D"));
    EXPECT_EQ(sized.length, 12);
    EXPECT_EQ(sized.reserved, untouchedInt);
    EXPECT_EQ(sized.flag, 0x5A);
}

TEST_F(RegisterAddress, WithASizeHasLengthZeroWhereNoneIsGiven)
{
    auto sized = untouched<RegisterValueChangeSize>();
    ASSERT_TRUE(ObjectAddress2RegisterValueChangeSize(node, sized));
    EXPECT_EQ(sized.length, 0);
}

TEST_F(RegisterAddress, WithASizeLeavesTheLengthWhenItFails)
{
    auto sized = untouched<RegisterValueChangeSize>();
    EXPECT_FALSE(ObjectAddress2RegisterValueChangeSize(nullptr, sized));
    EXPECT_EQ(sized.length, untouchedInt);
    EXPECT_TRUE(isUntouched(sized));

    ObjectTree::setNumber(node, QStringLiteral("length"), 12);
    takeCommunicationAway();
    EXPECT_FALSE(ObjectAddress2RegisterValueChangeSize(node, sized));
    EXPECT_EQ(sized.length, untouchedInt);
    EXPECT_TRUE(isUntouched(sized));
}

class LwfMessage : public panelkit::testing::PanelFixture
{
};

TEST_F(LwfMessage, AnnouncesExactlyTheRegisterOfTheInternalBlock)
{
    using namespace panelkit::simulator;
    for (const int index : {5, 0, -1, 65535}) {
        SCOPED_TRACE(index);
        SendLWFRegMessage(index);
        ASSERT_EQ(eventLibraryEntryCount(), 1);
        const auto entry = takeEventLibraryEntry();
        ASSERT_TRUE(std::holds_alternative<RegisterValueChange>(*entry));
        const auto &announced = std::get<RegisterValueChange>(*entry);
        EXPECT_EQ(announced.linkId, 0);
        EXPECT_EQ(announced.station, -1);
        EXPECT_EQ(announced.index, index);
        EXPECT_EQ(announced.reserved, 0);
        EXPECT_EQ(blockOf(announced), padded("LWF"));
        EXPECT_EQ(announced.flag, 0);
    }
}

TEST_F(LwfMessage, NeedsNoCommunication)
{
    panelkit::simulator::setApplicationRecord(nullptr);
    SendLWFRegMessage(5);
    EXPECT_EQ(panelkit::simulator::eventLibraryEntryCount(), 1);
}
