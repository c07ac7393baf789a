#include "register/textassign.h"

#include <algorithm>

namespace panelkit {

namespace {

bool startsWith(const QChar *characters, std::string_view text)
{
    for (const char expected : text) {
        if (characters->unicode() != static_cast<unsigned char>(expected))
            return false;
        ++characters;
    }
    return true;
}

QChar *write(QChar *to, std::string_view text)
{
    for (const char character : text)
        *to++ = QLatin1Char(character);
    return to;
}

// Where the `size` characters of the new text are to be written; null for none.
QChar *resized(QString &out, TextSize size, TextSize room)
{
    if (!out.isDetached() || out.capacity() < size) {
        out = QString(); // gives the old buffer back before the new one is asked for
        if (size > 0)
            out.reserve(qMax(size, room));
    }
    if (out.size() != size)
        out.resize(size);
    return size == 0 ? nullptr : out.data();
}

} // namespace

void assignText(QString &out, std::string_view text, TextSize room)
{
    const auto size = static_cast<TextSize>(text.size());
    if (out.size() != size || !startsWith(out.constData(), text))
        write(resized(out, size, room), text);
}

void assignText(QString &out, std::string_view head, const QString &tail)
{
    const auto headSize = static_cast<TextSize>(head.size());
    const TextSize size = headSize + tail.size();
    if (out.size() == size && startsWith(out.constData(), head) &&
        std::equal(tail.constData(), tail.constData() + tail.size(), out.constData() + headSize))
        return;
    std::copy_n(tail.constData(), tail.size(), write(resized(out, size, 0), head));
}

} // namespace panelkit
