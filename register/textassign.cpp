#include "register/textassign.h"

#include <cstddef>
#include <cstring>

namespace panelkit {

namespace {

bool reads(const QString &text, std::string_view head, const QString &tail)
{
    const auto headSize = static_cast<TextSize>(head.size());
    if (text.size() != headSize + tail.size())
        return false;
    const QChar *character = text.constData();
    for (const char expected : head) {
        if (character->unicode() != static_cast<unsigned char>(expected))
            return false;
        ++character;
    }
    return std::memcmp(character, tail.constData(), static_cast<std::size_t>(tail.size()) * sizeof(QChar)) ==
           0;
}

} // namespace

void assignText(QString &out, std::string_view head, const QString &tail, TextSize room)
{
    if (reads(out, head, tail))
        return;
    const TextSize size = static_cast<TextSize>(head.size()) + tail.size();
    if (!out.isDetached() || out.capacity() < size) {
        out = QString(); // gives the old buffer back before the new one is asked for
        if (size == 0)
            return;
        out.reserve(qMax(size, room));
    }
    out.resize(size);
    QChar *to = out.data();
    for (const char character : head)
        *to++ = QLatin1Char(character);
    std::memcpy(static_cast<void *>(to), tail.constData(),
                static_cast<std::size_t>(tail.size()) * sizeof(QChar));
}

} // namespace panelkit
