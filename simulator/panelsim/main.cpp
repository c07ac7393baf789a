// panelsim: a panel on a PC. The first argument names the command; each command has a file of its own here.

#include "simulator/panelsim/application.h"
#include "simulator/panelsim/commandline.h"
#include "simulator/panelsim/commands.h"
#include "simulator/panelsim/interrupt.h"

#include <cstdio>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

using namespace panelkit::simulator;

namespace {

struct Command
{
    const char *name;
    const char *summary;
    ExitCode (*run)(const QStringList &arguments);
    Application application = Application::Console;
    bool isTemporary = true; // it leaves files in a temporary folder while it runs
};

const Command commands[] = {
    {"check", "check an address, all of a project, or its drivers", runCheck},
    {"encoding", "tell the encoding of text files", runEncoding, Application::Console, false},
    {"export", "export a project's values, or a table, to CSV or PDF", runExport, Application::Drawing},
    {"gui", "show the panel's screen in a window", runGui, Application::Window},
    {"info", "show the panel's load, memory, disk and kind", runInfo, Application::Console, false},
    {"link-params", "show or set the parameters of a link, as a screen does", runLinkParams},
    {"lookup", "show the index of a register as its driver counts it", runLookup},
    {"macro", "show what becomes of a project's macros, and run them", runMacro},
    {"network", "show, set or plan the panel's own address, as a screen does", runNetwork},
    {"serve", "run the bottling line's PLC for other programs", runServe, Application::Console, false},
    {"show", "show the values of a project's items", runShow},
    {"soak", "drive everything at once, with faults by plan, and look for losses", runSoak,
     Application::Hidden},
};

QString helpText()
{
    QString text = QStringLiteral(
        "Usage: panelsim COMMAND [ARGUMENT]...\n\n"
        "Plays a touch panel's runtime on this PC: with a project, links and a PLC over Modbus TCP.\n\n"
        "Commands:\n");
    for (const Command &command : commands)
        text += QStringLiteral("  %1 %2\n")
                    .arg(QLatin1String(command.name), -12)
                    .arg(QLatin1String(command.summary));
    return text +
           QStringLiteral("\n'panelsim COMMAND --help' says more; 'panelsim --version' prints the version.\n"
                          "Exit codes: 0 done, 1 refused or failed, 2 wrong use, 3 a PLC did not answer.\n");
}

// What is closed would be taken by the first file that is opened, and what is printed would go there.
void fillStandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", O_RDONLY) < 0)
            return;
}

ExitCode run(const Command *command, const QStringList &arguments)
{
    const QString name = arguments.value(1);
    if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
        print(helpText());
        return ExitCode::Done;
    }
    if (name == QLatin1String("--version") || name == QLatin1String("-v")) {
        print(QStringLiteral("panelsim %1\n").arg(QLatin1String(PANELKIT_VERSION)));
        return ExitCode::Done;
    }
    if (name.isEmpty()) {
        std::fputs(helpText().toUtf8().constData(), stderr);
        return ExitCode::WrongUse;
    }
    if (command == nullptr) {
        complain(QStringLiteral("there is no command '%1': 'panelsim --help' lists them").arg(name));
        return ExitCode::WrongUse;
    }
    try {
        return command->run(arguments.mid(1));
    } catch (const std::system_error &fault) { // a thread that the system does not give
        complain(QStringLiteral("%1: %2: end other programs, or raise the limit of processes and memory")
                     .arg(name, QString::fromLocal8Bit(fault.what())));
        return ExitCode::Failed;
    }
}

const Command *commandNamed(const char *name)
{
    for (const Command &command : commands)
        if (std::strcmp(name, command.name) == 0)
            return &command;
    return nullptr;
}

} // namespace

int main(int argc, char **argv)
{
    fillStandardStreams();
    const Command *const command = argc > 1 ? commandNamed(argv[1]) : nullptr;
    const OrderlyEnd end(command != nullptr && command->isTemporary);
    const auto application =
        makeApplication(command != nullptr ? command->application : Application::Console, argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("panelsim"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PANELKIT_VERSION));

    return static_cast<int>(endOfOutput(run(command, QCoreApplication::arguments())));
}
