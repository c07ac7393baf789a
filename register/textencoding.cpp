#include "register/textencoding.h"

#include "register/namedcodec.h"
#include "register/utf8recogniser.h"

#include <QFile>

#include <cstring>
#include <vector>

namespace {

const std::size_t blockSize = 64UL * 1024;

// Whether `file`, of which `block` already holds the first `length` bytes, is UTF-8.
bool isUtf8(QFile &file, std::vector<char> &block, std::size_t length)
{
    panelkit::Utf8Recogniser recogniser;
    for (;;) {
        const std::size_t kept = recogniser.look(block.data(), length);
        if (!recogniser.isValid())
            return false;
        std::memmove(block.data(), block.data() + length - kept, kept);
        const qint64 read = file.read(block.data() + kept, static_cast<qint64>(blockSize - kept));
        if (read <= 0) {
            recogniser.finish(block.data(), kept);
            return recogniser.isValid();
        }
        length = kept + static_cast<std::size_t>(read);
    }
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

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
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
    const qint64 length = file.read(block.data(), static_cast<qint64>(blockSize));
    if (length < 4)
        return 0;
    const QByteArray start = QByteArray::fromRawData(block.data(), 4);
    if (start.startsWith("\xFF\xFE"))
        return 1;
    if (start.startsWith("\xFE\xFF"))
        return 2;
    if (start.startsWith("\xEF\xBB\xBF"))
        return 4;
    return isUtf8(file, block, static_cast<std::size_t>(length)) ? 3 : 0;
}
