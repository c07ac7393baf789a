#include "simulator/comm/internalstorage.h"
#include "simulator/comm/systemregisters.h"

#include <gtest/gtest.h>

#include <climits>
#include <thread>

using namespace panelkit::simulator;

namespace {

TEST(InternalStorage, KeepsEachBlockApart)
{
    InternalStorage storage;
    quint16 value = 1;
    for (const char *name : {"LB", "LW", "RWI", "LWF"}) {
        ASSERT_TRUE(storage.write(QLatin1String(name), 5, 1, &value));
        ++value;
    }
    quint16 expected = 1;
    for (const char *name : {"LB", "LW", "RWI", "LWF"}) {
        quint16 word = 0;
        ASSERT_TRUE(storage.read(QLatin1String(name), 5, 1, &word));
        EXPECT_EQ(word, expected == 1 ? 1 : expected) << name;
        ++expected;
    }
}

TEST(InternalStorage, IsZeroAtStart)
{
    const InternalStorage storage;
    quint16 words[3] = {7, 7, 7};
    ASSERT_TRUE(storage.read(QLatin1String("LW"), 65533, 3, words));
    EXPECT_EQ(words[0] | words[1] | words[2], 0);
}

TEST(InternalStorage, KeepsABitAsZeroOrOne)
{
    InternalStorage storage;
    const quint16 written[] = {0, 1, 2, 0xffff};
    ASSERT_TRUE(storage.write(QLatin1String("LB"), 100, 4, written));
    quint16 words[6] = {};
    ASSERT_TRUE(storage.read(QLatin1String("LB"), 99, 6, words));
    const quint16 expected[] = {0, 0, 1, 1, 1, 0};
    EXPECT_TRUE(std::equal(std::begin(words), std::end(words), expected));
}

TEST(InternalStorage, KeepsWordsAsTheyAre)
{
    InternalStorage storage;
    const quint16 written[] = {0x1234, 0xffff};
    ASSERT_TRUE(storage.write(QLatin1String("RWI"), 65534, 2, written));
    quint16 words[2] = {};
    ASSERT_TRUE(storage.read(QLatin1String("RWI"), 65534, 2, words));
    EXPECT_EQ(words[0], 0x1234);
    EXPECT_EQ(words[1], 0xffff);
}

TEST(InternalStorage, RefusesWhatIsNotThereAndCopiesNothing)
{
    InternalStorage storage;
    const struct
    {
        const char *block;
        int index;
        int count;
    } rows[] = {
        {"LX", 0, 1},     {"lw", 0, 1},       {"", 0, 1},         {"LW", -1, 1},
        {"LW", 65536, 1}, {"LW", 65535, 2},   {"LW", 0, 0},       {"LW", 0, -1},
        {"LW", 0, 65537}, {"LB", 1, INT_MAX}, {"LB", INT_MIN, 1}, {"LWF", INT_MAX, INT_MAX},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(std::string(row.block) + " " + std::to_string(row.index) + " " +
                     std::to_string(row.count));
        quint16 word = 7;
        EXPECT_FALSE(storage.read(QLatin1String(row.block), row.index, row.count, &word));
        EXPECT_EQ(word, 7);
        EXPECT_FALSE(storage.write(QLatin1String(row.block), row.index, row.count, &word));
    }
}

TEST(InternalStorage, NeverShowsAReaderHalfAWrite)
{
    InternalStorage storage;
    std::thread writer([&] {
        for (quint16 i = 1; i < 5000; ++i) {
            const quint16 words[4] = {i, i, i, i};
            storage.write(QLatin1String("LW"), 10, 4, words);
        }
    });
    const auto reader = [&] {
        quint16 last = 0;
        while (last < 4999) {
            quint16 words[4] = {};
            storage.read(QLatin1String("LW"), 10, 4, words);
            ASSERT_EQ(words[0], words[3]);
            ASSERT_GE(words[0], last);
            last = words[0];
        }
    };
    std::thread otherReader(reader);
    reader();
    otherReader.join();
    writer.join();
}

TEST(SystemRegisters, HaveTwoAreasOfWords)
{
    SystemRegisters registers;
    const quint16 baud[] = {49664, 1};
    const quint16 flag = 1;
    ASSERT_TRUE(registers.write(0, 64041, 2, baud));
    ASSERT_TRUE(registers.write(1, 60212, 1, &flag));
    quint16 words[4] = {};
    ASSERT_TRUE(registers.read(0, 64040, 4, words));
    const quint16 expected[] = {0, 49664, 1, 0};
    EXPECT_TRUE(std::equal(std::begin(words), std::end(words), expected));
    quint16 word = 9;
    ASSERT_TRUE(registers.read(0, 60212, 1, &word));
    EXPECT_EQ(word, 0);
    ASSERT_TRUE(registers.read(1, 60212, 1, &word));
    EXPECT_EQ(word, 1);
}

TEST(SystemRegisters, RefuseWhatIsNotThereAndCopyNothing)
{
    SystemRegisters registers;
    quint16 word = 7;
    for (const int area : {-1, 2, INT_MAX, INT_MIN}) {
        EXPECT_FALSE(registers.read(area, 0, 1, &word)) << area;
        EXPECT_FALSE(registers.write(area, 0, 1, &word)) << area;
    }
    for (const int address : {-1, 65536, INT_MAX, INT_MIN}) {
        EXPECT_FALSE(registers.read(0, address, 1, &word)) << address;
        EXPECT_FALSE(registers.write(1, address, 1, &word)) << address;
    }
    EXPECT_FALSE(registers.read(0, 65535, 2, &word));
    EXPECT_FALSE(registers.read(0, 0, 0, &word));
    EXPECT_FALSE(registers.write(0, 0, -1, &word));
    EXPECT_EQ(word, 7);
    EXPECT_TRUE(registers.read(1, 65535, 1, &word));
}

} // namespace
