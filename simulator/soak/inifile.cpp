#include "simulator/soak/inifile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace panelkit::simulator {

IniValues iniValues(const QByteArray &file)
{
    IniValues values;
    QString section;
    for (const QByteArray &line : file.split('\n')) {
        const QByteArray text = line.trimmed();
        const auto sign = text.indexOf('=');
        if (text.startsWith('[') && text.endsWith(']'))
            section = QString::fromLatin1(text.mid(1, text.size() - 2));
        else if (sign > 0)
            values.insert(section + QLatin1Char('/') + QString::fromLatin1(text.left(sign)),
                          QString::fromLatin1(text.mid(sign + 1)));
    }
    return values;
}

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool replaceFile(const QString &path, const QByteArray &content)
{
    const QString fresh = path + QLatin1String(".fresh");
    {
        QFile file(fresh);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
            return false;
        // The toolkit takes a file of the same size and the same millisecond for the one that it has read.
        const QDateTime earlier = QFileInfo(path).lastModified();
        if (QFileInfo::exists(path) && file.fileTime(QFileDevice::FileModificationTime) <= earlier)
            file.setFileTime(earlier.addMSecs(1), QFileDevice::FileModificationTime);
    }
    return std::rename(QFile::encodeName(fresh).constData(), QFile::encodeName(path).constData()) == 0;
}

QString difference(const IniValues &expected, const IniValues &found)
{
    for (auto value = expected.cbegin(); value != expected.cend(); ++value)
        if (found.value(value.key()) != value.value())
            return QStringLiteral("%1 is '%2' and not '%3'")
                .arg(value.key(), found.value(value.key(), QStringLiteral("missing")), value.value());
    for (auto value = found.cbegin(); value != found.cend(); ++value)
        if (!expected.contains(value.key()))
            return QStringLiteral("%1 = '%2' has come from nowhere").arg(value.key(), value.value());
    return QString();
}

} // namespace panelkit::simulator
