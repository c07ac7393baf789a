// Numbers under a locale whose decimal point is another than ".", as the environment of a runtime may name
// one.

#include "register/numbertext.h"
#include "register/numformat.h"
#include "simulator/platform/systembase.h"
#include "tests/support/allocationcounter.h"
#include "tests/support/memorycomm.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <cstring>

using panelkit::testing::AllocationCounter;

namespace {

// The C library's own file of a locale's numbers: a mark, the number of entries, where each begins, and the
// entries. Few machines have a locale with another point, and none needs the sources of one for this.
QByteArray numericLocale(const QByteArray &decimalPoint)
{
    const quint32 mark = 0x20031114; // of the category of numbers
    QByteArray texts = decimalPoint + '\0';
    const auto separator = static_cast<quint32>(texts.size());
    texts += QByteArray(2, '\0');
    while (texts.size() % 4 != 0)
        texts += '\0';
    const auto wide = static_cast<quint32>(texts.size());
    texts += QByteArray(8, '\0') + QByteArray("UTF-8") + '\0';
    const quint32 begin = 4 * (2 + 6);
    const quint32 head[] = {mark,
                            6,
                            begin,
                            begin + separator,
                            begin + separator + 1,
                            begin + wide,
                            begin + wide + 4,
                            begin + wide + 8};
    return QByteArray(reinterpret_cast<const char *>(head), sizeof(head)) + texts;
}

// The numbers of the process have that decimal point as long as this lives.
class DecimalPoint
{
public:
    explicit DecimalPoint(const QByteArray &point)
    {
        QFile file(m_folder.filePath(QStringLiteral("LC_NUMERIC")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(numericLocale(point));
        file.close();
        // A name with a "/" would not be looked for below the path.
        const QByteArray folder = QFile::encodeName(m_folder.path());
        const auto slash = folder.lastIndexOf('/');
        setenv("LOCPATH", folder.left(slash).constData(), 1);
        EXPECT_NE(setlocale(LC_NUMERIC, folder.mid(slash + 1).constData()), nullptr);
        EXPECT_EQ(QByteArray(localeconv()->decimal_point), point);
    }
    ~DecimalPoint()
    {
        setlocale(LC_NUMERIC, "C");
        unsetenv("LOCPATH");
    }
    DecimalPoint(const DecimalPoint &) = delete;
    DecimalPoint &operator=(const DecimalPoint &) = delete;

private:
    QTemporaryDir m_folder;
};

const char *const points[] = {",", "\xD9\xAB" /* Arabic */, "."};

class NumbersInALocale : public ::testing::TestWithParam<const char *>
{
protected:
    NumbersInALocale() : m_point(GetParam())
    {
        record.comm = &comm;
        panelkit::simulator::setApplicationRecord(&record);
    }
    ~NumbersInALocale() override { panelkit::simulator::setApplicationRecord(nullptr); }

    QString shown(quint32 bits, int decimals, NUM_DATA_TYPE type)
    {
        comm.words = {static_cast<quint16>(bits), static_cast<quint16>(bits >> 16)};
        QString out;
        getValueToQString({}, 2, 2000, decimals, type, NUM_VIEW_DEC, out);
        return out;
    }

    static quint32 bitsOf(float value)
    {
        quint32 bits;
        std::memcpy(&bits, &value, sizeof(bits));
        return bits;
    }

    panelkit::testing::MemoryComm comm;
    sys_base_app_pro record = {};

private:
    DecimalPoint m_point;
};

QString withPlainPoint(const char *number)
{
    QByteArray text(number);
    char *const begin = text.data();
    char *const end = panelkit::withPlainPoint(begin, begin + text.size());
    return QString::fromLatin1(begin, static_cast<int>(end - begin));
}

} // namespace

TEST_P(NumbersInALocale, HaveAPlainPointInWhatTheCLibraryFormats)
{
    EXPECT_EQ(shown(123456789, 10, NUM_UINT32), QStringLiteral("0.0123456789"));
    EXPECT_EQ(shown(static_cast<quint32>(-25), 12, NUM_INT32), QStringLiteral("-0.000000000025"));
    EXPECT_EQ(shown(12, -1, NUM_UINT32), QStringLiteral("119.999998"));
    EXPECT_EQ(shown(bitsOf(0.5F), 12, NUM_FLOAT32), QStringLiteral("0.500000000000"));
    EXPECT_EQ(shown(bitsOf(-4294967296.0F), 2, NUM_FLOAT32), QStringLiteral("-4294967296.00"));
    EXPECT_EQ(shown(bitsOf(1e10F), 0, NUM_FLOAT32), QStringLiteral("10000000000"));
}

TEST_P(NumbersInALocale, HaveAllTheirDecimals)
{
    const QString largest = shown(0x7F7FFFFF, 1024, NUM_FLOAT32);
    EXPECT_EQ(largest,
              QStringLiteral("340282346638528859811704183484516925440.") + QString(1024, QLatin1Char('0')));
    const QString scaled = shown(0xFFFFFFFF, -45, NUM_UINT32);
    EXPECT_EQ(scaled, QStringLiteral("3064991081018153870363714113771475382512730676175831040.000000"));
}

TEST_P(NumbersInALocale, AreStillTextsWithoutTheHeap)
{
    panelkit::NumberBuffer buffer;
    const quint32 bits = 0x7F7FFFFF;
    const auto *words = reinterpret_cast<const char *>(&bits);
    const AllocationCounter counter;
    EXPECT_EQ(panelkit::registerText(words, 2000, 1024, NUM_FLOAT32, NUM_VIEW_DEC, buffer).size(), 1064U);
    EXPECT_EQ(panelkit::registerText(words, 2000, 1024, NUM_UINT32, NUM_VIEW_DEC, buffer).size(), 1026U);
    EXPECT_EQ(counter.count(), 0);
}

INSTANTIATE_TEST_SUITE_P(DecimalPoint, NumbersInALocale, ::testing::ValuesIn(points));

TEST(DecimalPoint, OfAnyLengthBecomesAPlainOne)
{
    EXPECT_EQ(withPlainPoint("12,5"), QStringLiteral("12.5"));
    EXPECT_EQ(withPlainPoint("12\xD9\xAB"
                             "50"),
              QStringLiteral("12.50"));
    EXPECT_EQ(withPlainPoint("0.25"), QStringLiteral("0.25"));
    EXPECT_EQ(withPlainPoint("125"), QStringLiteral("125"));
    EXPECT_EQ(withPlainPoint(""), QString());
}
