// Tables as files, a CSV text file in GBK or a PDF of fixed-width text columns, and the parts of one exported
// record. How the files are laid out stands in docs/formats/table-export.md.
#pragma once

#include "platform/export.h"

#include <QList>
#include <QString>
#include <QStringList>

// One exported record.
struct DataContent
{
    QString date, time, name, content;
};

// Writes `rows` to the text file `path` in GBK: one line a row, its cells joined by commas, raw: a cell with
// a comma reads back as two. What GBK lacks is written as the toolkit's text stream writes it, mostly as "?".
// Where the toolkit lacks the codec "GBK" the file is in the locale's encoding.
//
// When `append` is 0 the file is written anew and begins with one line for each entry of `header`, as it
// stands; otherwise the rows follow what the file holds, without a header even if the file is new. Every line
// ends in a line feed. When the file is written, the shell command "sync" has run.
//
// A file that cannot be opened, and a `path` that is empty or holds a NUL, end the call without a report and
// without "sync"; a file that cannot be written any further keeps what it has. The rows are streamed: the
// call needs less than 256 KB beside them, whatever their number.
PANELKIT_EXPORT void tools_exportToCsv(const QStringList &header, const QList<QStringList> &rows,
                                       const QString &path, int append);

// Draws header and rows as lines of text on A4 pages of the PDF file `path`, 80 lines on the first page and
// 81 on each further one; no lines at all give one blank page. An entry of `header` is a list of column
// titles separated by commas; the entry with the most columns decides the size of the font (family "SimSun")
// and the width of all columns. Every title and cell is padded with blanks to that width; longer ones are not
// cut, and lines run off the page. When the file is written, the shell command "sync" has run; it also runs
// when there is no way to write the file, or when `path` is empty or holds a NUL, which is not reported.
//
// Needs a QGuiApplication. Only the page being drawn is held in memory.
PANELKIT_EXPORT void tools_exportToPdf(const QStringList &header, const QList<QStringList> &rows,
                                       const QString &path);

// The parts of an exported record: its date and time (entry 1 of `fields`, when that has exactly one blank
// between the two) and its content (entry 2); `name` is taken over. Fewer than 3 entries give an empty
// record.
PANELKIT_EXPORT DataContent tools_strList2DataContent(const QStringList &fields, const QString &name);
