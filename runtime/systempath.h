// Paths of the panel's file tree, for the library's own use.
#pragma once

#include <QString>

namespace panelkit {

// The absolute path `path` of the panel, below the system root.
QString systemPath(const char *path);
QString systemPath(const QString &path);

} // namespace panelkit
