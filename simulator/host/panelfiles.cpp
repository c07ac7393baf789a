#include "simulator/host/panelfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace panelkit::simulator {

namespace {

const char *const productFolders[] = {
    "/etc",
    usbFolder,
    "/proc",
    "/usr/tesk42/APP",
    "/usr/tesk42/IOT",
    exportFolder,
    "/usr/tesk42/iot_work/iotRunTime",
    "/usr/tesk42/project/cache",
    "/usr/tesk42/project/driver",
};

} // namespace

std::unique_ptr<PanelFiles> PanelFiles::create(const QString &root, QString &error)
{
    auto files = std::unique_ptr<PanelFiles>(new PanelFiles);
    if (root.isEmpty()) {
        files->m_temporary = std::make_unique<QTemporaryDir>();
        if (!files->m_temporary->isValid()) {
            error = QStringLiteral("no temporary folder can be made in %1 (%2): name a folder with --root")
                        .arg(QDir::tempPath(), files->m_temporary->errorString());
            return nullptr;
        }
        files->m_root = files->m_temporary->path();
    } else {
        files->m_root = QDir(root).absolutePath();
    }
    for (const char *folder : productFolders) {
        if (!QDir().mkpath(files->path(QLatin1String(folder)))) {
            error = QStringLiteral("%1: the folder cannot be made: name another one with --root")
                        .arg(files->path(QLatin1String(folder)));
            return nullptr;
        }
    }
    const QString processorTimes = QStringLiteral("/proc/stat");
    if (!QFileInfo::exists(files->path(processorTimes)))
        QFile::link(processorTimes, files->path(processorTimes));
    return files;
}

bool PanelFiles::write(const QString &path, const QByteArray &content, QString &error) const
{
    QSaveFile file(this->path(path));
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit())
        return true;
    error = QStringLiteral("%1: %2: free some space or name another folder with --root")
                .arg(this->path(path), file.errorString());
    return false;
}

} // namespace panelkit::simulator
