#include "export/tableexport.h"

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

// As a text stream does it: the locale's codec stands in for a missing one.
QTextCodec *exportCodec()
{
    QTextCodec *codec = QTextCodec::codecForName("GBK");
    return codec != nullptr ? codec : QTextCodec::codecForLocale();
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

void tools_exportToCsv(const QStringList &header, const QList<QStringList> &rows, const QString &path,
                       int append)
{
    QFile file(path);
    const QIODevice::OpenMode mode = append != 0 ? QIODevice::Append : QIODevice::Truncate;
    // An empty path is refused here because the toolkit would print a warning about it.
    if (path.isEmpty() || !file.open(QIODevice::WriteOnly | QIODevice::Text | QIODevice::Unbuffered | mode))
        return;

    panelkit::EncodedWriter writer(exportCodec(), &file);
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

void tools_exportToPdf(const QStringList &header, const QList<QStringList> &rows, const QString &path)
{
    // Without a file name the toolkit would print the table on the system's default printer.
    if (!path.isEmpty()) {
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
