// The rewriting of a macro's text, as functions of the text and the declared variables alone. What it does is
// said at helpMacroLua::dealLuaForVarList.
#pragma once

#include "macro/scriptvariables.h"

#include <QList>
#include <QMap>
#include <QString>

namespace panelkit {

// Rewrites `text` in place and enters the variables that it reads in `read`. A text in which no line is
// rewritten keeps its data and costs no allocation.
void rewriteMacro(QString &text, const ScriptVariables &variables, QMap<QString, scriptVarTable> &read);

// What rewriteMacro makes of each line of `text`.
QList<luaLineNote> explainMacro(const QString &text, const ScriptVariables &variables);

} // namespace panelkit
