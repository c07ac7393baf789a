#include "simulator/host/tablefile.h"

#include "export/helpcsv.h"
#include "export/tableexport.h"
#include "simulator/host/fileencoding.h"
#include "simulator/host/itemdisplay.h"
#include "simulator/host/session.h"

#include <QFile>
#include <QFileInfo>
#include <QTextCodec>

namespace panelkit::simulator {

namespace {

// Makes the file where there is none, so that what stands against it can be told.
bool canBeWritten(const QString &path, QString &error)
{
    QFile file(path);
    const bool keep = QFileInfo(path).isFile();
    if (file.open(QIODevice::WriteOnly | (keep ? QIODevice::Append : QIODevice::NotOpen)))
        return true;
    error = QStringLiteral("%1: %2: name a file that can be written").arg(path, file.errorString());
    return false;
}

bool isWhole(bool whole, const QString &path, QString &error)
{
    // Nothing can be told of what a device or a pipe has taken.
    if (whole || !QFileInfo(path).isFile())
        return true;
    error = QStringLiteral("%1: the file is not whole: free some space or name another file").arg(path);
    return false;
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
    const auto encoding = fileEncoding(path, error);
    if (!encoding)
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    QString text = QTextCodec::codecForName(encoding->codecName)->toUnicode(file.readAll());
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
    if (!canBeWritten(path, error))
        return false;
    const qint64 kept = append ? QFileInfo(path).size() : 0;
    tools_exportToCsv(table.header, table.rows, path, append ? 1 : 0);
    return isWhole(QFileInfo(path).size() == kept + sizeInGbk(table, !append), path, error);
}

bool exportPdf(const Table &table, const QString &path, QString &error)
{
    if (!canBeWritten(path, error))
        return false;
    tools_exportToPdf(table.header, table.rows, path);
    QFile file(path);
    const bool isRead = file.open(QIODevice::ReadOnly) && file.seek(qMax<qint64>(file.size() - 16, 0));
    return isWhole(isRead && file.readAll().trimmed().endsWith("%%EOF"), path, error);
}

} // namespace panelkit::simulator
