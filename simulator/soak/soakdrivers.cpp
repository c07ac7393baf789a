#include "simulator/soak/soakdrivers.h"

#include "simulator/host/driverfiles.h"
#include "simulator/soak/inifile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <elf.h>

#include <cstddef>

namespace panelkit::simulator {

bool SoakDrivers::load(QString &error)
{
    const struct
    {
        const char *name;
        QByteArray &content;
    } files[] = {{"Modbus", m_modbus}, {"SoakCoded", m_coded}};
    for (const auto &file : files) {
        const QString path = ownDriverFolder() + QStringLiteral("/lib%1.so").arg(QLatin1String(file.name));
        file.content = fileBytes(path);
        if (file.content.isEmpty()) {
            error =
                QStringLiteral("%1: there is no such driver: build or install panelsim as a whole").arg(path);
            return false;
        }
    }
    return true;
}

bool SoakDrivers::place(const QString &root, int link, SoakDriver driver)
{
    const QString path = root + QStringLiteral("/usr/tesk42/project/driver/libSoakDriver_%1.so").arg(link);
    if (!QDir().mkpath(QFileInfo(path).path()))
        return false;
    m_placed[link] = driver;
    if (driver == SoakDriver::Missing)
        return !QFileInfo::exists(path) || QFile::remove(path);
    return replaceFile(path, contentOf(driver));
}

QByteArray SoakDrivers::contentOf(SoakDriver driver) const
{
    QByteArray content = m_modbus;
    switch (driver) {
    case SoakDriver::Coded:
        return m_coded;
    case SoakDriver::WithoutFunctions: // under other names, the loader does not find them
        return content.replace("intf_", "none_");
    case SoakDriver::OtherProcessor: {
        const auto at = static_cast<int>(offsetof(Elf64_Ehdr, e_machine));
        content[at] = static_cast<char>(content.at(at) ^ 0x55);
        return content;
    }
    case SoakDriver::Truncated: // what is behind the code, as for a debugger, would not be missed
        return content.left(3000);
    case SoakDriver::NoLibrary:
        return "This is no driver.\n";
    case SoakDriver::Whole:
    case SoakDriver::Missing:
        break;
    }
    return content;
}

} // namespace panelkit::simulator
