#include "link/utf8text.h"

#include <QString>

namespace panelkit {

namespace {

// Writes `text` and a NUL to the bytes from `out` to `end`. False when there is not room enough to be sure,
// or when `text` holds surrogates.
bool encodeShort(const QString &text, char *out, const char *end)
{
    for (const QChar *c = text.constData(), *last = c + text.size(); c != last; ++c) {
        const unsigned unit = c->unicode();
        if (end - out < 4 || (unit & 0xF800) == 0xD800)
            return false;
        if (unit < 0x80) {
            *out++ = static_cast<char>(unit);
        } else if (unit < 0x800) {
            *out++ = static_cast<char>(0xC0 | unit >> 6);
            *out++ = static_cast<char>(0x80 | (unit & 0x3F));
        } else {
            *out++ = static_cast<char>(0xE0 | unit >> 12);
            *out++ = static_cast<char>(0x80 | (unit >> 6 & 0x3F));
            *out++ = static_cast<char>(0x80 | (unit & 0x3F));
        }
    }
    *out = 0;
    return true;
}

} // namespace

Utf8Text::Utf8Text(const QString &text) : m_text(m_short)
{
    if (encodeShort(text, m_short, m_short + sizeof(m_short)))
        return;
    m_long = text.toUtf8();
    m_text = m_long.constData();
}

} // namespace panelkit
