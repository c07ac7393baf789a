// Texts in which every occurrence of one character is doubled, written in one allocation.
#pragma once

#include <QString>

#include <limits>

namespace panelkit {

typedef decltype(QString().size()) TextSize; // int up to Qt 5, wider from Qt 6 on

// A text of `size` characters to be filled. A size that no text can have is left to the toolkit to refuse.
inline QString unfilledText(qint64 size)
{
    QString text;
    text.resize(static_cast<TextSize>(qMin<qint64>(size, std::numeric_limits<TextSize>::max())));
    return text;
}

// Writes `text` to `out`, every `doubled` twice, and returns the end.
inline QChar *writeDoubled(QChar *out, const QString &text, QChar doubled)
{
    for (const QChar character : text) {
        if (character == doubled)
            *out++ = character;
        *out++ = character;
    }
    return out;
}

} // namespace panelkit
