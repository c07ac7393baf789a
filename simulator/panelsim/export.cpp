#include "simulator/host/itemdisplay.h"
#include "simulator/host/tablefile.h"
#include "simulator/panelsim/commands.h"
#include "simulator/panelsim/texttable.h"

#include <QFileInfo>

#include <algorithm>

namespace panelkit::simulator {

namespace {

void addOptions(QCommandLineParser &parser)
{
    addSessionOptions(parser);
    parser.addOption(
        {QStringLiteral("csv"), QStringLiteral("Write a CSV file in GBK."), QStringLiteral("FILE")});
    parser.addOption(
        {QStringLiteral("append"),
         QStringLiteral("With --csv: put the rows behind what the file holds, without a header.")});
    parser.addOption({QStringLiteral("pdf"), QStringLiteral("Write a PDF file."), QStringLiteral("FILE")});
    parser.addOption(
        {QStringLiteral("from"),
         QStringLiteral("Export the table of this CSV file, its encoding recognised, instead of the "
                        "values of a project's items. It may have up to 64 MiB."),
         QStringLiteral("FILE")});
}

// What is wrong with the options together; empty when nothing is.
QString contradiction(const QCommandLineParser &parser)
{
    const bool csv = parser.isSet(QStringLiteral("csv"));
    if (csv == parser.isSet(QStringLiteral("pdf")))
        return QStringLiteral("export takes either --csv FILE or --pdf FILE");
    if (parser.isSet(QStringLiteral("append")) && !csv)
        return QStringLiteral("export appends to CSV files only: --append goes with --csv");
    const bool session = !parser.positionalArguments().isEmpty() || parser.isSet(QStringLiteral("plc")) ||
                         parser.isSet(QStringLiteral("root"));
    if (parser.isSet(QStringLiteral("from")) && session)
        return QStringLiteral("export takes its table either --from a file or from a project");
    return QString();
}

// The table that the options ask for, or nothing after a complaint. `exitCode` is what to exit with, also
// when a PLC did not answer and its items are exported without a value.
std::optional<Table> takeTable(const QCommandLineParser &parser, ExitCode &exitCode)
{
    if (parser.isSet(QStringLiteral("from"))) {
        QString error;
        auto table = readTable(parser.value(QStringLiteral("from")), error);
        if (!table) {
            complain(error);
            exitCode = ExitCode::Failed;
        }
        return table;
    }
    const auto session = openSession(parser, exitCode);
    if (!session)
        return std::nullopt;
    watchItems(*session);
    const std::vector<ItemDisplay> displays = displayItems(*session);
    const auto owed = std::count_if(displays.begin(), displays.end(), [&session](const ItemDisplay &display) {
        return isOwed(*session, display);
    });
    if (owed > 0)
        complain(
            QStringLiteral("warning: %1 of %2 values are left empty: the PLC did not give them; 'panelsim "
                           "show' says which")
                .arg(owed)
                .arg(displays.size()));
    exitCode = doneIfEveryPlcAnswers(*session, displays);
    return itemTable(*session, displays, QDateTime::currentDateTime());
}

} // namespace

ExitCode runExport(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    const auto ended = readOptions(
        parser, QStringLiteral("Exports what a project's items show, or a CSV file's table."), arguments, 1);
    if (ended)
        return *ended;
    const QString fault = contradiction(parser);
    if (!fault.isEmpty()) {
        complain(fault);
        return ExitCode::WrongUse;
    }
    ExitCode exitCode = ExitCode::Done;
    const auto table = takeTable(parser, exitCode);
    if (!table)
        return exitCode;

    const bool asCsv = parser.isSet(QStringLiteral("csv"));
    const QString path = parser.value(asCsv ? QStringLiteral("csv") : QStringLiteral("pdf"));
    QString error;
    const bool isWritten = asCsv ? exportCsv(*table, path, parser.isSet(QStringLiteral("append")), error)
                                 : exportPdf(*table, path, error);
    if (!isWritten) {
        complain(error);
        return ExitCode::Failed;
    }
    const QFileInfo file(path);
    print(file.isFile() ? QStringLiteral("%1: %2 rows, the file has %3 bytes\n")
                              .arg(printable(file.absoluteFilePath()))
                              .arg(table->rows.size())
                              .arg(file.size())
                        : QStringLiteral("%1: %2 rows\n").arg(printable(path)).arg(table->rows.size()));
    return exitCode;
}

} // namespace panelkit::simulator
