#include "export/helpcsv.h"

#include "export/doubledtext.h"

#include <algorithm>

using panelkit::TextSize;

namespace {

const QLatin1Char comma(',');
const QLatin1Char quote('"');

// The length of `field` in a CSV line; it differs from the field's own exactly when the field is quoted.
qint64 writtenSize(const QString &field)
{
    qint64 quotes = 0;
    bool hasComma = false;
    for (const QChar character : field) {
        quotes += character == quote ? 1 : 0;
        hasComma |= character == comma;
    }
    return field.size() + quotes + (hasComma || quotes > 0 ? 2 : 0);
}

QChar *writeField(QChar *out, const QString &field)
{
    QChar *const start = out;
    for (const QChar character : field) {
        if (character == comma || character == quote) {
            *start = quote;
            out = panelkit::writeDoubled(start + 1, field, quote);
            *out++ = quote;
            return out;
        }
        *out++ = character;
    }
    return out;
}

// The two halves of reading a quoted field: how long it becomes, and its characters.
struct CharacterCount
{
    TextSize count = 0;
    void operator()(QChar) { ++count; }
};

struct CharacterWriter
{
    QChar *out;
    void operator()(QChar character) { *out++ = character; }
};

// Hands the characters of the quoted field from `pos` on to `emitCharacter`; returns the field's end.
template <typename Emit>
TextSize scanQuoted(const QChar *line, TextSize length, TextSize pos, Emit &emitCharacter)
{
    while (pos < length - 1) {
        if (line[pos] != quote) {
            emitCharacter(line[pos++]);
        } else if (line[pos + 1] == quote) {
            emitCharacter(quote);
            pos += 2;
        } else {
            ++pos;
            if (line[pos] == comma)
                return pos;
            emitCharacter(quote);
        }
    }
    if (pos == length - 1 && line[pos] != comma && line[pos] != quote)
        emitCharacter(line[pos]);
    return pos;
}

TextSize readQuoted(const QString &line, QString &field, TextSize pos)
{
    CharacterCount size;
    const TextSize end = scanQuoted(line.constData(), line.size(), pos, size);
    QString text = panelkit::unfilledText(size.count);
    CharacterWriter writer = {text.data()};
    scanQuoted(line.constData(), line.size(), pos, writer);
    field = text;
    return end;
}

TextSize readPlain(const QString &line, QString &field, TextSize pos)
{
    const QChar *begin = line.constData();
    const QChar *start = begin + qMin(pos, line.size());
    const QChar *stop = std::find(start, begin + line.size(), comma);
    const TextSize end = static_cast<TextSize>(stop - begin);
    field = QString(start, static_cast<TextSize>(stop - start)); // `line` may be `field`, and is gone then
    return end;
}

} // namespace

QString helpCSV::toCsvString(const QString &field)
{
    const qint64 size = writtenSize(field);
    if (size == field.size())
        return field;
    QString text = panelkit::unfilledText(size);
    writeField(text.data(), field);
    return text;
}

QString helpCSV::toCsvStringLine(const QStringList &fields)
{
    if (fields.isEmpty())
        return QString();
    qint64 size = fields.size() - 1;
    for (const QString &field : fields)
        size += writtenSize(field);

    QString line = panelkit::unfilledText(size);
    QChar *out = writeField(line.data(), fields.first());
    for (TextSize i = 1; i < fields.size(); ++i) {
        *out++ = comma;
        out = writeField(out, fields.at(i));
    }
    return line;
}

QStringList helpCSV::fromCsvLine(const QString &line)
{
    QStringList fields;
    const auto commas = std::count(line.constData(), line.constData() + line.size(), comma);
    fields.reserve(static_cast<TextSize>(commas) + 1);
    for (TextSize pos = 0; pos < line.size(); ++pos) {
        fields.append(QString());
        pos = line.at(pos) == quote ? readQuoted(line, fields.last(), pos + 1)
                                    : readPlain(line, fields.last(), pos);
    }
    if (line.endsWith(comma))
        fields.append(QString());
    return fields;
}

int helpCSV::advquoted(const QString &line, QString &field, int pos)
{
    return static_cast<int>(readQuoted(line, field, qMax(pos, 0)));
}

int helpCSV::advplain(const QString &line, QString &field, int pos)
{
    return static_cast<int>(readPlain(line, field, qMax(pos, 0)));
}
