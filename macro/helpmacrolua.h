// How an item's Lua macros are made ready for the runtime: the script variables of the project, the texts
// that run on press and release, the addresses to watch for them, and the request to run one.
//
// Everything here is for the runtime's GUI thread. Nothing fails: what is missing is 0 or empty, what is
// malformed is left out.
#pragma once

#include "macro/interfaceall.h"
#include "platform/export.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

class InterfaceComm;
struct object;

// Which of an item's macros is meant.
enum ITEM_MACRO_TYPE : int
{
    ITEM_MACRO_PRESS = 1,
    ITEM_MACRO_RELEASE = 2
};

// A declared script variable: the register behind a name that macros assign to and from.
struct scriptVarTable
{
    // As declared, without the blanks around them. `regIndex`, `station` and `extra` stand in the rewritten
    // macro as bare numbers, `linkName` and `blockName` in quotes.
    QString name, linkName, station, blockName, regIndex, extra;
    QString typeName; // the name that VarTableDataTypeConverty gives for `dataType`
    qint32 dataType = 0;
};

// The macros of one item. `pressArg` and `releaseArg` point into the record: it must not move or go as long
// as the runtime may still run one of its macros. They are the record owner's to delete, once no posted event
// points to them; nothing here ever does.
struct itemMacro
{
    qint32 hasMacro = 0;  // not 0 once a text was found
    qint32 macroMode = 0; // 0 none, 1 press, 2 release, 3 both
    QString pressMacro;   // as the runtime executes them, that is, rewritten
    QString releaseMacro;
    QStringList textVarList;              // declarations of text variables, unread: "link,station,block,..."
    QMap<QString, scriptVarTable> varMap; // the script variables that the texts read, by name
    InterfaceAll *pressArg = nullptr;     // what a run of the press macro carries to the runtime, or null
    InterfaceAll *releaseArg = nullptr;
};

// One address that the runtime is to watch for a macro.
struct KEY_ADDRESS
{
    QString linkName;
    qint32 reservedA = 0, reservedB = 0; // never set here
    qint32 station = 0;
    QString blockName;
    QString reservedText; // never set here
    qint32 addrIndex = 0; // register within the block
    qint32 reservedC = 0; // never set here
    qint32 extra = 0;
};

// What the rewriting makes of one line of a macro.
enum LUA_LINE_KIND : int
{
    LUA_LINE_WITHOUT_ASSIGNMENT, // no "="
    LUA_LINE_WITH_MANY_SIGNS,    // more than one "=": a comparison, or several assignments
    LUA_LINE_WITHOUT_VARIABLE,   // neither side is a declared variable
    LUA_LINE_WRITES_VARIABLE,    // becomes a call of setdata
    LUA_LINE_READS_VARIABLE,     // becomes a call of getdata
    LUA_LINE_GROWS_TOO_LONG      // has a variable, but is left as it is for its length
};
struct luaLineNote
{
    LUA_LINE_KIND kind = LUA_LINE_WITHOUT_ASSIGNMENT;
    QString left;            // both sides as they are looked up among the variables; empty unless the line
    QString right;           // has exactly one "="
    scriptVarTable variable; // the one that decides; empty when there is none
};

class PANELKIT_EXPORT helpMacroLua
{
public:
    // The name of a data type as macros use it: "DATA_TYPE_BIT", "_WUB", "_WB", "_WD", "_DUB", "_DB", "_DD"
    // and "_DF" for 0 to 7, an empty text for every other number.
    static QString VarTableDataTypeConverty(int type);

    // Adds the script variables that the node `project` declares (child "macroVarList", properties "number"
    // and "var0", "var1" ...) to the process-wide table. A declaration has at least 8 fields between commas:
    // name, link, station, block, index, extra, type number, and one that is not used; a shorter one is
    // skipped. A later declaration of a name replaces the earlier one. To be called before any macro is
    // loaded. More than 1,000,000 declarations count as 1,000,000.
    static void initMacroVarTable(object *project);

    // Fills `macro` from the node `item`: "macroMode", and as that says "pressmacro" and "releasemacro"; then
    // the declarations of text variables (child "macroTextVarList", "number", "Textvar0", "Textvar1" ..., at
    // most 1,000,000), which are appended. A text that is not empty is rewritten by dealLuaForVarList and
    // gets an argument object of its own; with an empty one the argument stays what it was. Mode 0 sets
    // `hasMacro` to 0 and reads nothing else; in the other modes only a text that is not empty sets it, to 1.
    // Argument objects of an earlier load stay alive.
    static void loadItemMacro(object *item, itemMacro &macro);

    // Rewrites, in place, each line of `text` that has exactly one "=" and a declared variable on one side of
    // it (apart from the blanks around, and from any ";" on the right): a variable on the left makes the line
    // a call of setdata with the right side as value, one on the right a call of getdata that is assigned
    // to the left side. Variables that are read are entered in `varMap`. All other lines stay as they are, to
    // the byte; line stays line.
    //
    // The calls are filled in by chained QString::arg, so a value that holds a marker such as "%5", also the
    // right side of a write, is filled in by a later step. A line that such markers could make longer than
    // 65,536 characters is left as it is.
    static void dealLuaForVarList(QString &text, QMap<QString, scriptVarTable> &varMap);

    // What dealLuaForVarList would make of each line of `text`, and why: one note a line, in order.
    static QList<luaLineNote> explainLuaForVarList(const QString &text);

    // Appends to `out` the addresses to watch for `macro`: first its text variables (exactly 6 fields: link,
    // station, block, index, extra, and one that is not used; others are skipped), then the variables that
    // its texts read, by name, with the index that `comm` resolves. What is no base-10 integer is 0. Does
    // nothing when `comm` is null or `macro` has no macro.
    static void registerLuaMonitorAddress(itemMacro &macro, QList<KEY_ADDRESS> &out, InterfaceComm *comm);

    // Asks the runtime, by a posted UExternalFuncCallEvent "runLua", to run the item's macro for `type`, with
    // the argument object of that macro. Returns at once. Does nothing when the item has no such macro:
    // `hasMacro` 0, a mode without it, an empty text, no argument object, or an unknown `type`.
    static void runLua(const itemMacro &macro, ITEM_MACRO_TYPE type);
};
