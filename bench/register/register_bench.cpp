// What showing a register costs: its value, and its address, as text.

#include "bench/register/carefulnumformat.h"
#include "bench/support/comparison.h"
#include "register/addresstext.h"
#include "simulator/platform/systembase.h"
#include "tests/register/plainnumformat.h"
#include "tests/support/memorycomm.h"

#include <QStringList>

using namespace panelkit::bench;
using namespace panelkit::testing;

namespace {

constexpr int inputs = 64; // that a way walks through, again and again

enum class Refresh
{
    Changed,   // another value each time, into the same string
    Unchanged, // the same value each time, into the same string
    Fresh,     // another value each time, into a new string
};

struct Display
{
    NUM_DATA_TYPE type;
    NUM_DATA_VIEW_TYPE view;
    int totalDigits;
    int decimals;
    Refresh refresh = Refresh::Changed;
};

MemoryComm comm;

using ValueFunction = bool (*)(const RegisterValueChange &, int, int, int, NUM_DATA_TYPE, NUM_DATA_VIEW_TYPE,
                               QString &);

class ShowValue
{
public:
    ShowValue(ValueFunction function, const Display &display, int firstIndex, int wordCount)
        : m_function(function),
          m_display(display),
          m_firstIndex(firstIndex),
          m_wordCount(wordCount)
    {
    }

    void operator()(QString &out)
    {
        if (m_display.refresh == Refresh::Fresh)
            out = QString();
        m_register.index = m_firstIndex + m_position * m_wordCount;
        if (m_display.refresh != Refresh::Unchanged)
            m_position = (m_position + 1) % inputs;
        m_function(m_register, m_wordCount, m_display.totalDigits, m_display.decimals, m_display.type,
                   m_display.view, out);
    }

private:
    ValueFunction m_function;
    Display m_display;
    RegisterValueChange m_register = {};
    int m_firstIndex;
    int m_wordCount;
    int m_position = 0;
};

// `words` are the contents of `inputs` registers, one behind the other.
void compareValue(const char *name, double ratio, const Display &display, const std::vector<quint16> &words)
{
    const auto firstIndex = static_cast<int>(comm.words.size());
    const auto wordCount = static_cast<int>(words.size()) / inputs;
    comm.words.insert(comm.words.end(), words.begin(), words.end());
    const double allocations = display.refresh == Refresh::Fresh ? 1 : 0;
    compare<QString>({name, ratio, allocations},
                     ShowValue(plainValueToQString, display, firstIndex, wordCount),
                     ShowValue(carefulValueToQString, display, firstIndex, wordCount),
                     ShowValue(getValueToQString, display, firstIndex, wordCount));
}

// 32 bits each, low word first, in lengths from one digit to ten.
std::vector<quint16> wordsOf(const std::function<quint32(quint32 input)> &bits)
{
    std::vector<quint16> words;
    for (quint32 input = 0; input < inputs; ++input) {
        const quint32 value = bits(input);
        words.push_back(static_cast<quint16>(value));
        words.push_back(static_cast<quint16>(value >> 16));
    }
    return words;
}

quint32 mixedLength(quint32 input)
{
    return (input + 1) * 2654435761U >> (input * 7 % 28);
}

quint32 measurement(quint32 input)
{
    const float value = static_cast<float>(input) * 37.77F - 512.3F;
    quint32 bits;
    std::memcpy(&bits, &value, sizeof(bits));
    return bits;
}

void addValues()
{
    const auto integers = wordsOf(mixedLength);
    const auto bcd = wordsOf(
        [](quint32 input) { return QString::number(mixedLength(input) % 100000000).toUInt(nullptr, 16); });
    const auto singles = wordsOf(measurement);
    const auto ascii = wordsOf([](quint32 input) { return 0x30504D50 + (input << 24) % 0x09000000; });

    compareValue("uint16", 5, {NUM_UINT16, NUM_VIEW_DEC, 5, 0}, integers);
    compareValue("uint16, unchanged", 5, {NUM_UINT16, NUM_VIEW_DEC, 5, 0, Refresh::Unchanged}, integers);
    compareValue("uint16, fresh string", 0, {NUM_UINT16, NUM_VIEW_DEC, 5, 0, Refresh::Fresh}, integers);
    compareValue("uint32", 5, {NUM_UINT32, NUM_VIEW_DEC, 10, 0}, integers);
    compareValue("int16", 5, {NUM_INT16, NUM_VIEW_DEC, 5, 0}, integers);
    compareValue("int32", 5, {NUM_INT32, NUM_VIEW_DEC, 10, 0}, integers);
    compareValue("uint32, hexadecimal", 5, {NUM_UINT32, NUM_VIEW_HEX, 8, 0}, integers);
    compareValue("uint32, octal", 5, {NUM_UINT32, NUM_VIEW_OCT, 11, 0}, integers);
    compareValue("uint32, binary", 5, {NUM_UINT32, NUM_VIEW_BIN, 32, 0}, integers);
    compareValue("uint16, 1 decimal", 15, {NUM_UINT16, NUM_VIEW_DEC, 5, 1}, integers);
    compareValue("int32, 2 decimals", 15, {NUM_INT32, NUM_VIEW_DEC, 8, 2}, integers);
    compareValue("int32, 2 decimals, unchanged", 15, {NUM_INT32, NUM_VIEW_DEC, 8, 2, Refresh::Unchanged},
                 integers);
    compareValue("bcd32", 5, {NUM_BCD32, NUM_VIEW_DEC, 8, 0}, bcd);
    compareValue("bcd32, 2 decimals", 15, {NUM_BCD32, NUM_VIEW_DEC, 8, 2}, bcd);
    compareValue("float32, 2 decimals", 6, {NUM_FLOAT32, NUM_VIEW_DEC, 8, 2}, singles);
    compareValue("float32, 2 decimals, unchanged", 6, {NUM_FLOAT32, NUM_VIEW_DEC, 8, 2, Refresh::Unchanged},
                 singles);
    compareValue("float32, 2 decimals, fresh string", 0, {NUM_FLOAT32, NUM_VIEW_DEC, 8, 2, Refresh::Fresh},
                 singles);
    compareValue("string of 4", 2, {NUM_STRING, NUM_VIEW_DEC, 1, 0}, ascii);
    compareValue("bit", 0, {NUM_BIT, NUM_VIEW_DEC, 1, 0}, integers);
}

using SingleFunction = bool (*)(unsigned char *, QString &);

class ShowSingle
{
public:
    explicit ShowSingle(SingleFunction function) : m_function(function) {}

