#include "simulator/soak/pdfroad.h"

#include "simulator/host/tablefile.h"
#include "simulator/platform/systembase.h"
#include "simulator/soak/chance.h"
#include "simulator/soak/fulldisk.h"
#include "simulator/soak/inifile.h"

#include <QFile>
#include <QtEndian>

#include <optional>

namespace panelkit::simulator {

namespace {

constexpr int linesOfFirstPage = 80;
constexpr int linesOfFurtherPage = 81;

int pageCount(int lines)
{
    return lines <= linesOfFirstPage
               ? 1
               : 1 + (lines - linesOfFirstPage + linesOfFurtherPage - 1) / linesOfFurtherPage;
}

// How many texts are drawn on the pages of a PDF file as the toolkit writes it.
int drawnTexts(const QByteArray &file)
{
    const QByteArray begin = "stream\n";
    const QByteArray behind = "\nendstream\n";
    int count = 0;
    for (auto at = file.indexOf(begin); at >= 0; at = file.indexOf(begin, at)) {
        at += begin.size();
        const auto end = file.indexOf(behind, at);
        const QByteArray packed = file.mid(at, end - at);
        QByteArray size(4, '\0'); // a guess of the size goes ahead
        qToBigEndian<quint32>(static_cast<quint32>(packed.size()) * 8, size.data());
        const QByteArray content = packed.startsWith('\x78') ? qUncompress(size + packed) : packed;
        count += static_cast<int>(content.count("BT\n"));
        if (end < 0)
            break;
        at = end + behind.size();
    }
    return count;
}

} // namespace

void PdfRoad::act(Chance &chance)
{
    Table table;
    table.header << QStringLiteral("Number,Item,Value");
    const int rows = chance.oneIn(3) ? chance.between(78, 82) : chance.between(0, 400);
    for (int i = 0; i < rows; ++i)
        table.rows << QStringList{QString::number(i), QStringLiteral("Tank"),
                                  QString::number(chance.between(0, 9999))};
    const bool isDiskFull = chance.oneIn(3);
    const auto room = static_cast<rlim_t>(chance.between(0, 20000));
    QString error;
    bool isWritten = false;
    ask();
    {
        std::optional<FullDisk> disk;
        if (isDiskFull)
            disk.emplace(room);
        isWritten = exportPdf(table, path(), error);
    }
    settle(isWritten);
    clearRecordedCommands();
    if (isWritten)
        judgeFile(rows + 1);
    else if (!isDiskFull || error.isEmpty())
        lose(QStringLiteral("%1 rows were refused without a reason").arg(rows));
    QFile::remove(path());
}

void PdfRoad::judgeFile(int lines)
{
    const QByteArray file = fileBytes(path());
    const int pages = static_cast<int>(file.count("/Type /Page\n"));
    const int texts = drawnTexts(file);
    if (pages != pageCount(lines) || texts != lines)
        lose(
            QStringLiteral("a file of %1 lines has %2 pages with %3 texts").arg(lines).arg(pages).arg(texts));
}

} // namespace panelkit::simulator
