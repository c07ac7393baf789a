#include "simulator/panelsim/texttable.h"

#include <QVector>

namespace panelkit::simulator {

namespace {

bool isWide(uint codePoint)
{
    return (codePoint >= 0x1100 && codePoint <= 0x115f) || (codePoint >= 0x2e80 && codePoint <= 0xa4cf) ||
           (codePoint >= 0xac00 && codePoint <= 0xd7a3) || (codePoint >= 0xf900 && codePoint <= 0xfaff) ||
           (codePoint >= 0xfe30 && codePoint <= 0xfe6f) || (codePoint >= 0xff00 && codePoint <= 0xff60) ||
           (codePoint >= 0xffe0 && codePoint <= 0xffe6) || (codePoint >= 0x20000 && codePoint <= 0x3fffd);
}

} // namespace

QString printable(const QString &text)
{
    QString result;
    for (const QChar character : text) {
        if (character == QLatin1Char('\n'))
            result += QLatin1String("\\n");
        else if (character == QLatin1Char('\t'))
            result += QLatin1String("\\t");
        else if (character.category() == QChar::Other_Control)
            result += QStringLiteral("\\x%1").arg(character.unicode(), 2, 16, QLatin1Char('0'));
        else
            result += character;
    }
    return result;
}

int displayWidth(const QString &text)
{
    int width = 0;
    for (const uint codePoint : text.toUcs4())
        width += isWide(codePoint) ? 2 : 1;
    return width;
}

QString alignedRows(const QList<QStringList> &rows)
{
    QList<QStringList> cells;
    QVector<int> widths;
    for (const QStringList &row : rows) {
        QStringList line;
        for (int column = 0; column < row.size(); ++column) {
            line << printable(row.at(column));
            if (column == widths.size())
                widths.append(0);
            widths[column] = qMax(widths.at(column), displayWidth(line.last()));
        }
        cells << line;
    }

    QString text;
    for (const QStringList &row : std::as_const(cells)) {
        QString line;
        for (int column = 0; column < row.size(); ++column) {
            line += row.at(column);
            if (column + 1 < row.size())
                line += QString(widths.at(column) - displayWidth(row.at(column)) + 2, QLatin1Char(' '));
        }
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        text += line + QLatin1Char('\n');
    }
    return text;
}

} // namespace panelkit::simulator
