#include "export/encodedwriter.h"

#include <QIODevice>

#include <algorithm>
#include <cstddef>

namespace panelkit {

namespace {

// An entry of the table is the two bytes of a character, the first of them not ASCII, or one of these.
enum TableEntry : quint16
{
    NotAskedYet = 0,
    OneByte = 0x0100, // which is in the low half
    NoByte = 0x0200,
    AskEachTime = 0x0300,
    TwoBytes = 0x8000 // from here on
};

const int bufferSize = 32 * 1024;
const std::size_t tableSize = 0x10000;

quint16 tableEntry(const QByteArray &bytes)
{
    const auto byte = [&bytes](int i) {
        return static_cast<quint8>(bytes.at(i));
    };
    if (bytes.isEmpty())
        return NoByte;
    if (bytes.size() == 1)
        return static_cast<quint16>(OneByte | byte(0));
    if (bytes.size() == 2 && byte(0) >= 0x80)
        return static_cast<quint16>(byte(0) << 8 | byte(1));
    return AskEachTime;
}

} // namespace

EncodedWriter::EncodedWriter(QTextCodec *codec, QIODevice *device)
    : m_encoder(codec, QTextCodec::IgnoreHeader),
      m_device(device),
      m_table(tableSize, NotAskedYet),
      m_buffer(bufferSize)
{
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

void EncodedWriter::write(char ascii)
{
    if (m_used == bufferSize)
        flush();
    m_buffer[static_cast<std::size_t>(m_used++)] = ascii;
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
    char *out = m_buffer.data() + m_used;
    for (; from != to; ++from) {
        const quint16 entry = m_table[from->unicode()];
        if (entry >= TwoBytes) {
            *out++ = static_cast<char>(entry >> 8);
            *out++ = static_cast<char>(entry & 0xFF);
        } else if (entry < NoByte && entry != NotAskedYet) {
            *out++ = static_cast<char>(entry & 0xFF);
        } else if (entry != NoByte) {
            break;
        }
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
    if (!from->isSurrogate())
        m_table[from->unicode()] = tableEntry(bytes);
    for (const char byte : bytes)
        write(byte);
    return from + (isPair ? 2 : 1);
}

} // namespace panelkit
