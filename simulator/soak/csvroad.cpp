#include "simulator/soak/csvroad.h"

#include "simulator/host/tablefile.h"
#include "simulator/platform/systembase.h"
#include "simulator/soak/chance.h"
#include "simulator/soak/fulldisk.h"
#include "simulator/soak/inifile.h"

#include <QFile>
#include <QFileInfo>

#include <iconv.h>

#include <optional>

namespace panelkit::simulator {

namespace {

const char *const header = "Number,Time,Item,Value";
constexpr qint64 largestFile = Q_INT64_C(200) * 1024;

// In GBK, by the system's converter instead of the toolkit's.
QByteArray inGbk(const QString &text)
{
    QByteArray utf8 = text.toUtf8();
    QByteArray bytes(utf8.size() * 2, '\0');
    const auto none =
        iconv_t(-1); // NOLINT(performance-no-int-to-ptr): the converter that is none, by its contract
    const iconv_t converter = iconv_open("GBK", "UTF-8");
    char *from = utf8.data();
    char *to = bytes.data();
    auto fromLeft = static_cast<std::size_t>(utf8.size());
    auto toLeft = static_cast<std::size_t>(bytes.size());
    const bool isWhole =
        converter != none && iconv(converter, &from, &fromLeft, &to, &toLeft) != static_cast<std::size_t>(-1);
    if (converter != none)
        iconv_close(converter);
    return isWhole ? bytes.left(bytes.size() - static_cast<int>(toLeft)) : QByteArray();
}

QByteArray linesOf(const QList<QStringList> &rows)
{
    QByteArray lines;
    for (const QStringList &row : rows)
        lines += inGbk(row.join(QLatin1Char(','))) + '\n';
    return lines;
}

} // namespace

void CsvRoad::endShift()
{
    judgeFile();
    beginNewFile();
}

void CsvRoad::act(Chance &chance)
{
    if (chance.oneIn(20)) {
        exportToNowhere(chance);
        return;
    }
    const QList<QStringList> rows = drawRows(chance);
    const bool isDiskFull = chance.oneIn(5);
    const qint64 room = m_expected.size() + chance.between(0, 4000);
    exportSlice(rows, isDiskFull ? room : -1);
    if (m_expected.size() > largestFile) {
        judgeFile();
        beginNewFile();
    }
}

QList<QStringList> CsvRoad::drawRows(Chance &chance)
{
    static const char *const texts[] = {"Tank level", "灌装机一号", "温度 21.50 度", "a;b\tc",
                                        "100%",       "压力过高！", " 前后空格 ",    "0.00",
                                        "NA",         "丂龥",       "'x'",           "-12.345"};
    QList<QStringList> rows;
    for (int i = chance.between(1, 60); i > 0; --i)
        rows << QStringList{QString::number(m_rowsExported + static_cast<quint64>(i)),
                            QStringLiteral("2026-01-02 03:04:05"), QString::fromUtf8(chance.of(texts)),
                            QString::fromUtf8(chance.of(texts))};
    return rows;
}

void CsvRoad::exportSlice(const QList<QStringList> &rows, qint64 room)
{
    const Table table{{QLatin1String(header)}, rows};
    const bool isFirst = m_expected.isEmpty();
    const QByteArray slice = (isFirst ? QByteArray(header) + '\n' : QByteArray()) + linesOf(rows);
    QString error;
    bool isWritten = false;
    ask();
    {
        std::optional<FullDisk> disk;
        if (room >= 0)
            disk.emplace(static_cast<rlim_t>(room));
        isWritten = exportCsv(table, path(), !isFirst, error);
    }
    settle(isWritten);
    clearRecordedCommands();
    const auto count = static_cast<quint64>(rows.size());
    m_rowsExported += count;
    if (!isWritten) {
        m_rowsReported += count;
        if (error.isEmpty() || (room < 0 || m_expected.size() + slice.size() <= room))
            lose(QStringLiteral("%1 rows were refused without a reason").arg(count));
        judgeRefusal(slice);
        return;
    }
    m_rowsInFiles += count;
    m_expected += slice;
    m_expectedRows += rows;
    if (fileBytes(path()) != m_expected)
        lose(QStringLiteral("%1 rows were exported and the file does not hold them").arg(count));
}

// The file keeps what it had, and the beginning of what came. It is brought back to what it had.
void CsvRoad::judgeRefusal(const QByteArray &slice)
{
    const QByteArray found = fileBytes(path());
    if (!found.startsWith(m_expected) || !(m_expected + slice).startsWith(found))
        lose(QStringLiteral("a slice that failed has spoilt the rows before it"));
    if (m_expected.isEmpty())
        QFile::remove(path());
    else
        QFile::resize(path(), m_expected.size());
}

// A folder that is not there, and a folder in the place of the file.
void CsvRoad::exportToNowhere(Chance &chance)
{
    const QString path =
        chance.oneIn(2) ? m_folder.filePath(QStringLiteral("missing/rows.csv")) : m_folder.path();
    const QList<QStringList> rows = drawRows(chance);
    const auto count = static_cast<quint64>(rows.size());
    QString error;
    ask();
    const bool isWritten = exportCsv({{QLatin1String(header)}, rows}, path, chance.oneIn(2), error);
    settle(isWritten);
    clearRecordedCommands();
    m_rowsExported += count;
    m_rowsReported += count;
    if (isWritten || error.isEmpty())
        lose(QStringLiteral("%1 rows went to %2, where no file can be, without a report")
                 .arg(count)
                 .arg(path));
}

void CsvRoad::judgeFile()
{
    if (m_expected.isEmpty())
        return;
    QString error;
    const auto table = readTable(path(), error);
    if (!table || table->header != QStringList(QLatin1String(header)) || table->rows != m_expectedRows)
        lose(QStringLiteral("%1 rows do not read back as they were exported: %2")
                 .arg(m_expectedRows.size())
                 .arg(error.isEmpty() ? QStringLiteral("other rows") : error));
}

void CsvRoad::beginNewFile()
{
    QFile::remove(path());
    m_expected.clear();
    m_expectedRows.clear();
}

} // namespace panelkit::simulator
