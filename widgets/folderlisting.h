// The entries of a folder as items of the file browser's list.
#pragma once

#include <QList>
#include <QListWidgetItem>
#include <QString>

namespace panelkit {

// Roles of an entry. The numbers are an interface: Qt::UserRole + 1 and + 2 where that is 32.
const int pathRole = 33;
const int folderRole = 34;

// An entry keeps its name and shares the folder's path with its neighbours: a full path in every item would
// cost more than all the rest of it. What is set with setData goes before.
class FolderEntry : public QListWidgetItem
{
public:
    // `folderPath` ends in "/".
    FolderEntry(const QString &folderPath, const QString &name, bool isFolder);
    QVariant data(int role) const override;
    QListWidgetItem *clone() const override;

    // Folders come first, then the names count, with their case.
    static bool comesBefore(const FolderEntry *a, const FolderEntry *b);

private:
    QString m_folderPath;
    QString m_name;
    bool m_isFolder;
};

// The folders in `path`, and with `withFiles` the files whose suffix is among `extensions` (an empty list
// means all): what QDir::entryInfoList gives for QDir::Dirs, QDir::Files, QDir::NoSymLinks and
// QDir::NoDotAndDotDot, sorted by QDir::Name and QDir::DirsFirst. Empty for a folder that cannot be read. The
// items belong to the caller.
QList<FolderEntry *> folderEntries(const QString &path, bool withFiles, const QList<QString> &extensions);

} // namespace panelkit
