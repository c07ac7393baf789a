#include "simulator/host/networkplan.h"

#include "platform/sys_base.h"
#include "runtime/systemroot.h"
#include "simulator/platform/systembase.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace panelkit::simulator;

namespace {

NetworkSettings settings(const char *ip, const char *netMask, const char *gateway,
                         const char *dns = "8.8.8.8")
{
    return {QLatin1String(ip), QLatin1String(netMask), QLatin1String(gateway), QLatin1String(dns)};
}

QStringList lines(const NetworkPlan &plan)
{
    QStringList lines;
    for (const PlanStep &step : plan.steps)
        lines << step.place + QLatin1String(": ") + step.text;
    return lines;
}

class NetworkPlanning : public ::testing::Test
{
protected:
    void write(const char *path, const QByteArray &content)
    {
        QFile file(root.path() + QLatin1String(path));
        ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    // Every file with its content and the time of its last change.
    QStringList snapshot() const
    {
        QStringList entries;
        QDirIterator files(root.path(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("folder");
            entries << file.fileName() + QString::fromUtf8(content) +
                           QFileInfo(file).lastModified().toString(Qt::ISODateWithMs);
        }
        entries.sort();
        return entries;
    }

    QTemporaryDir root;
};

const QStringList entered = {QStringLiteral("register: 64052-64055 = 192 168 1 5"),
                             QStringLiteral("register: 64056-64059 = 255 255 255 0"),
                             QStringLiteral("register: 64060-64063 = 192 168 1 1"),
                             QStringLiteral("register: 64064-64067 = 8 8 8 8"),
                             QStringLiteral("flag: 60213 = 1"),
                             QStringLiteral("flag: 60213 = 0")};

const QStringList stored = {QStringLiteral("setting: IP address = 192.168.1.5"),
                            QStringLiteral("setting: subnet mask = 255.255.255.0"),
                            QStringLiteral("setting: gateway = 192.168.1.1"),
                            QStringLiteral("setting: DNS server = 8.8.8.8")};

const QStringList addressApplied = {QStringLiteral("command: uci set network.eth0.ipaddr=192.168.1.5"),
                                    QStringLiteral("command: uci set network.eth0.netmask=255.255.255.0")};

const QStringList gatewayInstalled = {
    QStringLiteral("command: touch /usr/tesk42/IOT/gateway.sh && echo \"route add default gw 192.168.1.1\n"
                   "echo 1 >/proc/sys/net/ipv4/ip_forward\n"
                   "iptables -t nat -A POSTROUTING -o eth0 -j MASQUERADE\" > /usr/tesk42/IOT/gateway.sh && "
                   "chmod +x /usr/tesk42/IOT/gateway.sh"),
    QStringLiteral("command: sync")};

const QStringList shownAnew = {QStringLiteral("setting: the system configuration is read anew"),
                               QStringLiteral("register: 64052-64055 = 192 168 1 5"),
                               QStringLiteral("register: 64056-64059 = 255 255 255 0"),
                               QStringLiteral("register: 64060-64063 = 192 168 1 1"),
                               QStringLiteral("register: 64064-64067 = 8 8 8 8")};

const QStringList success = {QStringLiteral("message: Success.")};

} // namespace

TEST_F(NetworkPlanning, ListsEveryStepInItsOrder)
{
    const NetworkPlan plan = planNetwork(QString(), settings("192.168.1.5", "255.255.255.0", "192.168.1.1"));
    EXPECT_TRUE(plan.isAccepted);
    EXPECT_EQ(lines(plan), entered + stored + gatewayInstalled + shownAnew + success);
    EXPECT_TRUE(plan.warnings.isEmpty());
}

TEST_F(NetworkPlanning, LooksAtTheFilesOfThePanel)
{
    write("/etc/config/network", "");
    write("/usr/tesk42/config.ini", "MODEL=W10\n");
    const NetworkPlan plan =
        planNetwork(root.path(), settings("192.168.1.5", "255.255.255.0", "192.168.1.1"));
    EXPECT_EQ(lines(plan), entered + stored + addressApplied + gatewayInstalled + success);
}

TEST_F(NetworkPlanning, EndsWithTheRefusalOfAWrongAddress)
{
    const NetworkPlan plan =
        planNetwork(QString(), settings("192.168.1.5", "255.255.255.0", "192.168.1.300"));
    EXPECT_FALSE(plan.isAccepted);
    EXPECT_EQ(lines(plan).mid(6),
              QStringList(QStringLiteral("message: The gateway setting is incorrect. Please re-enter it.")));
    EXPECT_TRUE(plan.warnings.isEmpty());
}

TEST_F(NetworkPlanning, CarriesTheWarnings)
{
    const NetworkPlan plan = planNetwork(QString(), settings("192.168.1.5", "255.0.255.0", "192.168.1.1"));
    EXPECT_TRUE(plan.isAccepted);
    EXPECT_EQ(plan.warnings.size(), 1);
}

TEST_F(NetworkPlanning, ChangesNoFile)
{
    write("/etc/config/network", "");
    write("/etc/panel.ini", "[network]\nip=10.0.0.1\n");
    write("/usr/tesk42/config.ini", "MODEL=T7\n");
    setConfigurationFile(root.filePath(QStringLiteral("etc/panel.ini")));
    const QStringList before = snapshot();
    planNetwork(root.path(), settings("192.168.1.5", "255.255.255.0", "192.168.1.1"));
    EXPECT_EQ(snapshot(), before);
    EXPECT_TRUE(recordedCommands().isEmpty());
    EXPECT_EQ(sys_base_get_app_pro(), nullptr);
    EXPECT_TRUE(tools_systemRoot().isEmpty());
}

TEST_F(NetworkPlanning, RunsNoCommandWhateverThePolicy)
{
    write("/etc/config/network", "");
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", OPENWRT_COMMANDS ":" + path);
    qputenv("UCI_STATE", root.path().toLocal8Bit());
    setCommandPolicy(CommandPolicy::Run);
    planNetwork(root.path(), settings("192.168.1.5", "255.255.255.0", "192.168.1.1"));
    setCommandPolicy(CommandPolicy::Record);
    qputenv("PATH", path);
    qunsetenv("UCI_STATE");
    EXPECT_FALSE(QFileInfo::exists(root.filePath(QStringLiteral("calls"))));
}

TEST_F(NetworkPlanning, MakesNoRootThatIsNotThere)
{
    const QString missing = root.filePath(QStringLiteral("missing"));
    EXPECT_TRUE(planNetwork(missing, settings("192.168.1.5", "255.255.255.0", "192.168.1.1")).isAccepted);
    EXPECT_FALSE(QFileInfo::exists(missing));
}

TEST(NetworkWarnings, NameWhatWouldCutThePanelOff)
{
    const struct
    {
        const char *name;
        NetworkSettings settings;
        QStringList warnings;
    } rows[] = {
        {"nothing wrong", settings("192.168.1.5", "255.255.255.0", "192.168.1.1"), {}},
        {"a wide subnet", settings("10.200.3.4", "255.0.0.0", "10.0.0.1"), {}},
        {"a subnet of two", settings("10.0.0.0", "255.255.255.254", "10.0.0.1"), {}},
        {"holes",
         settings("192.168.1.5", "255.0.255.0", "192.168.1.1"),
         {QStringLiteral(
             "The subnet mask 255.0.255.0 has holes: its ones must all stand before its zeros.")}},
        {"a mask turned around",
         settings("192.168.1.5", "0.0.0.255", "192.168.1.1"),
         {QStringLiteral("The subnet mask 0.0.0.255 has holes: its ones must all stand before its zeros.")}},
        {"one bit missing",
         settings("192.168.1.5", "255.255.253.0", "192.168.1.1"),
         {QStringLiteral(
             "The subnet mask 255.255.253.0 has holes: its ones must all stand before its zeros.")}},
        {"no mask",
         settings("192.168.1.5", "0.0.0.0", "10.0.0.1"),
         {QStringLiteral("The subnet mask 0.0.0.0 makes every address a neighbour.")}},
        {"a gateway elsewhere",
         settings("192.168.1.5", "255.255.255.0", "192.168.2.1"),
         {QStringLiteral(
             "The gateway 192.168.2.1 lies outside of the panel's subnet: nothing beyond it can be "
             "reached.")}},
        {"a gateway one bit away",
         settings("10.0.0.129", "255.255.255.128", "10.0.0.1"),
         {QStringLiteral("The gateway 10.0.0.1 lies outside of the panel's subnet: nothing beyond it can be "
                         "reached.")}},
        {"alone in its subnet",
         settings("10.0.0.5", "255.255.255.255", "10.0.0.1"),
         {QStringLiteral("The gateway 10.0.0.1 lies outside of the panel's subnet: nothing beyond it can be "
                         "reached.")}},
        {"the network's address",
         settings("192.168.1.0", "255.255.255.0", "192.168.1.1"),
         {QStringLiteral("The IP address 192.168.1.0 is the address of the network itself.")}},
        {"the broadcast address",
         settings("192.168.1.255", "255.255.255.0", "192.168.1.1"),
         {QStringLiteral("The IP address 192.168.1.255 is the broadcast address of its network.")}},
        {"the broadcast address of a small network",
         settings("192.168.1.7", "255.255.255.248", "192.168.1.1"),
         {QStringLiteral("The IP address 192.168.1.7 is the broadcast address of its network.")}},
        {"255 within a wide network", settings("192.168.1.255", "255.255.0.0", "192.168.0.1"), {}},
        {"a gateway that is the network",
         settings("192.168.1.5", "255.255.255.0", "192.168.1.0"),
         {QStringLiteral("The gateway 192.168.1.0 is the address of the network itself.")}},
        {"a gateway that is everybody",
         settings("192.168.1.5", "255.255.255.0", "192.168.1.255"),
         {QStringLiteral("The gateway 192.168.1.255 is the broadcast address of its network.")}},
        {"the panel as its own gateway",
         settings("192.168.1.5", "255.255.255.0", "192.168.1.5"),
         {QStringLiteral("The gateway 192.168.1.5 is the panel itself.")}},
        {"loopback",
         settings("127.0.0.5", "255.0.0.0", "127.0.0.1"),
         {QStringLiteral("The IP address 127.0.0.5 is none that a panel can have.")}},
        {"multicast",
         settings("224.0.0.5", "240.0.0.0", "224.0.0.1"),
         {QStringLiteral("The IP address 224.0.0.5 is none that a panel can have.")}},
        {"several at once",
         settings("0.0.0.0", "255.255.255.0", "10.0.0.1"),
         {QStringLiteral("The IP address 0.0.0.0 is none that a panel can have."),
          QStringLiteral("The IP address 0.0.0.0 is the address of the network itself."),
          QStringLiteral("The gateway 10.0.0.1 lies outside of the panel's subnet: nothing beyond it can be "
                         "reached.")}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(networkWarnings(row.settings), row.warnings);
    }
}

TEST(PartsOfAddress, AreFourNumbersThatRegistersHold)
{
    EXPECT_EQ(partsOfAddress(QStringLiteral("192.168.001.65535")), QList<quint16>({192, 168, 1, 65535}));
    for (const char *text :
         {"", "1.2.3", "1.2.3.4.5", "1.2.3.65536", "1.2.3.x", "1.2.3.", "1.2.-3.4", "1.2.+3.4", "1.2. 3.4"})
        EXPECT_TRUE(partsOfAddress(QLatin1String(text)).isEmpty()) << text;
}
