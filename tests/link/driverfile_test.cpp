#include "link/driverfile.h"

#include "link/elfheader.h"
#include "tests/link/driverpanel.h"
#include "tests/support/ordinaryuser.h"

#include <QBuffer>
#include <QFile>

#include <cstring>
#include <limits>
#include <vector>

#include <elf.h>
#include <link.h>
#include <sys/stat.h>

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

// The name of the state: a test that fails says what it saw.
const char *stateOf(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    switch (panelkit::elfFileState(buffer)) {
    case DriverFileState::Complete:
        return "complete";
    case DriverFileState::Missing:
        return "missing";
    case DriverFileState::NotALibrary:
        return "no library";
    case DriverFileState::ForeignProcessor:
        return "foreign";
    case DriverFileState::Truncated:
        return "truncated";
    }
    return "?";
}

// A library of `segmentCount` loadable segments of 16 bytes each behind its headers.
struct SmallLibrary
{
    explicit SmallLibrary(int segmentCount) : segments(static_cast<std::size_t>(segmentCount))
    {
        std::memcpy(header.e_ident, ELFMAG, SELFMAG);
        header.e_ident[EI_CLASS] = sizeof(void *) == 8 ? ELFCLASS64 : ELFCLASS32;
        header.e_ident[EI_DATA] = ELFDATA2LSB;
        header.e_type = ET_DYN;
        header.e_machine = machine();
        header.e_phoff = sizeof(header);
        header.e_phentsize = sizeof(ElfW(Phdr));
        header.e_phnum = static_cast<ElfW(Half)>(segmentCount);
        const std::size_t begin = sizeof(header) + segments.size() * sizeof(ElfW(Phdr));
        for (std::size_t i = 0; i < segments.size(); ++i) {
            segments[i].p_type = PT_LOAD;
            segments[i].p_offset = begin + 16 * i;
            segments[i].p_filesz = 16;
        }
    }

    QByteArray bytes() const
    {
        QByteArray image(reinterpret_cast<const char *>(&header), sizeof(header));
        image.append(reinterpret_cast<const char *>(segments.data()),
                     static_cast<int>(segments.size() * sizeof(ElfW(Phdr))));
        image.append(QByteArray(16 * static_cast<int>(segments.size()), 'x'));
        return image;
    }

    // As this test program's own file says it.
    static ElfW(Half) machine()
    {
        QFile self(text("/proc/self/exe"));
        self.open(QIODevice::ReadOnly);
        ElfW(Ehdr) own = {};
        self.read(reinterpret_cast<char *>(&own), sizeof(own));
        return own.e_machine;
    }

    ElfW(Ehdr) header = {};
    std::vector<ElfW(Phdr)> segments;
};

} // namespace

TEST(ElfHeader, TellsALibraryFromWhatIsNone)
{
    EXPECT_STREQ(stateOf(SmallLibrary(3).bytes()), "complete");
    EXPECT_STREQ(stateOf(QByteArray()), "no library");
    EXPECT_STREQ(stateOf("\x7f"), "no library");
    EXPECT_STREQ(stateOf("a driver this is not\n"), "no library");
    EXPECT_STREQ(stateOf(QByteArray(4096, '\0')), "no library");

    SmallLibrary program(3);
    program.header.e_type = ET_EXEC;
    EXPECT_STREQ(stateOf(program.bytes()), "no library");
    SmallLibrary odd(3);
    odd.header.e_phentsize = 1;
    EXPECT_STREQ(stateOf(odd.bytes()), "no library");
}

TEST(ElfHeader, TellsAnotherProcessorByKindWidthAndByteOrder)
{
    SmallLibrary kind(1);
    kind.header.e_machine = 0x5555;
    EXPECT_STREQ(stateOf(kind.bytes()), "foreign");
    SmallLibrary width(1);
    width.header.e_ident[EI_CLASS] = sizeof(void *) == 8 ? ELFCLASS32 : ELFCLASS64;
    EXPECT_STREQ(stateOf(width.bytes()), "foreign");
    SmallLibrary order(1);
    order.header.e_ident[EI_DATA] = ELFDATA2MSB;
    EXPECT_STREQ(stateOf(order.bytes()), "foreign");
}

TEST(ElfHeader, FindsTheEndMissingAtEveryLength)
{
    for (const int segmentCount : {1, 16, 17, 40}) {
        const QByteArray whole = SmallLibrary(segmentCount).bytes();
        for (int length = 4; length < whole.size(); ++length)
            ASSERT_STREQ(stateOf(whole.left(length)), "truncated") << segmentCount << " segments, " << length;
        EXPECT_STREQ(stateOf(whole + "sections"), "complete");
    }
}

