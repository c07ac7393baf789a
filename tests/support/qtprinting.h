// How GoogleTest prints the toolkit's texts. Every source of every test begins with this header
// (panelkit_add_test sees to it): a type must print alike everywhere in a program.
#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

inline void PrintTo(const QString &text, std::ostream *stream)
{
    if (text.isNull())
        *stream << "a null text";
    else
        *stream << '"' << text.toStdString() << '"';
}

// Bytes beyond ASCII, and controls, as in a C literal.
inline void PrintTo(const QByteArray &bytes, std::ostream *stream)
{
    *stream << '"';
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code >= 0x20 && code < 0x7F)
            *stream << byte;
        else
            *stream << "\\x"
                    << "0123456789abcdef"[code >> 4] << "0123456789abcdef"[code & 15];
    }
    *stream << '"';
}
