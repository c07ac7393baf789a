#include "link/addressindex.h"
#include "simulator/host/session.h"
#include "simulator/panelsim/commands.h"
#include "simulator/panelsim/texttable.h"

namespace panelkit::simulator {

namespace {

QString listName(AddressIndexOrigin::List list)
{
    switch (list) {
    case AddressIndexOrigin::ProjectList:
        return QStringLiteral("the project's list of links");
    case AddressIndexOrigin::IotList:
        return QStringLiteral("the IoT runtime's list of links");
    case AddressIndexOrigin::NoList:
        break;
    }
    return QStringLiteral("no list of links");
}

QString story(const AddressIndexOrigin &origin)
{
    switch (origin.source) {
    case AddressIndexOrigin::Driver:
        return QStringLiteral("the driver was asked with mode %1 and width %2%3")
            .arg(origin.mode)
            .arg(origin.width)
            .arg(origin.index == -1 ? QStringLiteral(", and gave no index") : QString());
    case AddressIndexOrigin::DriverNotLoadable:
        return QStringLiteral("the file does not load; 'panelsim check --drivers' says why");
    case AddressIndexOrigin::DriverIncomplete:
        return QStringLiteral("the file lacks an entry point; 'panelsim check --drivers' says which");
    case AddressIndexOrigin::TextWithoutDriver:
        return QStringLiteral("no driver is known for the link: the text was read as a number");
    case AddressIndexOrigin::TextWithoutFile:
        return QStringLiteral("no file is named like the driver: the text was read as a number");
    }
    return QString();
}

} // namespace

ExitCode runLookup(const QStringList &arguments)
{
    QCommandLineParser parser;
    addSessionOptions(parser);
    parser.addOption({QStringLiteral("link"), QStringLiteral("The name of a link."), QStringLiteral("NAME")});
    parser.addOption(
        {QStringLiteral("block"), QStringLiteral("The register's block."), QStringLiteral("TEXT")});
    parser.addOption({QStringLiteral("number"),
                      QStringLiteral("The register's number, as the driver reads it."),
                      QStringLiteral("TEXT")});
    parser.addOption({QStringLiteral("iot"), QStringLiteral("Take the driver from the IoT runtime's list.")});
    const auto ended =
        readOptions(parser, QStringLiteral("Shows the index of a register as its link's driver counts it."),
                    arguments, 1);
    if (ended)
        return *ended;
    for (const char *needed : {"link", "block", "number"}) {
        if (!parser.isSet(QLatin1String(needed))) {
            complain(QStringLiteral("lookup: there is no --%1").arg(QLatin1String(needed)));
            return ExitCode::WrongUse;
        }
    }
    ExitCode exitCode = ExitCode::Done;
    const auto session = openSession(parser, exitCode);
    if (!session)
        return exitCode;

    const AddressIndexOrigin origin =
        tools_explainAddrIndex(parser.value(QStringLiteral("link")), parser.value(QStringLiteral("block")),
                               parser.value(QStringLiteral("number")), !parser.isSet(QStringLiteral("iot")));
    const QString none = QStringLiteral("none");
    print(QStringLiteral("index %1: %2\n").arg(origin.index).arg(story(origin)));
    print(alignedRows({{QStringLiteral("  read"), listName(origin.list)},
                       {QStringLiteral("  driver"), origin.driver.isEmpty() ? none : origin.driver},
                       {QStringLiteral("  file"), origin.file.isEmpty() ? none : origin.file}}));
    return origin.index == -1 ? ExitCode::Failed : ExitCode::Done;
}

} // namespace panelkit::simulator
