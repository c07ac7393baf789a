#include "register/textencoding.h"

#include "register/namedcodec.h"
#include "register/utf8recogniser.h"
#include "tests/support/allocationcounter.h"
#include "tests/support/systemprogram.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>
#include <random>

using namespace panelkit::testing;

namespace {

// Every row and cell of the GB2312 plane, those without a character included.
QList<QByteArray> gb2312Cells()
{
    QList<QByteArray> cells;
    for (int row = 0xA1; row <= 0xFE; ++row)
        for (int cell = 0xA1; cell <= 0xFE; ++cell)
            cells << QByteArray(1, static_cast<char>(row)) + static_cast<char>(cell);
    return cells;
}

QByteArray toUtf8(QByteArray bytes)
{
    return tools_gb2312ToUtf8(bytes.data(), static_cast<int>(bytes.size()));
}

QByteArray toGb2312(QByteArray bytes)
{
    return tools_utf8ToGb2312(bytes.data(), static_cast<int>(bytes.size()));
}

QString textOf(QByteArray bytes)
{
    QString text = QStringLiteral("what stood there before");
    GB2312ToQString(text, bytes.data(), static_cast<int>(bytes.size()));
    return text;
}

QByteArray gbkOf(const QString &text)
{
    QByteArray bytes = "what stood there before";
    QStringToGB2312Chars(text, bytes);
    return bytes;
}

class FileEncoding : public ::testing::Test
{
protected:
    QString path() const { return m_folder.filePath(QStringLiteral("text")); }

    int of(const QByteArray &contents)
    {
        // Some file systems write a file that was truncated to the disk when it is closed; new ones are
        // quick.
        QFile::remove(path());
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(contents), contents.size());
        file.close();
        return FileCharacterEncoding(path());
    }

private:
    QTemporaryDir m_folder;
};

// How many bytes the process has read so far, as the kernel counts them.
qint64 bytesRead()
{
    QFile counters(QStringLiteral("/proc/self/io"));
    EXPECT_TRUE(counters.open(QIODevice::ReadOnly));
    const QByteArray line = counters.readLine();
    EXPECT_TRUE(line.startsWith("rchar: "));
    return line.mid(7).trimmed().toLongLong();
}

// The codec's own verdict, in one go.
bool codecFindsValid(const QByteArray &bytes)
{
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("utf-8")->toUnicode(bytes.constData(), static_cast<int>(bytes.size()), &state);
    return state.invalidChars == 0;
}

// The recogniser's verdict, in two blocks that meet at `border`.
bool recognised(const QByteArray &bytes, int border)
{
    panelkit::Utf8Recogniser recogniser;
    const auto first = static_cast<std::size_t>(border);
    const std::size_t kept = recogniser.look(bytes.constData(), first);
    const char *rest = bytes.constData() + first - kept;
    const std::size_t length = static_cast<std::size_t>(bytes.size()) - first + kept;
    const std::size_t left = recogniser.look(rest, length);
    recogniser.finish(rest + length - left, left);
    return recogniser.isValid();
}

// Random bytes: any, or UTF-8 with something done to it, or the bytes at which UTF-8 changes its rules.
class RandomBytes
{
public:
    QByteArray next()
    {
        switch (number(0, 3)) {
        case 0:
            return anyBytes();
        case 1:
            return edgeBytes();
        case 2:
            return utf8();
        default:
            return damaged(utf8());
        }
    }

    int number(int lowest, int highest)
    {
        return lowest + static_cast<int>(m_generator() % static_cast<unsigned>(highest - lowest + 1));
    }

private:
    QByteArray anyBytes()
    {
        QByteArray bytes(number(0, 12), Qt::Uninitialized);
        for (char &byte : bytes)
            byte = static_cast<char>(number(0, 255));
        return bytes;
    }

