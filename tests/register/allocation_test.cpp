// The heap allocations that showing a register costs, counted.

#include "register/addresstext.h"
#include "register/numformat.h"
#include "register/registervaluechange.h"
#include "simulator/platform/systembase.h"
#include "tests/support/allocationcounter.h"
#include "tests/support/memorycomm.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

using panelkit::testing::AllocationCounter;

class Allocations : public ::testing::Test
{
protected:
    Allocations()
    {
        record.comm = &comm;
        panelkit::simulator::setApplicationRecord(&record);
        comm.link.addmore = 1;
    }
    ~Allocations() override { panelkit::simulator::setApplicationRecord(nullptr); }

    void hold(quint32 bits) { comm.words = {static_cast<quint16>(bits), static_cast<quint16>(bits >> 16)}; }

    static bool show(int totalDigits, int decimals, NUM_DATA_TYPE type, NUM_DATA_VIEW_TYPE view, QString &out)
    {
        return getValueToQString({}, 2, totalDigits, decimals, type, view, out);
    }

    static RegisterValueChange address(int linkId, const char *block, int index)
    {
        RegisterValueChange reg = {};
        reg.linkId = linkId;
        reg.station = 3;
        reg.index = index;
        std::memcpy(reg.block, block, std::strlen(block));
        return reg;
    }

    panelkit::testing::MemoryComm comm;
    sys_base_app_pro record = {};
};

TEST_F(Allocations, AreNoneForAnyValueInAStringThatHasBeenFilledBefore)
{
    for (const int decimals : {0, 2, 9, 12, 39, 1024, -1, -45}) {
        QString out;
        hold(0);
        ASSERT_TRUE(show(2000, decimals, NUM_BIT, NUM_VIEW_DEC, out));
        for (int type = NUM_BIT; type <= NUM_FLOAT32; ++type) {
            for (int view = NUM_VIEW_DEC; view <= NUM_VIEW_BIN; ++view) {
                for (const quint32 bits :
                     {1U, 0xFFFFFFFFU, 0x80000000U, 0x99999999U, 0x7F7FFFFFU, 0xFF7FFFFFU, 0x3DCCCCCDU}) {
                    hold(bits);
                    const AllocationCounter counter;
                    show(2000, decimals, static_cast<NUM_DATA_TYPE>(type),
                         static_cast<NUM_DATA_VIEW_TYPE>(view), out);
                    ASSERT_EQ(counter.count(), 0)
                        << type << ' ' << view << ' ' << decimals << ' ' << std::hex << bits;
                }
            }
        }
    }
}

TEST_F(Allocations, AreOneForAFreshString)
{
    hold(0x3FC00000);
    for (int type = NUM_BIT; type <= NUM_FLOAT32; ++type) {
        for (const int decimals : {0, 2, 1024}) {
            const AllocationCounter counter;
            QString out;
            show(2000, decimals, static_cast<NUM_DATA_TYPE>(type), NUM_VIEW_DEC, out);
            EXPECT_EQ(counter.count(), 1) << type << ' ' << decimals;
        }
    }
    hold(0x00434241);
    const AllocationCounter counter;
    QString out;
    show(1, 0, NUM_STRING, NUM_VIEW_DEC, out);
    EXPECT_EQ(counter.count(), 1);
}

TEST_F(Allocations, AreNoneForAnUnchangedValueOfAStringThatIsShared)
{
    hold(0x00434241);
    for (int type = NUM_BIT; type <= NUM_STRING; ++type) {
        QString out;
        show(5, 2, static_cast<NUM_DATA_TYPE>(type), NUM_VIEW_DEC, out);
        const QString copy = out;
        const AllocationCounter counter;
        show(5, 2, static_cast<NUM_DATA_TYPE>(type), NUM_VIEW_DEC, out);
        EXPECT_EQ(counter.count(), 0) << type;
        EXPECT_EQ(out.constData(), copy.constData()) << "still one text, type " << type;
    }
}

TEST_F(Allocations, LeaveACopyOfTheStringAsItWas)
{
    QString out;
    hold(12);
    show(5, 0, NUM_UINT16, NUM_VIEW_DEC, out);
    const QString copy = out;
    hold(34);
    const AllocationCounter counter;
    show(5, 0, NUM_UINT16, NUM_VIEW_DEC, out);
    EXPECT_EQ(counter.count(), 1);
    EXPECT_EQ(copy, QStringLiteral("12"));
    EXPECT_EQ(out, QStringLiteral("34"));
}

