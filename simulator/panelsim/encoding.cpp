#include "simulator/host/fileencoding.h"
#include "simulator/panelsim/commands.h"
#include "simulator/panelsim/texttable.h"

#include <limits>

namespace panelkit::simulator {

ExitCode runEncoding(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The text files."),
                                 QStringLiteral("FILE..."));
    const auto ended =
        readOptions(parser, QStringLiteral("Tells the encoding of text files, and by what it is told."),
                    arguments, std::numeric_limits<int>::max());
    if (ended)
        return *ended;
    if (parser.positionalArguments().isEmpty()) {
        complain(QStringLiteral("encoding takes the names of one or more files"));
        return ExitCode::WrongUse;
    }

    ExitCode exitCode = ExitCode::Done;
    QList<QStringList> rows{
        {QStringLiteral("FILE"), QStringLiteral("CODE"), QStringLiteral("ENCODING"), QStringLiteral("WHY")}};
    for (const QString &path : parser.positionalArguments()) {
        QString error;
        const auto encoding = fileEncoding(path, error);
        if (encoding) {
            rows << QStringList{path, QString::number(encoding->code), encoding->name, encoding->reason};
        } else {
            complain(error);
            exitCode = ExitCode::Failed;
        }
    }
    if (rows.size() > 1)
        print(alignedRows(rows));
    return exitCode;
}

} // namespace panelkit::simulator