    QByteArray edgeBytes()
    {
        static const char edges[] =
            "\x00\x41\x7F\x80\x8F\x90\x9F\xA0\xAF\xB7\xBB\xBD\xBE\xBF\xC0\xC1\xC2\xDF\xE0\xE1"
            "\xEC\xED\xEE\xEF\xF0\xF1\xF3\xF4\xF5\xF8\xFE\xFF";
        QByteArray bytes(number(1, 6), Qt::Uninitialized);
        for (char &byte : bytes)
            byte = edges[number(0, sizeof(edges) - 2)];
        return bytes;
    }

    // Characters of one to four bytes, edges of the ranges and noncharacters among them.
    QByteArray utf8()
    {
        static const char *const characters[] = {"a",
                                                 "\x7F",
                                                 "\xC2\x80",
                                                 "\xDF\xBF",
                                                 "\xE0\xA0\x80",
                                                 "\xE4\xB8\xAD",
                                                 "\xE6\xB8\xA9",
                                                 "\xED\x9F\xBF",
                                                 "\xEE\x80\x80",
                                                 "\xEF\xB7\x90",
                                                 "\xEF\xBB\xBF",
                                                 "\xEF\xBC\x8C",
                                                 "\xEF\xBF\xBD",
                                                 "\xEF\xBF\xBE",
                                                 "\xEF\xBF\xBF",
                                                 "\xF0\x90\x80\x80",
                                                 "\xF0\x9F\x98\x80",
                                                 "\xF0\x9F\xBF\xBE",
                                                 "\xF4\x8F\xBF\xBF"};
        QByteArray bytes;
        for (int count = number(0, 8); count > 0; --count)
            bytes += characters[number(0, std::size(characters) - 1)];
        return bytes;
    }

    QByteArray damaged(QByteArray bytes)
    {
        if (bytes.isEmpty())
            return bytes;
        const int place = number(0, static_cast<int>(bytes.size()) - 1);
        if (number(0, 2) == 0)
            bytes.truncate(place);
        else if (number(0, 1) == 0)
            bytes.remove(place, 1);
        else
            bytes[place] = static_cast<char>(number(0, 255));
        return bytes;
    }

    std::mt19937 m_generator{7};
};

} // namespace

TEST(Gb2312, IsConvertedToUtf8AndBack)
{
    EXPECT_EQ(toUtf8("\xCE\xC2\xB6\xC8 23.5"), QByteArray("温度 23.5"));
    EXPECT_EQ(toGb2312("中文,abc"), QByteArray("\xD6\xD0\xCE\xC4,abc"));
}

TEST(Gb2312, KeepsEmbeddedNuls)
{
    EXPECT_EQ(toUtf8(QByteArray("\xD6\xD0\0a\0", 5)), QByteArray("中\0a\0", 6));
    EXPECT_EQ(toGb2312(QByteArray("中\0a\0", 6)), QByteArray("\xD6\xD0\0a\0", 5));
}

TEST(Gb2312, IsEmptyWithoutData)
{
    char byte[] = "a";
    for (const int length : {0, -1, -1000}) {
        EXPECT_EQ(tools_gb2312ToUtf8(byte, length), QByteArray());
        EXPECT_EQ(tools_utf8ToGb2312(byte, length), QByteArray());
    }
    EXPECT_EQ(tools_gb2312ToUtf8(nullptr, 5), QByteArray());
    EXPECT_EQ(tools_utf8ToGb2312(nullptr, 5), QByteArray());
}

TEST(Gb2312, ConvertsExactlyTheGivenLength)
{
    char bytes[] = "\xD6\xD0\xCE\xC4";
    EXPECT_EQ(tools_gb2312ToUtf8(bytes, 2), QByteArray("中"));
    char utf8[] = "中文";
    EXPECT_EQ(tools_utf8ToGb2312(utf8, 3), QByteArray("\xD6\xD0"));
}

