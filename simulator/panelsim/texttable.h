// Rows of text in aligned columns, for a terminal.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace panelkit::simulator {

// The width of `text` in terminal cells: Chinese, Japanese and Korean characters take two.
int displayWidth(const QString &text);

// The rows with each column as wide as its widest cell and two blanks between; no blanks at the end of a
// line. Control characters in a cell are written as "\n", "\t" or "\x1b", so that a value cannot steer the
// terminal.
QString alignedRows(const QList<QStringList> &rows);

} // namespace panelkit::simulator