TEST(ElfHeader, IsNotMisledByNumbersThatOverflow)
{
    SmallLibrary offset(2);
    offset.segments[1].p_offset = ~static_cast<ElfW(Off)>(0) - 8;
    EXPECT_STREQ(stateOf(offset.bytes()), "truncated");
    SmallLibrary length(2);
    length.segments[1].p_filesz = std::numeric_limits<decltype(ElfW(Phdr)::p_filesz)>::max() - 8;
    EXPECT_STREQ(stateOf(length.bytes()), "truncated");
    SmallLibrary table(2);
    table.header.e_phoff = ~static_cast<ElfW(Off)>(0) - 8;
    EXPECT_STREQ(stateOf(table.bytes()), "truncated");
    SmallLibrary count(2);
    count.header.e_phnum = 0xffff;
    EXPECT_STREQ(stateOf(count.bytes()), "truncated");
}

TEST(ElfHeader, HasRoomForWhatIsEmptyAtTheEnd)
{
    SmallLibrary library(2);
    library.segments[1].p_offset = static_cast<ElfW(Off)>(library.bytes().size());
    library.segments[1].p_filesz = 0;
    EXPECT_STREQ(stateOf(library.bytes()), "complete");

    SmallLibrary table(0);
    EXPECT_STREQ(stateOf(table.bytes()), "complete");
    table.header.e_phoff = sizeof(table.header) + 1;
    EXPECT_STREQ(stateOf(table.bytes()), "truncated");
}

TEST(ElfHeader, FindsTheSegmentsWhereTheHeaderSays)
{
    SmallLibrary library(1);
    library.segments[0].p_filesz = 1000000;
    library.header.e_phoff = sizeof(library.header) + 100;
    QByteArray image = library.bytes();
    image.insert(static_cast<int>(sizeof(library.header)), QByteArray(100, '\0'));
    EXPECT_STREQ(stateOf(image), "truncated");
}

TEST(ElfHeader, LooksAtLoadableSegmentsOnly)
{
    SmallLibrary library(2);
    library.segments[1].p_type = PT_NOTE;
    library.segments[1].p_offset = 1000000;
    EXPECT_STREQ(stateOf(library.bytes()), "complete");
}

class DriverFile : public panelkit::testing::DriverPanel
{
protected:
    const QString path = root.filePath(text("usr/tesk42/project/driver/libtest_1.so"));
};

TEST_F(DriverFile, IsCompleteAsItWasBuilt)
{
    install(text("libtest_1.so"));
    EXPECT_EQ(tools_driverFileState(path), DriverFileState::Complete);
}

TEST_F(DriverFile, IsMissingWhenNothingReadableLiesThere)
{
    EXPECT_EQ(tools_driverFileState(path), DriverFileState::Missing);
    EXPECT_EQ(tools_driverFileState(QString()), DriverFileState::Missing);
    EXPECT_EQ(tools_driverFileState(root.path()), DriverFileState::Missing) << "a folder";
}

TEST_F(DriverFile, IsNotWaitedForInAPipe)
{
    ASSERT_EQ(mkfifo(path.toUtf8().constData(), 0600), 0);
    EXPECT_EQ(tools_driverFileState(path), DriverFileState::Missing);
}

TEST_F(DriverFile, IsMissingWhenItMayNotBeRead)
{
    install(text("libtest_1.so"));
    ASSERT_EQ(chmod(path.toUtf8().constData(), 0), 0);
    ASSERT_EQ(chmod(root.path().toUtf8().constData(), 0755), 0);
    const panelkit::testing::OrdinaryUser user;
    ASSERT_TRUE(user.holds());
    EXPECT_EQ(tools_driverFileState(path), DriverFileState::Missing);
}

TEST_F(DriverFile, OfALinkIsNamedAfterDriverAndNumber)
{
    const QString folder = root.path() + text("/usr/tesk42/project/driver");
    EXPECT_EQ(tools_driverFolder(), folder);
    EXPECT_EQ(tools_driverFilePath(text("drivers/ModbusRTU"), 2), folder + text("/libModbusRTU_2.so"));
    EXPECT_EQ(tools_driverFilePath(text("abc"), 0), folder + text("/libabc_0.so"));
    EXPECT_EQ(tools_driverFilePath(text("a/b/c"), 7), folder + text("/libb/c_7.so"));
    EXPECT_EQ(tools_driverFilePath(text("x/"), -3), folder + text("/lib_-3.so"));
    EXPECT_EQ(tools_driverFilePath(QString(), 1), folder + text("/lib_1.so"));
}
