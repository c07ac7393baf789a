// The data types of macros: from the words of a register to a number, and back.
#pragma once

#include "simulator/lua/macroregisters.h"

#include <optional>
#include <variant>

namespace panelkit::simulator {

// Numbered as in the declarations of script variables. "Double" types are two words.
enum class MacroDataType : int
{
    Bit,
    Word,
    SignedWord,
    BcdWord,
    DoubleWord,
    SignedDoubleWord,
    BcdDoubleWord,
    Single
};
inline constexpr int macroDataTypeCount = 8;

using MacroValue = std::variant<qint64, double>;

int wordCountOf(MacroDataType type);

// Nothing for words that are no BCD number. A bit is 0 or 1, and 1 for every word but 0.
std::optional<MacroValue> decodeValue(MacroDataType type, const RegisterWords &words);

struct EncodedValue
{
    RegisterWords words;
    bool isExact; // nothing was rounded or cut off, the precision of a single apart
};

// A number goes into a register as the nearest one that the type can hold: fractions are rounded (halves away
// from zero), what is too large or too small becomes the largest or smallest, infinities included. A bit is 0
// for 0 and else 1. Nothing for what is not a number (NaN).
std::optional<EncodedValue> encodeValue(MacroDataType type, const MacroValue &value);

} // namespace panelkit::simulator
