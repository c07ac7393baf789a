#include "export/tableexport.h"

#include "export/csvfile.h"
#include "export/encodedwriter.h"
#include "export/tablelayout.h"
#include "platform/qtcompat.h"
#include "platform/sys_base.h"

#include <QFile>
#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QPrinter>
#include <QTextCodec>

namespace {

// The system would take a path with a NUL in it for the file that its begin names. An empty one makes the
// toolkit print a warning, or the table on the system's default printer.
bool namesAFile(const QString &path)
{
    return !path.isEmpty() && !path.contains(QLatin1Char('\0'));
}

void writeRow(panelkit::EncodedWriter &writer, const QStringList &cells)
{
    bool isFirst = true;
    for (const QString &cell : cells) {
        if (!isFirst)
            writer.write(',');
        isFirst = false;
        writer.write(cell);
    }
    writer.write('\n');
}

QFont tableFont(int columns)
{
    QFont font(QLatin1String("SimSun"));
    font.setPixelSize(panelkit::fontPixelSize(columns));
    font.setWeight(QFont::Normal);
    font.setStyle(QFont::StyleNormal);
    return font;
}

void drawTable(QPrinter &printer, const QStringList &header, const QList<QStringList> &rows)
{
    const int columns = panelkit::columnCount(header);
    const QFont font = tableFont(columns);
    const int characterWidth = QFontMetrics(font, &printer).boundingRect(QLatin1Char('A')).width();
    const int pageWidth = printer.pageRect(QPrinter::DevicePixel).toRect().width();
    const int width = panelkit::columnCharacters(pageWidth, characterWidth, columns);

    QPainter painter;
    if (!painter.begin(&printer))
        return;
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(font);

    panelkit::LinePlaces places;
    const auto drawLine = [&](const QString &line) {
        if (places.next())
            printer.newPage();
        const int left = 10; // pixels
        painter.drawText(left, places.baseline(), line);
    };
    QString line;
    for (const QString &entry : header) {
        panelkit::layOutHeader(entry, width, line);
        drawLine(line);
    }
    for (const QStringList &cells : rows) {
        panelkit::layOutRow(cells, width, line);
        drawLine(line);
    }
}

} // namespace

void panelkit::exportToCsv(const QStringList &header, const QList<QStringList> &rows, const QString &path,
                           int append, QTextCodec *codec)
{
    QFile file(path);
    const QIODevice::OpenMode mode = append != 0 ? QIODevice::Append : QIODevice::Truncate;
    if (!namesAFile(path) ||
        !file.open(QIODevice::WriteOnly | QIODevice::Text | QIODevice::Unbuffered | mode))
        return;

    // As a text stream does it: the locale's codec stands in for a missing one.
    EncodedWriter writer(codec != nullptr ? codec : QTextCodec::codecForLocale(), &file);
    if (append == 0) {
        for (const QString &entry : header) {
            writer.write(entry);
            writer.write('\n');
        }
    }
    for (const QStringList &cells : rows)
        writeRow(writer, cells);
    writer.flush();
    file.close();
    sys_base_do_system("sync");
}

void tools_exportToCsv(const QStringList &header, const QList<QStringList> &rows, const QString &path,
                       int append)
{
    panelkit::exportToCsv(header, rows, path, append, QTextCodec::codecForName("GBK"));
}

void tools_exportToPdf(const QStringList &header, const QList<QStringList> &rows, const QString &path)
{
    if (namesAFile(path)) {
        QPrinter printer(QPrinter::ScreenResolution);
        printer.setResolution(300); // dots per inch
        panelkit::setPageSizeA4(printer);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(path);
        drawTable(printer, header, rows);
    }
    sys_base_do_system("sync");
}

DataContent tools_strList2DataContent(const QStringList &fields, const QString &name)
{
    DataContent record;
    if (fields.size() < 3)
        return record;
    record.name = name;
    const QLatin1Char blank(' ');
    const QString &dateAndTime = fields.at(1);
    if (dateAndTime.count(blank) == 1) {
        const auto position = dateAndTime.indexOf(blank);
        record.date = dateAndTime.left(position);
        record.time = dateAndTime.mid(position + 1);
    }
    record.content = fields.at(2);
    return record;
}
