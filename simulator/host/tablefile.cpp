#include "simulator/host/tablefile.h"

#include "export/helpcsv.h"
#include "export/tableexport.h"
#include "simulator/host/fileencoding.h"
#include "simulator/host/filereplacement.h"
#include "simulator/host/itemdisplay.h"
#include "simulator/host/session.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QTextCodec>

namespace panelkit::simulator {

namespace {

constexpr int blockSize = 64 * 1024;

bool canBeAppendedTo(const QString &path, QString &error)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Append))
        return true;
    error = QStringLiteral("%1: %2: name a file that can be written").arg(path, file.errorString());
    return false;
}

QString notWhole(const QString &path)
{
    return QStringLiteral("%1: the file is not whole: free some space or name another file").arg(path);
}

qint64 sizeInGbk(const Table &table, bool withHeader)
{
    const QTextCodec *gbk = QTextCodec::codecForName("GBK");
    // With its line feed: a codec keeps half a character at the end back for ever.
    const auto lineSize = [gbk](const QString &line) {
        return gbk->fromUnicode(line + QLatin1Char('\n')).size();
    };
    qint64 size = 0;
    if (withHeader)
        for (const QString &line : table.header)
            size += lineSize(line);
    for (const QStringList &cells : table.rows)
        size += lineSize(cells.join(QLatin1Char(',')));
    return size;
}

// Nothing can be told of what a device or a pipe has taken.
bool appendToCsv(const Table &table, const QString &path, QString &error)
{
    if (!canBeAppendedTo(path, error))
        return false;
    const qint64 kept = QFileInfo(path).size();
    tools_exportToCsv(table.header, table.rows, path, 1);
    const QFileInfo file(path);
    if (!file.isFile() || file.size() == kept + sizeInGbk(table, false))
        return true;
    error = notWhole(path);
    return false;
}

bool endsAsPdf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.seek(qMax<qint64>(file.size() - 16, 0)) &&
           file.readAll().trimmed().endsWith("%%EOF");
}

// All that can be read there, at once: a pipe gives it only once.
std::optional<QByteArray> readContent(const QString &path, QString &error)
{
    QFile file(path);
    QByteArray content;
    if (file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        QByteArray block(blockSize, '\0');
        qint64 length = 0;
        while (content.size() <= largestTableFile && (length = file.read(block.data(), blockSize)) > 0)
            content.append(block.constData(), static_cast<int>(length));
    }
    if (content.size() > largestTableFile)
        error = QStringLiteral("%1: larger than the %2 MiB that a table may have: split it")
                    .arg(path)
                    .arg(largestTableFile / 1024 / 1024);
    else if (file.error() != QFileDevice::NoError)
        error = QStringLiteral("%1: %2: name a file that can be read").arg(path, file.errorString());
    else
        return content;
    return std::nullopt;
}

// Of what was read there. What is no file was read for good: a copy of it is looked at.
std::optional<FileEncoding> encodingOf(const QString &path, const QByteArray &content, QString &error)
{
    if (QFileInfo(path).isFile())
        return fileEncoding(path, error);
    QTemporaryFile copy;
    if (copy.open() && copy.write(content) == content.size() && copy.flush())
        return fileEncoding(copy.fileName(), error);
    error = QStringLiteral("no temporary file can be written in %1 (%2): free some space there")
                .arg(QDir::tempPath(), copy.errorString());
    return std::nullopt;
}

} // namespace

Table itemTable(const Session &session, const std::vector<ItemDisplay> &displays, const QDateTime &time)
{
    Table table;
    table.header << QStringLiteral("Time,Item,Address,Value");
    const QString timeText = time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    for (std::size_t i = 0; i < displays.size(); ++i)
        table.rows << QStringList{timeText, session.project().items.at(i).name, displays[i].address,
                                  displays[i].isCurrent ? displays[i].text : QString()};
    return table;
}

std::optional<Table> readTable(const QString &path, QString &error)
{
    const auto content = readContent(path, error);
    const auto encoding = content ? encodingOf(path, *content, error) : std::nullopt;
    if (!encoding)
        return std::nullopt;
    QString text = QTextCodec::codecForName(encoding->codecName)->toUnicode(*content);
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);

    Table table;
    if (text.isEmpty())
        return table;
    const QStringList lines = text.split(QLatin1Char('\n'));
    table.header << lines.first();
    for (const QString &line : lines.mid(1))
        table.rows << helpCSV::fromCsvLine(line);
    return table;
}

QString freeFile(const QString &folder, const QString &name, const QString &suffix)
{
    QString path = QStringLiteral("%1/%2.%3").arg(folder, name, suffix);
    for (int number = 2; QFileInfo::exists(path) || QFileInfo(path).isSymLink(); ++number)
        path = QStringLiteral("%1/%2-%3.%4").arg(folder, name, QString::number(number), suffix);
    return path;
}

bool exportCsv(const Table &table, const QString &path, bool append, QString &error)
{
    if (append)
        return appendToCsv(table, path, error);
    FileReplacement file(path);
    if (!file.begin(error))
        return false;
    tools_exportToCsv(table.header, table.rows, file.workPath(), 0);
    if (QFileInfo(file.workPath()).size() == sizeInGbk(table, true))
        return file.finish(error);
    error = notWhole(path);
    return false;
}

bool exportPdf(const Table &table, const QString &path, QString &error)
{
    FileReplacement file(path);
    if (!file.begin(error))
        return false;
    tools_exportToPdf(table.header, table.rows, file.workPath());
    if (endsAsPdf(file.workPath()))
        return file.finish(error);
    error = notWhole(path);
    return false;
}

} // namespace panelkit::simulator
