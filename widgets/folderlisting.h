// The entries of a folder as items of the file browser's list.
#pragma once

#include <QExplicitlySharedDataPointer>
#include <QList>
#include <QListWidgetItem>
#include <QSharedData>
#include <QString>

namespace panelkit {

// Roles of an entry. The numbers are an interface: Qt::UserRole + 1 and + 2 where that is 32.
const int pathRole = 33;
const int folderRole = 34;

// What the entries of a folder share.
struct FolderNames : QSharedData
{
    QString path;  // of the folder, with a "/" at its end
    QString names; // of all entries, one behind the other
};

// An entry knows its place among the names: texts of its own, and the full path in every item, would cost
// more than all the rest of it. What is set with setData goes before.
class FolderEntry : public QListWidgetItem
{
public:
    FolderEntry(const QExplicitlySharedDataPointer<FolderNames> &folder, int first, int length,
                bool isFolder);
    QVariant data(int role) const override;
    QListWidgetItem *clone() const override;

private:
    QExplicitlySharedDataPointer<FolderNames> m_folder;
    int m_first;
    int m_length;
    bool m_isFolder;
};

// The folders in `path`, and with `withFiles` the files whose suffix is among `extensions` (an empty list
// means all): what QDir::entryInfoList gives for QDir::Dirs, QDir::Files, QDir::NoSymLinks and
// QDir::NoDotAndDotDot, sorted by QDir::Name and QDir::DirsFirst. Empty for a folder that cannot be read, and
// for what is a path only to the toolkit (its resources and search paths). The items belong to the caller.
QList<FolderEntry *> folderEntries(const QString &path, bool withFiles, const QList<QString> &extensions);

} // namespace panelkit
