#include "network/panelip.h"
#include "runtime/systemroot.h"
#include "simulator/comm/communication.h"
#include "simulator/comm/systemregisters.h"
#include "simulator/host/flagpolling.h"
#include "simulator/host/networksettings.h"
#include "simulator/host/panelfiles.h"
#include "simulator/panelsim/commands.h"
#include "simulator/panelsim/texttable.h"

#include <limits>

namespace panelkit::simulator {

namespace {

enum class Kind
{
    Number, // one word
    Wide,   // two words, the low one first
    Address // four words, one byte each
};

enum class Links
{
    All,
    Ethernet,
    Serial
};

struct Parameter
{
    const char *key;
    int firstRegister;
    Kind kind;
    const char *unit;
    Links links;
    quint32 largest = 65535; // of a number
};

constexpr quint32 largestWide = 2147483647; // two registers that the panel takes for a signed number
constexpr quint32 largestStation = 255;     // as in a project: a request has one byte for it

const Parameter parameters[] = {
    {"station", 64002, Kind::Number, "", Links::All, largestStation},
    {"interval", 64003, Kind::Number, "ms", Links::All},
    {"timeout", 64004, Kind::Number, "ms", Links::All},
    {"retry", 64005, Kind::Number, "", Links::All},
    {"addmore", 64006, Kind::Number, "", Links::All},
    {"addrinterval", 64007, Kind::Number, "registers", Links::All},
    {"ip", 64020, Kind::Address, "", Links::Ethernet},
    {"port", 64024, Kind::Number, "", Links::Ethernet},
    {"mode", 64040, Kind::Number, "", Links::Serial},
    {"baud", 64041, Kind::Wide, "baud", Links::Serial, largestWide},
    {"data", 64043, Kind::Number, "bits", Links::Serial},
    {"check", 64044, Kind::Number, "", Links::Serial},
    {"stop", 64045, Kind::Number, "bits", Links::Serial},
};

QList<Parameter> parametersOf(const LinkValue &link)
{
    const Links kind = link.portName.contains(QLatin1String("Ethernet")) ? Links::Ethernet : Links::Serial;
    QList<Parameter> ofLink;
    for (const Parameter &parameter : parameters)
        if (parameter.links == Links::All || parameter.links == kind)
            ofLink << parameter;
    return ofLink;
}

int wordCount(const Parameter &parameter)
{
    return parameter.kind == Kind::Address ? 4 : parameter.kind == Kind::Wide ? 2 : 1;
}

QString valueOf(Communication &comm, const Parameter &parameter)
{
    quint16 words[4] = {};
    comm.readRegisters(wordArea, parameter.firstRegister, wordCount(parameter), words);
    if (parameter.kind == Kind::Address)
        return QStringLiteral("%1.%2.%3.%4").arg(words[0]).arg(words[1]).arg(words[2]).arg(words[3]);
    return QString::number(words[0] | static_cast<quint32>(words[1]) << 16);
}

// The words to write for the text, or nothing after a complaint.
QList<quint16> wordsOf(const Parameter &parameter, const QString &text)
{
    QString wanted;
    if (parameter.kind == Kind::Address) {
        if (checkIPAddr(text))
            return partsOfAddress(text);
        wanted = QStringLiteral("four numbers from 0 to 255 with dots between");
    } else {
        bool isNumber = false;
        const quint32 value = text.toUInt(&isNumber);
        if (isNumber && value <= parameter.largest) {
            QList<quint16> words{static_cast<quint16>(value)};
            if (parameter.kind == Kind::Wide)
                words << static_cast<quint16>(value >> 16);
            return words;
        }
        wanted = QStringLiteral("a number from 0 to %1").arg(parameter.largest);
    }
    complain(
        QStringLiteral("link-params: %1 '%2' is not %3").arg(QLatin1String(parameter.key), text, wanted));
    return {};
}

// As a screen does that lets the operator choose a link: its parameters then stand in the registers.
void chooseLink(Session &session, quint16 number)
{
    session.communication().writeRegisters(wordArea, linkNumberRegister, 1, &number);
    session.flags().poll();
}

void printParameters(Session &session, const LinkValue &link)
{
    Communication &comm = session.communication();
    print(QStringLiteral("Link %1, %2 (%3, %4), %5\n")
              .arg(QString::number(link.id), printable(comm.linkName(link.id)), printable(link.portName),
                   printable(link.driverLib),
                   session.flags().isStored(link.id) ? QStringLiteral("as an operator saved it")
                                                     : QStringLiteral("as the project has it")));
    QList<QStringList> rows{
        {QStringLiteral("KEY"), QStringLiteral("REGISTERS"), QStringLiteral("VALUE"), QString()}};
    for (const Parameter &parameter : parametersOf(link)) {
        QString place = QString::number(parameter.firstRegister);
        if (wordCount(parameter) > 1)
            place += QStringLiteral("-%1").arg(parameter.firstRegister + wordCount(parameter) - 1);
        rows << QStringList{QLatin1String(parameter.key), place, valueOf(comm, parameter),
                            QLatin1String(parameter.unit)};
    }
    print(alignedRows(rows));
}

ExitCode set(Session &session, const LinkValue &link, const QStringList &arguments)
{
    QStringList keys;
    for (const Parameter &parameter : parametersOf(link))
        keys << QLatin1String(parameter.key);
    const auto values = readAssignments(QStringLiteral("link-params"), arguments, keys);
    if (!values)
        return ExitCode::WrongUse;
    for (const Parameter &parameter : parametersOf(link)) {
        const auto value = values->constFind(QLatin1String(parameter.key));
        if (value == values->constEnd())
            continue;
        const QList<quint16> words = wordsOf(parameter, *value);
        if (words.isEmpty())
            return ExitCode::WrongUse;
        int address = parameter.firstRegister;
        for (const quint16 word : words)
            session.communication().writeRegisters(wordArea, address++, 1, &word);
    }

    const quint16 request = 1;
    session.communication().writeRegisters(flagArea, saveLinkFlag, 1, &request);
    const bool isSaved = session.flags().poll().savedLink == link.id;
    if (isSaved && session.flags().linkSettingsStatus() != QSettings::AccessError)
        return ExitCode::Done;
    complain(QStringLiteral(
                 "%1: the parameters cannot be stored (%2): see to it, or name another folder with --root")
                 .arg(tools_systemRoot() + QLatin1String(linkSettingsPath),
                      isSaved ? QStringLiteral("the file may not be written")
                              : QStringLiteral("the disk is full")));
    return ExitCode::Failed;
}

// The link of that number, with the registers filled from it; or one with the `id` 0 after a complaint.
LinkValue findLink(Session &session, const QString &text)
{
    bool isNumber = false;
    const quint16 number = text.toUShort(&isNumber);
    LinkValue link;
    if (isNumber && number > 0)
        link = session.communication().getLinkValue(number);
    if (link.id > 0) {
        chooseLink(session, number);
        return link;
    }
    QStringList numbers;
    for (const int known : session.communication().linkNumbers())
        if (known > 0)
            numbers << QString::number(known);
    complain(QStringLiteral("link-params: there is no link '%1': the project has %2")
                 .arg(text, numbers.isEmpty() ? QStringLiteral("none") : numbers.join(QLatin1String(", "))));
    link.id = 0;
    return link;
}

void addOptions(QCommandLineParser &parser)
{
    parser.addPositionalArgument(QStringLiteral("N"), QStringLiteral("The link's number."));
    parser.addPositionalArgument(QStringLiteral("ACTION"), QStringLiteral("show (the default) or set."),
                                 QStringLiteral("[show|set]"));
    parser.addPositionalArgument(
        QStringLiteral("KEY"),
        QStringLiteral(
            "For set: station, interval, timeout, retry, addmore, addrinterval; ip, port of an Ethernet "
            "link; mode, baud, data, check, stop of a serial one. What is not given stays as it is."),
        QStringLiteral("[KEY=VALUE...]"));
    parser.addOption({QStringLiteral("project"), QStringLiteral("The project file; without it the sample."),
                      QStringLiteral("FILE")});
    addRootOption(parser);
}

} // namespace

ExitCode runLinkParams(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    const auto ended = readOptions(
        parser, QStringLiteral("Shows or sets the parameters of a link through the panel's registers."),
        arguments, std::numeric_limits<int>::max());
    if (ended)
        return *ended;
    const QStringList positional = parser.positionalArguments();
    const QString action = positional.value(1, QStringLiteral("show"));
    const bool isSet = action == QLatin1String("set");
    if (positional.isEmpty() || (isSet && positional.size() < 3) ||
        (!isSet && (action != QLatin1String("show") || positional.size() > 2))) {
        complain(QStringLiteral("link-params takes a link's number and then show, or set with KEY=VALUE"));
        return ExitCode::WrongUse;
    }

    SessionOptions options;
    options.root = parser.value(QStringLiteral("root"));
    options.projectFile = parser.value(QStringLiteral("project"));
    ExitCode exitCode = ExitCode::Done;
    const auto session = openSession(options, exitCode);
    if (!session)
        return exitCode;
    const LinkValue link = findLink(*session, positional.first());
    if (link.id == 0)
        return ExitCode::WrongUse;
    if (isSet)
        exitCode = set(*session, link, positional.mid(2));
    if (exitCode != ExitCode::Done)
        return exitCode;
    printParameters(*session, link);
    if (isSet)
        sayWhatIsKept(parser);
    return ExitCode::Done;
}

} // namespace panelkit::simulator
