#include "simulator/comm/communication.h"
#include "simulator/host/registertext.h"
#include "simulator/host/runtimeevents.h"
#include "simulator/lua/linkregisters.h"
#include "simulator/panelsim/commands.h"
#include "simulator/panelsim/texttable.h"

namespace panelkit::simulator {

namespace {

struct Setting
{
    TypedRegister target;
    MacroValue value;
};

struct Request
{
    std::vector<std::size_t> items;    // that are shown
    std::vector<ITEM_MACRO_TYPE> runs; // of the one item
    std::vector<Setting> settings;
    bool isDryRun = false;
};

QString nameOf(ITEM_MACRO_TYPE type)
{
    return type == ITEM_MACRO_PRESS ? QStringLiteral("press") : QStringLiteral("release");
}

// The author's text of that macro, or an empty one when the item's mode leaves it out.
QString authorsText(const ItemDefinition &item, ITEM_MACRO_TYPE type)
{
    const int ownMode = type == ITEM_MACRO_PRESS ? 1 : 2;
    if (item.macro.mode != ownMode && item.macro.mode != 3)
        return QString();
    return type == ITEM_MACRO_PRESS ? item.macro.press : item.macro.release;
}

bool hasMacro(const ItemDefinition &item)
{
    return !authorsText(item, ITEM_MACRO_PRESS).isEmpty() || !authorsText(item, ITEM_MACRO_RELEASE).isEmpty();
}

std::optional<std::size_t> itemNamed(const Project &project, const QString &name)
{
    QStringList known;
    for (std::size_t i = 0; i < project.items.size(); ++i) {
        if (project.items[i].name == name)
            return i;
        if (hasMacro(project.items[i]))
            known << project.items[i].name;
    }
    complain(QStringLiteral("--item '%1': there is no such item; these have a macro: %2")
                 .arg(name, known.join(QLatin1String(", "))));
    return std::nullopt;
}

std::optional<Setting> parseSetting(const Project &project, const QString &text)
{
    const auto sign = text.lastIndexOf(QLatin1Char('='));
    if (sign < 0) {
        complain(QStringLiteral("--set '%1' is not ADDRESS=VALUE, as in LW110=5").arg(text));
        return std::nullopt;
    }
    QString error;
    const auto target = parseRegister(project, text.left(sign), error);
    if (!target) {
        complain(QLatin1String("--set ") + error);
        return std::nullopt;
    }
    const auto value = parseNumber(text.mid(sign + 1));
    const auto encoded = value ? encodeValue(target->type, *value) : std::nullopt;
    if (!encoded || !encoded->isExact) {
        complain(
            QStringLiteral("--set '%1': '%2' is no number that the register can hold as a value of its type")
                .arg(text, text.mid(sign + 1)));
        return std::nullopt;
    }
    return Setting{*target, *value};
}

// Which macros of the item are to be run, or nothing after a complaint.
std::optional<std::vector<ITEM_MACRO_TYPE>> readRuns(const QCommandLineParser &parser,
                                                     const ItemDefinition &item)
{
    std::vector<ITEM_MACRO_TYPE> runs;
    const QString wanted = parser.value(QStringLiteral("run"));
    for (const ITEM_MACRO_TYPE type : {ITEM_MACRO_PRESS, ITEM_MACRO_RELEASE}) {
        const bool isWanted =
            wanted.isEmpty() ? parser.isSet(QStringLiteral("dry-run")) : wanted == nameOf(type);
        if (isWanted && !authorsText(item, type).isEmpty())
            runs.push_back(type);
        else if (isWanted && !wanted.isEmpty()) {
            complain(QStringLiteral("--run %1: '%2' has no %1 macro").arg(wanted, item.name));
            return std::nullopt;
        }
    }
    if (runs.empty() && !wanted.isEmpty()) {
        complain(QStringLiteral("--run '%1' is neither press nor release").arg(wanted));
        return std::nullopt;
    }
    return runs;
}

// What the command line asks for, or nothing after a complaint.
std::optional<Request> readRequest(const QCommandLineParser &parser, const Project &project)
{
    Request request;
    request.isDryRun = parser.isSet(QStringLiteral("dry-run"));
    if (!parser.isSet(QStringLiteral("item"))) {
        for (const char *option : {"run", "set", "dry-run"}) {
            if (parser.isSet(QLatin1String(option))) {
                complain(QStringLiteral("--%1 needs --item NAME").arg(QLatin1String(option)));
                return std::nullopt;
            }
        }
        for (std::size_t i = 0; i < project.items.size(); ++i)
            if (hasMacro(project.items[i]))
                request.items.push_back(i);
        return request;
    }
    const auto item = itemNamed(project, parser.value(QStringLiteral("item")));
    const auto runs = item ? readRuns(parser, project.items[*item]) : std::nullopt;
    if (!runs)
        return std::nullopt;
    if (runs->empty() && parser.isSet(QStringLiteral("set"))) {
        complain(QStringLiteral(
            "--set needs --run press, --run release or --dry-run: without a run no register is "
            "given a value"));
        return std::nullopt;
    }
    request.items = {*item};
    request.runs = *runs;
    for (const QString &text : parser.values(QStringLiteral("set"))) {
        const auto setting = parseSetting(project, text);
        if (!setting)
            return std::nullopt;
        request.settings.push_back(*setting);
    }
    return request;
}

// A declared variable that stands within `expression` as a name, or an empty text.
QString variableWithin(const Project &project, const QString &expression)
{
    const auto isName = [&expression](auto position) {
        const QChar character =
            position >= 0 && position < expression.size() ? expression.at(position) : QChar();
        return character.isLetterOrNumber() || character == QLatin1Char('_');
    };
    for (const VariableDefinition &variable : project.variables) {
        for (auto at = expression.indexOf(variable.name); at >= 0;
             at = expression.indexOf(variable.name, at + 1))
            if (!isName(at - 1) && !isName(at + variable.name.size()))
                return variable.name;
    }
    return QString();
}

// What became of a line, and why.
QString explanation(const Project &project, const luaLineNote &note, const QString &rewritten)
{
    switch (note.kind) {
    case LUA_LINE_WITHOUT_ASSIGNMENT:
        return QString();
    case LUA_LINE_WITH_MANY_SIGNS:
        return QStringLiteral("kept: more than one \"=\"");
    case LUA_LINE_WITHOUT_VARIABLE: {
        const QString within = variableWithin(project, note.right);
        return within.isEmpty()
                   ? QStringLiteral("kept: no variable")
                   : QStringLiteral("kept: %1 is read only when it stands alone behind the \"=\"")
                         .arg(within);
    }
    case LUA_LINE_GROWS_TOO_LONG:
        return QStringLiteral("kept: the markers in %1 would make it too long").arg(note.variable.name);
    case LUA_LINE_READS_VARIABLE:
        return QStringLiteral("reads ") + note.variable.name;
    case LUA_LINE_WRITES_VARIABLE:
        break;
    }
    QString text = QStringLiteral("writes ") + note.variable.name;
    if (!rewritten.contains(QLatin1Char(',') + note.right + QLatin1Char(',')))
        text += QStringLiteral("; a \"%\" and a digit in the value were taken for a marker");
    return text;
}

void printRewriting(const Project &project, const QString &author, const QString &rewritten)
{
    const QStringList before = author.split(QLatin1Char('\n'));
    const QStringList after = rewritten.split(QLatin1Char('\n'));
    const QList<luaLineNote> notes = helpMacroLua::explainLuaForVarList(author);
    QList<QStringList> rows{{QStringLiteral("LINE"), QStringLiteral("AUTHOR'S TEXT"),
                             QStringLiteral("WHAT BECAME OF IT"), QStringLiteral("REWRITTEN")}};
    for (int i = 0; i < before.size(); ++i)
        rows << QStringList{QString::number(i + 1), before.at(i),
                            explanation(project, notes.at(i), after.at(i)), after.at(i)};
    print(alignedRows(rows));
}

void printAddresses(ItemMacros &macros, std::size_t item)
{
    QList<QStringList> read{{QStringLiteral("VARIABLE READ"), QStringLiteral("LINK"),
                             QStringLiteral("STATION"), QStringLiteral("BLOCK"), QStringLiteral("INDEX"),
                             QStringLiteral("EXTRA"), QStringLiteral("TYPE")}};
    for (const scriptVarTable &variable : macros.macro(item).varMap)
        read << QStringList{variable.name,     variable.linkName, variable.station, variable.blockName,
                            variable.regIndex, variable.extra,    variable.typeName};
    QList<QStringList> watched{{QStringLiteral("WATCHED: LINK"), QStringLiteral("STATION"),
                                QStringLiteral("BLOCK"), QStringLiteral("INDEX"), QStringLiteral("EXTRA")}};
    for (const KEY_ADDRESS &address : macros.watchedAddresses(item))
        watched << QStringList{address.linkName, QString::number(address.station), address.blockName,
                               QString::number(address.addrIndex), QString::number(address.extra)};
    print(read.size() > 1 ? alignedRows(read) : QStringLiteral("no variable is read\n"));
    print(QLatin1Char('\n') +
          (watched.size() > 1 ? alignedRows(watched) : QStringLiteral("no address is watched\n")));
}

void printItem(const Project &project, ItemMacros &macros, std::size_t index)
{
    const ItemDefinition &item = project.items[index];
    for (const ITEM_MACRO_TYPE type : {ITEM_MACRO_PRESS, ITEM_MACRO_RELEASE}) {
        const QString author = authorsText(item, type);
        if (author.isEmpty())
            continue;
        print(QStringLiteral("%1, %2 macro\n").arg(printable(item.name), nameOf(type)));
        const itemMacro &macro = macros.macro(index);
        printRewriting(project, author, type == ITEM_MACRO_PRESS ? macro.pressMacro : macro.releaseMacro);
        print(QStringLiteral("\n"));
    }
    printAddresses(macros, index);
}

// The declared variable of that register, or an empty text.
QString variableAt(const Project &project, const MacroAddress &address)
{
    for (const VariableDefinition &variable : project.variables)
        if (variable.address.link == address.link && variable.address.station == address.station &&
            variable.address.block == address.block && variable.address.index == address.index)
            return variable.name;
    return QString();
}

QString textOf(const std::optional<MacroValue> &value)
{
    return value ? numberText(*value) : QString();
}

void printResult(const Project &project, const MacroResult &result)
{
    QList<QStringList> rows{{QStringLiteral("LINE"), QStringLiteral("ACCESS"), QStringLiteral("VARIABLE"),
                             QStringLiteral("LINK"), QStringLiteral("STATION"), QStringLiteral("BLOCK"),
                             QStringLiteral("INDEX"), QStringLiteral("OLD"), QStringLiteral("NEW"),
                             QString()}};
    for (const MacroAccess &access : result.accesses) {
        QString remark = access.failure;
        if (remark.isEmpty() && !access.isExact)
            remark = QStringLiteral("rounded or cut to what its type can hold");
        rows << QStringList{QString::number(access.line),
                            access.isWrite ? QStringLiteral("written") : QStringLiteral("read"),
                            variableAt(project, access.address),
                            access.address.link,
                            QString::number(access.address.station),
                            access.address.block,
                            QString::number(access.address.index),
                            textOf(access.isWrite ? access.before : access.value),
                            access.isWrite ? textOf(access.value) : QString(),
                            remark};
    }
    if (rows.size() > 1)
        print(alignedRows(rows));
    if (result.isDone())
        print(QStringLiteral("done\n"));
    else if (result.line > 0)
        print(QStringLiteral("ended in line %1: %2\n")
                  .arg(QString::number(result.line), printable(result.message)));
    else
        print(QStringLiteral("ended: %1\n").arg(printable(result.message)));
}

// False after a complaint.
template <typename Write>
bool applySettings(const Request &request, Write write)
{
    for (const Setting &setting : request.settings) {
        const MacroAddress &address = setting.target.address;
        const QString failure = write(address, encodeValue(setting.target.type, setting.value)->words);
        if (!failure.isEmpty()) {
            complain(QStringLiteral("--set: %1 %2 of \"%3\": %4")
                         .arg(address.block, QString::number(address.index), address.link, failure));
            return false;
        }
    }
    return true;
}

// Printable, but for the tabs that a macro's print puts between its values.
QString withTabs(const QString &line)
{
    QStringList texts;
    for (const QString &text : line.split(QLatin1Char('\t')))
        texts << printable(text);
    return texts.join(QLatin1Char('\t'));
}

// Runs what was asked for as the runtime does: by events. False when one of the macros was not done.
bool runMacros(const Session &session, const ItemMacros &macros, const Request &request,
               MacroRegisters &registers)
{
    const std::size_t item = request.items.front();
    bool allDone = true;
    MacroEngine engine(registers);
    engine.setOutput(
        [](const QString &line) { print(QStringLiteral("print: ") + withTabs(line) + QLatin1Char('\n')); });
    RuntimeEvents::Handlers handlers;
    handlers.messageBox = [](const QString &text, int, int) {
        print(QStringLiteral("message: ") + withTabs(text) + QLatin1Char('\n'));
    };
    handlers.macroEnded = [&](const MacroOwner &owner, const MacroResult &result) {
        print(QStringLiteral("\n%1, run on %2, %3\n")
                  .arg(printable(session.project().items[owner.item].name), nameOf(owner.type),
                       request.isDryRun ? QStringLiteral("with a copy of the registers: nothing is written")
                                        : QStringLiteral("with the registers themselves")));
        printResult(session.project(), result);
        allDone = allDone && result.isDone();
    };
    RuntimeEvents events(session, macros, engine, handlers);
    for (const ITEM_MACRO_TYPE type : request.runs)
        helpMacroLua::runLua(macros.macro(item), type);
    events.handleWaiting();
    return allDone;
}

} // namespace

ExitCode runMacro(const QStringList &arguments)
{
    QCommandLineParser parser;
    addSessionOptions(parser);
    parser.addOption(
        {QStringLiteral("item"), QStringLiteral("Only the macros of this item."), QStringLiteral("NAME")});
    parser.addOption({QStringLiteral("run"), QStringLiteral("Run the item's press or release macro."),
                      QStringLiteral("press|release")});
    parser.addOption(
        {QStringLiteral("set"),
         QStringLiteral(
             "Before that, give a register a value: a script variable by its name, or an address as "
             "'panelsim show' prints it, with a type behind a colon if need be. Can be repeated."),
         QStringLiteral("ADDRESS=VALUE")});
    parser.addOption(
        {QStringLiteral("dry-run"),
         QStringLiteral("Run with a copy of the registers, so that nothing is written; without --run "
                        "every macro of the item.")});
    const auto ended = readOptions(
        parser,
        QStringLiteral(
            "Shows the macros of a project: the author's text and what the panel makes of it, line by line, "
            "the variables that they read and the addresses that are watched. Runs them on request, and "
            "lists each register that was read or written."),
        arguments, 1);
    if (ended)
        return *ended;
    ExitCode exitCode = ExitCode::Done;
    const auto session = openSession(parser, exitCode);
    if (!session)
        return exitCode;
    const auto request = readRequest(parser, session->project());
    if (!request)
        return ExitCode::WrongUse;

    ItemMacros macros(*session);
    for (const std::size_t item : request->items)
        printItem(session->project(), macros, item);
    if (request->runs.empty())
        return ExitCode::Done;

    LinkRegisters links(session->communication());
    CopiedRegisters copies(session->communication());
    const auto writeLink = [&links](const MacroAddress &address, const RegisterWords &words) {
        std::optional<RegisterWords> before;
        return links.write(address, words, before);
    };
    const auto presetCopy = [&copies](const MacroAddress &address, const RegisterWords &words) {
        return copies.preset(address, words);
    };
    const bool isDone =
        request->isDryRun
            ? applySettings(*request, presetCopy) && runMacros(*session, macros, *request, copies)
            : applySettings(*request, writeLink) && runMacros(*session, macros, *request, links);
    return isDone ? ExitCode::Done : ExitCode::Failed;
}

} // namespace panelkit::simulator
