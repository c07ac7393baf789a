#include "simulator/soak/plaintext.h"

#include "simulator/project/project.h"

#include <gtest/gtest.h>

using namespace panelkit::simulator;

namespace {

struct Row
{
    const char *name;
    NUM_DATA_TYPE type;
    NUM_DATA_VIEW_TYPE view;
    int digits;
    int decimals;
    QVector<quint16> words;
    const char *text;
};

// By the rules of register/numformat.h.
const Row rows[] = {
    {"bit", NUM_BIT, NUM_VIEW_DEC, 1, 0, {2}, "1"},
    {"unsigned", NUM_UINT16, NUM_VIEW_DEC, 5, 0, {65535}, "65535"},
    {"digits dropped from the left", NUM_UINT16, NUM_VIEW_DEC, 3, 0, {65005}, "5"},
    {"decimals", NUM_UINT16, NUM_VIEW_DEC, 4, 1, {875}, "87.5"},
    {"decimals alone", NUM_UINT16, NUM_VIEW_DEC, 2, 2, {875}, "0.75"},
    {"two words, the low one first", NUM_UINT32, NUM_VIEW_DEC, 8, 0, {1, 1}, "65537"},
    {"hexadecimal", NUM_UINT32, NUM_VIEW_HEX, 8, 3, {0xbeef, 0x0dea}, "deabeef"},
    {"octal", NUM_UINT16, NUM_VIEW_OCT, 6, 0, {8}, "10"},
    {"binary", NUM_UINT16, NUM_VIEW_BIN, 3, 0, {10}, "10"},
    {"negative", NUM_INT16, NUM_VIEW_DEC, 4, 2, {0xff85}, "-1.23"},
    {"negative of two words", NUM_INT32, NUM_VIEW_DEC, 2, 0, {0xff85, 0xffff}, "-23"},
    {"BCD", NUM_BCD16, NUM_VIEW_DEC, 4, 0, {0x0417}, "417"},
    {"BCD with decimals", NUM_BCD32, NUM_VIEW_DEC, 8, 3, {0x0012, 0}, "0.012"},
    {"no BCD", NUM_BCD16, NUM_VIEW_DEC, 4, 0, {0x00a1}, "NA"},
    {"single, cut off", NUM_FLOAT32, NUM_VIEW_DEC, 5, 2, {0x0000, 0x41ac}, "21.50"},
    {"single without decimals", NUM_FLOAT32, NUM_VIEW_DEC, 5, 0, {0x0000, 0xbf00}, "0"},
    {"single that is no number", NUM_FLOAT32, NUM_VIEW_DEC, 5, 1, {0x0000, 0x7fc0}, "0.0"},
    {"string", NUM_STRING, NUM_VIEW_DEC, 1, 0, {0x424c, 0x3541, 0x0000, 0x4141}, "LBA5"},
};

} // namespace

TEST(PlainText, IsWhatAScreenHasToShow)
{
    for (const Row &row : rows) {
        ItemDefinition item;
        item.type = row.type;
        item.view = row.view;
        item.digits = row.digits;
        item.decimals = row.decimals;
        const auto text = plainText(item, row.words);
        ASSERT_TRUE(text) << row.name;
        EXPECT_EQ(text->toStdString(), row.text) << row.name;
    }
}

TEST(PlainText, LeavesTextsBeyondAsciiToTheLocale)
{
    ItemDefinition item;
    item.type = NUM_STRING;
    EXPECT_EQ(plainText(item, {0x41c3}), std::nullopt);
}
