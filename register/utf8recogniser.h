// Whether a file is UTF-8, told block by block.
#pragma once

#include <QTextCodec>

#include <cstddef>

namespace panelkit {

// The verdict is that of the toolkit's codec, decoding all blocks in one go: whether it finds no invalid
// character. Most bytes are UTF-8 beyond doubt and need not be decoded; from the first doubt on the codec
// decodes the rest. Without a codec nothing is valid.
class Utf8Recogniser
{
public:
    // Looks at a block. The next one must begin with as many bytes of the end of this one as are returned,
    // fewer than 4: a character that goes on there.
    std::size_t look(const char *bytes, std::size_t length);

    // Looks at the bytes that the last block left over. An unfinished character at the end of a file is
    // valid.
    void finish(const char *bytes, std::size_t length);

    // Whether all is valid so far.
    bool isValid() const;

private:
    void decode(const char *bytes, std::size_t length);

    const QTextCodec *m_codec = QTextCodec::codecForName("utf-8");
    QTextCodec::ConverterState m_state;
    bool m_inDoubt = false;
};

} // namespace panelkit
