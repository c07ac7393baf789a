#include "register/numbertext.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <limits>

namespace panelkit {

namespace {

constexpr quint32 powersOfTen[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
constexpr int fastDecimals = 9; // 10 to this power still fits 32 bits

template <typename Word>
Word firstWord(const char *words)
{
    Word word;
    std::memcpy(&word, words, sizeof(word));
    return word;
}

// Numbers are written from the second character of the buffer on: the first is for the sign.
std::string_view withSign(char *begin, char *end, bool negative)
{
    if (negative)
        *--begin = '-';
    return {begin, static_cast<std::size_t>(end - begin)};
}

// Keeps the last `totalDigits` characters without their leading zeros.
std::string_view cutInteger(char *begin, char *end, bool negative, int totalDigits)
{
    if (totalDigits >= 0 && end - begin > totalDigits)
        begin = end - totalDigits;
    while (end - begin > 1 && *begin == '0')
        ++begin;
    return withSign(begin, end, negative);
}

// Keeps the last `totalDigits` - `decimals` digits before the point; zeros among them stay.
std::string_view cutDecimal(char *begin, char *end, bool negative, int totalDigits, int decimals)
{
    char *point = end - decimals - 1;
    const int wholeDigits = totalDigits - decimals;
    if (wholeDigits == 0) {
        begin = point - 1;
        *begin = '0';
    } else if (point - begin > wholeDigits) {
        begin = point - wholeDigits;
    }
    return withSign(begin, end, negative);
}

// Writes the `size` digits with a point before the last `decimals` of them, and zeros where there are too
// few.
char *writeWithPoint(char *to, const char *digits, int size, int decimals)
{
    const int wholeDigits = std::max(size - decimals, 0);
    if (wholeDigits == 0)
        *to++ = '0';
    to = std::copy_n(digits, wholeDigits, to);
    *to++ = '.';
    to = std::fill_n(to, decimals - (size - wholeDigits), '0');
    return std::copy_n(digits + wholeDigits, size - wholeDigits, to);
}

std::string_view cutDigits(char *begin, char *end, bool negative, int totalDigits, int decimals)
{
    return decimals > 0 ? cutDecimal(begin, end, negative, totalDigits, decimals)
                        : cutInteger(begin, end, negative, totalDigits);
}

// `value`, not negative, in the C format "%.*f".
char *writeFormatted(char *to, char *limit, double value, int decimals)
{
    const auto room = static_cast<int>(limit - to);
    const int size = std::snprintf(to, static_cast<std::size_t>(room), "%.*f", decimals, value);
    return withPlainPoint(to, to + std::clamp(size, 0, room - 1));
}

// magnitude / 10^decimals with that many decimals, in the C format "%.*f".
char *writeScaled(char *to, char *limit, quint32 magnitude, int decimals)
{
    // Up to 9 decimals the format shows the digits of the integer and a point, and needs no division.
    if (decimals >= 0 && decimals <= fastDecimals) {
        if (decimals == 0)
            return std::to_chars(to, limit, magnitude).ptr;
        char digits[std::numeric_limits<quint32>::digits10 + 1];
        const char *end = std::to_chars(digits, std::end(digits), magnitude).ptr;
        return writeWithPoint(to, digits, static_cast<int>(end - digits), decimals);
    }
    // The power is a single: inexact beyond 10 decimals, infinite beyond 38, and 0 only below -45.
    const float power = std::pow(10.0F, static_cast<float>(std::max(decimals, -45)));
    return writeFormatted(to, limit, magnitude / static_cast<double>(power), decimals);
}

std::string_view integerText(quint32 magnitude, bool negative, int totalDigits, int decimals,
                             NumberBuffer &buffer)
{
    char *begin = buffer + 1;
    char *end = writeScaled(begin, std::end(buffer), magnitude, decimals);
    return cutDigits(begin, end, negative, totalDigits, decimals);
}

std::string_view signedText(qint32 value, int totalDigits, int decimals, NumberBuffer &buffer)
{
    const auto bits = static_cast<quint32>(value);
    return integerText(value < 0 ? 0 - bits : bits, value < 0, totalDigits, decimals, buffer);
}

std::string_view unsignedText(quint32 value, int totalDigits, int decimals, NUM_DATA_VIEW_TYPE view,
                              NumberBuffer &buffer)
{
    if (view == NUM_VIEW_DEC)
        return integerText(value, false, totalDigits, decimals, buffer);
    const int base = view == NUM_VIEW_HEX ? 16 : view == NUM_VIEW_OCT ? 8 : 2;
    char *begin = buffer + 1;
    char *end = std::to_chars(begin, std::end(buffer), value, base).ptr;
    return cutInteger(begin, end, false, totalDigits);
}

std::string_view bcdText(quint32 value, int totalDigits, int decimals, NumberBuffer &buffer)
{
    if ((value & (value << 1 | value << 2) & 0x88888888) != 0) // a digit above 9 has the bits 8 and 4 or 2
        return "NA";
    char digits[8];
    const char *digitsEnd = std::to_chars(digits, std::end(digits), value, 16).ptr;
    const auto size = static_cast<int>(digitsEnd - digits);
    char *begin = buffer + 1;
    char *end =
        decimals > 0 ? writeWithPoint(begin, digits, size, decimals) : std::copy_n(digits, size, begin);
    return cutDigits(begin, end, false, totalDigits, decimals);
}

// A single by its parts: the value is whole + numerator / 2^shift, exactly.
struct Single
{
    bool negative;
    bool finite;
    bool wholeFits; // below 2^32; above it every single is whole, and `whole` is 0
    quint32 whole;
    quint32 numerator; // below 2^24
    int shift;         // 0 to 149
};

Single partsOfSingle(quint32 bits)
{
    const auto exponent = static_cast<int>(bits >> 23 & 0xFF);
    const quint32 fraction = bits & 0x7FFFFF;
    const quint32 mantissa = exponent == 0 ? fraction : fraction | 0x800000;
    const int shift = 150 - std::max(exponent, 1); // of the mantissa, to the right
    Single single = {bits >> 31 != 0, exponent != 0xFF, shift >= -8, 0, 0, std::max(shift, 0)};
    if (shift <= 0) {
        single.whole = single.wholeFits ? mantissa << -shift : 0;
    } else {
        single.whole = shift < 24 ? mantissa >> shift : 0;
        single.numerator = shift < 24 ? mantissa & ((1U << shift) - 1) : mantissa;
    }
    return single;
}

// numerator / 2^shift in units of 10^-decimals, ties away from zero; a carry into the whole gives
// 10^decimals.
quint32 roundedDecimals(quint32 numerator, int shift, int decimals)
{
    if (shift == 0 || shift > 62) // the product below is less than 2^54
        return 0;
    const quint64 product = static_cast<quint64>(numerator) * powersOfTen[decimals];
    const quint64 half = Q_UINT64_C(1) << (shift - 1);
    return static_cast<quint32>((product + half) >> shift);
}

// `value` with as many digits as asked for; zeros lead.
char *writePadded(char *to, quint32 value, int digits)
{
    for (char *digit = to + digits; digit != to;) {
        *--digit = static_cast<char>('0' + value % 10);
        value /= 10;
    }
    return to + digits;
}

// Writes the magnitude of a single below 2^32, rounded to `decimals` decimals, 0 to 9.
char *writeRounded(char *to, char *limit, const Single &single, int decimals)
{
    quint32 whole = single.whole;
    quint32 fraction = roundedDecimals(single.numerator, single.shift, decimals);
    if (fraction == powersOfTen[decimals]) {
        fraction = 0;
        ++whole;
    }
    to = std::to_chars(to, limit, whole).ptr;
    if (decimals == 0)
        return to;
    *to++ = '.';
    return writePadded(to, fraction, decimals);
}

// Writes the magnitude of any finite single in the C format "%.*f".
char *writeExact(char *to, char *limit, quint32 bits, int decimals)
{
    const quint32 magnitudeBits = bits & 0x7FFFFFFF;
    float magnitude;
    std::memcpy(&magnitude, &magnitudeBits, sizeof(magnitude));
    return writeFormatted(to, limit, static_cast<double>(magnitude), decimals);
}

std::string_view singleText(quint32 bits, int decimals, NumberBuffer &buffer)
{
    Single single = partsOfSingle(bits);
    if (!single.finite) {
        bits = 0;
        single = partsOfSingle(bits);
    }
    char *begin = buffer + 1;
    char *limit = std::end(buffer);
    if (decimals < 1) {
        if (!single.wholeFits)
            return withSign(begin, writeExact(begin, limit, bits, 0), single.negative);
        char *end = std::to_chars(begin, limit, single.whole).ptr;
        return withSign(begin, end, single.negative && single.whole != 0);
    }
    // One decimal more than wanted, which is cut again: the last digit shown is not rounded. A tie has a 2 or
    // a 7 in that decimal (5 times an odd number, halved), so that neither way of rounding it reaches what is
    // shown.
    char *end = single.wholeFits && decimals < fastDecimals ? writeRounded(begin, limit, single, decimals + 1)
                                                            : writeExact(begin, limit, bits, decimals + 1);
    return withSign(begin, end - 1, single.negative);
}

qint64 saturated(double value)
{
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (std::isnan(value))
        return 0;
    if (value >= limit)
        return std::numeric_limits<qint64>::max();
    if (value < -limit)
        return std::numeric_limits<qint64>::min();
    return static_cast<qint64>(value);
}

} // namespace

char *withPlainPoint(char *begin, char *end)
{
    const auto isDigit = [](char character) {
        return character >= '0' && character <= '9';
    };
    char *point = std::find_if_not(begin, end, isDigit);
    if (point == end)
        return end;
    char *const decimals = std::find_if(point, end, isDigit);
    *point++ = '.';
    return std::copy(decimals, end, point);
}

std::string_view registerText(const char *words, int totalDigits, int decimals, NUM_DATA_TYPE type,
                              NUM_DATA_VIEW_TYPE view, NumberBuffer &buffer)
{
    decimals = std::min(decimals, maximumDecimals);
    switch (type) {
    case NUM_BIT:
        return firstWord<quint16>(words) != 0 ? "1" : "0";
    case NUM_UINT16:
        return unsignedText(firstWord<quint16>(words), totalDigits, decimals, view, buffer);
    case NUM_UINT32:
        return unsignedText(firstWord<quint32>(words), totalDigits, decimals, view, buffer);
    case NUM_INT16:
        return signedText(firstWord<qint16>(words), totalDigits, decimals, buffer);
    case NUM_INT32:
        return signedText(firstWord<qint32>(words), totalDigits, decimals, buffer);
    case NUM_BCD16:
    case NUM_BCD32:
        return bcdText(firstWord<quint32>(words), totalDigits, decimals, buffer);
    case NUM_FLOAT32:
        return singleText(firstWord<quint32>(words), decimals, buffer);
    case NUM_STRING:
        break;
    }
    return {};
}

std::string_view shortSingleText(quint32 bits, NumberBuffer &buffer)
{
    const Single single = partsOfSingle(bits);
    char *begin = buffer + 1;
    char *limit = std::end(buffer);
    if (!single.finite || (single.wholeFits && single.whole == 0 && single.numerator == 0))
        return "0.0";
    if (!single.wholeFits)
        return withSign(begin, writeExact(begin, limit, bits, 0), single.negative);

    char *end = std::to_chars(begin, limit, single.whole).ptr;
    if (single.numerator == 0)
        return withSign(begin, end, single.negative);
    const auto wholeSize = static_cast<int>(end - begin) + (single.negative && single.whole != 0 ? 1 : 0);
    const int decimals = (single.whole == 0 ? 8 : 7) - wholeSize;
    if (decimals >= 0) {
        end = writeRounded(begin, limit, single, decimals);
    } else {
        // A minus and 7 digits. Two significant digits of the fraction follow, and of "-0.25" only the first
        // two characters are dropped: its point stays behind the number's own.
        const bool belowTenth = single.numerator * 10 < 1U << single.shift;
        const int digits = belowTenth ? 3 : 2;
        end = std::fill_n(end, 2, '.');
        end = writePadded(end, roundedDecimals(single.numerator, single.shift, digits), digits);
    }
    // Without decimals this takes the zeros of the integer.
    while (end[-1] == '0')
        --end;
    if (end[-1] == '.')
        --end;
    return withSign(begin, end, single.negative);
}

std::string_view truncatedText(double value, int decimals, NumberBuffer &buffer)
{
    decimals = std::min(decimals, maximumDecimals);
    const double bias = value >= 0 ? 1e-8 : -1e-8;
    const qint64 whole = saturated(value + bias);
    const double fraction = std::fabs(bias + (value - static_cast<double>(whole)));
    const float power = std::pow(10.0F, static_cast<float>(decimals));
    const qint64 scaled = saturated(fraction * static_cast<double>(power));

    char *begin = buffer + 1;
    char *limit = std::end(buffer);
    char *end = std::to_chars(begin, limit, whole).ptr;
    *end++ = '.';
    char digits[std::numeric_limits<qint64>::digits10 + 1];
    const char *digitsEnd = scaled == 0 ? digits : std::to_chars(digits, std::end(digits), scaled).ptr;
    const auto size = static_cast<int>(digitsEnd - digits);
    end = std::fill_n(end, std::max(decimals - size, 0), '0');
    end = std::copy_n(digits, size, end);
    return withSign(begin, end, whole >= 0 && value < 0);
}

} // namespace panelkit
