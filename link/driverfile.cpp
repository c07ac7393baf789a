#include "link/driverfile.h"

#include "link/elfheader.h"
#include "runtime/systempath.h"

#include <QFile>
#include <QFileInfo>

DriverFileState tools_driverFileState(const QString &path)
{
    // Only a regular file is opened: opening a pipe would wait for its writer.
    if (!QFileInfo(path).isFile())
        return DriverFileState::Missing;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return DriverFileState::Missing;
    return panelkit::elfFileState(file);
}

QString tools_driverFilePath(const QString &driverLib, int linkID)
{
    return tools_driverFolder() + QLatin1String("/lib") +
           driverLib.mid(driverLib.indexOf(QLatin1Char('/')) + 1) + QLatin1Char('_') +
           QString::number(linkID) + QLatin1String(".so");
}

QString tools_driverFolder()
{
    return panelkit::systemPath("/usr/tesk42/project/driver");
}
