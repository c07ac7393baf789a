// The panel's file tree on a PC.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace panelkit::simulator {

// Files and folders that the simulator itself keeps in the panel's tree.
inline constexpr char configurationPath[] =
    "/etc/panel.ini"; // the system configuration, with the panel's address
inline constexpr char exportFolder[] = "/usr/tesk42/data"; // what operators export, on the panel
inline constexpr char usbFolder[] = "/media/usb";          // and on a stick of theirs
inline constexpr char linkSettingsPath[] =
    "/usr/tesk42/APP/linkparams.ini"; // parameters that operators saved

// A folder in which the panel's absolute paths are found: a temporary one that goes with this object, or one
// of the user's that stays.
class PanelFiles
{
public:
    // Makes the folders of the product tree below `root` (below a new temporary folder when it is empty),
    // keeping what is there, and lets "/proc/stat" be this machine's, so that the panel's load is its load.
    // Nothing, with one line in `error`, when a folder cannot be made.
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