// What the table holds is asked of iconv, which knows two of its characters by other code points.
TEST(Gb2312, EveryCharacterOfTheTableSurvivesTheWayToUtf8AndBack)
{
    const QList<QByteArray> cells = gb2312Cells();
    const QByteArray table =
        outputOf("sh", {QStringLiteral("-c"), QStringLiteral("iconv -c -f GB2312 -t UTF-8 || true")},
                 cells.join('\n'));
    const QList<QByteArray> characters = table.split('\n');
    ASSERT_EQ(characters.size(), cells.size());
    int count = 0;
    for (int i = 0; i < cells.size(); ++i) {
        if (characters.at(i).isEmpty())
            continue;
        ++count;
        SCOPED_TRACE(cells.at(i).toHex().toStdString());
        QByteArray character = characters.at(i);
        if (cells.at(i) == "\xA1\xA4")
            character = "\xC2\xB7"; // the middle dot, not the Katakana one
        if (cells.at(i) == "\xA1\xAA")
            character = "\xE2\x80\x94"; // the em dash, not the horizontal bar
        ASSERT_EQ(toUtf8(cells.at(i)), character);
        ASSERT_EQ(toGb2312(character), cells.at(i));
        ASSERT_EQ(textOf(cells.at(i)), QString::fromUtf8(character));
        ASSERT_EQ(gbkOf(QString::fromUtf8(character)), cells.at(i) + '\0');
    }
    EXPECT_EQ(count, 7445);
}

TEST(Gb2312, TurnsWhatDoesNotDecodeIntoWhatTheCodecWrites)
{
    EXPECT_EQ(toGb2312("a\xFFz"), QByteArray("a?z"));
    EXPECT_EQ(toGb2312("a\xE4"), QByteArray("a?")); // cut within a character
    RandomBytes random;
    for (int i = 0; i < 20000; ++i) {
        const QByteArray bytes = random.next();
        const QTextCodec *gb2312 = QTextCodec::codecForName("GB2312");
        const QTextCodec *utf8 = QTextCodec::codecForName("UTF-8");
        ASSERT_EQ(toUtf8(bytes), utf8->fromUnicode(gb2312->toUnicode(bytes))) << bytes.toHex().toStdString();
        ASSERT_EQ(toGb2312(bytes), gb2312->fromUnicode(utf8->toUnicode(bytes)))
            << bytes.toHex().toStdString();
    }
}

TEST(Gb2312, CarriesNoHalfCharacterIntoTheNextConversion)
{
    toUtf8("\xD6\xD0\xCE");
    EXPECT_EQ(toUtf8("\xC4\xEA"), QByteArray("年"));
    toGb2312("\xE4\xB8");
    EXPECT_EQ(toGb2312("年"), QByteArray("\xC4\xEA"));
}

TEST(Gb2312, IsEmptyWhereTheToolkitLacksTheCodec)
{
    EXPECT_EQ(panelkit::decoded("no such codec", "abc", 3), QString());
    EXPECT_EQ(panelkit::encoded("no such codec", QStringLiteral("abc")), QByteArray());
}

TEST(GbkChars, EndInANulThatTheirSizeCounts)
{
    EXPECT_EQ(gbkOf(QString()), QByteArray("\0", 1));
    EXPECT_EQ(gbkOf(QStringLiteral("")), QByteArray("\0", 1));
    EXPECT_EQ(gbkOf(QString::fromUtf8("温度 1")), QByteArray("\xCE\xC2\xB6\xC8 1\0", 7));
}

TEST(GbkChars, HoldWhatOnlyGbkHas)
{
    EXPECT_EQ(gbkOf(QString::fromUtf8("镕")), QByteArray("\xE9\x46\0", 3)); // not in GB2312
}

TEST(GbkChars, EndAtTheTextsFirstNul)
{
    EXPECT_EQ(gbkOf(QStringLiteral("ab") + QChar(0) + QStringLiteral("cd")), QByteArray("ab\0", 3));
}

TEST(GbkChars, HoldAQuestionMarkForWhatGbkLacks)
{
    EXPECT_EQ(gbkOf(QString::fromUtf8("a\u0e01b\U0001F600c")), QByteArray("a?b?c\0", 6));
}

