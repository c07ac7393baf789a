// The bytes of a CSV file in any encoding: read as a table, and the table exported.

#include "simulator/host/tablefile.h"

#include "fuzz/support/demand.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>

using namespace panelkit::simulator;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("read.csv"));
    QFile file(path);
    demand(file.open(QIODevice::WriteOnly) &&
               file.write(reinterpret_cast<const char *>(data), static_cast<qint64>(size)) ==
                   static_cast<qint64>(size),
           "the file is written");
    file.close();

    QString error;
    const auto table = readTable(path, error);
    demand(table.has_value() == error.isEmpty(), "it is a table or says why not");
    if (!table)
        return 0;
    demand(table->header.size() <= 1 && (table->rows.isEmpty() || table->header.size() == 1),
           "one line is the header");
    const QString exported = folder.filePath(QStringLiteral("written.csv"));
    demand(exportCsv(*table, exported, false, error), "the table is exported whole");
    return 0;
}
