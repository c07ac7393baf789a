#include "register/numformat.h"

#include "register/registervaluechange.h"
#include "tests/support/panelfixture.h"

#include <climits>
#include <cstring>
#include <limits>

namespace {

QVector<quint16> wordsOf(quint32 bits)
{
    return {static_cast<quint16>(bits), static_cast<quint16>(bits >> 16)};
}

QVector<quint16> wordsOf(float value)
{
    quint32 bits;
    std::memcpy(&bits, &value, sizeof(bits));
    return wordsOf(bits);
}

QString times(int count, char character)
{
    return QString(count, QLatin1Char(character));
}

} // namespace

class ValueText : public panelkit::testing::PanelFixture
{
protected:
    // The text of a register that holds `words`, read as many as there are.
    QString show(const QVector<quint16> &words, int totalDigits, int decimals, NUM_DATA_TYPE type,
                 NUM_DATA_VIEW_TYPE view = NUM_VIEW_DEC)
    {
        comm.words = words;
        QString out = QStringLiteral("before");
        EXPECT_TRUE(
            getValueToQString({}, static_cast<int>(words.size()), totalDigits, decimals, type, view, out));
        return out;
    }
};

TEST_F(ValueText, IsZeroWithoutAReadWhenThereAreFewerDigitsThanDecimals)
{
    for (const int type : {-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, INT_MIN}) {
        SCOPED_TRACE(type);
        EXPECT_EQ(show({0x1234, 0x5678}, 3, 4, static_cast<NUM_DATA_TYPE>(type)), QStringLiteral("0"));
        EXPECT_EQ(show({0x1234, 0x5678}, 0, 0, static_cast<NUM_DATA_TYPE>(type)), QStringLiteral("0"));
        EXPECT_EQ(show({0x1234, 0x5678}, -1, 0, static_cast<NUM_DATA_TYPE>(type)), QStringLiteral("0"));
    }
    EXPECT_TRUE(comm.calls.isEmpty());
}

TEST_F(ValueText, IsZeroForSuchDigitsEvenWithoutCommunication)
{
    takeCommunicationAway();
    EXPECT_EQ(show({1}, 3, 4, NUM_UINT16), QStringLiteral("0"));
}

TEST_F(ValueText, FailsWithoutCommunicationAndLeavesTheTextAlone)
{
    QString out = QStringLiteral("before");
    takeCommunicationAway();
    EXPECT_FALSE(getValueToQString({}, 1, 5, 0, NUM_UINT16, NUM_VIEW_DEC, out));
    EXPECT_EQ(out, QStringLiteral("before"));
    panelkit::simulator::setApplicationRecord(nullptr);
    EXPECT_FALSE(getValueToQString({}, 1, 5, 0, NUM_STRING, NUM_VIEW_DEC, out));
    EXPECT_EQ(out, QStringLiteral("before"));
}

TEST_F(ValueText, ReadsTheRegisterOnceWithAtMost64Words)
{
    RegisterValueChange reg = {};
    reg.linkId = 2;
    reg.station = 3;
    reg.index = 100;
    reg.block[0] = 'D';
    const struct
    {
        int wordCount;
        const char *call;
    } rows[] = {{1, "readAddressWords 2/3#D100 1"},
                {64, "readAddressWords 2/3#D100 64"},
                {65, "readAddressWords 2/3#D100 64"},
                {100, "readAddressWords 2/3#D100 64"},
                {INT_MAX, "readAddressWords 2/3#D100 64"}};
    QString out;
    for (const auto &row : rows) {
        SCOPED_TRACE(row.wordCount);
        comm.calls.clear();
        EXPECT_TRUE(getValueToQString(reg, row.wordCount, 5, 0, NUM_UINT16, NUM_VIEW_DEC, out));
        EXPECT_EQ(comm.calls, QStringList{QString::fromLatin1(row.call)});
    }
}

TEST_F(ValueText, AsksForNoReadOfNoWords)
{
    comm.words = {7};
    for (const int wordCount : {0, -1, INT_MIN}) {
        QString out;
        EXPECT_TRUE(getValueToQString({}, wordCount, 5, 0, NUM_UINT16, NUM_VIEW_DEC, out));
        EXPECT_EQ(out, QStringLiteral("0"));
    }
    EXPECT_TRUE(comm.calls.isEmpty());
}

