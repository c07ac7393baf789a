// A folder's entry may have a number that a 32-bit panel's shorter record cannot hold.
#define _FILE_OFFSET_BITS 64

#include "widgets/folderlisting.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace panelkit {

namespace {

static_assert(sizeof(dirent::d_ino) == 8, "a folder is read to its end on every processor");

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

// Such a name is the same text in every locale. A plain char has no sign on ARM.
bool isAscii(const char *name)
{
    while (static_cast<signed char>(*name) > 0)
        ++name;
    return *name == '\0';
}

// Whether the bytes of a name are text: otherwise the file could not be found again by that text.
bool isReadable(const QString &name, const char *bytes)
{
    return !name.contains(QChar(QChar::ReplacementCharacter)) || QFile::encodeName(name) == bytes;
}

struct FoundEntry
{
    const QChar *name(const QString &names) const { return names.constData() + first; }

    int first; // of the name, among all names
    int length;
    bool isFolder;
    quint64 sortKey;
};

// The folder is read with the system's own call, which tells an entry's kind along with its name: the toolkit
// builds a QFileInfo of a kilobyte for each entry and takes three times as long.
std::vector<FoundEntry> read(DIR *folder, bool withFiles, const QList<QString> &extensions, QString &names)
{
    std::vector<FoundEntry> entries;
    const bool allFiles = extensions.isEmpty();
    while (const dirent *entry = readdir(folder)) {
        const Kind kind = kindOf(folder, entry);
        if (entry->d_name[0] == '.' || kind == OtherKind || (kind == FileKind && !withFiles))
            continue;
        const int first = static_cast<int>(names.size());
        if ((kind == FolderKind || allFiles) && isAscii(entry->d_name)) {
            names += QLatin1String(entry->d_name);
        } else {
            const QString name = QFile::decodeName(entry->d_name);
            if (!isReadable(name, entry->d_name) || (kind == FileKind && !hasSuffixOf(extensions, name)))
                continue;
            names += name;
        }
        const FoundEntry found = {first, static_cast<int>(names.size()) - first, kind == FolderKind, 0};
        entries.push_back(found);
    }
    return entries;
}

// The number of characters with which all names begin.
int sharedLength(const std::vector<FoundEntry> &entries, const QString &names)
{
    int shared = entries.empty() ? 0 : entries.front().length;
    for (const FoundEntry &entry : entries) {
        const int length = qMin(shared, entry.length);
        const QChar *const first = entries.front().name(names);
        shared = static_cast<int>(std::mismatch(first, first + length, entry.name(names)).first - first);
    }
    return shared;
}

// Puts the characters behind the `shared` first ones of each name into a number that sorts as they do: eight
// where all of those fit a byte, else four. Returns how many.
int setSortKeys(std::vector<FoundEntry> &entries, const QString &names, int shared)
{
    ushort all = 0;
    for (const FoundEntry &entry : entries)
        for (int i = shared; i < qMin(entry.length, shared + 8); ++i)
            all = static_cast<ushort>(all | entry.name(names)[i].unicode());
    const int bits = all < 0x100 ? 8 : 16;
    const int count = 64 / bits;
    for (FoundEntry &entry : entries)
        for (int i = shared; i < shared + count; ++i)
            entry.sortKey = entry.sortKey << bits | (i < entry.length ? entry.name(names)[i].unicode() : 0);
    return count;
}

// Folders first, then by name, with its case. The names of records and exports begin alike: a few characters
// behind what all share, put into one number, decide nearly always.
void sort(std::vector<FoundEntry> &entries, const QString &names)
{
    const int shared = sharedLength(entries, names);
    const int compared = shared + setSortKeys(entries, names, shared);
    std::sort(entries.begin(), entries.end(), [&names, compared](const FoundEntry &a, const FoundEntry &b) {
        if (a.isFolder != b.isFolder)
            return a.isFolder;
        if (a.sortKey != b.sortKey)
            return a.sortKey < b.sortKey;
        return std::lexicographical_compare(
            a.name(names) + qMin(compared, a.length), a.name(names) + a.length,
            b.name(names) + qMin(compared, b.length), b.name(names) + b.length);
    });
}

} // namespace

FolderEntry::FolderEntry(const QExplicitlySharedDataPointer<FolderNames> &folder, int first, int length,
                         bool isFolder)
    : m_folder(folder),
      m_first(first),
      m_length(length),
      m_isFolder(isFolder)
{
}

QVariant FolderEntry::data(int role) const
{
    QVariant given = QListWidgetItem::data(role);
    if (given.isValid())
        return given;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return m_folder->names.mid(m_first, m_length);
    case pathRole:
        return QString(m_folder->path + m_folder->names.mid(m_first, m_length));
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

QList<FolderEntry *> folderEntries(const QString &path, bool withFiles, const QList<QString> &extensions)
{
    QList<FolderEntry *> entries;
    DIR *const folder = opendir(QFile::encodeName(path).constData());
    if (folder == nullptr)
        return entries;
    const QExplicitlySharedDataPointer<FolderNames> shared(new FolderNames);
    std::vector<FoundEntry> found = read(folder, withFiles, extensions, shared->names);
    closedir(folder);
    shared->names.squeeze();
    shared->path = QDir(path).path();
    if (!shared->path.endsWith(QLatin1Char('/')))
        shared->path += QLatin1Char('/');

    sort(found, shared->names);
    entries.reserve(static_cast<int>(found.size()));
    for (const FoundEntry &entry : found)
        entries.append(new FolderEntry(shared, entry.first, entry.length, entry.isFolder));
    return entries;
}

} // namespace panelkit
