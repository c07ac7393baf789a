#include "simulator/platform/systembase.h"

#include <QFileInfo>
#include <QSettings>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>

namespace panelkit::simulator {

namespace {

struct NetworkConfiguration
{
    QString ip;
    QString netMask;
    QString gateway;
    QString dns;
};

struct State
{
    sys_base_app_pro *record = nullptr;
    CommandPolicy policy = CommandPolicy::Record;
    QList<QByteArray> commands;
    QString configurationFile;
    NetworkConfiguration network;
    std::function<void(const QByteArray &)> observer;
};

// Never destroyed: whatever still calls the library while the process ends finds its state.
State &state()
{
    static State *instance = new State;
    return *instance;
}

// Of a copy, since an observer may set another one.
void observe(const QByteArray &line)
{
    if (const std::function<void(const QByteArray &)> observer = state().observer)
        observer(line);
}

void readConfiguration()
{
    if (state().configurationFile.isEmpty())
        return;
    QSettings settings(state().configurationFile, QSettings::IniFormat);
    settings.beginGroup(QStringLiteral("network"));
    NetworkConfiguration &network = state().network;
    network.ip = settings.value(QStringLiteral("ip")).toString();
    network.netMask = settings.value(QStringLiteral("netmask")).toString();
    network.gateway = settings.value(QStringLiteral("gateway")).toString();
    network.dns = settings.value(QStringLiteral("dns")).toString();
}

// On a full disk the toolkit puts a file that is cut off in the place of the settings and reports success. So
// nothing is set unless there is room for the whole file anew, an address more, and the toolkit's lock file.
bool hasRoomFor(const QString &settingsFile)
{
    const qint64 needed = QFileInfo(settingsFile).size() + 8192;
    QTemporaryFile probe(settingsFile + QLatin1String(".XXXXXX"));
    if (!probe.open())
        return true;
    const int error = posix_fallocate(probe.handle(), 0, static_cast<off_t>(needed));
    return error != ENOSPC && error != EDQUOT && error != EFBIG;
}

void store(const char *operation, QString NetworkConfiguration::*field, const char *key, const QString &value)
{
    observe(QByteArray(operation) + ' ' + value.toUtf8());
    state().network.*field = value;
    if (state().configurationFile.isEmpty())
        return;
    if (!hasRoomFor(state().configurationFile))
        return;
    QSettings settings(state().configurationFile, QSettings::IniFormat);
    settings.setValue(QStringLiteral("network/") + QLatin1String(key), value);
}

} // namespace

void setApplicationRecord(sys_base_app_pro *record)
{
    state().record = record;
}

void setCommandPolicy(CommandPolicy policy)
{
    state().policy = policy;
}

QList<QByteArray> recordedCommands()
{
    return state().commands;
}

void clearRecordedCommands()
{
    state().commands.clear();
}

void setConfigurationFile(const QString &path)
{
    state().configurationFile = path;
    state().network = NetworkConfiguration();
    readConfiguration();
}

void setSystemBaseObserver(std::function<void(const QByteArray &)> observer)
{
    state().observer = std::move(observer);
}

} // namespace panelkit::simulator

using namespace panelkit::simulator;

sys_base_app_pro *sys_base_get_app_pro()
{
    return state().record;
}

int sys_base_do_system(const char *command)
{
    if (command == nullptr)
        return -1;
    observe(QByteArray("sys_base_do_system ") + command);
    state().commands.append(QByteArray(command));
    return state().policy == CommandPolicy::Run ? std::system(command) : 0;
}

void sys_base_init_config()
{
    observe("sys_base_init_config");
    readConfiguration();
}

QString sys_base_get_config_Ip(bool iotDevice)
{
    observe(iotDevice ? "sys_base_get_config_Ip true" : "sys_base_get_config_Ip false");
    return state().network.ip;
}

QString sys_base_get_config_NetMask()
{
    observe("sys_base_get_config_NetMask");
    return state().network.netMask;
}

QString sys_base_get_config_Gateway()
{
    observe("sys_base_get_config_Gateway");
    return state().network.gateway;
}

QString sys_base_get_config_DNS()
{
    observe("sys_base_get_config_DNS");
    return state().network.dns;
}

void sys_base_set_config_Ip(const QString &address)
{
    store("sys_base_set_config_Ip", &NetworkConfiguration::ip, "ip", address);
}

void sys_base_set_config_NetMask(const QString &mask)
{
    store("sys_base_set_config_NetMask", &NetworkConfiguration::netMask, "netmask", mask);
}

void sys_base_set_config_Gateway(const QString &gateway)
{
    store("sys_base_set_config_Gateway", &NetworkConfiguration::gateway, "gateway", gateway);
}

void sys_base_set_config_DNS(const QString &server)
{
    store("sys_base_set_config_DNS", &NetworkConfiguration::dns, "dns", server);
}
