// Where the panel's file tree begins.
#pragma once

#include "platform/export.h"

#include <QString>

// On a panel the system root is empty and absolute paths are what they say. A simulator or a test sets a
// directory, once at start and before any other call; every absolute path that the library itself opens,
// lists, tests or loads (the product tree, "/etc/config/network", "/proc/stat") is then looked for below it.
// Paths that a caller passes in, and the texts of shell commands, are never changed by it. No environment
// variable sets it. A trailing "/" is dropped.
PANELKIT_EXPORT void tools_setSystemRoot(const QString &directory);

// The directory set above, or an empty text.
PANELKIT_EXPORT QString tools_systemRoot();