TEST_F(ValueText, ShowsZerosForAReadThatFails)
{
    comm.words.clear();
    const struct
    {
        NUM_DATA_TYPE type;
        int decimals;
        const char *expected;
    } rows[] = {{NUM_BIT, 0, "0"},      {NUM_UINT16, 0, "0"},     {NUM_INT32, 2, "0.00"},
                {NUM_BCD32, 2, "0.00"}, {NUM_FLOAT32, 2, "0.00"}, {NUM_FLOAT32, 0, "0"},
                {NUM_STRING, 0, ""}};
    for (const auto &row : rows) {
        QString out = QStringLiteral("before");
        EXPECT_TRUE(getValueToQString({}, 2, 5, row.decimals, row.type, NUM_VIEW_DEC, out));
        EXPECT_EQ(out, QString::fromLatin1(row.expected)) << row.type;
    }
}

TEST_F(ValueText, DropsDigitsOfUnsignedValuesFromTheLeft)
{
    EXPECT_EQ(show({12345}, 3, 0, NUM_UINT16), QStringLiteral("345"));
    EXPECT_EQ(show({12345}, 5, 2, NUM_UINT16), QStringLiteral("123.45"));
    EXPECT_EQ(show({12345}, 4, 2, NUM_UINT16), QStringLiteral("23.45"));
    EXPECT_EQ(show({12345}, 2, 2, NUM_UINT16), QStringLiteral("0.45"));
}

TEST_F(ValueText, KeepsTheSignOfDigitsCutToZero)
{
    EXPECT_EQ(show({0xFFFF}, 5, 0, NUM_INT16), QStringLiteral("-1"));
    EXPECT_EQ(show({0xFFFF}, 3, 1, NUM_INT16), QStringLiteral("-0.1"));
    EXPECT_EQ(show({static_cast<quint16>(-10)}, 1, 0, NUM_INT16), QStringLiteral("-0"));
    EXPECT_EQ(show({static_cast<quint16>(-10000)}, 4, 2, NUM_INT16), QStringLiteral("-00.00"));
}

TEST_F(ValueText, KeepsLeadingZerosWithDecimalsOnly)
{
    EXPECT_EQ(show({10005}, 4, 2, NUM_UINT16), QStringLiteral("00.05"));
    EXPECT_EQ(show({10005}, 4, 0, NUM_UINT16), QStringLiteral("5"));
}

TEST_F(ValueText, ShowsUnsignedValuesInEachView)
{
    EXPECT_EQ(show({255}, 8, 0, NUM_UINT16, NUM_VIEW_HEX), QStringLiteral("ff"));
    EXPECT_EQ(show({255}, 8, 0, NUM_UINT16, NUM_VIEW_OCT), QStringLiteral("377"));
    for (const int view : {3, 9, -1, INT_MAX, INT_MIN})
        EXPECT_EQ(show({255}, 8, 0, NUM_UINT16, static_cast<NUM_DATA_VIEW_TYPE>(view)),
                  QStringLiteral("11111111"))
            << view;
    for (const int view : {0, 1, 2, 3, 9})
        EXPECT_EQ(show({0}, 8, 0, NUM_UINT16, static_cast<NUM_DATA_VIEW_TYPE>(view)), QStringLiteral("0"))
            << view;
}

TEST_F(ValueText, ShowsBcdDigitsOrThatTheyAreNone)
{
    EXPECT_EQ(show({0x1234}, 4, 2, NUM_BCD16), QStringLiteral("12.34"));
    EXPECT_EQ(show({0x0005}, 4, 2, NUM_BCD16), QStringLiteral("0.05"));
    for (const int decimals : {0, 2, -2}) {
        for (const int digits : {2, 4, 8})
            EXPECT_EQ(show({0x12AB}, digits, decimals, NUM_BCD16), QStringLiteral("NA")) << decimals;
    }
    EXPECT_EQ(show({0x1234, 0x5678}, 8, 0, NUM_BCD16), QStringLiteral("56781234")) << "all 32 bits";
}

TEST_F(ValueText, CutsTheLastDigitOfASingleInsteadOfRoundingIt)
{
    EXPECT_EQ(show(wordsOf(1.239F), 5, 2, NUM_FLOAT32), QStringLiteral("1.23"));
    EXPECT_EQ(show(wordsOf(-1.239F), 5, 2, NUM_FLOAT32), QStringLiteral("-1.23"));
    EXPECT_EQ(show(wordsOf(9.9996F), 5, 2, NUM_FLOAT32), QStringLiteral("10.00")) << "the extra digit rounds";
}

