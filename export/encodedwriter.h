// Text written to a device in the encoding of a codec, as a QTextStream writes it, without an allocation a
// text.
#pragma once

#include <QString>
#include <QTextCodec>

#include <vector>

class QIODevice;

namespace panelkit {

// The bytes of a character are asked of the codec once and looked up from then on. The codec must leave ASCII
// as it is and give a character the same bytes wherever it stands, as those of the East Asian text encodings
// do. What takes more than two bytes, and what lies beyond the first 65,536 characters, is asked of the codec
// each time.
//
// After a write that the device refuses, nothing more is written.
class EncodedWriter
{
public:
    // The codec and the device, open for writing, must outlive the writer.
    EncodedWriter(QTextCodec *codec, QIODevice *device);
    EncodedWriter(const EncodedWriter &) = delete;
    EncodedWriter &operator=(const EncodedWriter &) = delete;
    ~EncodedWriter() { flush(); }

    // A surrogate pair must not be spread over two texts.
    void write(const QString &text);
    void write(char ascii)
    {
        if (m_used == bufferSize)
            flush();
        m_buffer[static_cast<std::size_t>(m_used++)] = ascii;
    }
    void flush();

private:
    static const int bufferSize = 80 * 1024;

    const QChar *writeLookedUp(const QChar *from, const QChar *to);
    const QChar *writeEncoded(const QChar *from, const QChar *end);

    QTextEncoder m_encoder;
    QIODevice *m_device;
    std::vector<quint16> m_table; // by UTF-16 code unit
    std::vector<char> m_buffer;
    int m_used = 0;
    bool m_refused = false;
};

} // namespace panelkit
