#include "link/addresssyntax.h"

#include <algorithm>

namespace panelkit {

namespace {

bool equals(const QChar *left, const QChar *right, int length)
{
    return std::equal(left, left + length, right);
}

// Digits that cannot overflow 32 bits, which is what numbers in addresses are made of. False says only that
// another reader must decide.
bool readPlainDigits(const QChar *digits, int length, int &value)
{
    if (length < 1 || length > 9)
        return false;
    int sum = 0;
    for (int i = 0; i < length; ++i) {
        const int digit = digits[i].unicode() - '0';
        if (digit < 0 || digit > 9)
            return false;
        sum = sum * 10 + digit;
    }
    value = sum;
    return true;
}

} // namespace

TextPart whole(const QString &text)
{
    return {0, static_cast<int>(text.size())};
}

BlockText splitBlockText(const QString &block)
{
    const QChar *const begin = block.constData();
    const QChar *const end = begin + block.size();
    const QChar *name = begin;
    const QChar *prefixEnd = nullptr;
    for (const QChar *c = begin; c != end; ++c) {
        if (*c == QLatin1Char('/')) {
            if (prefixEnd == nullptr)
                prefixEnd = c;
            name = c + 1;
        } else if (*c == QLatin1Char('#')) {
            name = c + 1;
        }
    }
    BlockText parts;
    parts.hasLinkPrefix = prefixEnd != nullptr;
    parts.linkPrefix = {0, static_cast<int>(parts.hasLinkPrefix ? prefixEnd - begin : 0)};
    parts.name = {static_cast<int>(name - begin), static_cast<int>(end - name)};
    return parts;
}

bool isWord(const QString &text, TextPart part, const QString &word)
{
    return word.size() == part.length &&
           equals(text.constData() + part.offset, word.constData(), part.length);
}

bool isListed(const QString &text, TextPart part, const QString &list)
{
    const QChar *const sought = text.constData() + part.offset;
    const QChar *const end = list.constData() + list.size();
    const QChar *word = list.constData();
    for (;;) {
        const QChar *const wordEnd = std::find(word, end, QLatin1Char(','));
        if (wordEnd - word == part.length && equals(word, sought, part.length))
            return true;
        if (wordEnd == end)
            return false;
        word = wordEnd + 1;
    }
}

bool readInteger(const QString &text, TextPart part, int &value)
{
    if (readPlainDigits(text.constData() + part.offset, part.length, value))
        return true;
    bool isInteger = false;
    value = text.mid(part.offset, part.length).toInt(&isInteger, 10);
    return isInteger;
}

} // namespace panelkit
