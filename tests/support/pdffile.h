// PDF files as poppler's tools find them.
#pragma once

#include "tests/support/systemprogram.h"

#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

namespace panelkit::testing {

// A word on a page, in points (1/72 inch) from the page's top left corner.
struct PdfWord
{
    QString text;
    double left, top, right, bottom;
};

class PdfFile
{
public:
    explicit PdfFile(const QString &path) : m_path(path) {}

    // What pdfinfo says under that name, for example "Pages".
    QString property(const char *name) const
    {
        const QByteArray wanted = QByteArray(name) + ':';
        for (const QByteArray &line : outputOf("pdfinfo", {m_path}).split('\n'))
            if (line.startsWith(wanted))
                return QString::fromUtf8(line.mid(wanted.size())).trimmed();
        return QString();
    }

    int pageCount() const { return property("Pages").toInt(); }

    // The lines of a page, 1 being the first, in the order in which they were drawn, with single blanks.
    QStringList lines(int page) const
    {
        const QString number = QString::number(page);
        const QByteArray text =
            outputOf("pdftotext", {QStringLiteral("-raw"), QStringLiteral("-f"), number, QStringLiteral("-l"),
                                   number, m_path, QStringLiteral("-")});
        QStringList lines = QString::fromUtf8(text).remove(QLatin1Char('\f')).split(QLatin1Char('\n'));
        while (!lines.isEmpty() && lines.last().isEmpty())
            lines.removeLast();
        return lines;
    }

    QList<PdfWord> words(int page) const
    {
        const QString number = QString::number(page);
        const QByteArray html =
            outputOf("pdftotext", {QStringLiteral("-bbox"), QStringLiteral("-f"), number,
                                   QStringLiteral("-l"), number, m_path, QStringLiteral("-")});
        static const QRegularExpression word(QStringLiteral(
            "<word xMin=\"([^\"]*)\" yMin=\"([^\"]*)\" xMax=\"([^\"]*)\" yMax=\"([^\"]*)\">([^<]*)</word>"));
        QList<PdfWord> words;
        auto match = word.globalMatch(QString::fromUtf8(html));
        while (match.hasNext()) {
            const auto found = match.next();
            words << PdfWord{found.captured(5), found.captured(1).toDouble(), found.captured(2).toDouble(),
                             found.captured(3).toDouble(), found.captured(4).toDouble()};
        }
        return words;
    }

    // The names of the fonts that the file embeds, without the tag of a subset.
    QStringList fonts() const
    {
        QStringList names;
        const QList<QByteArray> lines = outputOf("pdffonts", {m_path}).trimmed().split('\n').mid(2);
        for (const QByteArray &line : lines)
            names << QString::fromUtf8(line.left(line.indexOf(' '))).section(QLatin1Char('+'), -1);
        return names;
    }

private:
    QString m_path;
};

} // namespace panelkit::testing
