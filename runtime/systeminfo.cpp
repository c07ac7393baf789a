#include "runtime/systeminfo.h"

#include "runtime/devicemodel.h"
#include "runtime/systemfigures.h"
#include "runtime/systempath.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <sys/statfs.h>
#include <sys/sysinfo.h>

static_assert(sizeof(statfs::f_blocks) == 8, "the space of a large disk can be asked for on every processor");

namespace panelkit {

DevDiskInfo diskSpace(quint64 blocks, quint64 freeBlocks, quint64 blockSize)
{
    DevDiskInfo info = {};
    info.totalMB = static_cast<float>(blocks * blockSize) / 1024 / 1024;
    info.freeMB = static_cast<float>(freeBlocks * blockSize) / 1024 / 1024;
    info.usedMB = info.totalMB - info.freeMB;
    return info;
}

quint32 kibibytes(quint32 units, quint32 unitSize)
{
    return (units * unitSize) >> 10;
}

} // namespace panelkit

// NOLINTNEXTLINE(performance-unnecessary-value-param): fixed
bool tools_file_exists(QString path, int kind, bool create)
{
    const int directory = 1;
    const int regularFile = 2;
    if (path.isEmpty())
        return false;
    if (kind == directory) {
        const QDir here(QLatin1String("."));
        const bool exists = here.exists(path);
        if (!exists && create)
            here.mkpath(path);
        return exists;
    }
    return kind == regularFile && QFileInfo(path).isFile();
}

int tools_iot_version()
{
    const char *const probe = "/usr/tesk42/iot_work/iotRunTime/driver/libsiemens_s7_200_ppi.so";
    return QFile::exists(panelkit::systemPath(probe)) ? 2 : 1;
}

DevDiskInfo tools_get_dev_disk(const char *path)
{
    struct statfs space = {};
    if (path == nullptr || statfs(path, &space) != 0)
        return DevDiskInfo();
    return panelkit::diskSpace(space.f_blocks, space.f_bfree, static_cast<quint64>(space.f_bsize));
}

quint32 tools_get_dev_mem()
{
    struct sysinfo memory = {};
    if (sysinfo(&memory) != 0)
        return 0;
    return panelkit::kibibytes(static_cast<quint32>(memory.freeram), memory.mem_unit);
}

bool tools_deleteDir(const QString &path)
{
    if (path.isEmpty())
        return false;
    const QDir directory(path);
    if (!directory.exists())
        return true;
    const QFileInfoList entries = directory.entryInfoList(
        QDir::Files | QDir::Dirs | QDir::Drives | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QFileInfo &entry : entries) {
        if (entry.isFile())
            QFile::remove(entry.absoluteFilePath());
        else if (!entry.isSymLink())
            tools_deleteDir(entry.absoluteFilePath());
    }
    return true;
}

bool tools_isIotDevice()
{
    return panelkit::isIotDevice();
}

bool tools_isBoxDevice()
{
    return panelkit::isBoxDevice();
}

void tools_testLog(const QString &text, bool truncate)
{
    QFile log(QLatin1String("./testLog.log"));
    if (log.open(QIODevice::WriteOnly | (truncate ? QIODevice::Truncate : QIODevice::Append)))
        log.write(text.toUtf8().constData());
}
