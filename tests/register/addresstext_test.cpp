#include "register/addresstext.h"

#include "register/registervaluechange.h"
#include "tests/support/recordingcomm.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

class AddressText : public ::testing::Test
{
protected:
    void addLink(int id, int addmore)
    {
        LinkValue link;
        link.id = id;
        link.addmore = addmore;
        comm.links.insert(id, link);
    }

    static RegisterValueChange address(int linkId, int station, const QByteArray &block, int index)
    {
        RegisterValueChange reg = {};
        reg.linkId = linkId;
        reg.station = station;
        reg.index = index;
        reg.flag = 'X'; // the byte behind the block
        std::memcpy(reg.block, block.constData(),
                    static_cast<std::size_t>(qMin(static_cast<int>(block.size()), 32)));
        return reg;
    }

    // The text of an address whose call succeeds.
    QString text(const RegisterValueChange &reg, const QString &indexText = QString())
    {
        QString out = QStringLiteral("before");
        EXPECT_TRUE(conversionAddr2UIText(reg, indexText, &comm, out));
        return out;
    }

    panelkit::testing::RecordingComm comm;
};

} // namespace

TEST_F(AddressText, OfInternalRegistersIsBlockAndIndex)
{
    const struct
    {
        const char *block;
        int index;
        const char *expected;
    } rows[] = {
        {"LW", 100, "LW100"},
        {"LB", 7, "LB7"},
        {"RWI", 0, "RWI0"},
        {"RWI", 65535, "RWI65535"},
        {"LWF", 5, "LWF5"},
        {"LBX9", 3, "LBX93"},
        {"RWIN", 12, "RWIN12"},
        {"LW", -1, "LW-1"},
        {"LW", INT_MIN, "LW-2147483648"},
        {"LB", INT_MAX, "LB2147483647"},
        {"LW%2", 4, "LW%24"},
        {"LB%1", 4, "LB%14"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.expected);
        EXPECT_EQ(text(address(2, 3, row.block, row.index), QStringLiteral("ignored")),
                  QString::fromLatin1(row.expected));
    }
    EXPECT_TRUE(comm.calls.isEmpty()) << "an internal register needs no link";
}

TEST_F(AddressText, OfAnInternalRegisterNeedsNoCommunication)
{
    QString out;
    EXPECT_TRUE(conversionAddr2UIText(address(0, -1, "LB", 7), QString(), nullptr, out));
    EXPECT_EQ(out, QStringLiteral("LB7"));
}

TEST_F(AddressText, FailsEmptyWithoutCommunicationForEveryOtherBlock)
{
    for (const char *block : {"LX", "L", "", "RW", "RWX", "lw", "Lb", "rwi", "XLW", "D", " LW"}) {
        SCOPED_TRACE(block);
        QString out = QStringLiteral("before");
        EXPECT_FALSE(conversionAddr2UIText(address(0, 0, block, 7), QStringLiteral("7"), nullptr, out));
        EXPECT_EQ(out, QString());
    }
}

TEST_F(AddressText, CarriesTheLinkFromTheSecondOnAndTheStationWhereAddressesNameOne)
{
    const struct
    {
        int linkId;
        int addmore;
        int station;
        const char *block;
        const char *indexText;
        const char *expected;
    } rows[] = {
        {2, 1, 3, "D", "200", "2/3#D200"},
        {1, 0, 3, "D", "200", "D200"},
        {1, 1, 3, "D", "200", "3#D200"},
        {2, 0, 3, "D", "200", "2/D200"},
        {0, 1, 3, "D", "200", "3#D200"},
        {2, 2, 3, "D", "200", "2/D200"},
        {2, -1, 3, "D", "200", "2/D200"},
        {65535, 1, -1, "4x", "17.3", "65535/-1#4x17.3"},
        {3, 1, INT_MIN, "M", "", "3/-2147483648#M"},
        {12, 1, INT_MAX, "", "5", "12/2147483647#5"},
        {2, 1, 3, "%1", "%2", "2/3#%1%2"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.expected);
        addLink(row.linkId, row.addmore);
        EXPECT_EQ(text(address(row.linkId, row.station, row.block, 9), QString::fromLatin1(row.indexText)),
                  QString::fromLatin1(row.expected));
    }
}

TEST_F(AddressText, PrefixesNoLinkBelowTheSecond)
{
    LinkValue link;
    link.id = 1;
    comm.links.insert(static_cast<quint16>(-5), link);
    EXPECT_EQ(text(address(-5, 0, "D", 0), QStringLiteral("1")), QStringLiteral("D1"));
}

TEST_F(AddressText, ShowsTheRecordsOwnLinkNumberAndAsksForItsLow16Bits)
{
    LinkValue link;
    link.id = 40;
    comm.links.insert(3, link);
    EXPECT_EQ(text(address(65539, 0, "D", 0), QStringLiteral("1")), QStringLiteral("65539/D1"));
    EXPECT_EQ(comm.calls, QStringList{QStringLiteral("getLinkValue 3")});
}

TEST_F(AddressText, IsEmptyForAnUnknownLinkOnly)
{
    EXPECT_EQ(text(address(8, 3, "D", 9), QStringLiteral("200")), QString());
    for (const int id : {0, -2, INT_MIN}) {
        SCOPED_TRACE(id);
        LinkValue link;
        link.id = id;
        comm.links.insert(8, link);
        EXPECT_EQ(text(address(8, 3, "D", 9), QStringLiteral("200")), QStringLiteral("8/D200"));
    }
}

TEST_F(AddressText, ReadsABlockUpTo32CharactersAndNoFurther)
{
    addLink(1, 0);
    EXPECT_EQ(text(address(1, 0, "01234567890123456789012345678901", 9), QStringLiteral("#")),
              QStringLiteral("01234567890123456789012345678901#"));
    EXPECT_EQ(text(address(1, 0, QByteArray("LWxx567890123456789012345678901Z"), INT_MIN)),
              QStringLiteral("LWxx567890123456789012345678901Z-2147483648"));
    EXPECT_EQ(text(address(1, 0, QByteArray("D\0EF", 4), 9), QStringLiteral("1")), QStringLiteral("D1"));
}

TEST_F(AddressText, HoldsTheLongestOfAllHeads)
{
    addLink(1, 0);
    LinkValue link;
    link.addmore = 1;
    comm.links.insert(static_cast<quint16>(INT_MAX), link);
    EXPECT_EQ(text(address(INT_MAX, INT_MIN, "01234567890123456789012345678901", 9), QStringLiteral("7")),
              QStringLiteral("2147483647/-2147483648#012345678901234567890123456789017"));
}

TEST_F(AddressText, ReadsBlocksAsLatin1AndKeepsTheIndexTextAsItIs)
{
    addLink(1, 0);
    EXPECT_EQ(text(address(1, 0, "D\xFC", 9), QString::fromUtf8("\xE6\xB8\xA9")),
              QString::fromUtf8("D\xC3\xBC\xE6\xB8\xA9"));
}

TEST_F(AddressText, MayBeWrittenOverItsOwnIndexText)
{
    addLink(2, 0);
    QString both = QStringLiteral("200");
    EXPECT_TRUE(conversionAddr2UIText(address(2, 0, "D", 9), both, &comm, both));
    EXPECT_EQ(both, QStringLiteral("2/D200"));
}
