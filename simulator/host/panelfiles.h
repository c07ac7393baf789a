// The panel's file tree on a PC.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace panelkit::simulator {

// A folder in which the panel's absolute paths are found: a temporary one that goes with this object, or one
// of the user's that stays.
class PanelFiles
{
public:
    // Makes the folders of the product tree below `root` (below a new temporary folder when it is empty),
    // keeping what is there. Nothing, with one line in `error`, when that cannot be done.
    static std::unique_ptr<PanelFiles> create(const QString &root, QString &error);

    QString root() const { return m_root; }

    // The place of the panel's absolute path `path`.
    QString path(const QString &path) const { return m_root + path; }

    // Replaces the panel's file `path`; what stood there before stays whole when that fails.
    bool write(const QString &path, const QByteArray &content, QString &error) const;

private:
    QString m_root;
    std::unique_ptr<QTemporaryDir> m_temporary;
};

} // namespace panelkit::simulator
