#include "register/textencoding.h"

#include "register/namedcodec.h"

#include <QFile>

#include <vector>

namespace {

const int blockSize = 16 * 1024;

// Whether the rest of `file`, of which `block` holds the first `length` bytes, decodes without an invalid
// character.
bool isUtf8(QFile &file, std::vector<char> &block, qint64 length)
{
    const QTextCodec *codec = QTextCodec::codecForName("utf-8");
    if (codec == nullptr)
        return false;
    QTextCodec::ConverterState state;
    for (; length > 0; length = file.read(block.data(), blockSize)) {
        codec->toUnicode(block.data(), static_cast<int>(length), &state);
        if (state.invalidChars > 0)
            return false;
    }
    return true;
}

} // namespace

QByteArray tools_gb2312ToUtf8(char *data, int len)
{
    return panelkit::encoded("UTF-8", panelkit::decoded("GB2312", data, len));
}

QByteArray tools_utf8ToGb2312(char *data, int len)
{
    return panelkit::encoded("GB2312", panelkit::decoded("UTF-8", data, len));
}

void QStringToGB2312Chars(QString text, QByteArray &out)
{
    // The local encoding of a panel is UTF-8.
    const QByteArray local = text.toLocal8Bit();
    out = panelkit::encoded("gbk",
                            panelkit::decoded("UTF-8", local.constData(), static_cast<int>(qstrlen(local))));
    out.append('\0');
}

void GB2312ToQString(QString &out, char *data, int len)
{
    out = QString::fromUtf8(tools_gb2312ToUtf8(data, len).constData());
}

int FileCharacterEncoding(const QString &path)
{
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return 0;
    std::vector<char> block(blockSize);
    const qint64 length = file.read(block.data(), blockSize);
    if (length < 4)
        return 0;
    const QByteArray start = QByteArray::fromRawData(block.data(), 4);
    if (start.startsWith("\xFF\xFE"))
        return 1;
    if (start.startsWith("\xFE\xFF"))
        return 2;
    if (start.startsWith("\xEF\xBB\xBF"))
        return 4;
    return isUtf8(file, block, length) ? 3 : 0;
}
