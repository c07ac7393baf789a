#include "simulator/panelsim/commandline.h"

#include "simulator/comm/communication.h"

#include <algorithm>
#include <cstdio>

namespace panelkit::simulator {

void complain(const QString &text)
{
    std::fprintf(stderr, "panelsim: %s\n", text.toUtf8().constData());
}

void print(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fflush(stdout); // who reads a pipe wants to see it now
}

std::optional<ExitCode> readOptions(QCommandLineParser &parser, const QString &summary,
                                    const QStringList &arguments, int positionalCount)
{
    parser.setApplicationDescription(summary);
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Print this help."));
    parser.addOption(help);
    if (!parser.parse(arguments)) {
        complain(QStringLiteral("%1: %2 'panelsim %1 --help' says what it takes.")
                     .arg(arguments.first(), parser.errorText()));
        return ExitCode::WrongUse;
    }
    if (parser.isSet(help)) {
        // The parser speaks of the program; the command belongs behind its name.
        QString text = parser.helpText();
        const QString program = QCoreApplication::arguments().first();
        text.replace(QLatin1String("Usage: ") + program,
                     QLatin1String("Usage: panelsim ") + arguments.first());
        print(text);
        return ExitCode::Done;
    }
    if (parser.positionalArguments().size() > positionalCount) {
        complain(QStringLiteral("%1: '%2' is one argument too many. 'panelsim %1 --help' says what it takes.")
                     .arg(arguments.first(), parser.positionalArguments().at(positionalCount)));
        return ExitCode::WrongUse;
    }
    return std::nullopt;
}

void addRootOption(QCommandLineParser &parser)
{
    parser.addOption(
        {QStringLiteral("root"),
         QStringLiteral("Keep the panel's files below DIR. Without it they lie in a temporary folder "
                        "that is removed at the end."),
         QStringLiteral("DIR")});
}

void addSessionOptions(QCommandLineParser &parser)
{
    parser.addPositionalArgument(
        QStringLiteral("PROJECT"),
        QStringLiteral("The project file; without it the sample that panelsim brings along."),
        QStringLiteral("[PROJECT]"));
    parser.addOption(
        {QStringLiteral("plc"),
         QStringLiteral("Reach all Modbus TCP links at HOST:PORT, but for those that link-params has moved. "
                        "Without it panelsim starts a bottling line of its own on a free loopback port."),
         QStringLiteral("HOST:PORT")});
    addRootOption(parser);
}

std::unique_ptr<Session> openSession(const QCommandLineParser &parser, ExitCode &exitCode)
{
    return openSession(parser, SessionOptions(), exitCode);
}

std::unique_ptr<Session> openSession(const QCommandLineParser &parser, SessionOptions options,
                                     ExitCode &exitCode)
{
    options.projectFile = parser.positionalArguments().value(0);
    options.root = parser.value(QStringLiteral("root"));
    if (parser.isSet(QStringLiteral("plc"))) {
        const QString text = parser.value(QStringLiteral("plc"));
        options.plc = parsePlcAddress(text);
        if (!options.plc) {
            complain(
                QStringLiteral("--plc '%1' is not HOST:PORT with a port from 1 to 65535, as in 127.0.0.1:502")
                    .arg(text));
            exitCode = ExitCode::WrongUse;
            return nullptr;
        }
    }
    return openSession(options, exitCode);
}

std::unique_ptr<Session> openSession(const SessionOptions &options, ExitCode &exitCode)
{
    QString error;
    auto session = Session::open(options, error);
    if (!session) {
        complain(error);
        exitCode = ExitCode::Failed;
    }
    return session;
}

ExitCode doneIfEveryPlcAnswers(const Session &session, const std::vector<ItemDisplay> &displays)
{
    const Communication &comm = session.communication();
    for (const int number : comm.linkNumbers()) {
        const LinkCondition condition = comm.linkState(number).condition;
        if (condition == LinkCondition::Away || condition == LinkCondition::Disturbed)
            return ExitCode::NoAnswer;
    }
    const bool isOneOwed = std::any_of(displays.begin(), displays.end(),
                                       [&](const ItemDisplay &display) { return isOwed(session, display); });
    return isOneOwed ? ExitCode::NoAnswer : ExitCode::Done;
}

void sayWhatIsKept(const QCommandLineParser &parser)
{
    const QString root = parser.value(QStringLiteral("root"));
    print(root.isEmpty()
              ? QStringLiteral(
                    "\nNothing of this is kept: it lay in a temporary folder. --root DIR keeps it.\n")
              : QStringLiteral("\nKept below %1.\n").arg(root));
}

std::optional<QMap<QString, QString>> readAssignments(const QString &command, const QStringList &arguments,
                                                      const QStringList &keys)
{
    QMap<QString, QString> values;
    for (const QString &argument : arguments) {
        const QString key = argument.section(QLatin1Char('='), 0, 0);
        QString fault;
        if (!argument.contains(QLatin1Char('=')))
            fault = QStringLiteral("is not KEY=VALUE");
        else if (!keys.contains(key))
            fault = QStringLiteral("names none of %1").arg(keys.join(QLatin1String(", ")));
        else if (values.contains(key))
            fault = QStringLiteral("gives %1 a second time").arg(key);
        if (!fault.isEmpty()) {
            complain(QStringLiteral("%1: '%2' %3").arg(command, argument, fault));
            return std::nullopt;
        }
        values.insert(key, argument.section(QLatin1Char('='), 1));
    }
    return values;
}

} // namespace panelkit::simulator
