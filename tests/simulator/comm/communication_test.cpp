#include "tests/simulator/comm/commfixture.h"

#include <climits>

using namespace panelkit::simulator;
using namespace panelkit::testing;

namespace {

LinkRecord serialLink(int number)
{
    LinkRecord link = linkTo(1, number);
    link.value.portName = QStringLiteral("COM1");
    return link;
}

TEST(Communication, GivesALinksDefinitionByNumberAndByName)
{
    LinkRecord record = serialLink(7);
    record.name = QStringLiteral("灌装");
    record.value.station = 3;
    record.value.addmore = 1;
    record.value.baud = 115200;
    Communication comm({record});
    for (const LinkValue &link : {comm.getLinkValue(7), comm.getLinkValueByName(QStringLiteral("灌装"))}) {
        EXPECT_EQ(link.id, 7);
        EXPECT_EQ(link.station, 3);
        EXPECT_EQ(link.addmore, 1);
        EXPECT_EQ(link.baud, 115200);
        EXPECT_EQ(link.driverLib, QStringLiteral("drivers/Modbus"));
    }
}

TEST(Communication, GivesAnUnknownLinkTheNumberMinusOne)
{
    Communication comm({serialLink(7)});
    EXPECT_EQ(comm.getLinkValue(8).id, -1);
    EXPECT_EQ(comm.getLinkValue(65535).id, -1);
    EXPECT_EQ(comm.getLinkValueByName(QStringLiteral("plc7")).id, -1);
    EXPECT_EQ(comm.getLinkValueByName(QString()).id, -1);
}

TEST(Communication, HasTheInternalStorageAsLinkZero)
{
    Communication comm({});
    for (const LinkValue &link :
         {comm.getLinkValue(0), comm.getLinkValueByName(QStringLiteral("Internal storage area"))}) {
        EXPECT_EQ(link.id, 0);
        EXPECT_EQ(link.addmore, 0);
        EXPECT_EQ(link.station, -1);
    }
}

TEST(Communication, LeavesOutLinksWithANumberThatCannotBe)
{
    LinkRecord second = serialLink(7);
    second.name = QStringLiteral("again");
    Communication comm(
        {serialLink(0), serialLink(-1), serialLink(65536), serialLink(7), second, serialLink(65535)});
    EXPECT_EQ(comm.linkNumbers(), (std::vector<int>{0, 7, 65535}));
    EXPECT_EQ(comm.linkName(7), QStringLiteral("PLC7"));
    EXPECT_EQ(comm.linkName(0), QStringLiteral("Internal storage area"));
    EXPECT_EQ(comm.linkName(8), QString());
    EXPECT_EQ(comm.getLinkValueByName(QStringLiteral("again")).id, -1);
}

TEST(Communication, ReadsAndWritesTheInternalStorage)
{
    Communication comm({});
    EXPECT_EQ(writeWords(comm, address(0, -1, "LW", 10), {1, 2}), TransferStatus::Done);
    EXPECT_EQ(writeWords(comm, address(0, -1, "LB", 10), {5}), TransferStatus::Done);
    EXPECT_EQ(readWords(comm, address(0, -1, "LW", 9), 4), (std::vector<int>{0, 1, 2, 0}));
    EXPECT_EQ(readWords(comm, address(0, -1, "LB", 10), 2), (std::vector<int>{1, 0}));
    EXPECT_EQ(readWord(comm, address(0, 5, "RWI", 0)), 0);
    EXPECT_EQ(readWord(comm, address(0, -1, "4x", 0)), std::nullopt);
    EXPECT_EQ(readWords(comm, address(0, -1, "LW", 65535), 2), std::nullopt);
    EXPECT_EQ(writeWords(comm, address(0, -1, "LW", 65536), {1}), TransferStatus::NoSuchRegister);
    quint16 word = 0;
    EXPECT_TRUE(comm.readAddressNow(address(0, -1, "LW", 11), 1, &word));
    EXPECT_EQ(word, 2);
    EXPECT_EQ(comm.readAddressNow(address(0, -1, "LX", 11), 1, &word).status, TransferStatus::NoSuchRegister);
}

TEST(Communication, ReadsABlockNameUpToItsNulOrItsThirtyTwoBytes)
{
    Communication comm({});
    writeWords(comm, address(0, -1, "LW", 1), {7});
    RegisterValueChange reg = address(0, -1, "LW", 1);
    std::memcpy(reg.block + 3, "rest", 4);
    EXPECT_EQ(readWord(comm, reg), 7);
    std::memset(reg.block, 'L', sizeof(reg.block));
    reg.flag = 'W';
    EXPECT_EQ(readWord(comm, reg), std::nullopt);
}

TEST(Communication, ReadsAndWritesSystemRegisters)
{
    Communication comm({});
    const quint16 written[] = {192, 168};
    quint16 words[3] = {};
    EXPECT_EQ(comm.writeRegisters(0, 64020, 2, written), 0);
    EXPECT_EQ(comm.readRegisters(0, 64020, 3, words), 0);
    EXPECT_EQ(words[0], 192);
    EXPECT_EQ(words[1], 168);
    EXPECT_EQ(words[2], 0);
    EXPECT_EQ(comm.writeRegisters(2, 64020, 1, written), -1);
    EXPECT_EQ(comm.readRegisters(1, 65536, 1, words), -1);
}

TEST(Communication, RefusesNullPointers)
{
    Communication comm({});
    const RegisterValueChange reg = address(0, -1, "LW", 0);
    quint16 word = 0;
    EXPECT_EQ(comm.readAddressWords(nullptr, 1, &word), -1);
    EXPECT_EQ(comm.readAddressWords(&reg, 1, nullptr), -1);
    EXPECT_EQ(comm.readRegisters(0, 0, 1, nullptr), -1);
    EXPECT_EQ(comm.writeRegisters(0, 0, 1, nullptr), -1);
    EXPECT_EQ(comm.writeAddressWords(reg, 1, nullptr).status, TransferStatus::NoSuchRegister);
    EXPECT_EQ(comm.readAddressNow(reg, 1, nullptr).status, TransferStatus::NoSuchRegister);
}

TEST(Communication, ResolvesTheIndexOfAScriptVariable)
{
    LinkRecord other = linkTo(1, 2);
    other.value.driverLib = QStringLiteral("drivers/ByteAddressed");
    Communication comm({linkTo(1, 1), other});
    const struct
    {
        int link;
        const char *block;
        const char *text;
        int index;
    } rows[] = {
        {0, "LW", "0", 0},         {0, "LB", "65535", 65535}, {0, "LW", "65536", -1},
        {0, "LW", "-1", -1},       {0, "LW", "a", -1},        {0, "4x", "1", -1},
        {0, "RWI", "7", 7},        {0, "LWF", "8", 8},        {1, "4x", "0", 0},
        {1, "4x", "1", 1},         {1, "4x_bit", "17", 17},   {1, "4x_bit", "2.1", -1},
        {1, "3x", "65535", 65535}, {1, "3x", "65536", -1},    {1, "3x_bit", "1048575", 1048575},
        {1, "0x", "-1", -1},       {1, "0x", "0x10", -1},     {1, "LW", "1", -1},
        {2, "4x", "1", -1},        {3, "4x", "1", -1},        {-1, "4x", "1", -1},
    };
    for (const auto &row : rows)
        EXPECT_EQ(comm.resolveAddressIndex(row.link, QLatin1String(row.block), QLatin1String(row.text), 5, 3),
                  row.index)
            << row.link << ' ' << row.block << ' ' << row.text;
}

TEST(Communication, HasNoConnectionOnLinksOfOtherKinds)
{
    LinkRecord foreign = linkTo(1, 2);
    foreign.value.driverLib = QStringLiteral("drivers/ByteAddressed");
    Communication comm({serialLink(1), foreign});
    for (const int number : {1, 2}) {
        const RegisterValueChange reg = address(number, 1, "4x", 0);
        EXPECT_EQ(comm.linkState(number).condition, LinkCondition::WithoutConnection);
        EXPECT_EQ(readWord(comm, reg), std::nullopt);
        EXPECT_EQ(writeWords(comm, reg, {1}), TransferStatus::WithoutConnection);
        quint16 word = 0;
        EXPECT_EQ(comm.readAddressNow(reg, 1, &word).status, TransferStatus::WithoutConnection);
        comm.watchAddress(reg, 1);
        EXPECT_FALSE(comm.waitForLink(
            number, [](const LinkState &state) { return state.polls > 0; }, eventually));
    }
}

TEST(Communication, KnowsTheConditionOfLinksThatAreNoPlc)
{
    Communication comm({});
    EXPECT_EQ(comm.linkState(0).condition, LinkCondition::Internal);
    EXPECT_EQ(comm.linkState(1).condition, LinkCondition::Unknown);
    EXPECT_EQ(comm.linkState(-1).condition, LinkCondition::Unknown);
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x", 0), {1}), TransferStatus::NoSuchLink);
    EXPECT_EQ(readWord(comm, address(1, 1, "4x", 0)), std::nullopt);
}

TEST(Communication, IsIdleUntilSomethingIsAskedFor)
{
    Communication comm({linkTo(1)});
    EXPECT_EQ(comm.linkState(1).condition, LinkCondition::Idle);
    EXPECT_EQ(comm.linkState(1).failures, 0U);
}

TEST(Communication, RefusesAddressesThatNoPlcCanHaveWithoutAskingIt)
{
    Communication comm({linkTo(1)});
    for (const auto &[reg, count] : std::vector<std::pair<RegisterValueChange, int>>{
             {address(1, 1, "D", 0), 1},
             {address(1, 1, "4x", -1), 1},
             {address(1, 1, "4x", 65535), 2},
             {address(1, 1, "4x", 0), 0},
             {address(1, 1, "4x", 0), -5},
             {address(1, 1, "4x", 0), 126},
             {address(1, 1, "4x", INT_MAX), INT_MAX},
         }) {
        SCOPED_TRACE(std::string(reg.block) + " " + std::to_string(reg.index) + " " + std::to_string(count));
        std::vector<quint16> words(200);
        EXPECT_EQ(comm.readAddressWords(&reg, count, words.data()), -1);
        EXPECT_EQ(comm.writeAddressWords(reg, count, words.data()).status, TransferStatus::NoSuchRegister);
        EXPECT_EQ(comm.readAddressNow(reg, count, words.data()).status, TransferStatus::NoSuchRegister);
    }
    EXPECT_EQ(writeWords(comm, address(1, 1, "3x", 0), {1}), TransferStatus::ReadOnly);
    EXPECT_EQ(writeWords(comm, address(1, 1, "1x", 0), {1}), TransferStatus::ReadOnly);
    EXPECT_EQ(writeWords(comm, address(1, 1, "3x_bit", 0), {1}), TransferStatus::ReadOnly);
    EXPECT_EQ(writeWords(comm, address(1, 1, "4x", 0), std::vector<quint16>(124)),
              TransferStatus::NoSuchRegister);
    EXPECT_EQ(comm.linkState(1).condition, LinkCondition::Idle);
}

} // namespace
