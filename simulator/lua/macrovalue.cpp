#include "simulator/lua/macrovalue.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace panelkit::simulator {

namespace {

enum class Coding
{
    Unsigned,
    Signed,
    Bcd,
    Single
};

struct Layout
{
    Coding coding;
    int wordCount;
    qint64 lowest, highest;
};

Layout layoutOf(MacroDataType type)
{
    switch (type) {
    case MacroDataType::Bit:
        return {Coding::Unsigned, 1, 0, 1};
    case MacroDataType::Word:
        return {Coding::Unsigned, 1, 0, 0xFFFF};
    case MacroDataType::SignedWord:
        return {Coding::Signed, 1, -0x8000, 0x7FFF};
    case MacroDataType::BcdWord:
        return {Coding::Bcd, 1, 0, 9999};
    case MacroDataType::DoubleWord:
        return {Coding::Unsigned, 2, 0, 0xFFFFFFFF};
    case MacroDataType::SignedDoubleWord:
        return {Coding::Signed, 2, -0x80000000LL, 0x7FFFFFFF};
    case MacroDataType::BcdDoubleWord:
        return {Coding::Bcd, 2, 0, 99999999};
    case MacroDataType::Single:
        break;
    }
    return {Coding::Single, 2, 0, 0};
}

quint32 bitsOf(const RegisterWords &words, int wordCount)
{
    return words.words[0] | (wordCount == 2 ? static_cast<quint32>(words.words[1]) << 16 : 0);
}

RegisterWords wordsOf(quint32 bits, int wordCount)
{
    RegisterWords words;
    words.count = wordCount;
    words.words[0] = static_cast<quint16>(bits);
    if (wordCount == 2)
        words.words[1] = static_cast<quint16>(bits >> 16);
    return words;
}

std::optional<qint64> fromBcd(quint32 bits)
{
    qint64 value = 0;
    for (int shift = 28; shift >= 0; shift -= 4) {
        const quint32 digit = bits >> shift & 0xF;
        if (digit > 9)
            return std::nullopt;
        value = value * 10 + digit;
    }
    return value;
}

quint32 toBcd(qint64 value)
{
    quint32 bits = 0;
    for (int shift = 0; value != 0; shift += 4, value /= 10)
        bits |= static_cast<quint32>(value % 10) << shift;
    return bits;
}

EncodedValue encodeSingle(double value)
{
    constexpr double highest = std::numeric_limits<float>::max();
    const double bounded = std::fmin(std::fmax(value, -highest), highest);
    const auto single = static_cast<float>(bounded);
    quint32 bits;
    std::memcpy(&bits, &single, sizeof(bits));
    return {wordsOf(bits, 2), bounded == value};
}

// The nearest whole number within the bounds.
qint64 bounded(double value, const Layout &layout)
{
    const double rounded = std::round(value);
    if (rounded <= static_cast<double>(layout.lowest))
        return layout.lowest;
    if (rounded >= static_cast<double>(layout.highest))
        return layout.highest;
    return static_cast<qint64>(rounded);
}

} // namespace

int wordCountOf(MacroDataType type)
{
    return layoutOf(type).wordCount;
}

std::optional<MacroValue> decodeValue(MacroDataType type, const RegisterWords &words)
{
    const Layout layout = layoutOf(type);
    const quint32 bits = bitsOf(words, layout.wordCount);
    switch (layout.coding) {
    case Coding::Unsigned:
        return MacroValue(std::min<qint64>(bits, layout.highest));
    case Coding::Signed:
        return MacroValue(layout.wordCount == 1 ? qint64(static_cast<qint16>(bits))
                                                : qint64(static_cast<qint32>(bits)));
    case Coding::Bcd:
        if (const auto value = fromBcd(bits))
            return MacroValue(*value);
        return std::nullopt;
    case Coding::Single:
        break;
    }
    float single;
    std::memcpy(&single, &bits, sizeof(single));
    return MacroValue(static_cast<double>(single));
}

std::optional<EncodedValue> encodeValue(MacroDataType type, const MacroValue &value)
{
    const auto *whole = std::get_if<qint64>(&value);
    const double number = whole != nullptr ? static_cast<double>(*whole) : std::get<double>(value);
    if (std::isnan(number))
        return std::nullopt;
    const Layout layout = layoutOf(type);
    if (layout.coding == Coding::Single)
        return encodeSingle(number);

    qint64 stored =
        whole != nullptr ? qBound(layout.lowest, *whole, layout.highest) : bounded(number, layout);
    if (type == MacroDataType::Bit)
        stored = number != 0 ? 1 : 0;
    const bool isExact = whole != nullptr ? stored == *whole : static_cast<double>(stored) == number;
    const quint32 bits = layout.coding == Coding::Bcd ? toBcd(stored) : static_cast<quint32>(stored);
    return EncodedValue{wordsOf(bits, layout.wordCount), isExact};
}

} // namespace panelkit::simulator
