#include "platform/sys_base.h"
#include "runtime/systemroot.h"
#include "simulator/comm/communication.h"
#include "simulator/comm/systemregisters.h"
#include "simulator/host/flagpolling.h"
#include "simulator/host/networkplan.h"
#include "simulator/host/operatormessages.h"
#include "simulator/host/panelfiles.h"
#include "simulator/panelsim/commands.h"
#include "simulator/panelsim/texttable.h"
#include "simulator/platform/systembase.h"

#include <limits>

namespace panelkit::simulator {

namespace {

// The four settings, in the order of their registers.
struct Setting
{
    const char *key;
    const char *name;
    QString NetworkSettings::*text;
    int firstRegister;
};

const Setting settings[] = {
    {"ip", "IP address", &NetworkSettings::ip, panelAddressRegister},
    {"mask", "Subnet mask", &NetworkSettings::netMask, panelAddressRegister + 4},
    {"gateway", "Gateway", &NetworkSettings::gateway, panelAddressRegister + 8},
    {"dns", "DNS server", &NetworkSettings::dns, panelAddressRegister + 12},
};

// Without leading zeros, as the library writes it.
template <typename Parts>
QString dottedText(const Parts &parts)
{
    return QStringLiteral("%1.%2.%3.%4").arg(parts[0]).arg(parts[1]).arg(parts[2]).arg(parts[3]);
}

// `stored` with what the arguments say in its place; nothing after a complaint.
std::optional<NetworkSettings> wantedSettings(NetworkSettings stored, const QStringList &arguments)
{
    QStringList keys;
    for (const Setting &setting : settings)
        keys << QLatin1String(setting.key);
    const auto values = readAssignments(QStringLiteral("network"), arguments, keys);
    if (!values)
        return std::nullopt;
    for (const Setting &setting : settings) {
        const QString key = QLatin1String(setting.key);
        QString &text = stored.*setting.text;
        text = values->value(key, text);
        if (text.isEmpty()) {
            complain(QStringLiteral("network: the panel has no %1 yet: give %1=A.B.C.D too").arg(key));
            return std::nullopt;
        }
        const QList<quint16> parts = partsOfAddress(text);
        if (parts.isEmpty()) {
            complain(
                QStringLiteral("network: %1 '%2' is not four numbers from 0 to 65535, which the registers "
                               "hold, with dots between")
                    .arg(key, text));
            return std::nullopt;
        }
        text = dottedText(parts);
    }
    return stored;
}

void printSettings(Communication &comm)
{
    const NetworkSettings stored = storedNetworkSettings();
    const NetworkSettings registered = registeredNetworkSettings(comm);
    QList<QStringList> rows{
        {QStringLiteral("SETTING"), QStringLiteral("REGISTERS"), QStringLiteral("VALUE")}};
    for (const Setting &setting : settings) {
        rows << QStringList{QLatin1String(setting.name),
                            QStringLiteral("%1-%2").arg(setting.firstRegister).arg(setting.firstRegister + 3),
                            (stored.*setting.text).isEmpty() ? QStringLiteral("not set")
                                                             : registered.*setting.text};
    }
    print(alignedRows(rows));
}

ExitCode show(Session &session)
{
    requestNetworkSettings(session.communication());
    session.flags().poll();
    printSettings(session.communication());
    return ExitCode::Done;
}

void printCommands(bool wereRun)
{
    print(wereRun ? QStringLiteral("\nCommands that were run on this machine:\n")
                  : QStringLiteral("\nCommands that a panel runs, and --run-commands here:\n"));
    for (const QByteArray &command : recordedCommands())
        print(alignedRows({{QString(), QString::fromUtf8(command).trimmed()}}));
}

ExitCode set(Session &session, const QStringList &arguments, const QCommandLineParser &parser)
{
    const auto wanted = wantedSettings(storedNetworkSettings(), arguments);
    if (!wanted)
        return ExitCode::WrongUse;
    enterNetworkSettings(session.communication(), *wanted);
    const bool isSaved = session.flags().poll().savedAddress;
    const QStringList messages = takeOperatorMessages();
    if (!isSaved) {
        complain(QStringLiteral("the panel says: ") + messages.join(QLatin1Char(' ')));
        return ExitCode::Failed;
    }

    sys_base_init_config(); // from the file, so that what is shown is what is kept
    if (!(storedNetworkSettings() == *wanted)) {
        complain(QStringLiteral("%1: the settings cannot be stored: name another folder with --root")
                     .arg(tools_systemRoot() + QLatin1String(configurationPath)));
        return ExitCode::Failed;
    }
    print(QStringLiteral("The panel says: ") + messages.join(QLatin1Char(' ')) + QLatin1String("\n\n"));
    printSettings(session.communication());
    printCommands(parser.isSet(QStringLiteral("run-commands")));
    for (const QString &warning : networkWarnings(*wanted))
        complain(QStringLiteral("warning: ") + warning);
    sayWhatIsKept(parser);
    return ExitCode::Done;
}

ExitCode plan(const QStringList &arguments, const QString &root)
{
    if (!root.isEmpty())
        setConfigurationFile(root + QLatin1String(configurationPath));
    const auto wanted = wantedSettings(storedNetworkSettings(), arguments);
    if (!wanted)
        return ExitCode::WrongUse;

    const NetworkPlan plan = planNetwork(root, *wanted);
    QList<QStringList> rows;
    for (const PlanStep &step : plan.steps)
        rows << QStringList{QStringLiteral("%1").arg(rows.size() + 1, 2), step.place, step.text};
    print(alignedRows(rows));
    for (const QString &warning : plan.warnings)
        print(QStringLiteral("Warning: ") + warning + QLatin1Char('\n'));
    print(QStringLiteral("This is a plan: nothing has been changed.\n"));
    return plan.isAccepted ? ExitCode::Done : ExitCode::Failed;
}

void addOptions(QCommandLineParser &parser)
{
    parser.addPositionalArgument(
        QStringLiteral("ACTION"),
        QStringLiteral(
            "show (the default), set, or plan: print what set would do, step by step, and do nothing."),
        QStringLiteral("[show|set|plan]"));
    parser.addPositionalArgument(
        QStringLiteral("SETTING"),
        QStringLiteral(
            "For set and plan: ip=A.B.C.D mask=A.B.C.D gateway=A.B.C.D dns=A.B.C.D; what is not given "
            "stays as it is."),
        QStringLiteral("[SETTING=VALUE...]"));
    addRootOption(parser);
    parser.addOption(
        {QStringLiteral("run-commands"),
         QStringLiteral("For set: have this machine's shell run the panel's commands, which set up its "
                        "network. Without it they are only listed.")});
}

} // namespace

ExitCode runNetwork(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    const auto ended = readOptions(
        parser, QStringLiteral("Shows, sets or plans the panel's own address through its registers."),
        arguments, std::numeric_limits<int>::max());
    if (ended)
        return *ended;
    const QStringList positional = parser.positionalArguments();
    const QString action = positional.value(0, QStringLiteral("show"));
    const QString root = parser.value(QStringLiteral("root"));
    if (action == QLatin1String("plan"))
        return plan(positional.mid(1), root);
    const bool isSet = action == QLatin1String("set");
    if (!isSet && (action != QLatin1String("show") || positional.size() > 1)) {
        complain(QStringLiteral("network: '%1' is neither show, nor set or plan with settings")
                     .arg(positional.join(QLatin1Char(' '))));
        return ExitCode::WrongUse;
    }

    SessionOptions options;
    options.root = root;
    options.runCommands = isSet && parser.isSet(QStringLiteral("run-commands"));
    ExitCode exitCode = ExitCode::Done;
    const auto session = openSession(options, exitCode);
    if (!session)
        return exitCode;
    return isSet ? set(*session, positional.mid(1), parser) : show(*session);
}

} // namespace panelkit::simulator