TEST(Gb2312Text, IsEmptyWithoutData)
{
    char byte[] = "a";
    for (const int length : {0, -1}) {
        QString text = QStringLiteral("what stood there before");
        GB2312ToQString(text, byte, length);
        EXPECT_EQ(text, QString()) << length;
    }
    QString text = QStringLiteral("what stood there before");
    GB2312ToQString(text, nullptr, 5);
    EXPECT_EQ(text, QString());
}

TEST(Gb2312Text, EndsBeforeTheNulsOfItsPadding)
{
    EXPECT_EQ(textOf(QByteArray("\xCE\xC2\xB6\xC8\0\0\0\0", 8)), QString::fromUtf8("温度"));
    EXPECT_EQ(textOf(QByteArray("a\0b", 3)), QStringLiteral("a"));
    EXPECT_EQ(textOf(QByteArray("\0\0", 2)), QString());
}

TEST(Gb2312Text, NeedsNoNul)
{
    EXPECT_EQ(textOf("\xCE\xC2\xB6\xC8"), QString::fromUtf8("温度"));
}

TEST(Gb2312Text, ReadsAnOddLengthWithinItsBounds)
{
    char *bytes = new char[3];
    std::memcpy(bytes, "\xCE\xC2\xB6", 3);
    QString text;
    GB2312ToQString(text, bytes, 3);
    delete[] bytes;
    EXPECT_TRUE(text.startsWith(QString::fromUtf8("温")));
    EXPECT_LE(text.size(), 2);
}

