#include "simulator/lua/linkregisters.h"
#include "tests/simulator/comm/commfixture.h"

using namespace panelkit::simulator;
using panelkit::testing::linkTo;

class LinkRegistersTest : public panelkit::testing::PlcFixture
{
protected:
    LinkRegistersTest()
    {
        LinkRecord many = linkTo(server.port(), 2);
        many.value.addmore = 1;
        LinkRecord serial = linkTo(1, 3);
        serial.value.portName = QStringLiteral("COM1");
        comm = std::make_unique<Communication>(std::vector<LinkRecord>{linkTo(server.port()), many, serial});
    }

    static MacroAddress at(const char *link, const char *block, int index, int station = 1)
    {
        return {QString::fromUtf8(link), QString::fromUtf8(block), index, station, 0};
    }

    // The words of an address, or nothing and the reason in `failure`.
    std::vector<int> read(MacroRegisters &registers, const MacroAddress &address, int count = 1)
    {
        RegisterWords words;
        words.count = count;
        failure = registers.read(address, words).toStdString();
        return failure.empty() ? std::vector<int>(words.words.begin(), words.words.begin() + count)
                               : std::vector<int>();
    }

    // The words that stood there; `failure` as above.
    std::vector<int> write(MacroRegisters &registers, const MacroAddress &address,
                           std::vector<quint16> values)
    {
        RegisterWords words;
        words.count = static_cast<int>(values.size());
        std::copy(values.begin(), values.end(), words.words.begin());
        std::optional<RegisterWords> before;
        failure = registers.write(address, words, before).toStdString();
        return before ? std::vector<int>(before->words.begin(), before->words.begin() + words.count)
                      : std::vector<int>();
    }

    int plcWord(int unit, Table table, int index) { return memory.value(unit, table, index); }

    using Words = std::vector<int>;
    std::unique_ptr<Communication> comm;
    std::string failure;
};

TEST_F(LinkRegistersTest, ReadAndWriteThePlc)
{
    setWords(1, Table::HoldingRegisters, 10, {7, 8});
    LinkRegisters registers(*comm);
    EXPECT_EQ(read(registers, at("PLC1", "4x", 10), 2), (Words{7, 8}));
    EXPECT_EQ(write(registers, at("PLC1", "4x", 10), {1, 2}), (Words{7, 8}));
    EXPECT_EQ(failure, "");
    EXPECT_EQ(plcWord(1, Table::HoldingRegisters, 10), 1);
    EXPECT_EQ(plcWord(1, Table::HoldingRegisters, 11), 2);
    EXPECT_EQ(write(registers, at("PLC1", "0x", 3), {1}), Words{0});
    EXPECT_EQ(plcWord(1, Table::Coils, 3), 1);
}

TEST_F(LinkRegistersTest, ReadAndWriteTheInternalStorage)
{
    LinkRegisters registers(*comm);
    EXPECT_EQ(write(registers, at("Internal storage area", "LW", 100, -1), {5, 6}), (Words{0, 0}));
    EXPECT_EQ(read(registers, at("Internal storage area", "LW", 101, -1)), Words{6});
    EXPECT_EQ(write(registers, at("Internal storage area", "LB", 9, -1), {1}), Words{0});
    EXPECT_EQ(read(registers, at("Internal storage area", "LB", 9, -1)), Words{1});
}

TEST_F(LinkRegistersTest, TakeTheMacrosStationOnLinksOfManyAlone)
{
    setWords(1, Table::HoldingRegisters, 0, {11});
    setWords(2, Table::HoldingRegisters, 0, {22});
    LinkRegisters registers(*comm);
    EXPECT_EQ(read(registers, at("PLC1", "4x", 0, 2)), Words{11});
    EXPECT_EQ(read(registers, at("PLC2", "4x", 0, 2)), Words{22});
}

