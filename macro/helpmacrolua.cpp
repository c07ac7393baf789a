#include "macro/helpmacrolua.h"

#include "macro/events.h"
#include "macro/interfaceall.h"
#include "macro/rewriting.h"
#include "macro/scriptvariables.h"
#include "platform/device_struct.h"
#include "platform/hmi_event.h"
#include "register/interfacecomm.h"

#include <QByteArray>

namespace {

// A list with a wrong "number" must neither stall the panel nor take all of its memory.
const int mostDeclarations = 1000000;

panelkit::ScriptVariables declaredVariables;

QString textOf(object *node, const char *name)
{
    return object_get_property_value_type_string(node, name, QString());
}

// Calls `take` with each text of the list `name` below `node`, in order, missing ones included.
template <typename Take>
void forEachDeclaration(object *node, const char *name, const char *prefix, Take take)
{
    object *list = object_get_child(node, name);
    if (list == nullptr)
        return;
    const int count = qMin(object_get_property_value_type_int32(list, "number", 0), mostDeclarations);
    for (int i = 0; i < count; ++i)
        take(textOf(list, (QByteArray(prefix) + QByteArray::number(i)).constData()));
}

// Reads one of the two macros of an item.
void loadText(object *item, const char *name, itemMacro &macro, QString &text, InterfaceAll *&argument)
{
    text = textOf(item, name);
    if (text.isEmpty())
        return;
    macro.hasMacro = 1;
    helpMacroLua::dealLuaForVarList(text, macro.varMap);
    argument = new InterfaceAll;
    argument->args.append(&text);
}

} // namespace

QString helpMacroLua::VarTableDataTypeConverty(int type)
{
    static const char *const names[] = {"DATA_TYPE_BIT", "DATA_TYPE_WUB", "DATA_TYPE_WB", "DATA_TYPE_WD",
                                        "DATA_TYPE_DUB", "DATA_TYPE_DB",  "DATA_TYPE_DD", "DATA_TYPE_DF"};
    return type >= 0 && type < 8 ? QString::fromLatin1(names[type]) : QString();
}

void helpMacroLua::initMacroVarTable(object *project)
{
    if (project == nullptr)
        return;
    forEachDeclaration(project, "macroVarList", "var", [](const QString &declaration) {
        scriptVarTable entry;
        if (panelkit::readDeclaration(declaration, entry))
            declaredVariables.insert(entry);
    });
}

void helpMacroLua::loadItemMacro(object *item, itemMacro &macro)
{
    macro.macroMode = item == nullptr ? 0 : object_get_property_value_type_int32(item, "macroMode", 0);
    if (macro.macroMode == 0) {
        macro.hasMacro = 0;
        return;
    }
    if (macro.macroMode == 1 || macro.macroMode == 3)
        loadText(item, "pressmacro", macro, macro.pressMacro, macro.pressArg);
    if (macro.macroMode == 2 || macro.macroMode == 3)
        loadText(item, "releasemacro", macro, macro.releaseMacro, macro.releaseArg);
    forEachDeclaration(item, "macroTextVarList", "Textvar",
                       [&macro](const QString &declaration) { macro.textVarList.append(declaration); });
}

void helpMacroLua::dealLuaForVarList(QString &text, QMap<QString, scriptVarTable> &varMap)
{
    panelkit::rewriteMacro(text, declaredVariables, varMap);
}

QList<luaLineNote> helpMacroLua::explainLuaForVarList(const QString &text)
{
    return panelkit::explainMacro(text, declaredVariables);
}

void helpMacroLua::registerLuaMonitorAddress(itemMacro &macro, QList<KEY_ADDRESS> &out, InterfaceComm *comm)
{
    if (comm == nullptr || macro.hasMacro == 0)
        return;
    const itemMacro &watched = macro;
    for (const QString &declaration : watched.textVarList) {
        const QStringList fields = declaration.split(QLatin1Char(','));
        if (fields.size() != 6)
            continue;
        KEY_ADDRESS address;
        address.linkName = fields[0].trimmed();
        address.station = fields[1].toInt();
        address.blockName = fields[2].trimmed();
        address.addrIndex = fields[3].toInt();
        address.extra = fields[4].toInt();
        out.append(address);
    }
    for (const scriptVarTable &variable : watched.varMap) {
        KEY_ADDRESS address;
        address.linkName = variable.linkName;
        address.station = variable.station.toInt();
        address.blockName = variable.blockName;
        address.extra = variable.extra.toInt();
        address.addrIndex =
            comm->resolveAddressIndex(comm->getLinkValueByName(variable.linkName).id, variable.blockName,
                                      variable.regIndex, address.extra, variable.dataType);
        out.append(address);
    }
}

void helpMacroLua::runLua(const itemMacro &macro, ITEM_MACRO_TYPE type)
{
    if (macro.hasMacro == 0)
        return;
    const bool isPress = type == ITEM_MACRO_PRESS;
    if (!isPress && type != ITEM_MACRO_RELEASE)
        return;
    const int ownMode = isPress ? 1 : 2;
    const QString &text = isPress ? macro.pressMacro : macro.releaseMacro;
    InterfaceAll *argument = isPress ? macro.pressArg : macro.releaseArg;
    if ((macro.macroMode != ownMode && macro.macroMode != 3) || text.isEmpty() || argument == nullptr)
        return;
    UHmiEvent::hmiEventPost(new UExternalFuncCallEvent(QString::fromLatin1("runLua"), argument), nullptr);
}
