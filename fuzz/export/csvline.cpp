// A line of CSV, in UTF-8: read, written again and read again; and as text for SQL.

#include "export/helpcsv.h"
#include "export/helpsqlite.h"
#include "fuzz/support/demand.h"

#include <cstddef>
#include <cstdint>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString decoded = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    // In memory of its own size, so that a look beyond the end is seen.
    const std::vector<QChar> characters(decoded.begin(), decoded.end());
    const int length = static_cast<int>(characters.size());
    const QString line = QString::fromRawData(characters.data(), length);

    const QStringList fields = helpCSV::fromCsvLine(line);
    demand(fields.isEmpty() == line.isEmpty(), "only an empty line has no fields");
    demand(fields.size() <= line.count(QLatin1Char(',')) + 1, "at most one field more than commas");
    const QString written = helpCSV::toCsvStringLine(fields);
    if (fields != QStringList(QString()))
        demand(helpCSV::fromCsvLine(written) == fields, "what is written is read again");

    QString field;
    for (int pos = -1; pos <= length + 1; pos += 1 + length / 16) {
        demand(helpCSV::advplain(line, field, pos) <= length, "a plain field ends within the line");
        demand(helpCSV::advquoted(line, field, pos) <= qMax(pos, length),
               "a quoted field ends within the line");
    }

    const QString literal = helpSQLite::toSQLiteString(line);
    demand(literal.size() == length + line.count(QLatin1Char('\'')), "every quote is doubled");
    return 0;
}
