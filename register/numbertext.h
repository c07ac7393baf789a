// Register words and plain numbers as text: pure functions, without the platform and without the heap.
#pragma once

#include "register/numformat.h"

#include <string_view>

namespace panelkit {

constexpr int maximumDecimals = 1024; // more count as this many

// Where a text is built: a sign, up to 55 digits, a point, and one decimal that is cut again; beside these a
// NUL and all bytes of the locale's decimal point but one.
using NumberBuffer = char[maximumDecimals + 64];

// Characters of the longest text that a register can show with `decimals` decimals, in every type but
// NUM_STRING: the largest single, which has 39 digits before the point. Negative decimals multiply an integer
// instead, by a power of ten that is no larger than 1 / 2^-149 (55 digits), and show 6 decimals.
constexpr int longestNumberText(int decimals)
{
    if (decimals < 0)
        return 1 + 55 + 1 + 6;
    return 1 + 39 + 1 + (decimals < maximumDecimals ? decimals : maximumDecimals);
}

// The number in [begin, end), written with the locale's decimal point (which may be several bytes, none of
// them a digit), gets a "." for it; a number without a point stays. Returns the new end.
char *withPlainPoint(char *begin, char *end);

// The results point into the buffer or to a constant; they are plain ASCII.

// The words of a register as getValueToQString shows them, from the first 4 bytes at `words`, for totalDigits
// that are neither 0 nor below `decimals`. Empty for NUM_STRING and for types outside of the enumeration.
std::string_view registerText(const char *words, int totalDigits, int decimals, NUM_DATA_TYPE type,
                              NUM_DATA_VIEW_TYPE view, NumberBuffer &buffer);

// A single, given by its 32 bits, as ieee754TofloatStr shows it.
std::string_view shortSingleText(quint32 bits, NumberBuffer &buffer);

// A double as doubleToQString shows it with decimals other than 0.
std::string_view truncatedText(double value, int decimals, NumberBuffer &buffer);

} // namespace panelkit