TEST_F(ValueText, CutsTheExtraDigitOfATieWhicheverWayItRounds)
{
    EXPECT_EQ(show(wordsOf(0.0625F), 9, 2, NUM_FLOAT32), QStringLiteral("0.06"));     // 0.062|5
    EXPECT_EQ(show(wordsOf(0.1875F), 9, 2, NUM_FLOAT32), QStringLiteral("0.18"));     // 0.187|5
    EXPECT_EQ(show(wordsOf(-0.59375F), 9, 3, NUM_FLOAT32), QStringLiteral("-0.593")); // 0.5937|5
    EXPECT_EQ(show(wordsOf(0.998046875F), 12, 7, NUM_FLOAT32), QStringLiteral("0.9980468"));
    EXPECT_EQ(show(wordsOf(0.99951171875F), 12, 9, NUM_FLOAT32), QStringLiteral("0.999511718"));
}

TEST_F(ValueText, ShowsNoSingleThatIsNoNumber)
{
    for (const float value : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                              -std::numeric_limits<float>::infinity()}) {
        EXPECT_EQ(show(wordsOf(value), 5, 0, NUM_FLOAT32), QStringLiteral("0"));
        EXPECT_EQ(show(wordsOf(value), 5, 2, NUM_FLOAT32), QStringLiteral("0.00"));
        EXPECT_EQ(show(wordsOf(value), 70, 60, NUM_FLOAT32), QStringLiteral("0.") + times(60, '0'));
    }
}

TEST_F(ValueText, ShowsTheWholePartOfASingleHoweverLarge)
{
    EXPECT_EQ(show(wordsOf(-0.75F), 5, 0, NUM_FLOAT32), QStringLiteral("0"));
    EXPECT_EQ(show(wordsOf(4294967296.0F), 1, 0, NUM_FLOAT32), QStringLiteral("4294967296"));
    EXPECT_EQ(show(wordsOf(-3e38F), 1, 0, NUM_FLOAT32),
              QStringLiteral("-300000000549775575777803994281145270272"));
    EXPECT_EQ(show(wordsOf(-12.75F), 5, -3, NUM_FLOAT32), QStringLiteral("-12"));
}

TEST_F(ValueText, KeepsTheSignOfASinglesNegativeZeroWithDecimals)
{
    EXPECT_EQ(show(wordsOf(-0.0F), 5, 2, NUM_FLOAT32), QStringLiteral("-0.00"));
    EXPECT_EQ(show(wordsOf(-0.0001F), 5, 2, NUM_FLOAT32), QStringLiteral("-0.00"));
    EXPECT_EQ(show(wordsOf(-0.0F), 5, 0, NUM_FLOAT32), QStringLiteral("0"));
}

TEST_F(ValueText, EndsAStringOf128CharactersWithinTheBuffer)
{
    QVector<quint16> words(100, 0x4141);
    EXPECT_EQ(show(words, 5, 0, NUM_STRING), times(128, 'A'));
}

TEST_F(ValueText, DecodesAStringInTheLocalEncoding)
{
    const QString text = QString::fromUtf8("\xE6\xB8\xA9\xE5\xBA\xA6 25");
    QByteArray bytes = text.toLocal8Bit();
    ASSERT_EQ(QString::fromLocal8Bit(bytes), text) << "the locale cannot hold the text of this test";
    bytes.append(bytes.size() % 2 == 0 ? 2 : 1, '\0');
    QVector<quint16> words(static_cast<int>(bytes.size()) / 2);
    std::memcpy(words.data(), bytes.constData(), static_cast<std::size_t>(words.size()) * 2);
    EXPECT_EQ(show(words, 5, 0, NUM_STRING), text);
    EXPECT_EQ(show({0x80FF, 0}, 5, 0, NUM_STRING), QString::fromLocal8Bit("\xFF\x80"));
}

TEST_F(ValueText, LeavesAStringAloneThatIsTheSameOnceDecoded)
{
    const QByteArray bytes = QString::fromUtf8("\xC3\xBC").toLocal8Bit() + QByteArray(4, '\0');
    comm.words = QVector<quint16>(2);
    std::memcpy(comm.words.data(), bytes.constData(), 4);
    QString out;
    EXPECT_TRUE(getValueToQString({}, 2, 5, 0, NUM_STRING, NUM_VIEW_DEC, out));
    const QString copy = out;
    EXPECT_TRUE(getValueToQString({}, 2, 5, 0, NUM_STRING, NUM_VIEW_DEC, out));
    EXPECT_EQ(out, QString::fromUtf8("\xC3\xBC"));
    EXPECT_EQ(out.constData(), copy.constData()) << "still one text";
}