TEST_F(LinkRegistersTest, CopiedAreTheSameWhateverStationIsNamedOnALinkOfOne)
{
    CopiedRegisters registers(*comm);
    write(registers, at("PLC1", "4x", 0, 9), {5});
    EXPECT_EQ(read(registers, at("PLC1", "4x", 0, 1)), Words{5});
    write(registers, at("PLC2", "4x", 0, 2), {6});
    EXPECT_EQ(read(registers, at("PLC2", "4x", 0, 1)), Words{0});
    EXPECT_EQ(read(registers, at("PLC2", "4x", 0, 2)), Words{6});
}

TEST_F(LinkRegistersTest, SayWhatCannotBeReachedAndWhy)
{
    LinkRegisters links(*comm);
    CopiedRegisters copies(*comm);
    const std::string longName(33, 'x');
    const struct
    {
        MacroAddress address;
        const char *failure;
    } rows[] = {
        {at("PLC9", "4x", 0), "there is no such link"},
        {at("plc1", "4x", 0), "there is no such link"},
        {at("PLC1", "9x", 0), "there is no such register"},
        {at("PLC1", "", 0), "there is no such register"},
        {at("PLC1", "温度", 0), "there is no such register"},
        {at("PLC1", longName.c_str(), 0), "there is no such register"},
        {at("PLC1", "4x", -1), "there is no such register"},
        {at("PLC1", "4x", 65536), "there is no such register"},
        {at("PLC3", "4x", 0), "the link is without connection"},
        {at("Internal storage area", "4x", 0), "there is no such register"},
        {at("Internal storage area", "LW", 65536), "there is no such register"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.address.link.toStdString() + ' ' + row.address.block.toStdString());
        for (MacroRegisters *registers :
             {static_cast<MacroRegisters *>(&links), static_cast<MacroRegisters *>(&copies)}) {
            read(*registers, row.address);
            EXPECT_EQ(failure, row.failure);
            write(*registers, row.address, {1});
            EXPECT_EQ(failure, row.failure);
        }
    }
    for (MacroRegisters *registers :
         {static_cast<MacroRegisters *>(&links), static_cast<MacroRegisters *>(&copies)}) {
        write(*registers, at("PLC1", "3x", 0), {1});
        EXPECT_EQ(failure, "the register cannot be written");
    }
}

TEST_F(LinkRegistersTest, CopiedKeepWhatIsWrittenFromThePlc)
{
    setWords(1, Table::HoldingRegisters, 10, {7, 8, 9});
    CopiedRegisters registers(*comm);
    EXPECT_EQ(write(registers, at("PLC1", "4x", 11), {100}), Words{8});
    EXPECT_EQ(read(registers, at("PLC1", "4x", 10), 2), (Words{7, 100}));
    EXPECT_EQ(read(registers, at("PLC1", "4x", 11), 2), (Words{100, 9}));
    EXPECT_EQ(write(registers, at("PLC1", "4x", 11), {101}), Words{100});
    EXPECT_EQ(read(registers, at("PLC2", "4x", 11)), Words{8});
    EXPECT_EQ(plcWord(1, Table::HoldingRegisters, 11), 8);
    setWords(1, Table::HoldingRegisters, 10, {70});
    EXPECT_EQ(read(registers, at("PLC1", "4x", 10)), Words{70});
}

TEST_F(LinkRegistersTest, CopiedKeepWhatIsWrittenFromTheInternalStorage)
{
    CopiedRegisters copies(*comm);
    LinkRegisters registers(*comm);
    const MacroAddress word = at("Internal storage area", "LW", 5, -1);
    const MacroAddress bit = at("Internal storage area", "LB", 5, -1);
    write(copies, word, {1, 2});
    write(copies, bit, {7});
    EXPECT_EQ(read(copies, word, 2), (Words{1, 2}));
    EXPECT_EQ(read(copies, bit), Words{1});
    EXPECT_EQ(read(copies, at("Internal storage area", "RWI", 5, -1)), Words{0});
    EXPECT_EQ(read(registers, word, 2), (Words{0, 0}));
    EXPECT_EQ(read(registers, bit), Words{0});
}

