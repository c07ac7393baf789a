// Register words and plain numbers as the text that a numeric display shows.
#pragma once

#include "platform/export.h"
#include "register/registervaluechange.h"

#include <QString>
#include <QtGlobal>

// How the words of a register are read. The first word and the first 32 bits are the first 2 or 4 bytes as
// the driver stored them, in the processor's byte order; nothing is swapped.
enum NUM_DATA_TYPE : int
{
    NUM_BIT = -1,   // first word: "1" when it is not 0, else "0"
    NUM_UINT16 = 0, // first word, unsigned
    NUM_UINT32,     // first 32 bits, unsigned
    NUM_INT16,      // first word, two's complement
    NUM_INT32,      // first 32 bits, two's complement
    NUM_BCD16,      // first 32 bits as BCD digits; a read of one word leaves the upper half 0
    NUM_BCD32,      // first 32 bits as BCD digits
    NUM_FLOAT32,    // first 32 bits as an IEEE 754 single
    NUM_STRING      // the whole buffer as a NUL-terminated text in the local encoding
};

// The notation of the unsigned types; every other type is decimal whatever the view. Any value but the first
// three is binary.
enum NUM_DATA_VIEW_TYPE : int
{
    NUM_VIEW_DEC = 0,
    NUM_VIEW_HEX,
    NUM_VIEW_OCT,
    NUM_VIEW_BIN
};

// Reads min(`wordCount`, 64) words of `reg` through the runtime's communication interface, in one call, and
// writes them to `out` as text with `totalDigits` digits, `decimals` of them behind the point.
//
// Digits beyond `totalDigits` are dropped from the left without a mark; a single is cut after its decimals,
// not rounded. Bits, singles and strings have no digit limit. A BCD value with a digit above 9 is "NA", a NaN
// or an infinity counts as 0, a type outside of the enumeration makes an empty text. When `totalDigits` is
// 0 or below `decimals`, `out` is "0" and nothing is read. More than 1,024 decimals count as 1,024. Negative
// decimals are none for BCD values and singles; a decimal integer is then value / 10^decimals in the C format
// "%.*f", which takes a negative precision for 6. With a `wordCount` below 1 nothing is read, and zeros are
// shown.
//
// Returns false, with `out` untouched, only when the runtime has no communication interface. A failed read is
// not noticed: zeros are shown.
//
// Works on the stack. An `out` that already reads so is left alone, even when it is shared with a copy. A
// fresh one costs one heap allocation, and later values in it cost none as long as it is not shared and
// neither the decimals nor a string's words become more; only a string beyond ASCII allocates each time.
PANELKIT_EXPORT bool getValueToQString(const RegisterValueChange &reg, int wordCount, int totalDigits,
                                       int decimals, NUM_DATA_TYPE type, NUM_DATA_VIEW_TYPE view,
                                       QString &out);

// `value` with `decimals` decimals, cut and not rounded, after a bias of 1e-8 away from zero that lets
// 2.999999999 come out as 3.00 (and that shows itself from 8 decimals on). With 0 decimals the general form
// with 6 significant digits, with fewer nothing behind the point ("3."). Values beyond 64 bits saturate; more
// than 1,024 decimals count as 1,024.
PANELKIT_EXPORT QString doubleToQString(double value, int decimals);

// The shortest-looking text, about 7 significant digits, of the IEEE 754 single in the 4 bytes at `bytes`
// (the processor's byte order, any alignment). Zero, NaN, infinity and null `bytes` are "0.0". Always true.
PANELKIT_EXPORT bool ieee754TofloatStr(unsigned char *bytes, QString &out);

// Comparisons with the absolute tolerance 1e-8. Equ includes the tolerance itself, the four others exclude
// it; with a NaN all five are false.
PANELKIT_EXPORT bool doubleCmp_More(double a, double b);
PANELKIT_EXPORT bool doubleCmp_Less(double a, double b);
PANELKIT_EXPORT bool doubleCmp_MoreEqu(double a, double b);
PANELKIT_EXPORT bool doubleCmp_LessEqu(double a, double b);
PANELKIT_EXPORT bool doubleCmp_Equ(double a, double b);
