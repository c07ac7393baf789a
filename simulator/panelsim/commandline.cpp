#include "simulator/panelsim/commandline.h"

#include "simulator/comm/communication.h"
#include "simulator/panelsim/texttable.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace panelkit::simulator {

namespace {

bool isOutputLost = false;

void loseOutput(int fault)
{
    isOutputLost = true;
    if (fault != EPIPE)
        complain(QStringLiteral("the output cannot be written (%1): send it to another file or to none")
                     .arg(QString::fromLocal8Bit(std::strerror(fault))));
    // By an event, since the loop may not have begun.
    QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit, Qt::QueuedConnection);
}

} // namespace

void complain(const QString &text)
{
    std::fprintf(stderr, "panelsim: %s\n", printable(text).toUtf8().constData());
}

void print(const QString &text)
{
    if (isOutputLost)
        return;
    const QByteArray bytes = text.toUtf8();
    const auto size = static_cast<std::size_t>(bytes.size());
    if (std::fwrite(bytes.constData(), 1, size, stdout) != size ||
        std::fflush(stdout) != 0) // who reads a pipe wants to see it now
        loseOutput(errno);
}

ExitCode endOfOutput(ExitCode exitCode)
{
    const bool wasWell = exitCode == ExitCode::Done || exitCode == ExitCode::NoAnswer;
    return isOutputLost && wasWell ? ExitCode::Failed : exitCode;
}

namespace {

// An empty name of a file or of anything else is a variable that a script has not set, and never what was
// meant. Only the texts of an address may be empty, since whether one is valid is what is asked.
std::optional<ExitCode> refuseEmptyTexts(const QCommandLineParser &parser, const QString &command)
{
    const QStringList addressTexts{QStringLiteral("link"), QStringLiteral("block"), QStringLiteral("number")};
    for (const QString &option : parser.optionNames()) {
        if (parser.values(option).contains(QString()) && !addressTexts.contains(option)) {
            complain(
                QStringLiteral("%1: --%2 is given an empty text: name what is meant, or leave the option "
                               "out")
                    .arg(command, option));
            return ExitCode::WrongUse;
        }
    }
    if (parser.positionalArguments().contains(QString())) {
        complain(QStringLiteral("%1: an argument is an empty text: name what is meant, or leave it out")
                     .arg(command));
        return ExitCode::WrongUse;
    }
    return std::nullopt;
}

} // namespace

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
    return refuseEmptyTexts(parser, arguments.first());
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
              : QStringLiteral("\nKept below %1.\n").arg(printable(root)));
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
