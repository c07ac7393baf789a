#include "simulator/host/driverfiles.h"
#include "simulator/host/projectchecker.h"
#include "simulator/panelsim/commands.h"
#include "simulator/panelsim/texttable.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace panelkit::simulator {

namespace {

void printJson(const QJsonObject &object)
{
    print(QString::fromUtf8(QJsonDocument(object).toJson()));
}

// One address.

QLatin1String verdictText(const CheckedAddress &checked)
{
    if (!checked.passes)
        return QLatin1String("refused");
    return checked.verdict.code == 0 ? QLatin1String("valid") : QLatin1String("passes unchecked");
}

const char *optionOf(AddressVerdict::Text text)
{
    switch (text) {
    case AddressVerdict::LinkNameText:
        return "link";
    case AddressVerdict::BlockText:
        return "block";
    case AddressVerdict::NumberText:
        return "number";
    case AddressVerdict::NoText:
        break;
    }
    return "";
}

QString textOf(AddressVerdict::Text text, const TypedAddress &address)
{
    switch (text) {
    case AddressVerdict::LinkNameText:
        return address.linkName;
    case AddressVerdict::BlockText:
        return address.block;
    case AddressVerdict::NumberText:
        return address.number;
    case AddressVerdict::NoText:
        break;
    }
    return QString();
}

// The text at fault, and a line below that marks the place in it.
QString markedPlace(const AddressVerdict &verdict, const TypedAddress &address)
{
    if (verdict.text == AddressVerdict::NoText)
        return QString();
    const QString text = textOf(verdict.text, address);
    const QString margin = QStringLiteral("  %1  ").arg(QLatin1String(optionOf(verdict.text)));
    const int before = displayWidth(margin + printable(text.left(verdict.offset)));
    const int marked = displayWidth(printable(text.mid(verdict.offset, verdict.length)));
    return margin + printable(text) + QLatin1Char('\n') + QString(before, QLatin1Char(' ')) +
           QString(std::max(marked, 1), QLatin1Char('^')) + QLatin1Char('\n');
}

QJsonObject addressJson(const TypedAddress &address, const CheckedAddress &checked)
{
    QJsonObject written;
    for (const auto &property : checked.written)
        written.insert(property.first, property.second);
    return {{QStringLiteral("passes"), checked.passes},
            {QStringLiteral("code"), checked.verdict.code},
            {QStringLiteral("reason"), checked.explanation},
            {QStringLiteral("field"), QLatin1String(optionOf(checked.verdict.text))},
            {QStringLiteral("text"), textOf(checked.verdict.text, address)},
            {QStringLiteral("offset"), checked.verdict.offset},
            {QStringLiteral("length"), checked.verdict.length},
            {QStringLiteral("written"), written}};
}

ExitCode checkOne(const Session &session, const TypedAddress &address, bool asJson)
{
    ProjectChecker checker(session);
    const CheckedAddress checked = checker.check(address);
    if (asJson) {
        printJson(addressJson(address, checked));
    } else {
        print(QStringLiteral("%1, code %2\n").arg(verdictText(checked)).arg(checked.verdict.code));
        if (!checked.explanation.isEmpty())
            print(markedPlace(checked.verdict, address) + printable(checked.explanation) + QLatin1Char('\n'));
        QList<QStringList> rows;
        for (const auto &property : checked.written)
            rows << QStringList{QLatin1String("  ") + property.first, property.second};
        print(alignedRows(rows));
    }
    return checked.passes ? ExitCode::Done : ExitCode::Failed;
}

// All items.

ExitCode checkAll(const Session &session, bool asJson)
{
    const std::vector<ItemDefinition> &items = session.project().items;
    ProjectChecker checker(session);
    const std::vector<ItemFinding> findings = checker.checkItems();
    const auto refused = std::count_if(findings.begin(), findings.end(),
                                       [](const ItemFinding &finding) { return !finding.passes; });
    QList<QStringList> rows{{QStringLiteral("ITEM"), QStringLiteral("FIELD"), QStringLiteral("CODE"),
                             QStringLiteral("VERDICT"), QStringLiteral("REASON")}};
    QJsonArray json;
    for (const ItemFinding &finding : findings) {
        rows << QStringList{
            items[finding.item].name, QLatin1String(finding.field), QString::number(finding.code),
            finding.passes ? QStringLiteral("passes") : QStringLiteral("refused"), finding.reason};
        json << QJsonObject{{QStringLiteral("item"), items[finding.item].name},
                            {QStringLiteral("field"), QLatin1String(finding.field)},
                            {QStringLiteral("code"), finding.code},
                            {QStringLiteral("passes"), finding.passes},
                            {QStringLiteral("reason"), finding.reason}};
    }
    if (asJson) {
        printJson({{QStringLiteral("project"), session.project().name},
                   {QStringLiteral("items"), static_cast<int>(items.size())},
                   {QStringLiteral("refused"), static_cast<int>(refused)},
                   {QStringLiteral("findings"), json}});
    } else {
        if (!findings.empty())
            print(alignedRows(rows) + QLatin1Char('\n'));
        print(QStringLiteral("%1 items: %2 valid, %3 passed unchecked, %4 refused\n")
                  .arg(items.size())
                  .arg(items.size() - findings.size())
                  .arg(findings.size() - static_cast<std::size_t>(refused))
                  .arg(refused));
    }
    return refused == 0 ? ExitCode::Done : ExitCode::Failed;
}

// The drivers.

ExitCode checkDrivers(const Session &session, bool asJson)
{
    const std::vector<DriverDiagnosis> diagnoses = diagnoseDrivers(session);
    const auto yesNo = [](bool has) {
        return has ? QStringLiteral("yes") : QStringLiteral("no");
    };
    QList<QStringList> rows{{QStringLiteral("LINK"), QStringLiteral("NAME"), QStringLiteral("FILE"),
                             QStringLiteral("LOADS"), QStringLiteral("CHECKS"), QStringLiteral("INDEXES"),
                             QStringLiteral("DESCRIBES"), QString()}};
    QJsonArray json;
    for (const DriverDiagnosis &diagnosis : diagnoses) {
        rows << QStringList{QString::number(diagnosis.linkNumber), diagnosis.linkName,
                            QFileInfo(diagnosis.file).fileName(),  yesNo(diagnosis.loads),
                            yesNo(diagnosis.hasCheckAddr),         yesNo(diagnosis.hasCheckAddrValidity),
                            yesNo(diagnosis.hasGetRegDiscription), diagnosis.problem};
        json << QJsonObject{{QStringLiteral("link"), diagnosis.linkNumber},
                            {QStringLiteral("name"), diagnosis.linkName},
                            {QStringLiteral("file"), diagnosis.file},
                            {QStringLiteral("loads"), diagnosis.loads},
                            {QStringLiteral("intf_checkAddr"), diagnosis.hasCheckAddr},
                            {QStringLiteral("intf_checkAddrValidity"), diagnosis.hasCheckAddrValidity},
                            {QStringLiteral("intf_getRegDiscription"), diagnosis.hasGetRegDiscription},
                            {QStringLiteral("problem"), diagnosis.problem}};
    }
    if (asJson)
        printJson({{QStringLiteral("drivers"), json}});
    else
        print(alignedRows(rows));
    const bool areSound = std::all_of(diagnoses.begin(), diagnoses.end(),
                                      [](const DriverDiagnosis &diagnosis) { return diagnosis.isSound(); });
    return areSound ? ExitCode::Done : ExitCode::Failed;
}

void addOptions(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("link"), QStringLiteral("The name of a link."), QStringLiteral("NAME")});
    parser.addOption(
        {QStringLiteral("block"),
         QStringLiteral("The block, behind a link's number and \"/\" and a station and \"#\" where "
                        "they are needed: 4x, 3/MW, 2/3#4x."),
         QStringLiteral("TEXT")});
    parser.addOption({QStringLiteral("number"),
                      QStringLiteral("The register's number, as the driver reads it."), QStringLiteral("N")});
    parser.addOption({QStringLiteral("bit"), QStringLiteral("Ask for a bit.")});
    parser.addOption({QStringLiteral("word"), QStringLiteral("Ask for a word, as without --bit.")});
    parser.addOption({QStringLiteral("length"), QStringLiteral("So many registers in a row; without it 1."),
                      QStringLiteral("N")});
    parser.addOption({QStringLiteral("all"), QStringLiteral("Check the address of every item instead.")});
    parser.addOption(
        {QStringLiteral("drivers"), QStringLiteral("Look at the drivers of all links instead.")});
    parser.addOption({QStringLiteral("json"), QStringLiteral("Print JSON.")});
}

