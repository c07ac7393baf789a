#include "widgets/folderlisting.h"

#include <QDir>
#include <QFile>

#include <algorithm>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace panelkit {

namespace {

enum Kind
{
    FolderKind,
    FileKind,
    OtherKind
};

Kind kindOf(DIR *folder, const dirent *entry)
{
    switch (entry->d_type) {
    case DT_DIR:
        return FolderKind;
    case DT_REG:
        return FileKind;
    case DT_UNKNOWN:
        break;
    default:
        return OtherKind;
    }
    struct stat status = {};
    if (fstatat(dirfd(folder), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return OtherKind;
    return S_ISDIR(status.st_mode) ? FolderKind : S_ISREG(status.st_mode) ? FileKind : OtherKind;
}

// The suffix is what stands behind the last dot.
bool hasSuffixOf(const QList<QString> &extensions, const QString &name)
{
    if (extensions.isEmpty())
        return true;
    const QString suffix = name.mid(name.lastIndexOf(QLatin1Char('.')) + 1);
    return suffix.size() < name.size() && !suffix.isEmpty() && extensions.contains(suffix);
}

// Whether the bytes of a name are text: otherwise the file could not be found again by that text.
bool isReadable(const QString &name, const char *bytes)
{
    return !name.contains(QChar(QChar::ReplacementCharacter)) || QFile::encodeName(name) == bytes;
}

} // namespace

FolderEntry::FolderEntry(const QString &folderPath, const QString &name, bool isFolder)
    : m_folderPath(folderPath),
      m_name(name),
      m_isFolder(isFolder)
{
}

QVariant FolderEntry::data(int role) const
{
    const QVariant given = QListWidgetItem::data(role);
    if (given.isValid())
        return given;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return m_name;
    case pathRole:
        return QString(m_folderPath + m_name);
    case folderRole:
        return m_isFolder;
    default:
        return given;
    }
}

QListWidgetItem *FolderEntry::clone() const
{
    return new FolderEntry(*this);
}

bool FolderEntry::comesBefore(const FolderEntry *a, const FolderEntry *b)
{
    return a->m_isFolder != b->m_isFolder ? a->m_isFolder : a->m_name < b->m_name;
}

// The folder is read with the system's own call, which tells an entry's kind along with its name: the toolkit
// builds a QFileInfo of a kilobyte for each entry and takes three times as long.
QList<FolderEntry *> folderEntries(const QString &path, bool withFiles, const QList<QString> &extensions)
{
    QList<FolderEntry *> entries;
    DIR *const folder = opendir(QFile::encodeName(path).constData());
    if (folder == nullptr)
        return entries;
    QString folderPath = QDir(path).path();
    if (!folderPath.endsWith(QLatin1Char('/')))
        folderPath += QLatin1Char('/');
    while (const dirent *entry = readdir(folder)) {
        const Kind kind = kindOf(folder, entry);
        if (entry->d_name[0] == '.' || kind == OtherKind || (kind == FileKind && !withFiles))
            continue;
        const QString name = QFile::decodeName(entry->d_name);
        if (kind == FileKind && !hasSuffixOf(extensions, name))
            continue;
        if (isReadable(name, entry->d_name))
            entries.append(new FolderEntry(folderPath, name, kind == FolderKind));
    }
    closedir(folder);
    std::sort(entries.begin(), entries.end(), FolderEntry::comesBefore);
    return entries;
}

} // namespace panelkit
