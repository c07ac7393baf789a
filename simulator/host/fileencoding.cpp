#include "simulator/host/fileencoding.h"

#include "register/textencoding.h"

#include <QFile>
#include <QFileInfo>
#include <QTextCodec>

namespace panelkit::simulator {

namespace {

struct KnownEncoding
{
    const char *name;
    const char *codecName;
    const char *reason;
};

// By code.
const KnownEncoding knownEncodings[] = {
    {"local (GBK on a panel)", "GBK", ""},
    {"UTF-16, little-endian", "UTF-16LE", "the mark FF FE"},
    {"UTF-16, big-endian", "UTF-16BE", "the mark FE FF"},
    {"UTF-8", "UTF-8", "no mark, and all bytes are UTF-8"},
    {"UTF-8 with a mark", "UTF-8", "the mark EF BB BF"},
};

// Says where a file without a mark stops being UTF-8.
QString whyLocal(QFile &file)
{
    if (file.size() < 4)
        return QStringLiteral("only %1 of the 4 bytes that it takes to tell").arg(file.size());
    const QTextCodec *codec = QTextCodec::codecForName("UTF-8");
    QTextCodec::ConverterState state;
    char byte = 0;
    qint64 character = 0; // where the one being decoded begins
    char lead = 0;
    for (qint64 position = 0; file.getChar(&byte); ++position) {
        if (state.remainingChars == 0) {
            character = position;
            lead = byte;
        }
        codec->toUnicode(&byte, 1, &state);
        if (state.invalidChars > 0)
            break;
    }
    const QString hex = QString::number(static_cast<quint8>(lead), 16).toUpper();
    return QStringLiteral("no mark, and the byte %1 at offset %2 begins no UTF-8 character")
        .arg(hex)
        .arg(character);
}

// To its end: what looks for the encoding takes a fault for the end.
bool isReadable(QFile &file)
{
    QByteArray block(64 * 1024, '\0');
    qint64 length = 0;
    do
        length = file.read(block.data(), block.size());
    while (length > 0);
    return length == 0 && file.error() == QFileDevice::NoError && file.seek(0);
}

} // namespace

std::optional<FileEncoding> fileEncoding(const QString &path, QString &error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("%1: %2: name a file that can be read").arg(path, file.errorString());
        return std::nullopt;
    }
    if (!QFileInfo(path).isFile()) {
        error = QStringLiteral("%1: this is no regular file: copy it into one").arg(path);
        return std::nullopt;
    }
    if (!isReadable(file)) {
        error = QStringLiteral("%1: %2: name a file that can be read").arg(path, file.errorString());
        return std::nullopt;
    }
    const int code = FileCharacterEncoding(path);
    const KnownEncoding &known = knownEncodings[code];
    return FileEncoding{code, QString::fromLatin1(known.name), known.codecName,
                        code == 0 ? whyLocal(file) : QString::fromLatin1(known.reason)};
}

} // namespace panelkit::simulator