// The first option that belongs to one address, where that is not what is asked for; empty when there is
// none.
QString optionOfOneAddress(const QCommandLineParser &parser)
{
    for (const char *option : {"link", "block", "number", "bit", "word", "length"})
        if (parser.isSet(QLatin1String(option)))
            return QLatin1String(option);
    return QString();
}

// The address that the options give, or nothing after a complaint.
std::optional<TypedAddress> typedAddress(const QCommandLineParser &parser)
{
    for (const char *needed : {"link", "block", "number"}) {
        if (!parser.isSet(QLatin1String(needed))) {
            complain(QStringLiteral(
                         "check: give --link, --block and --number, or --all, or --drivers; there is no "
                         "--%1")
                         .arg(QLatin1String(needed)));
            return std::nullopt;
        }
    }
    if (parser.isSet(QStringLiteral("bit")) && parser.isSet(QStringLiteral("word"))) {
        complain(QStringLiteral("check: give --bit or --word, not both"));
        return std::nullopt;
    }
    TypedAddress address;
    address.linkName = parser.value(QStringLiteral("link"));
    address.block = parser.value(QStringLiteral("block"));
    address.number = parser.value(QStringLiteral("number"));
    address.isBit = parser.isSet(QStringLiteral("bit"));
    if (parser.isSet(QStringLiteral("length"))) {
        bool isNumber = false;
        address.length = parser.value(QStringLiteral("length")).toInt(&isNumber);
        if (!isNumber) {
            complain(QStringLiteral("--length '%1' is no whole number")
                         .arg(parser.value(QStringLiteral("length"))));
            return std::nullopt;
        }
    }
    return address;
}

} // namespace

