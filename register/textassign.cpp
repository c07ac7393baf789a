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

void resize(QString &out, TextSize size, TextSize room)
{
    if (!out.isDetached() || out.capacity() < size) {
        out = QString(); // gives the old buffer back before the new one is asked for
        if (size > 0)
            out.reserve(qMax(size, room));
    }
    if (out.size() != size)
        out.resize(size);
}

} // namespace

void assignText(QString &out, std::string_view text, TextSize room)
{
    const auto size = static_cast<TextSize>(text.size());
    if (out.size() == size && startsWith(out.constData(), text))
        return;
    resize(out, size, room);
    if (size > 0)
        write(out.data(), text);
}

void assignText(QString &out, std::string_view head, const QString &tail)
{
    const auto headSize = static_cast<TextSize>(head.size());
    const TextSize size = headSize + tail.size();
    if (out.size() == size && startsWith(out.constData(), head) &&
        std::equal(tail.constData(), tail.constData() + tail.size(), out.constData() + headSize))
        return;
    resize(out, size, 0);
    if (size > 0)
        std::copy_n(tail.constData(), tail.size(), write(out.data(), head));
}

} // namespace panelkit