    void operator()(QString &out)
    {
        quint32 bits = measurement(m_position);
        m_position = (m_position + 1) % inputs;
        m_function(reinterpret_cast<unsigned char *>(&bits), out);
    }

private:
    SingleFunction m_function;
    quint32 m_position = 0;
};

using DoubleFunction = QString (*)(double, int);

class ShowDouble
{
public:
    explicit ShowDouble(DoubleFunction function) : m_function(function) {}

    void operator()(QString &out)
    {
        out = m_function(m_position * 37.77 - 512.3, 2);
        m_position = (m_position + 1) % inputs;
    }

private:
    DoubleFunction m_function;
    int m_position = 0;
};

using AddressFunction = bool (*)(const RegisterValueChange &, const QString &, InterfaceComm *, QString &);

class ShowAddress
{
public:
    ShowAddress(AddressFunction function, const char *block, int linkId, Refresh refresh)
        : m_function(function),
          m_refresh(refresh)
    {
        std::memcpy(m_register.block, block, std::strlen(block));
        m_register.linkId = linkId;
        m_register.station = 3;
        for (int i = 0; i < inputs; ++i)
            m_indexTexts << QString::number(100 + i * 7);
    }

    void operator()(QString &out)
    {
        if (m_refresh == Refresh::Fresh)
            out = QString();
        m_register.index = 100 + m_position * 7;
        m_function(m_register, m_indexTexts.at(m_position), &comm, out);
        if (m_refresh != Refresh::Unchanged)
            m_position = (m_position + 1) % inputs;
    }

private:
    AddressFunction m_function;
    Refresh m_refresh;
    RegisterValueChange m_register = {};
    QStringList m_indexTexts;
    int m_position = 0;
};

void compareAddress(const char *name, double ratio, const char *block, int linkId, Refresh refresh)
{
    const double allocations = refresh == Refresh::Fresh ? 1 : 0;
    compare<QString>({name, ratio, allocations}, ShowAddress(plainAddr2UIText, block, linkId, refresh),
                     ShowAddress(carefulAddr2UIText, block, linkId, refresh),
                     ShowAddress(conversionAddr2UIText, block, linkId, refresh));
}

} // namespace

int main(int argc, char **argv)
{
    sys_base_app_pro record = {};
    record.comm = &comm;
    panelkit::simulator::setApplicationRecord(&record);
    comm.link.addmore = 1;

    addValues();
    compare<QString>({"ieee754TofloatStr", 25, 0}, ShowSingle(plainIeee754TofloatStr),
                     ShowSingle(ieee754TofloatStr));
    compare<QString>({"doubleToQString, 2 decimals", 0, 1}, ShowDouble(plainDoubleToQString),
                     ShowDouble(doubleToQString));
    compareAddress("address LW100", 15, "LW", 0, Refresh::Changed);
    compareAddress("address 2/3#D100", 15, "D", 2, Refresh::Changed);
    compareAddress("address 2/3#D100, unchanged", 15, "D", 2, Refresh::Unchanged);
    compareAddress("address 2/3#D100, fresh string", 0, "D", 2, Refresh::Fresh);
    return run(argc, argv);
}
