// The rewriting of a macro in the toolkit's plain words, step by step: what the fast one is compared with.
#pragma once

#include "macro/helpmacrolua.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace panelkit::testing {

inline QString plainRewriting(const QString &text, const QMap<QString, scriptVarTable> &table,
                              QMap<QString, scriptVarTable> &read)
{
    if (table.isEmpty())
        return text;
    QStringList lines = text.split("\n");
    for (QString &line : lines) {
        const QStringList sides = line.split("=");
        if (sides.size() != 2)
            continue;
        const QString left = sides[0].trimmed();
        const QString right = QString(sides[1]).replace(";", "").trimmed();
        if (table.contains(left)) {
            const scriptVarTable variable = table[left];
            line = QString("setdata(\"%1\",\"%2\",%3,%4,%5,%6,%7)")
                       .arg(variable.linkName)
                       .arg(variable.blockName)
                       .arg(variable.regIndex)
                       .arg(variable.station)
                       .arg(variable.extra)
                       .arg(right)
                       .arg(variable.typeName);
        } else if (table.contains(right)) {
            const scriptVarTable variable = table[right];
            line = left + "=" +
                   QString("getdata(\"%1\",\"%2\",%3,%4,%5,%6)")
                       .arg(variable.linkName)
                       .arg(variable.blockName)
                       .arg(variable.regIndex)
                       .arg(variable.station)
                       .arg(variable.extra)
                       .arg(variable.typeName);
            read.insert(variable.name, variable);
        }
    }
    return lines.join("\n");
}

} // namespace panelkit::testing
