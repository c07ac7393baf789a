#include "simulator/comm/communication.h"
#include "simulator/host/itemdisplay.h"
#include "simulator/panelsim/commands.h"
#include "simulator/panelsim/interrupt.h"
#include "simulator/panelsim/texttable.h"
#include "simulator/panelsim/watching.h"
#include "simulator/project/valuetypes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace panelkit::simulator {

namespace {

constexpr std::chrono::milliseconds redrawInterval{500};

QStringList hexWords(const QVector<quint16> &words)
{
    QStringList texts;
    for (const quint16 word : words)
        texts << QStringLiteral("%1").arg(word, 4, 16, QLatin1Char('0'));
    return texts;
}

// Why the text of an item need not be what the PLC holds; empty when it is.
QString doubt(const Communication &comm, const ItemDisplay &display)
{
    switch (comm.linkState(display.linkNumber).condition) {
    case LinkCondition::WithoutConnection:
        return QStringLiteral("without connection");
    case LinkCondition::Away:
        return QStringLiteral("PLC away");
    case LinkCondition::Disturbed:
        return QStringLiteral("link disturbed");
    case LinkCondition::Unknown:
        return QStringLiteral("unknown link");
    case LinkCondition::Internal:
    case LinkCondition::Idle:
    case LinkCondition::Connected:
        break;
    }
    return display.isCurrent ? QString() : QStringLiteral("no value");
}

QString itemTable(const Session &session, const std::vector<ItemDisplay> &displays)
{
    QList<QStringList> rows{{QStringLiteral("ITEM"), QStringLiteral("ADDRESS"), QStringLiteral("WORDS"),
                             QStringLiteral("TYPE"), QStringLiteral("VIEW"), QStringLiteral("SHOWN"),
                             QString()}};
    for (std::size_t i = 0; i < session.project().items.size(); ++i) {
        const ItemDefinition &item = session.project().items[i];
        const ItemDisplay &display = displays[i];
        rows << QStringList{item.name,
                            display.address,
                            hexWords(display.words).join(QLatin1Char(' ')),
                            typeName(item.type),
                            viewName(item.view),
                            display.text,
                            doubt(session.communication(), display)};
    }
    return alignedRows(rows);
}

QString linkTable(const Communication &comm)
{
    QList<QStringList> rows{{QStringLiteral("LINK"), QStringLiteral("NAME"), QStringLiteral("STATE")}};
    for (const int number : comm.linkNumbers())
        rows << QStringList{QString::number(number), comm.linkName(number), describe(comm.linkState(number))};
    return alignedRows(rows);
}

QJsonObject snapshotJson(const Session &session, const std::vector<ItemDisplay> &displays)
{
    QJsonArray items;
    for (std::size_t i = 0; i < session.project().items.size(); ++i) {
        const ItemDefinition &item = session.project().items[i];
        const ItemDisplay &display = displays[i];
        items << QJsonObject{{QStringLiteral("name"), item.name},
                             {QStringLiteral("link"), display.linkNumber},
                             {QStringLiteral("address"), display.address},
                             {QStringLiteral("words"), QJsonArray::fromStringList(hexWords(display.words))},
                             {QStringLiteral("type"), typeName(item.type)},
                             {QStringLiteral("view"), viewName(item.view)},
                             {QStringLiteral("text"), display.text},
                             {QStringLiteral("current"), display.isCurrent},
                             {QStringLiteral("remark"), doubt(session.communication(), display)}};
    }
    const Communication &comm = session.communication();
    QJsonArray links;
    for (const int number : comm.linkNumbers())
        links << QJsonObject{{QStringLiteral("number"), number},
                             {QStringLiteral("name"), comm.linkName(number)},
                             {QStringLiteral("state"), describe(comm.linkState(number))}};
    return {{QStringLiteral("project"), session.project().name},
            {QStringLiteral("items"), items},
            {QStringLiteral("links"), links}};
}

// What one look at all items gives to exit with.
ExitCode printSnapshot(const Session &session, bool asJson, bool onOneLine)
{
    // The items first: reading them is what brings the links to life.
    const std::vector<ItemDisplay> displays = displayItems(session);
    if (asJson) {
        const auto format = onOneLine ? QJsonDocument::Compact : QJsonDocument::Indented;
        print(QString::fromUtf8(QJsonDocument(snapshotJson(session, displays)).toJson(format)));
        if (onOneLine)
            print(QStringLiteral("\n"));
    } else {
        print(itemTable(session, displays) + QLatin1Char('\n') + linkTable(session.communication()));
    }
    return doneIfEveryPlcAnswers(session, displays);
}

} // namespace

ExitCode runShow(const QStringList &arguments)
{
    QCommandLineParser parser;
    addSessionOptions(parser);
    parser.addOption(
        {QStringLiteral("json"), QStringLiteral("Print JSON; with --watch one line each time.")});
    parser.addOption({QStringLiteral("watch"), QStringLiteral("Draw anew twice a second, until Ctrl-C.")});
    const auto ended = readOptions(
        parser,
        QStringLiteral("Shows each item of a project: its address, its words and the text on the screen."),
        arguments, 1);
    if (ended)
        return *ended;
    const bool isWatch = parser.isSet(QStringLiteral("watch"));
    if (isWatch)
        quitOnInterrupt();
    ExitCode exitCode = ExitCode::Done;
    const auto session = openSession(parser, exitCode);
    if (!session)
        return exitCode;

    watchItems(*session);
    const bool asJson = parser.isSet(QStringLiteral("json"));
    if (isWatch)
        drawUntilInterrupt(redrawInterval, !asJson, [&](Drawing drawing) {
            exitCode = printSnapshot(*session, asJson, drawing == Drawing::Below);
        });
    else
        exitCode = printSnapshot(*session, asJson, false);
    return exitCode;
}

} // namespace panelkit::simulator
