// How a table is laid out as lines of text on pages.
#pragma once

#include <QString>
#include <QStringList>

namespace panelkit {

// The columns of the widest header entry: an entry without commas has one; no entries have none.
int columnCount(const QStringList &header);

// The pixel size of the font for that many columns.
int fontPixelSize(int columns);

// How many characters wide each column is, 0 or more, on a page of `pageWidth` pixels with a font whose "A"
// is `characterWidth` pixels wide.
int columnCharacters(int pageWidth, int characterWidth, int columns);

// Replaces `line` by the texts of a row, or by the comma-separated titles of a header entry, each padded with
// blanks to `width` characters. Reuses the line's memory.
void layOutRow(const QStringList &cells, int width, QString &line);
void layOutHeader(const QString &entry, int width, QString &line);

// The places of the lines, one after the other, from page to page.
class LinePlaces
{
public:
    // Steps to the next line; true if it begins a new page.
    bool next();
    // The baseline of the line, in pixels from the page's top.
    int baseline() const;

private:
    // The first line stands in row 1; on every page but the first a line in row 0 comes first.
    int m_row = 0;
};

} // namespace panelkit
