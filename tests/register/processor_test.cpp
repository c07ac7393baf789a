// What differs between the panel's processor and a PC's, and must not show: there a plain char has no sign, a
// long and a time_t have 32 bits, a float beyond an int becomes the nearest one, and the heap's blocks begin
// at other multiples. Every expected value is written out, so that both give the same.

#include "network/dynamiclink.h"
#include "register/addresstext.h"
#include "register/numformat.h"
#include "register/registervaluechange.h"
#include "register/textencoding.h"
#include "runtime/systemfigures.h"
#include "runtime/utimer.h"
#include "simulator/platform/systembase.h"
#include "tests/support/memorycomm.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <limits>

// Records without pointers and texts have one layout, whatever the processor.
static_assert(sizeof(dynamecslinkParam_t) == 72);
static_assert(offsetof(dynamecslinkParam_t, stopBits) == 68);
static_assert(sizeof(cpu_info) == 56);
static_assert(offsetof(cpu_info, firstCall) == 52);
static_assert(sizeof(DevDiskInfo) == 12);

namespace {

class Processor : public ::testing::Test
{
protected:
    Processor()
    {
        record.comm = &comm;
        panelkit::simulator::setApplicationRecord(&record);
    }
    ~Processor() override { panelkit::simulator::setApplicationRecord(nullptr); }

    // What a screen shows of a single.
    QString shown(float value, int decimals)
    {
        quint16 words[2];
        std::memcpy(words, &value, sizeof(words));
        comm.words = {words[0], words[1]};
        QString out;
        getValueToQString({}, 2, 20, decimals, NUM_FLOAT32, NUM_VIEW_DEC, out);
        return out;
    }

    panelkit::testing::MemoryComm comm;
    sys_base_app_pro record = {};
};

} // namespace

TEST_F(Processor, GivesLatinLettersOfABlockNoSign)
{
    RegisterValueChange reg = {};
    reg.linkId = 1;
    comm.link.id = 1;
    std::memcpy(reg.block, "\xDC\xFF\x80", 3);
    QString out;
    ASSERT_TRUE(conversionAddr2UIText(reg, QStringLiteral("7"), &comm, out));
    EXPECT_EQ(out, QString::fromUtf8("\u00DC\u00FF\u0080") + QLatin1Char('7'));
}

TEST_F(Processor, GivesBytesOfATextNoSign)
{
    comm.words = {0xA4E6, 0x009C}; // UTF-8 of one Chinese character, the first byte in the low half of a word
    QString out;
    ASSERT_TRUE(getValueToQString({}, 2, 20, 0, NUM_STRING, NUM_VIEW_DEC, out));
    EXPECT_EQ(out, QString(QChar(0x691C)));

    const char gbk[] = "\xD6\xD0\xB9\xFA"; // "China" in Chinese
    QByteArray copy(gbk);
    EXPECT_EQ(tools_gb2312ToUtf8(copy.data(), 4), QByteArray("\xE4\xB8\xAD\xE5\x9B\xBD"));
    GB2312ToQString(out, copy.data(), 4);
    EXPECT_EQ(out.size(), 2);
    EXPECT_EQ(out.at(1), QChar(0x56FD));
}

TEST_F(Processor, KnowsAMarkThatBeginsWithHighBytes)
{
    const QTemporaryDir folder;
    const struct
    {
        const char *content;
        int expected;
    } rows[] = {{"\xFF\xFE\x41\x41", 1},
                {"\xFE\xFF\x41\x41", 2},
                {"\xC3\xA4\xC3\xA4", 3},
                {"\xEF\xBB\xBF\x41", 4},
                {"\xD6\xD0\xB9\xFA", 0}};
    for (const auto &row : rows) {
        QFile file(folder.filePath(QStringLiteral("text")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(row.content, 4);
        file.close();
        EXPECT_EQ(FileCharacterEncoding(file.fileName()), row.expected);
    }
}

TEST_F(Processor, ReadsAValueAtAnyAddress)
{
    alignas(8) unsigned char bytes[16];
    const float value = 12.5F;
    for (std::size_t offset = 0; offset < 8; ++offset) {
        std::memcpy(bytes + offset, &value, sizeof(value));
        QString out;
        EXPECT_TRUE(ieee754TofloatStr(bytes + offset, out));
        EXPECT_EQ(out, QStringLiteral("12.5")) << offset;
        char text[16];
        std::memcpy(text + offset, "\xD6\xD0", 2);
        EXPECT_EQ(tools_gb2312ToUtf8(text + offset, 2), QByteArray("\xE4\xB8\xAD")) << offset;
    }
}

TEST_F(Processor, ShowsSinglesBeyondAnyIntegerWhole)
{
    EXPECT_EQ(shown(3e9F, 0), QStringLiteral("3000000000"));
    EXPECT_EQ(shown(-3e9F, 0), QStringLiteral("-3000000000"));
    EXPECT_EQ(shown(1e20F, 1), QStringLiteral("100000002004087734272.0"));
    EXPECT_EQ(shown(std::numeric_limits<float>::quiet_NaN(), 1), QStringLiteral("0.0"));
    EXPECT_EQ(shown(std::numeric_limits<float>::infinity(), 1), QStringLiteral("0.0"));
}

TEST_F(Processor, SaturatesADoubleAt64Bits)
{
    EXPECT_EQ(doubleToQString(1e300, 1), QStringLiteral("9223372036854775807.9223372036854775807"));
    EXPECT_EQ(doubleToQString(-1e300, 1), QStringLiteral("-9223372036854775808.9223372036854775807"));
    EXPECT_EQ(doubleToQString(4294967297.5, 1), QStringLiteral("4294967297.5"));
}

TEST_F(Processor, KeepsLargeNumbersWhole)
{
    const DevDiskInfo disk = panelkit::diskSpace(quint64(1) << 34, quint64(1) << 33, 4096); // 64 TiB
    EXPECT_EQ(disk.totalMB, 67108864.0F);
    EXPECT_EQ(disk.freeMB, 33554432.0F);
    EXPECT_EQ(panelkit::kibibytes(0x80000000U, 4096), 0U) << "32 bits on every processor";
    EXPECT_EQ(panelkit::kibibytes(500, 4096), 2000U);
    EXPECT_GT(UTimer::MsecOfTime(), 1'600'000'000'000LL) << "milliseconds need more than 32 bits";
}
