#include "simulator/host/filereplacement.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <mutex>

#include <unistd.h>

namespace panelkit::simulator {

namespace {

constexpr qint64 blockSize = 64LL * 1024;

std::mutex unfinishedMutex;
QStringList unfinished; // guarded by it

QString cannot(const QString &target, const QString &reason)
{
    return QStringLiteral("%1: %2: name a file that can be written").arg(target, reason);
}

void noteUnfinished(const QString &path)
{
    const std::lock_guard<std::mutex> lock(unfinishedMutex);
    unfinished << path;
}

// With the file that is called so.
void removeUnfinished(const QString &path)
{
    const std::lock_guard<std::mutex> lock(unfinishedMutex);
    if (unfinished.removeOne(path))
        QFile::remove(path);
}

// Whether another file may stand in place of that one. A name below /dev or /proc may stand for a file that
// is open elsewhere.
bool mayBeReplaced(const QFileInfo &target)
{
    const QString path = target.absoluteFilePath();
    if (path.startsWith(QLatin1String("/dev/")) || path.startsWith(QLatin1String("/proc/")))
        return false;
    if (target.exists())
        return target.isFile() && target.ownerId() == geteuid();
    return !target.isSymLink();
}

} // namespace

FileReplacement::FileReplacement(const QString &target) : m_target(target) {}

FileReplacement::~FileReplacement()
{
    if (!m_workPath.isEmpty())
        removeUnfinished(m_workPath);
}

bool FileReplacement::begin(QString &error)
{
    const QFileInfo target(m_target);
    // A file that may not be written is not replaced either.
    if (target.exists() && (target.isDir() || access(QFile::encodeName(m_target).constData(), W_OK) != 0)) {
        error = cannot(m_target, QString::fromLocal8Bit(std::strerror(target.isDir() ? EISDIR : errno)));
        return false;
    }
    if (!mayBeReplaced(target))
        return makeElsewhere(error);
    m_place = target.exists() ? target.canonicalFilePath() : target.absoluteFilePath();
    if (makeBeside(error))
        return true;
    m_place.clear();
    return target.exists() && makeElsewhere(error);
}

// With the permissions that any new file of this process has.
bool FileReplacement::makeBeside(QString &error)
{
    QFile file;
    for (int number = 1; number == 1 || (!file.isOpen() && file.exists()); ++number) {
        file.setFileName(QStringLiteral("%1/.panelsim-%2-%3")
                             .arg(QFileInfo(m_place).path())
                             .arg(QCoreApplication::applicationPid())
                             .arg(number));
        file.open(QIODevice::WriteOnly | QIODevice::NewOnly);
    }
    if (!file.isOpen()) {
        error = cannot(m_target, file.errorString());
        return false;
    }
    m_workPath = file.fileName();
    noteUnfinished(m_workPath);
    if (QFileInfo::exists(m_place))
        file.setPermissions(QFile::permissions(m_place));
    return true;
}

bool FileReplacement::makeElsewhere(QString &error)
{
    QTemporaryFile file;
    if (!file.open()) {
        error = QStringLiteral("no temporary file can be made in %1 (%2): free some space there")
                    .arg(QDir::tempPath(), file.errorString());
        return false;
    }
    file.setAutoRemove(false);
    m_workPath = file.fileName();
    noteUnfinished(m_workPath);
    return true;
}

bool FileReplacement::finish(QString &error)
{
    if (m_place.isEmpty())
        return copyIntoTarget(error);
    if (std::rename(QFile::encodeName(m_workPath).constData(), QFile::encodeName(m_place).constData()) == 0)
        return true;
    error = cannot(m_target, QString::fromLocal8Bit(std::strerror(errno)));
    return false;
}

bool FileReplacement::copyIntoTarget(QString &error) const
{
    QFile work(m_workPath);
    QFile target(m_target);
    if (!work.open(QIODevice::ReadOnly) || !target.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        error = cannot(m_target, work.isOpen() ? target.errorString() : work.errorString());
        return false;
    }
    for (QByteArray block = work.read(blockSize); !block.isEmpty(); block = work.read(blockSize)) {
        if (target.write(block) != block.size()) {
            error = QStringLiteral("%1: %2: free some space or name another file")
                        .arg(m_target, target.errorString());
            return false;
        }
    }
    return true;
}

void removeUnfinishedFiles()
{
    const std::lock_guard<std::mutex> lock(unfinishedMutex);
    for (const QString &path : std::as_const(unfinished))
        QFile::remove(path);
}

} // namespace panelkit::simulator
