#include "export/encodedwriter.h"

#include <QIODevice>

#include <algorithm>
#include <cstddef>

namespace panelkit {

namespace {

// An entry of the table holds the bytes of a character as they follow each other: one of ASCII and a zero, or
// two of which the first is not ASCII. This one says that only the codec knows them.
const quint16 askCodec = 1;

const std::size_t tableSize = 0x10000;

quint16 tableEntry(const QByteArray &bytes)
{
    const auto byte = [&bytes](int i) {
        return static_cast<quint8>(bytes.at(i));
    };
    if (bytes.size() == 1 && byte(0) < 0x80)
        return static_cast<quint16>(byte(0) << 8);
    if (bytes.size() == 2 && byte(0) >= 0x80)
        return static_cast<quint16>(byte(0) << 8 | byte(1));
    return askCodec;
}

bool areAscii(const QChar *four)
{
    return (four[0].unicode() | four[1].unicode() | four[2].unicode() | four[3].unicode()) < 0x80;
}

} // namespace

EncodedWriter::EncodedWriter(QTextCodec *codec, QIODevice *device)
    : m_encoder(codec, QTextCodec::IgnoreHeader),
      m_device(device),
      m_table(tableSize, askCodec),
      m_buffer(bufferSize)
{
    for (std::size_t ascii = 0; ascii < 0x80; ++ascii)
        m_table[ascii] = static_cast<quint16>(ascii << 8);
}

void EncodedWriter::write(const QString &text)
{
    const QChar *from = text.constData();
    const QChar *const end = from + text.size();
    while (from != end) {
        if (bufferSize - m_used < 2)
            flush();
        const QChar *to = from + std::min<std::ptrdiff_t>(end - from, (bufferSize - m_used) / 2);
        from = writeLookedUp(from, to);
        if (from != to)
            from = writeEncoded(from, end);
    }
}

void EncodedWriter::flush()
{
    if (m_used > 0 && !m_refused)
        m_refused = m_device->write(m_buffer.data(), m_used) != m_used;
    m_used = 0;
}

// Writes the characters from `from` on, for which the buffer has room, up to the first that is not in the
// table.
const QChar *EncodedWriter::writeLookedUp(const QChar *from, const QChar *to)
{
    const quint16 *const table = m_table.data(); // not read anew after each byte
    char *out = m_buffer.data() + m_used;
    while (from != to) {
        if (to - from >= 4 && areAscii(from)) {
            for (int i = 0; i < 4; ++i)
                out[i] = static_cast<char>(from[i].unicode());
            out += 4;
            from += 4;
            continue;
        }
        const quint16 entry = table[from->unicode()];
        if (entry == askCodec)
            break;
        out[0] = static_cast<char>(entry >> 8);
        out[1] = static_cast<char>(entry & 0xFF);
        out += entry < 0x8000 ? 1 : 2;
        ++from;
    }
    m_used = static_cast<int>(out - m_buffer.data());
    return from;
}

// Writes the one character at `from` through the codec and enters it in the table.
const QChar *EncodedWriter::writeEncoded(const QChar *from, const QChar *end)
{
    const bool isPair = from->isHighSurrogate() && from + 1 != end && from[1].isLowSurrogate();
    // A codec may hold a character back until it sees the next; a line feed makes it let go.
    const QChar text[] = {from[0], isPair ? from[1] : QChar(QLatin1Char('\n')), QLatin1Char('\n')};
    QByteArray bytes = m_encoder.fromUnicode(text, isPair ? 3 : 2);
    bytes.chop(1);
    if (!from->isHighSurrogate() && !from->isLowSurrogate())
        m_table[from->unicode()] = tableEntry(bytes);
    for (const char byte : bytes)
        write(byte);
    return from + (isPair ? 2 : 1);
}

} // namespace panelkit
