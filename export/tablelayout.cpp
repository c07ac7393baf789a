#include "export/tablelayout.h"

#include <algorithm>

namespace panelkit {

namespace {

const QLatin1Char comma(',');
const int rowsOnPage = 81;
const int rowHeight = 40; // pixels

void appendPadded(QString &line, const QChar *text, int length, int width)
{
    const int start = static_cast<int>(line.size());
    line.resize(start + std::max(length, width));
    QChar *out = std::copy(text, text + length, line.data() + start);
    std::fill(out, line.data() + line.size(), QLatin1Char(' '));
}

} // namespace

int columnCount(const QStringList &header)
{
    int columns = 0;
    for (const QString &entry : header)
        columns = std::max(columns, static_cast<int>(entry.count(comma)) + 1);
    return columns;
}

int fontPixelSize(int columns)
{
    if (columns <= 8)
        return 24;
    if (columns <= 12)
        return 20;
    if (columns <= 16)
        return 18;
    if (columns <= 20)
        return 16;
    return columns <= 24 ? 14 : 10;
}

int columnCharacters(int pageWidth, int characterWidth, int columns)
{
    const int marginCharacters = 32;
    if (characterWidth <= 0 || columns <= 0)
        return 0;
    return std::max((pageWidth / characterWidth - marginCharacters) / columns, 0);
}

void layOutRow(const QStringList &cells, int width, QString &line)
{
    line.resize(0);
    for (const QString &cell : cells)
        appendPadded(line, cell.constData(), static_cast<int>(cell.size()), width);
}

void layOutHeader(const QString &entry, int width, QString &line)
{
    line.resize(0);
    const QChar *title = entry.constData();
    const QChar *const end = title + entry.size();
    for (;;) {
        const QChar *const stop = std::find(title, end, comma);
        appendPadded(line, title, static_cast<int>(stop - title), width);
        if (stop == end)
            return;
        title = stop + 1;
    }
}

bool LinePlaces::next()
{
    m_row = (m_row + 1) % rowsOnPage;
    return m_row == 0;
}

int LinePlaces::baseline() const
{
    return (m_row + 1) * rowHeight;
}

} // namespace panelkit
