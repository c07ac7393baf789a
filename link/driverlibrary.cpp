#include "link/driverlibrary.h"

#include <QFile>
#include <QString>

#include <dlfcn.h>

namespace panelkit {

void *openDriver(const QString &path)
{
    return dlopen(QFile::encodeName(path).constData(), RTLD_LAZY);
}

void *driverEntryPoint(void *driver, const char *name)
{
    return dlsym(driver, name);
}

void closeDriver(void *driver)
{
    if (driver != nullptr)
        dlclose(driver);
}

} // namespace panelkit