TEST_F(FileEncoding, IsToldByTheFirstBytesOrByAllOfThem)
{
    const struct
    {
        const char *name, *hex;
        int encoding;
    } rows[] = {
        {"empty file", "", 0},
        {"one byte", "41", 0},
        {"two bytes of ASCII", "4142", 0},
        {"three bytes of ASCII", "414243", 0},
        {"four bytes of ASCII", "41424344", 3},
        {"five bytes of ASCII", "4142434445", 3},
        {"UTF-16 little-endian mark alone", "FFFE", 0},
        {"UTF-16 little-endian mark and half a character", "FFFE41", 0},
        {"UTF-16 little-endian", "FFFE4100", 1},
        {"UTF-16 little-endian, odd length", "FFFE410042", 1},
        {"UTF-32 little-endian", "FFFE000041000000", 1},
        {"UTF-16 big-endian mark alone", "FEFF", 0},
        {"UTF-16 big-endian mark and half a character", "FEFF00", 0},
        {"UTF-16 big-endian", "FEFF0041", 2},
        {"UTF-32 big-endian", "0000FEFF00000041", 0},
        {"UTF-8 mark alone", "EFBBBF", 0},
        {"UTF-8 mark and one byte", "EFBBBF41", 4},
        {"UTF-8 mark and what is no UTF-8", "EFBBBFFF", 4},
        {"half a UTF-8 mark", "EFBB4141", 0},
        {"UTF-8 mark further on", "41EFBBBF", 3},
        {"Chinese in UTF-8", "E6B8A9E5BAA6", 3},
        {"Chinese in GBK", "CEC2B6C8", 0},
        {"ASCII, then Chinese in GBK", "4142434445464748CEC2", 0},
        {"NULs", "00000000", 3},
        {"NULs within a text", "4100E6B8A900", 3},
        {"unfinished character at the end", "4142E6B8", 3},
        {"lead byte at the end", "414243E6", 3},
        {"unfinished character before ASCII", "41E6B84142", 0},
        {"continuation byte alone", "41428043", 0},
        {"longer form of a slash", "4142C0AF", 0},
        {"longer form of three bytes", "41E08080", 0},
        {"surrogate", "41EDA080", 0},
        {"last code point", "F48FBFBF", 3},
        {"beyond the last code point", "F4908080", 0},
        {"noncharacter", "41EFBFBE", 3},
        {"byte that UTF-8 never has", "414243FF", 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(of(QByteArray::fromHex(row.hex)), row.encoding);
    }
}

TEST_F(FileEncoding, OfAFileThatCannotBeOpenedIsZero)
{
    EXPECT_EQ(FileCharacterEncoding(path()), 0);
    EXPECT_EQ(FileCharacterEncoding(QString()), 0);
    EXPECT_EQ(FileCharacterEncoding(QStringLiteral("/")), 0);
    ASSERT_EQ(of("text"), 3);
    EXPECT_EQ(FileCharacterEncoding(path() + QStringLiteral("/text")), 0);
}

// A character lies across each border of the blocks in which a file is read, and a fault may hide behind
// them.
TEST_F(FileEncoding, OfALargeFileIsToldByAllOfIt)
{
    const QByteArray chinese = QByteArray("温度").repeated(60000);
    for (const int shift : {0, 1, 2, 3}) {
        SCOPED_TRACE(shift);
        const QByteArray text = QByteArray(shift, 'x') + chinese;
        EXPECT_EQ(of(text), 3);
        EXPECT_EQ(of(text + "\xE6\xB8"), 3);
        EXPECT_EQ(of(text + "\xFF"), 0);
        EXPECT_EQ(of(text + "\xEF\xBF\xBE" + text), 3); // a noncharacter
        EXPECT_EQ(of(text + "\xEF\xBF\xBE" + text + "\xC0" + text), 0);
    }
}

TEST_F(FileEncoding, IsToldByALastByteThatStandsAlone)
{
    for (const int blocks : {1, 2}) {
        SCOPED_TRACE(blocks);
        const QByteArray text(blocks * 65536, 'x');
        EXPECT_EQ(of(text + "y"), 3);
        EXPECT_EQ(of(text + "\xFF"), 0);
    }
}

TEST_F(FileEncoding, OfALargeFileIsToldWithoutAnAllocationABlock)
{
    const auto allocationsFor = [this](int repetitions) {
        EXPECT_EQ(of(QByteArray("温度，23.5 °C\n").repeated(repetitions)), 3);
        const AllocationCounter counter;
        FileCharacterEncoding(path());
        return counter.count();
    };
    // 1.8 MB are 28 blocks; the toolkit may take a few allocations to open a larger file, but none a block.
    EXPECT_LT(allocationsFor(100000) - allocationsFor(100), 10);
}

TEST_F(FileEncoding, OfAFileThatIsNoUtf8IsToldByItsFirstBlock)
{
    ASSERT_EQ(of(QByteArray("\xCE\xC2\xB6\xC8,23.5\n").repeated(300000)), 0);
    const qint64 before = bytesRead();
    EXPECT_EQ(FileCharacterEncoding(path()), 0);
    EXPECT_LT(bytesRead() - before, 100000); // of 3 million
}

TEST_F(FileEncoding, AgreesWithTheCodec)
{
    RandomBytes random;
    for (int i = 0; i < 3000; ++i) {
        const QByteArray bytes = "text" + random.next();
        ASSERT_EQ(of(bytes), codecFindsValid(bytes) ? 3 : 0) << bytes.toHex().toStdString();
    }
}

TEST(Utf8Recogniser, AgreesWithTheCodec)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    const int rounds = 200000;
#else
    const int rounds = 1000000;
#endif
    RandomBytes random;
    int valid = 0;
    for (int i = 0; i < rounds; ++i) {
        const QByteArray bytes = random.next();
        const bool expected = codecFindsValid(bytes);
        valid += expected ? 1 : 0;
        const int border = random.number(0, static_cast<int>(bytes.size()));
        ASSERT_EQ(recognised(bytes, border), expected)
            << bytes.toHex().toStdString() << " in two at " << border;
    }
    // Both verdicts are there to agree on.
    EXPECT_GT(valid, rounds / 5);
    EXPECT_LT(valid, rounds * 4 / 5);
}
