// The host's side of the system library's stand-in: the application record, the shell commands and the file
// of the system configuration.
//
// Like the library itself, all of this is for one thread, the runtime's GUI thread.
#pragma once

#include "platform/export.h"
#include "platform/sys_base.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>

namespace panelkit::simulator {

// What sys_base_get_app_pro gives from now on. The record stays the caller's and must live as long as it is
// set; null takes the record away. At start there is none.
PANELKIT_EXPORT void setApplicationRecord(sys_base_app_pro *record);

// What becomes of a shell command: it is always recorded, and handed to the shell only under `Run`. At start,
// and whenever nobody has said otherwise, nothing is run.
enum class CommandPolicy
{
    Record,
    Run
};
PANELKIT_EXPORT void setCommandPolicy(CommandPolicy policy);
PANELKIT_EXPORT QList<QByteArray> recordedCommands();
PANELKIT_EXPORT void clearRecordedCommands();

// The INI file that keeps the panel's own network settings (keys "ip", "netmask", "gateway" and "dns" of
// the group "network"; one address, whatever kind of device asks for it). It is read when it is named and
// again by sys_base_init_config; every sys_base_set_config_* writes it. A missing file reads as empty texts;
// one that cannot be written stays as it is. An empty path (as at start) keeps the settings in memory only.
PANELKIT_EXPORT void setConfigurationFile(const QString &path);

// `observer` is told of every call of the library's sys_base_* operations as one line, before it takes
// effect: the operation's name and its arguments, as in "sys_base_set_config_Ip 192.168.1.5". An empty
// function ends that.
PANELKIT_EXPORT void setSystemBaseObserver(std::function<void(const QByteArray &line)> observer);

} // namespace panelkit::simulator
