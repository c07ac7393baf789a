// The toolkit's text codecs by name, safe to use where a panel lacks one.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTextCodec>

namespace panelkit {

// `length` bytes, NULs included, as text; nothing for a null pointer, a length below 1 or an unknown codec.
inline QString decoded(const char *codecName, const char *data, int length)
{
    const QTextCodec *codec = QTextCodec::codecForName(codecName);
    return codec == nullptr || data == nullptr || length <= 0 ? QString() : codec->toUnicode(data, length);
}

// `text` as bytes; none for an unknown codec.
inline QByteArray encoded(const char *codecName, const QString &text)
{
    const QTextCodec *codec = QTextCodec::codecForName(codecName);
    return codec == nullptr ? QByteArray() : codec->fromUnicode(text);
}

} // namespace panelkit
