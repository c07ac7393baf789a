// The notation in which authors type an address, taken apart without copying any of it.
#pragma once

#include <QString>

namespace panelkit {

// A part of a text: `length` characters from `offset` on.
struct TextPart
{
    int offset;
    int length;
};

// A block text: "2/5#DM" names block DM, station 5 on link 2; both prefixes may be missing.
struct BlockText
{
    bool hasLinkPrefix;
    TextPart linkPrefix; // what stands before the first "/"
    TextPart name;       // what follows the last "/", and of that the last "#"
};

BlockText splitBlockText(const QString &block);

// Whether `part` of `text` is exactly `word`.
bool isWord(const QString &text, TextPart part, const QString &word);

// Whether `part` of `text` is one of the words that `list` holds separated by ",". An empty list holds one
// empty word.
bool isListed(const QString &text, TextPart part, const QString &list);

// Reads `part` of `text` as QString::toInt(&ok, 10) does. Returns false, with `value` 0, when it is no
// base-10 integer of 32 bits.
bool readInteger(const QString &text, TextPart part, int &value);

// All of `text`.
TextPart whole(const QString &text);

} // namespace panelkit
