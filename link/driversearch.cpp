// A folder's entry may have a number that a 32-bit panel's shorter record cannot hold.
#define _FILE_OFFSET_BITS 64

#include "link/driversearch.h"

#include "link/driverfile.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <algorithm>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace panelkit {

namespace {

// The toolkit's own iterators make several objects an entry; a folder of 200 drivers is read with none.
class Folder
{
public:
    explicit Folder(const QByteArray &path) : m_entries(opendir(path.constData())) {}
    ~Folder()
    {
        if (m_entries != nullptr)
            closedir(m_entries);
    }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    const dirent *next() { return m_entries == nullptr ? nullptr : readdir(m_entries); }

    // Not every file system tells an entry's type along with its name.
    bool isRegularFile(const dirent &entry) const
    {
        if (entry.d_type != DT_UNKNOWN)
            return entry.d_type == DT_REG;
        struct stat status;
        return fstatat(dirfd(m_entries), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
               S_ISREG(status.st_mode);
    }

private:
    DIR *m_entries;
};

// A file's name as QFile::decodeName gives it. A name of ASCII letters is put into the text that is there.
void readName(const char *bytes, QString &name)
{
    const int length = static_cast<int>(std::strlen(bytes));
    if (std::any_of(bytes, bytes + length, [](char c) { return static_cast<unsigned char>(c) >= 0x80; })) {
        name = QFile::decodeName(bytes);
        return;
    }
    name.resize(length);
    std::transform(bytes, bytes + length, name.data(), [](char c) { return QLatin1Char(c); });
}

} // namespace

QString findDriverFile(const QString &driverName)
{
    const QString path = tools_driverFolder();
    Folder folder(QFile::encodeName(path));
    QString name;
    while (const dirent *entry = folder.next()) {
        if (!folder.isRegularFile(*entry))
            continue;
        readName(entry->d_name, name);
        if (name.contains(driverName, Qt::CaseInsensitive))
            return QFileInfo(path + QLatin1Char('/') + name).absoluteFilePath();
    }
    return QString();
}

} // namespace panelkit