TEST_F(Allocations, AreNoneForAnyAsciiStringInAStringThatHasBeenFilledBefore)
{
    QString out;
    hold(0x00000042);
    show(5, 0, NUM_STRING, NUM_VIEW_DEC, out);
    for (const quint32 bits : {0x00434241U, 0x44434241U, 0x00000041U, 0x00000000U}) {
        hold(bits);
        const AllocationCounter counter;
        show(5, 0, NUM_STRING, NUM_VIEW_DEC, out);
        EXPECT_EQ(counter.count(), 0) << out.toStdString();
    }
}

TEST_F(Allocations, AreNoneForSinglesInAStringThatHasBeenFilledBefore)
{
    QString out;
    float value = 1.0F;
    auto *bytes = reinterpret_cast<unsigned char *>(&value);
    {
        const AllocationCounter counter;
        ieee754TofloatStr(bytes, out);
        EXPECT_EQ(counter.count(), 1);
    }
    for (const float next : {0.0F, -1.0F / 3.0F, -1000000.0625F, 3.4e38F, -3.4e38F}) {
        value = next;
        const AllocationCounter counter;
        ieee754TofloatStr(bytes, out);
        EXPECT_EQ(counter.count(), 0) << next;
    }
}

TEST_F(Allocations, AreOneForADouble)
{
    for (const int decimals : {1, 8, 1024, -1}) {
        const AllocationCounter counter;
        const QString text = doubleToQString(-123.456, decimals);
        EXPECT_EQ(counter.count(), 1) << text.toStdString();
    }
}

TEST_F(Allocations, OfAnAddressAreOneForAFreshStringAndNoneForAFilledOne)
{
    const QString longest = QStringLiteral("4000000");
    const QString shortest = QStringLiteral("7");
    for (const auto &reg : {address(2, "D", 200), address(0, "LW", 200)}) {
        QString out;
        {
            const AllocationCounter counter;
            conversionAddr2UIText(reg, longest, &comm, out);
            EXPECT_EQ(counter.count(), 1);
        }
        const QString copy = out;
        {
            const AllocationCounter counter;
            conversionAddr2UIText(reg, longest, &comm, out);
            EXPECT_EQ(counter.count(), 0) << "unchanged";
            EXPECT_EQ(out.constData(), copy.constData()) << "still one text";
        }
        QString own = QString(copy.constData(), copy.size());
        const AllocationCounter counter;
        conversionAddr2UIText(reg, shortest, &comm, own);
        conversionAddr2UIText(reg, longest, &comm, own);
        EXPECT_EQ(counter.count(), 0) << "changed, with room";
    }
}

TEST_F(Allocations, AreNoneForARefreshOf10000UnchangedItems)
{
    struct Item
    {
        RegisterValueChange reg;
        NUM_DATA_TYPE type;
        NUM_DATA_VIEW_TYPE view;
        int decimals;
        QString value;
        QString address;
    };
    constexpr int itemCount = 10000;
    const QString indexText = QStringLiteral("D7");
    std::vector<Item> items;
    for (int i = 0; i < itemCount; ++i) {
        comm.words.push_back(static_cast<quint16>(i * 37 % 128 + 256 * (i % 128)));
        Item item = {};
        item.reg = address(i % 4, i % 3 == 0 ? "LW" : "D", i);
        item.type = static_cast<NUM_DATA_TYPE>(i % 9 - 1);
        item.view = static_cast<NUM_DATA_VIEW_TYPE>(i / 9 % 4);
        item.decimals = i / 36 % 3;
        items.push_back(item);
    }
    const auto refresh = [&] {
        for (Item &item : items) {
            getValueToQString(item.reg, 2, 8, item.decimals, item.type, item.view, item.value);
            conversionAddr2UIText(item.reg, indexText, &comm, item.address);
        }
    };
    refresh();
    std::vector<QString> screen; // which shares the texts with the items
    for (const Item &item : items)
        screen.insert(screen.end(), {item.value, item.address});

    const AllocationCounter counter;
    refresh();
    EXPECT_EQ(counter.count(), 0);
    for (std::size_t i = 0; i < items.size(); ++i) {
        ASSERT_EQ(items[i].value, screen[2 * i]);
        ASSERT_FALSE(items[i].address.isEmpty());
    }
}
