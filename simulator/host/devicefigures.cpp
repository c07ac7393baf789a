#include "simulator/host/devicefigures.h"

#include "runtime/systemroot.h"

#include <QCoreApplication>
#include <QFile>
#include <QSettings>

#include <sys/sysinfo.h>

namespace panelkit::simulator {

namespace {

class DeviceKind
{
    Q_DECLARE_TR_FUNCTIONS(DeviceKind)

public:
    static QString of(const DeviceFigures &figures)
    {
        if (figures.isBoxDevice)
            return tr("gateway box with the IoT runtime");
        return figures.isIotDevice ? tr("panel with the IoT runtime") : tr("panel");
    }
};

} // namespace

bool DeviceFigures::isMemoryWrapped() const
{
    const quint64 fourGibibytes = Q_UINT64_C(4) * 1024 * 1024; // in KiB
    return freeMemoryOfMachine >= fourGibibytes;
}

DevDiskInfo diskSpace(const QString &path)
{
    return tools_get_dev_disk(QFile::encodeName(path).constData());
}

DeviceFigures takeDeviceFigures(cpu_info &processor, const QString &diskPath)
{
    DeviceFigures figures;
    // The kernel corrects its counters now and then; a display keeps to what a load can be.
    figures.load = static_cast<double>(qBound(0.0f, tools_get_cpu_info(processor), 100.0f));
    figures.freeMemory = tools_get_dev_mem();
    struct sysinfo memory = {};
    if (sysinfo(&memory) == 0)
        figures.freeMemoryOfMachine = static_cast<quint64>(memory.freeram) * memory.mem_unit / 1024;
    figures.diskPath = diskPath;
    figures.disk = diskSpace(diskPath);
    const QSettings configuration(tools_systemRoot() + QStringLiteral("/usr/tesk42/config.ini"),
                                  QSettings::IniFormat);
    figures.model = configuration.value(QStringLiteral("MODEL")).toString();
    figures.isIotDevice = tools_isIotDevice();
    figures.isBoxDevice = tools_isBoxDevice();
    figures.iotVersion = tools_iot_version();
    return figures;
}

QString deviceKind(const DeviceFigures &figures)
{
    return DeviceKind::of(figures);
}

} // namespace panelkit::simulator