ExitCode runCheck(const QStringList &arguments)
{
    QCommandLineParser parser;
    addSessionOptions(parser);
    addOptions(parser);
    const auto ended = readOptions(
        parser,
        QStringLiteral("Checks an address as an author types it, or all of a project, or its drivers."),
        arguments, 1);
    if (ended)
        return *ended;
    const bool isAll = parser.isSet(QStringLiteral("all"));
    const bool isDrivers = parser.isSet(QStringLiteral("drivers"));
    std::optional<TypedAddress> address;
    if (!isAll && !isDrivers && !(address = typedAddress(parser)))
        return ExitCode::WrongUse;
    if (isAll && isDrivers) {
        complain(QStringLiteral("check: give --all or --drivers, not both"));
        return ExitCode::WrongUse;
    }
    const QString surplus = address ? QString() : optionOfOneAddress(parser);
    if (!surplus.isEmpty()) {
        complain(QStringLiteral("check: --%1 is for one address: leave it out, or leave out --%2")
                     .arg(surplus, isAll ? QStringLiteral("all") : QStringLiteral("drivers")));
        return ExitCode::WrongUse;
    }

    ExitCode exitCode = ExitCode::Done;
    const auto session = openSession(parser, exitCode);
    if (!session)
        return exitCode;
    const bool asJson = parser.isSet(QStringLiteral("json"));
    if (isAll)
        return checkAll(*session, asJson);
    return isDrivers ? checkDrivers(*session, asJson) : checkOne(*session, *address, asJson);
}

} // namespace panelkit::simulator
