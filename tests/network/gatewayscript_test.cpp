// The shell commands of a save, run by a real shell.

#include "network/panelip.h"

#include "tests/network/networkpanel.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdlib>

namespace simulator = panelkit::simulator;

namespace {

class GatewayScript : public panelkit::testing::NetworkPanel
{
protected:
    QString script() const { return folder.filePath(QStringLiteral("gateway.sh")); }

    // Saves, and lets the shell write the script into a folder of the test's own instead of the product's.
    void install(const char *gateway)
    {
        QString message;
        simulator::clearRecordedCommands();
        saveNewIP(QStringLiteral("10.0.0.5"), QStringLiteral("255.255.255.0"), QLatin1String(gateway),
                  QString(), message);
        ASSERT_EQ(simulator::recordedCommands().size(), 2);
        QByteArray command = simulator::recordedCommands().first();
        ASSERT_EQ(command.count("/usr/tesk42/IOT"), 3);
        command.replace("/usr/tesk42/IOT", QFile::encodeName(folder.path()));
        ASSERT_EQ(std::system(command.constData()), 0);
    }

    static QByteArray read(const QString &name)
    {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(GatewayScript, IsWrittenByTheShellByteForByteAndIsExecutable)
{
    install("10.0.0.1");
    EXPECT_EQ(read(script()), "route add default gw 10.0.0.1\n"
                              "echo 1 >/proc/sys/net/ipv4/ip_forward\n"
                              "iptables -t nat -A POSTROUTING -o eth0 -j MASQUERADE\n");
    EXPECT_TRUE(QFileInfo(script()).isExecutable());
}

TEST_F(GatewayScript, ReplacesTheEarlierOne)
{
    install("255.255.255.255");
    install("1.2.3.4");
    EXPECT_EQ(read(script()), "route add default gw 1.2.3.4\n"
                              "echo 1 >/proc/sys/net/ipv4/ip_forward\n"
                              "iptables -t nat -A POSTROUTING -o eth0 -j MASQUERADE\n");
}

TEST_F(GatewayScript, MakesTheDeviceRouteItsTraffic)
{
    install("10.0.0.1");
    QProcess network;
    network.start(QStringLiteral(PANELKIT_TEST_DATA "/rungateway.sh"), {script()});
    ASSERT_TRUE(network.waitForFinished());
    const QByteArray complaints = network.readAllStandardError();
    if (network.exitCode() == 77)
        GTEST_SKIP() << "no network of its own for the script: " << complaints.constData();
    EXPECT_EQ(network.exitCode(), 0) << complaints.constData();
    QStringList lines = QString::fromUtf8(network.readAllStandardOutput()).split(QLatin1Char('\n'));
    for (QString &line : lines)
        line = line.trimmed();
    EXPECT_EQ(lines, QStringList({QStringLiteral("default via 10.0.0.1 dev eth0"), QStringLiteral("1"),
                                  QStringLiteral("-P POSTROUTING ACCEPT"),
                                  QStringLiteral("-A POSTROUTING -o eth0 -j MASQUERADE"), QString()}));
}

TEST_F(GatewayScript, AndAddressReachOpenWrtInTheirOrderWithoutACommit)
{
    ASSERT_TRUE(root.write("/etc/config/network", ""));
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", PANELKIT_TEST_DATA "/openwrt:" + path);
    qputenv("UCI_STATE", QFile::encodeName(folder.path()));
    simulator::setCommandPolicy(simulator::CommandPolicy::Run);
    QString message;
    saveNewIP(QStringLiteral("192.168.1.5"), QStringLiteral("255.255.255.0"), QStringLiteral("192.168.1.1"),
              QString(), message);
    simulator::setCommandPolicy(simulator::CommandPolicy::Record);
    qputenv("PATH", path);
    qunsetenv("UCI_STATE");

    EXPECT_EQ(read(folder.filePath(QStringLiteral("calls"))), "uci set network.eth0.ipaddr=192.168.1.5\n"
                                                              "uci set network.eth0.netmask=255.255.255.0\n"
                                                              "touch /usr/tesk42/IOT/gateway.sh\n"
                                                              "sync\n");
    EXPECT_EQ(read(folder.filePath(QStringLiteral("network.eth0.ipaddr"))), "192.168.1.5\n");
    EXPECT_EQ(read(folder.filePath(QStringLiteral("network.eth0.netmask"))), "255.255.255.0\n");
    EXPECT_EQ(message, QStringLiteral("Success.")) << "a command that fails is not looked at";
}
