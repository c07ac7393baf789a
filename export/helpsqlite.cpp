#include "export/helpsqlite.h"

#include "export/doubledtext.h"

QString helpSQLite::toSQLiteString(const QString &text)
{
    const QLatin1Char quote('\'');
    const qint64 quotes = text.count(quote);
    if (quotes == 0)
        return text;
    QString result = panelkit::unfilledText(text.size() + quotes);
    panelkit::writeDoubled(result.data(), text, quote);
    return result;
}
