// panelsim: a panel on a PC. The first argument names the command; each command has a file of its own here.

#include "simulator/panelsim/application.h"
#include "simulator/panelsim/commandline.h"
#include "simulator/panelsim/commands.h"

#include <cstdio>
#include <cstring>

using namespace panelkit::simulator;

namespace {

struct Command
{
    const char *name;
    const char *summary;
    ExitCode (*run)(const QStringList &arguments);
    Application application = Application::Console;
};

const Command commands[] = {
    {"check", "check an address, all of a project, or its drivers", runCheck},
    {"encoding", "tell the encoding of text files", runEncoding},
    {"export", "export a project's values, or a table, to CSV or PDF", runExport, Application::Drawing},
    {"gui", "show the panel's screen in a window", runGui, Application::Window},
    {"info", "show the panel's load, memory, disk and kind", runInfo},
    {"link-params", "show or set the parameters of a link, as a screen does", runLinkParams},
    {"lookup", "show the index of a register as its driver counts it", runLookup},
    {"macro", "show what becomes of a project's macros, and run them", runMacro},
    {"network", "show, set or plan the panel's own address, as a screen does", runNetwork},
    {"serve", "run the bottling line's PLC for other programs", runServe},
    {"show", "show the values of a project's items", runShow},
    {"soak", "drive everything at once, with faults by plan, and look for losses", runSoak,
     Application::Hidden},
};

void printHelp(FILE *stream)
{
    std::fputs(
        "Usage: panelsim COMMAND [ARGUMENT]...\n\n"
        "Plays a touch panel's runtime on this PC: with a project, links and a PLC over Modbus TCP.\n\n"
        "Commands:\n",
        stream);
    for (const Command &command : commands)
        std::fprintf(stream, "  %-12s %s\n", command.name, command.summary);
    std::fputs("\n'panelsim COMMAND --help' says more; 'panelsim --version' prints the version.\n"
               "Exit codes: 0 done, 1 refused or failed, 2 wrong use, 3 a PLC did not answer.\n",
               stream);
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
    const Command *const command = argc > 1 ? commandNamed(argv[1]) : nullptr;
    const auto application =
        makeApplication(command != nullptr ? command->application : Application::Console, argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("panelsim"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PANELKIT_VERSION));

    const QStringList arguments = QCoreApplication::arguments();
    const QString name = arguments.value(1);
    if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
        printHelp(stdout);
        return static_cast<int>(ExitCode::Done);
    }
    if (name == QLatin1String("--version") || name == QLatin1String("-v")) {
        std::printf("panelsim %s\n", PANELKIT_VERSION);
        return static_cast<int>(ExitCode::Done);
    }
    if (name.isEmpty()) {
        printHelp(stderr);
        return static_cast<int>(ExitCode::WrongUse);
    }
    if (command != nullptr)
        return static_cast<int>(command->run(arguments.mid(1)));
    complain(QStringLiteral("there is no command '%1': 'panelsim --help' lists them").arg(name));
    return static_cast<int>(ExitCode::WrongUse);
}
