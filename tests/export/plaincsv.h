// CSV lines in the ordinary way of the toolkit, character by character, against which ours are held.
#pragma once

#include <QString>
#include <QStringList>

namespace panelkit::testing {

inline QString plainCsvString(const QString &field)
{
    const bool quoted = field.contains(",") || field.contains("\"");
    QString text = field;
    text.replace("\"", "\"\"");
    if (quoted)
        text = "\"" + text + "\"";
    return text;
}

inline QString plainCsvLine(const QStringList &fields)
{
    if (fields.isEmpty())
        return QString();
    QString line = plainCsvString(fields.first());
    for (int i = 1; i < fields.size(); ++i)
        line += "," + plainCsvString(fields.at(i));
    return line;
}

inline int plainQuotedField(const QString &line, QString &field, int pos)
{
    const int length = static_cast<int>(line.size());
    const QChar quote = QLatin1Char('"');
    field = QString();
    while (pos < length - 1) {
        if (line.at(pos) == quote && line.at(pos + 1) == quote) {
            field += quote;
            pos += 2;
        } else if (line.at(pos) == quote) {
            ++pos;
            if (line.at(pos) == QLatin1Char(','))
                return pos;
            field += quote;
        } else {
            field += line.at(pos);
            ++pos;
        }
    }
    if (pos == length)
        return pos;
    if (line.at(pos) != QLatin1Char(',') && line.at(pos) != quote)
        field += line.at(pos);
    return pos;
}

inline int plainUnquotedField(const QString &line, QString &field, int pos)
{
    int end = static_cast<int>(line.indexOf(",", pos));
    if (end < 0)
        end = static_cast<int>(line.size());
    field = line.mid(pos, end - pos);
    return end;
}

inline QStringList plainCsvFields(const QString &line)
{
    QStringList fields;
    QString field;
    for (int pos = 0; pos < line.size(); ++pos) {
        pos = line.at(pos) == QLatin1Char('"') ? plainQuotedField(line, field, pos + 1)
                                               : plainUnquotedField(line, field, pos);
        fields << field;
    }
    if (line.endsWith(","))
        fields << QString();
    return fields;
}

} // namespace panelkit::testing
