// A panel's file tree in a folder of its own, set as the system root as long as it lives.
#pragma once

#include "runtime/systemroot.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

namespace panelkit::testing {

class PanelRoot
{
public:
    PanelRoot() { tools_setSystemRoot(m_folder.path()); }
    ~PanelRoot() { tools_setSystemRoot(QString()); }
    PanelRoot(const PanelRoot &) = delete;
    PanelRoot &operator=(const PanelRoot &) = delete;

    // Where the panel's absolute path lies.
    QString path(const char *panelPath) const { return m_folder.path() + QLatin1String(panelPath); }

    // Writes a file with its folders.
    bool write(const char *panelPath, const QByteArray &content) const
    {
        QFile file(path(panelPath));
        return QDir().mkpath(QFileInfo(file).path()) &&
               file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) == content.size();
    }

private:
    QTemporaryDir m_folder;
};

} // namespace panelkit::testing
