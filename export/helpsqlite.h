// Text for SQL statements.
#pragma once

#include "platform/export.h"

#include <QString>

class PANELKIT_EXPORT helpSQLite
{
public:
    // `text` with every single quote doubled, as it stands inside of a single-quoted SQLite literal. The
    // enclosing quotes are the caller's. A statement ends at a NUL, which a literal cannot hold.
    static QString toSQLiteString(const QString &text);
};
