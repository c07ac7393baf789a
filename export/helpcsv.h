// One CSV field, one CSV line, and a line split back into its fields.
//
// The separator is always a comma, and only a comma or a double quote in a field makes it quoted. Line breaks
// inside of fields are not handled: a file is split into lines before a line is split into fields.
#pragma once

#include "platform/export.h"

#include <QString>
#include <QStringList>

class PANELKIT_EXPORT helpCSV
{
public:
    // `field` as it stands in a CSV line: enclosed in double quotes, and its own double quotes doubled, if it
    // contains a comma or a double quote; otherwise unchanged, whatever blanks, semicolons or line breaks it
    // has.
    static QString toCsvString(const QString &field);

    // The fields as one line, without a line end. No fields give the empty line, and so does one empty field.
    static QString toCsvStringLine(const QStringList &fields);

    // The fields of a line; the empty line has none. A line that toCsvStringLine wrote gives its fields back,
    // with two exceptions: one empty field comes back as no field, and fields with line breaks come back only
    // if the caller never splits the line at them.
    //
    // Every other line is read leniently. A quote inside of a plain field is a character like any other.
    // After an opening quote the field goes on to a quote that stands before a comma or at the line's end; a
    // quote before anything else is kept as a character, and an open field ends with the line.
    static QStringList fromCsvLine(const QString &line);

    // Reads the quoted field whose opening quote stands just before `pos`, replacing `field`. Returns where
    // it ends: the position of its comma; else that of the line's last character, which belongs to the field
    // unless it is a comma or a quote; else the line's length, when the line ends in a pair of quotes that is
    // read as one character. A `pos` before the line counts as 0; one behind it gives an empty field and is
    // returned as it is.
    static int advquoted(const QString &line, QString &field, int pos);

    // Reads the plain field that starts at `pos`, replacing `field`. Returns the position of the comma that
    // ends it, or the line's length. A `pos` before the line counts as 0; one behind it gives an empty field.
    static int advplain(const QString &line, QString &field, int pos);
};
