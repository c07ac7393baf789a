#include "runtime/systemroot.h"

#include "runtime/systempath.h"

namespace {

QString &systemRoot()
{
    static QString root;
    return root;
}

} // namespace

void tools_setSystemRoot(const QString &directory)
{
    QString root = directory;
    while (root.endsWith(QLatin1Char('/')))
        root.chop(1);
    systemRoot() = root;
}

QString tools_systemRoot()
{
    return systemRoot();
}

namespace panelkit {

QString systemPath(const char *path)
{
    return systemRoot() + QLatin1String(path);
}

QString systemPath(const QString &path)
{
    return systemRoot() + path;
}

} // namespace panelkit