TEST_F(LinkRegistersTest, CopiedCanBePresetEvenWhereNothingCanBeWritten)
{
    setWords(1, Table::InputRegisters, 4, {7, 8});
    CopiedRegisters registers(*comm);
    EXPECT_EQ(registers.preset(at("PLC1", "3x", 5), {{99, 0}, 1}), QString());
    EXPECT_EQ(read(registers, at("PLC1", "3x", 4), 2), (Words{7, 99}));
    EXPECT_EQ(registers.preset(at("PLC1", "9x", 5), {{99, 0}, 1}),
              QStringLiteral("there is no such register"));
    EXPECT_EQ(registers.preset(at("PLC9", "3x", 5), {{99, 0}, 1}), QStringLiteral("there is no such link"));
}

TEST_F(LinkRegistersTest, CopiedRefuseToPresetWhatLiesOutsideOfTheInternalStorage)
{
    CopiedRegisters registers(*comm);
    const struct
    {
        const char *block;
        int index, wordCount;
        const char *failure;
    } rows[] = {
        {"LW", 65535, 1, ""},
        {"LW", 65534, 2, ""},
        {"LB", 65535, 1, ""},
        {"LW", 65536, 1, "there is no such register"},
        {"LW", 65535, 2, "there is no such register"},
        {"LB", 65536, 1, "there is no such register"},
        {"RWI", -1, 1, "there is no such register"},
        {"LW", 2147483647, 1, "there is no such register"},
        {"LW", 2147483647, 2, "there is no such register"},
        {"LX", 0, 1, "there is no such register"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(
            registers.preset(at("Internal storage area", row.block, row.index, -1), {{7, 8}, row.wordCount})
                .toStdString(),
            row.failure)
            << row.block << row.index;
}

TEST_F(LinkRegistersTest, CopiedKnowTheBitsOfAWord)
{
    setWords(1, Table::HoldingRegisters, 10, {0x00F0});
    CopiedRegisters registers(*comm);
    EXPECT_EQ(write(registers, at("PLC1", "4x_bit", 160), {1}), Words{0});
    EXPECT_EQ(write(registers, at("PLC1", "4x_bit", 164), {0}), Words{1});
    EXPECT_EQ(read(registers, at("PLC1", "4x", 10)), Words{0x00E1});
    EXPECT_EQ(read(registers, at("PLC1", "4x_bit", 160), 2), (Words{1, 0}));
    EXPECT_EQ(write(registers, at("PLC1", "4x", 10), {0x8000}), Words{0x00E1});
    EXPECT_EQ(read(registers, at("PLC1", "4x_bit", 175)), Words{1});
    EXPECT_EQ(read(registers, at("PLC1", "4x_bit", 160)), Words{0});
    EXPECT_EQ(write(registers, at("PLC1", "4x_bit", 175), {0, 1}), (Words{1, 0}));
    EXPECT_EQ(read(registers, at("PLC1", "4x", 10), 2), (Words{0, 1}));
    EXPECT_EQ(plcWord(1, Table::HoldingRegisters, 10), 0x00F0);
}

TEST_F(LinkRegistersTest, FailWhileThePlcIsAway)
{
    LinkRegisters links(*comm);
    CopiedRegisters copies(*comm);
    setFault(PlcFault::Gone);
    for (MacroRegisters *registers :
         {static_cast<MacroRegisters *>(&links), static_cast<MacroRegisters *>(&copies)}) {
        EXPECT_EQ(write(*registers, at("PLC1", "4x", 10), {1}), Words{});
        EXPECT_NE(failure, "");
        EXPECT_EQ(read(*registers, at("PLC1", "4x", 10)), Words{});
        EXPECT_NE(failure, "");
    }
}
