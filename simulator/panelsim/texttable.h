// Rows of text in aligned columns, for a terminal.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace panelkit::simulator {

// `text` with its control characters written as "\n", "\t" or "\x1b", so that it cannot steer the terminal.
QString printable(const QString &text);

// The width of `text` in terminal cells: Chinese, Japanese and Korean characters take two.
int displayWidth(const QString &text);

// The rows with each column as wide as its widest cell and two blanks between; no blanks at the end of a
// line. Cells are made printable.
QString alignedRows(const QList<QStringList> &rows);

} // namespace panelkit::simulator