TEST_F(ValueText, IsEmptyForTypesOutsideOfTheEnumeration)
{
    for (const int type : {8, -2, 100, INT_MAX, INT_MIN})
        EXPECT_EQ(show({1, 2}, 5, 2, static_cast<NUM_DATA_TYPE>(type)), QString()) << type;
}

TEST_F(ValueText, DividesByAPowerOfTenInSinglePrecision)
{
    // 10^11 is 99999997952 there, 10^12 is 999999995904.
    EXPECT_EQ(show(wordsOf(4294967295U), 12, 11, NUM_UINT32), QStringLiteral("0.04294967383"));
    EXPECT_EQ(show(wordsOf(4294967295U), 11, 10, NUM_UINT32), QStringLiteral("0.4294967295"));
    EXPECT_EQ(show(wordsOf(0xFFFFFFFFU), 13, 12, NUM_INT32), QStringLiteral("-0.000000000001"));
    EXPECT_EQ(show(wordsOf(4294967295U), 40, 39, NUM_UINT32), QLatin1String("0.") + times(39, '0'));
    EXPECT_EQ(show(wordsOf(0xFFFFFFFFU), 40, 39, NUM_INT32), QLatin1String("-0.") + times(39, '0'));
}

TEST_F(ValueText, CountsMoreThan1024DecimalsAs1024)
{
    for (const int decimals : {1024, 1025, 100000, INT_MAX}) {
        SCOPED_TRACE(decimals);
        EXPECT_EQ(show({5}, INT_MAX, decimals, NUM_UINT16), QLatin1String("0.") + times(1024, '0'));
        EXPECT_EQ(show({5}, INT_MAX, decimals, NUM_BCD16),
                  QLatin1String("0.") + times(1023, '0') + times(1, '5'));
        EXPECT_EQ(show(wordsOf(-1.5F), INT_MAX, decimals, NUM_FLOAT32),
                  QLatin1String("-1.5") + times(1023, '0'));
    }
    EXPECT_EQ(show({5}, INT_MAX - 1, INT_MAX, NUM_UINT16), QStringLiteral("0"))
        << "still fewer digits than decimals";
    const QString largest = show(wordsOf(0x7F7FFFFFU), INT_MAX, INT_MAX, NUM_FLOAT32);
    EXPECT_EQ(largest, QLatin1String("340282346638528859811704183484516925440.") + times(1024, '0'));
}

TEST_F(ValueText, TakesNegativeDecimalsOfIntegersAsTheCFormatDoes)
{
    // Times 10^-decimals, single precision again, with the 6 decimals of a format without a precision.
    EXPECT_EQ(show({5}, 12, -1, NUM_UINT16), QStringLiteral("49.999999"));
    EXPECT_EQ(show({5}, 4, -1, NUM_UINT16), QStringLiteral("9999"));
    EXPECT_EQ(show({0xFFFB}, -1, -2, NUM_INT16), QStringLiteral("-500.000011"));
    EXPECT_EQ(show({0}, 12, -1, NUM_UINT16), QStringLiteral(".000000"));
    EXPECT_EQ(show({0x1234}, 3, -2, NUM_BCD16), QStringLiteral("234"));
}

TEST_F(ValueText, SurvivesTheExtremesOfEveryArgument)
{
    const int extremes[] = {INT_MIN, INT_MIN + 1, -1025, -46,  -45,  -1,          0,
                            1,       9,           10,    1024, 1025, INT_MAX - 1, INT_MAX};
    for (const quint32 bits : {0U, 1U, 0x80000000U, 0x7F7FFFFFU, 0xFF7FFFFFU, 0x99999999U, 0xFFFFFFFFU}) {
        for (int type = -2; type <= 8; ++type) {
            for (const int digits : extremes) {
                for (const int decimals : extremes) {
                    const QString text =
                        show(wordsOf(bits), digits, decimals, static_cast<NUM_DATA_TYPE>(type));
                    ASSERT_LE(text.size(), 1100);
                    ASSERT_NE(text, QStringLiteral("before"));
                }
            }
        }
    }
}
