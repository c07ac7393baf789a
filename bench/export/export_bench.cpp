// What it costs to write and read tables, and to recognise a file's encoding.

#include "bench/export/peakmemory.h"
#include "bench/support/comparison.h"
#include "export/helpcsv.h"
#include "export/tableexport.h"
#include "register/textencoding.h"
#include "tests/export/plaincsv.h"
#include "tests/export/plainexport.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPageSize>
#include <QPainter>
#include <QPrinter>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <ctime>

using namespace panelkit::bench;
using namespace panelkit::testing;

namespace {

using Table = QList<QStringList>;

const QStringList header = {QString::fromUtf8("时间,编号,名称,内容,数值,单位,操作员,备注")};

// A log as a panel keeps it.
Table logTable(int rows)
{
    Table table;
    for (int i = 0; i < rows; ++i)
        table << QStringList{QStringLiteral("2026-01-02 10:%1:12").arg(i % 60, 2, 10, QLatin1Char('0')),
                             QString::number(i),
                             QString::fromUtf8("灌装机%1号").arg(i % 7),
                             QString::fromUtf8(i % 9 == 0 ? "压力过高，请检查阀门" : "温度正常"),
                             QString::number(i % 1000 * 0.25),
                             QStringLiteral("kPa"),
                             QStringLiteral("operator %1").arg(i % 3),
                             QString::fromUtf8("班次 %1").arg(i % 3)};
    return table;
}

// Records with a quoted field each.
Table recordTable()
{
    Table table = logTable(64);
    for (QStringList &fields : table)
        fields[3] = QStringLiteral("pressure \"high\", valve ") + fields.at(1);
    return table;
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void fill(const QString &path, const QByteArray &line, qint64 size)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(line.repeated(static_cast<int>(size / line.size())));
}

// As one would write it: the lines first, then their drawing.
void plainExportToPdf(const QStringList &titles, const Table &rows, const QString &path)
{
    QPrinter printer(QPrinter::ScreenResolution);
    printer.setResolution(300);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    QPainter painter(&printer);
    painter.setRenderHint(QPainter::TextAntialiasing);
    QFont font(QStringLiteral("SimSun"));
    font.setPixelSize(24); // up to 8 columns
    painter.setFont(font);

    const int columns = static_cast<int>(titles.first().split(QLatin1Char(',')).size());
    const int character = painter.fontMetrics().boundingRect(QLatin1Char('A')).width();
    const int page = printer.pageRect(QPrinter::DevicePixel).toRect().width();
    const int width = qMax((page / character - 32) / columns, 0);
    Table all;
    for (const QString &entry : titles)
        all << entry.split(QLatin1Char(','));
    all << rows;
    QStringList lines;
    for (const QStringList &cells : std::as_const(all)) {
        QString line;
        for (const QString &cell : cells)
            line += QStringLiteral("%1").arg(cell, -width, QLatin1Char(' '));
        lines << line;
    }
    for (int i = 0; i < lines.size(); ++i) {
        const int row = i == 0 ? 1 : (i + 1) % 81;
        if (row == 0)
            printer.newPage();
        painter.drawText(10, (row + 1) * 40, lines.at(i));
    }
}

int plainEncoding(const QString &path)
{
    const QByteArray bytes = contents(path);
    if (bytes.size() < 4)
        return 0;
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("utf-8")->toUnicode(bytes.constData(), static_cast<int>(bytes.size()), &state);
    return state.invalidChars == 0 ? 3 : 0;
}

QByteArray withoutDate(QByteArray pdf)
{
    const int start = static_cast<int>(pdf.indexOf("/CreationDate"));
    return start < 0 ? pdf : pdf.replace(start, static_cast<int>(pdf.indexOf(')', start)) - start, "");
}

// The next of a list, again and again.
template <typename Input, typename Answer>
auto onEach(const QList<Input> &inputs, Answer (*function)(const Input &))
{
    return [inputs, function, position = 0](Answer &answer) mutable {
        answer = function(inputs.at(position));
        position = (position + 1) % static_cast<int>(inputs.size());
    };
}

double cpuSeconds()
{
    timespec now = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

template <typename Job>
void printThroughput(const char *name, const QString &path, const Job &job)
{
    double best = 1e9;
    for (int i = 0; i < 5; ++i) {
        const double start = cpuSeconds();
        job();
        best = qMin(best, cpuSeconds() - start);
    }
    const double megabytes = static_cast<double>(QFileInfo(path).size()) / 1e6;
    std::printf("%-34s %8.0f MB/s %8ld KB\n", name, megabytes / best, peakGrowth(job));
}

} // namespace

int main(int argc, char **argv)
{
    for (const auto &[name, value] :
         {std::pair("QT_QPA_PLATFORM", "offscreen"), {"FONTCONFIG_FILE", PANELKIT_TEST_FONTS}})
        if (!qEnvironmentVariableIsSet(name))
            qputenv(name, value);
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    const QString ours = folder.filePath(QStringLiteral("ours"));
    const QString plain = folder.filePath(QStringLiteral("plain"));
    const QString utf8 = folder.filePath(QStringLiteral("utf8"));
    const QString gbk = folder.filePath(QStringLiteral("gbk"));
    fill(utf8, "灌装机1号：温度过高，请检查阀门 23.5\n", 10 << 20);
    fill(gbk,
         "\xB9\xE0\xD7\xB0\xBB\xFA"
         "1, 23.5\n",
         10 << 20);
    const Table table = logTable(200000);
    const Table pages = logTable(10000);
    const Table records = recordTable();
    QStringList lines;
    for (const QStringList &fields : records)
        lines << helpCSV::toCsvStringLine(fields);

    const auto plainCsv = [&] {
        plainExportToCsv(header, table, plain);
    };
    const auto ourCsv = [&] {
        tools_exportToCsv(header, table, ours, 0);
    };
    compare<QByteArray>(
        {"CSV, 200,000 rows of 8", 2.5, -1, 1}, [&](QByteArray &) { plainCsv(); },
        [&](QByteArray &) { ourCsv(); });
    compare<QStringList>({"CSV line to 8 fields", 1.9, 9}, onEach(QList<QString>(lines), plainCsvFields),
                         onEach(QList<QString>(lines), helpCSV::fromCsvLine));
    compare<QString>({"8 fields to a CSV line", 8, 1}, onEach(records, plainCsvLine),
                     onEach(records, helpCSV::toCsvStringLine));
    const auto plainUtf8 = [&](int &code) {
        code = plainEncoding(utf8);
    };
    const auto ourUtf8 = [&](int &code) {
        code = FileCharacterEncoding(utf8);
    };
    compare<int>({"encoding of 10 MB of UTF-8", 2, -1, 2}, plainUtf8, ourUtf8);
    compare<int>(
        {"encoding of 10 MB of GBK", 100, -1, 2}, [&](int &code) { code = plainEncoding(gbk); },
        [&](int &code) { code = FileCharacterEncoding(gbk); });
    const QString ourPdf = ours + QStringLiteral(".pdf");
    const QString plainPdf = plain + QStringLiteral(".pdf");
    compare<int>(
        {"PDF of 10,000 lines", 1, -1, 1}, [&](int &) { plainExportToPdf(header, pages, plainPdf); },
        [&](int &) { tools_exportToPdf(header, pages, ourPdf); });

    bool isSame = true;
    if (contents(ours) != contents(plain) || contents(ours).isEmpty())
        isSame = (std::fprintf(stderr, "the CSV files differ\n"), false);
    if (withoutDate(contents(ourPdf)) != withoutDate(contents(plainPdf)) || contents(ourPdf).isEmpty())
        isSame = (std::fprintf(stderr, "the PDF files differ\n"), false);
    const int result = run(argc, argv);

    std::printf("\nThroughput, and the most memory that a call takes beside its input\n\n");
    int code = 0;
    printThroughput("CSV, 200,000 rows of 8, plain", plain, plainCsv);
    printThroughput("CSV, 200,000 rows of 8, ours", ours, ourCsv);
    printThroughput("encoding of 10 MB of UTF-8, plain", utf8, [&] { plainUtf8(code); });
    printThroughput("encoding of 10 MB of UTF-8, ours", utf8, [&] { ourUtf8(code); });
    return isSame ? result : 1;
}
