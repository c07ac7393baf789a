#include "network/panelip.h"

#include "tests/network/networkpanel.h"

#include <QCoreApplication>
#include <QTranslator>

#include <cstring>

namespace simulator = panelkit::simulator;

namespace {

const int saveFlag = 60213;
const int reloadFlag = 60214;

// What the operator is told, in a language of the test's own.
class Translation : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        return std::strcmp(context, "QObject") == 0
                   ? QStringLiteral("<") + QLatin1String(sourceText) + QLatin1Char('>')
                   : QString();
    }
    bool isEmpty() const override { return false; }
};

class PanelIp : public panelkit::testing::NetworkPanel
{
protected:
    void configure(const char *ip, const char *netMask, const char *gateway, const char *dns)
    {
        sys_base_set_config_Ip(QLatin1String(ip));
        sys_base_set_config_NetMask(QLatin1String(netMask));
        sys_base_set_config_Gateway(QLatin1String(gateway));
        sys_base_set_config_DNS(QLatin1String(dns));
    }

    // The operator enters 192.168.1.5, 255.255.255.0, 192.168.1.1 and 8.8.4.4, and asks for them.
    void enterSettings()
    {
        setWords(64052, {192, 168, 1, 5, 255, 255, 255, 0, 192, 168, 1, 1, 8, 8, 4, 4});
        setFlag(saveFlag, 1);
    }
};

const QStringList registersRead = {
    QStringLiteral("read 1:60213 1"), QStringLiteral("write 1:60213 0"), QStringLiteral("read 0:64052 1"),
    QStringLiteral("read 0:64053 1"), QStringLiteral("read 0:64054 1"),  QStringLiteral("read 0:64055 1"),
    QStringLiteral("read 0:64056 1"), QStringLiteral("read 0:64057 1"),  QStringLiteral("read 0:64058 1"),
    QStringLiteral("read 0:64059 1"), QStringLiteral("read 0:64060 1"),  QStringLiteral("read 0:64061 1"),
    QStringLiteral("read 0:64062 1"), QStringLiteral("read 0:64063 1"),  QStringLiteral("read 0:64064 1"),
    QStringLiteral("read 0:64065 1"), QStringLiteral("read 0:64066 1"),  QStringLiteral("read 0:64067 1")};

const QStringList configurationStored = {QStringLiteral("sys_base_set_config_Ip 192.168.1.5"),
                                         QStringLiteral("sys_base_set_config_NetMask 255.255.255.0"),
                                         QStringLiteral("sys_base_set_config_Gateway 192.168.1.1"),
                                         QStringLiteral("sys_base_set_config_DNS 8.8.4.4")};

const QStringList addressApplied = {
    QStringLiteral("sys_base_do_system uci set network.eth0.ipaddr=192.168.1.5\n"),
    QStringLiteral("sys_base_do_system uci set network.eth0.netmask=255.255.255.0\n")};

const QStringList gatewayInstalled = {
    QStringLiteral(
        "sys_base_do_system touch /usr/tesk42/IOT/gateway.sh && echo \"route add default gw 192.168.1.1\n"
        "echo 1 >/proc/sys/net/ipv4/ip_forward\n"
        "iptables -t nat -A POSTROUTING -o eth0 -j MASQUERADE\" > /usr/tesk42/IOT/gateway.sh && "
        "chmod +x /usr/tesk42/IOT/gateway.sh"),
    QStringLiteral("sys_base_do_system sync")};

const QStringList configurationRead = {
    QStringLiteral("sys_base_get_config_Ip false"), QStringLiteral("sys_base_get_config_NetMask"),
    QStringLiteral("sys_base_get_config_Gateway"), QStringLiteral("sys_base_get_config_DNS")};

const QStringList registersWritten = {
    QStringLiteral("write 0:64052 192"), QStringLiteral("write 0:64053 168"),
    QStringLiteral("write 0:64054 1"),   QStringLiteral("write 0:64055 5"),
    QStringLiteral("write 0:64056 255"), QStringLiteral("write 0:64057 255"),
    QStringLiteral("write 0:64058 255"), QStringLiteral("write 0:64059 0"),
    QStringLiteral("write 0:64060 192"), QStringLiteral("write 0:64061 168"),
    QStringLiteral("write 0:64062 1"),   QStringLiteral("write 0:64063 1"),
    QStringLiteral("write 0:64064 8"),   QStringLiteral("write 0:64065 8"),
    QStringLiteral("write 0:64066 4"),   QStringLiteral("write 0:64067 4")};

const QStringList configurationReadAnew =
    QStringList(QStringLiteral("sys_base_init_config")) + configurationRead;

const QStringList success = {QStringLiteral("post 1007 \"Success.\" 30 2")};

} // namespace

TEST_F(PanelIp, SetIpInfoWritesFourWords)
{
    EXPECT_EQ(journalOf([&] { setIPInfo(&comm, 64052, QStringLiteral("10.0.255.1")); }),
              QStringList({QStringLiteral("write 0:64052 10"), QStringLiteral("write 0:64053 0"),
                           QStringLiteral("write 0:64054 255"), QStringLiteral("write 0:64055 1")}));
}

TEST_F(PanelIp, SetIpInfoWritesNothingForAnythingButFourParts)
{
    for (const char *text : {"10.1.2", "", "1.2.3.4.5", "10", "....", "1.2.3.4."}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(journalOf([&] { setIPInfo(&comm, 64052, QLatin1String(text)); }), QStringList());
    }
}

TEST_F(PanelIp, SetIpInfoWritesAPartThatIsNoNumberAsZero)
{
    EXPECT_EQ(journalOf([&] { setIPInfo(&comm, 64056, QStringLiteral("10.1.x.4")); }),
              QStringList({QStringLiteral("write 0:64056 10"), QStringLiteral("write 0:64057 1"),
                           QStringLiteral("write 0:64058 0"), QStringLiteral("write 0:64059 4")}));
}

TEST_F(PanelIp, SetIpInfoWritesPartsAsTheyAreAndCutsThemAtOneWord)
{
    EXPECT_EQ(journalOf([&] { setIPInfo(&comm, 100, QStringLiteral("300.65535.65536.131073")); }),
              QStringList({QStringLiteral("write 0:100 300"), QStringLiteral("write 0:101 65535"),
                           QStringLiteral("write 0:102 0"), QStringLiteral("write 0:103 1")}));
    EXPECT_EQ(journalOf([&] { setIPInfo(&comm, 100, QStringLiteral("-1.4294967296.0x10.010")); }),
              QStringList({QStringLiteral("write 0:100 0"), QStringLiteral("write 0:101 0"),
                           QStringLiteral("write 0:102 0"), QStringLiteral("write 0:103 10")}));
}

TEST_F(PanelIp, SetIpInfoTakesEmptyPartsAsZeroAndEndsTheRangeOfAddressesCalmly)
{
    EXPECT_EQ(
        journalOf([&] { setIPInfo(&comm, 2147483647, QStringLiteral("...7")); }),
        QStringList({QStringLiteral("write 0:2147483647 0"), QStringLiteral("write 0:-2147483648 0"),
                     QStringLiteral("write 0:-2147483647 0"), QStringLiteral("write 0:-2147483646 7")}));
    setIPInfo(nullptr, 64052, QStringLiteral("1.2.3.4"));
}

TEST_F(PanelIp, LoadNeedsTheReloadFlag)
{
    setFlag(reloadFlag, 0);
    bool loaded = true;
    EXPECT_EQ(journalOf([&] { loaded = loadHMIIP(false); }), QStringList(QStringLiteral("read 1:60214 1")));
    EXPECT_FALSE(loaded);
}

TEST_F(PanelIp, LoadConsumesTheFlagAndFillsTheRegisters)
{
    configure("192.168.1.5", "255.255.255.0", "192.168.1.1", "8.8.4.4");
    for (quint16 request : std::initializer_list<quint16>{1, 2, 65535}) {
        setFlag(reloadFlag, request);
        bool loaded = false;
        EXPECT_EQ(journalOf([&] { loaded = loadHMIIP(false); }),
                  QStringList({QStringLiteral("read 1:60214 1"), QStringLiteral("write 1:60214 0")}) +
                      configurationRead + registersWritten);
        EXPECT_TRUE(loaded);
        EXPECT_EQ(flag(reloadFlag), 0);
    }
}

TEST_F(PanelIp, ForcedLoadNeitherReadsNorClearsTheFlag)
{
    configure("192.168.1.5", "255.255.255.0", "192.168.1.1", "8.8.4.4");
    setFlag(reloadFlag, 1);
    bool loaded = false;
    EXPECT_EQ(journalOf([&] { loaded = loadHMIIP(true); }), configurationRead + registersWritten);
    EXPECT_TRUE(loaded);
    EXPECT_EQ(flag(reloadFlag), 1);
}

TEST_F(PanelIp, LoadAsksForTheAddressOfAnIotDevice)
{
    ASSERT_TRUE(root.write("/usr/tesk42/config.ini", "MODEL=W10\n"));
    configure("", "", "", "");
    EXPECT_EQ(journalOf([] { loadHMIIP(true); }), QStringList({QStringLiteral("sys_base_get_config_Ip true"),
                                                               QStringLiteral("sys_base_get_config_NetMask"),
                                                               QStringLiteral("sys_base_get_config_Gateway"),
                                                               QStringLiteral("sys_base_get_config_DNS")}));
}

TEST_F(PanelIp, LoadLeavesTheRegistersOfASettingThatIsNoAddress)
{
    configure("192.168.1", "255.255.255.0", "", "x.8.4.4");
    setWords(64052, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16});
    EXPECT_TRUE(loadHMIIP(true));
    EXPECT_EQ(word(64052), 1);
    EXPECT_EQ(word(64055), 4);
    EXPECT_EQ(word(64056), 255);
    EXPECT_EQ(word(64059), 0);
    EXPECT_EQ(word(64060), 9);
    EXPECT_EQ(word(64063), 12);
    EXPECT_EQ(word(64064), 0);
    EXPECT_EQ(word(64067), 4);
}

TEST_F(PanelIp, NothingIsDoneWithoutCommunication)
{
    enterSettings();
    takeCommunicationAway();
    const auto tryAll = [] {
        EXPECT_FALSE(saveHMIIP());
        EXPECT_FALSE(loadHMIIP(false));
        EXPECT_FALSE(loadHMIIP(true));
    };
    EXPECT_EQ(journalOf(tryAll), QStringList());
    simulator::setApplicationRecord(nullptr);
    EXPECT_EQ(journalOf(tryAll), QStringList());
}

TEST_F(PanelIp, ReadThatFailsIsAFlagThatIsNotSet)
{
    enterSettings();
    setFlag(reloadFlag, 1);
    comm.silentRegisters << saveFlag << reloadFlag;
    EXPECT_EQ(journalOf([] { EXPECT_FALSE(saveHMIIP()); }), QStringList(QStringLiteral("read 1:60213 1")));
    EXPECT_EQ(journalOf([] { EXPECT_FALSE(loadHMIIP(false)); }),
              QStringList(QStringLiteral("read 1:60214 1")));
}

TEST_F(PanelIp, SaveNeedsTheSaveFlag)
{
    enterSettings();
    setFlag(saveFlag, 0);
    bool saved = true;
    EXPECT_EQ(journalOf([&] { saved = saveHMIIP(); }), QStringList(QStringLiteral("read 1:60213 1")));
    EXPECT_FALSE(saved);
}

TEST_F(PanelIp, SaveStoresAppliesAndReports)
{
    ASSERT_TRUE(root.write("/etc/config/network", ""));
    enterSettings();
    bool saved = false;
    EXPECT_EQ(journalOf([&] { saved = saveHMIIP(); }), registersRead + configurationStored + addressApplied +
                                                           gatewayInstalled + configurationReadAnew +
                                                           registersWritten + success);
    EXPECT_TRUE(saved);
    EXPECT_EQ(flag(saveFlag), 0);
}

TEST_F(PanelIp, SaveTakesAnyFlagButZero)
{
    for (quint16 request : std::initializer_list<quint16>{2, 256, 65535}) {
        enterSettings();
        setFlag(saveFlag, request);
        EXPECT_TRUE(saveHMIIP()) << request;
        EXPECT_EQ(flag(saveFlag), 0);
    }
}

TEST_F(PanelIp, SaveWithoutTheNetworkFileStillWritesTheGatewayScriptAndReports)
{
    enterSettings();
    bool saved = false;
    EXPECT_EQ(journalOf([&] { saved = saveHMIIP(); }), registersRead + configurationStored +
                                                           gatewayInstalled + configurationReadAnew +
                                                           registersWritten + success);
    EXPECT_TRUE(saved);
}

TEST_F(PanelIp, SaveOnAnIotDeviceDoesNotReadTheConfigurationAnew)
{
    ASSERT_TRUE(root.write("/usr/tesk42/config.ini", "MODEL=G2-Keld\n"));
    ASSERT_TRUE(root.write("/etc/config/network", ""));
    enterSettings();
    bool saved = false;
    EXPECT_EQ(journalOf([&] { saved = saveHMIIP(); }),
              registersRead + configurationStored + addressApplied + gatewayInstalled + success);
    EXPECT_TRUE(saved);
}

TEST_F(PanelIp, RegistersShowWhatTheSystemReportsAfterASave)
{
    ASSERT_TRUE(root.write("/config/network.ini", ""));
    simulator::setConfigurationFile(root.path("/config/network.ini"));
    // A system that changes the mask on its own when it takes new settings over.
    simulator::setSystemBaseObserver([this](const QByteArray &line) {
        if (line != "sys_base_init_config")
            return;
        EXPECT_TRUE(root.write("/config/network.ini", "[network]\nip=192.168.1.5\nnetmask=255.255.255.128\n"
                                                      "gateway=192.168.1.1\ndns=8.8.4.4\n"));
    });
    enterSettings();
    EXPECT_TRUE(saveHMIIP());
    EXPECT_EQ(word(64055), 5);
    EXPECT_EQ(word(64059), 128);
}

TEST_F(PanelIp, WrongAddressIsReportedAndNothingIsStoredOrRun)
{
    const struct
    {
        int address;
        quint16 value;
        const char *report;
    } rows[] = {
        {64055, 300, "post 1007 \"The IP address setting is incorrect. Please re-enter it.\" 30 2"},
        {64052, 256, "post 1007 \"The IP address setting is incorrect. Please re-enter it.\" 30 2"},
        {64056, 65535, "post 1007 \"The subnet mask setting is incorrect. Please re-enter it.\" 30 2"},
        {64063, 256, "post 1007 \"The gateway setting is incorrect. Please re-enter it.\" 30 2"},
        {64066, 1000, "post 1007 \"The DNS setting is incorrect. Please re-enter it.\" 30 2"},
    };
    ASSERT_TRUE(root.write("/etc/config/network", ""));
    for (const auto &row : rows) {
        SCOPED_TRACE(row.address);
        enterSettings();
        setWords(row.address, {row.value});
        bool saved = true;
        EXPECT_EQ(journalOf([&] { saved = saveHMIIP(); }),
                  registersRead + QStringList(QLatin1String(row.report)));
        EXPECT_FALSE(saved);
        EXPECT_EQ(flag(saveFlag), 0) << "the entry is not tried again";
        EXPECT_EQ(word(row.address), row.value) << "the operator's value stays";
    }
}

TEST_F(PanelIp, OnlyTheFirstWrongAddressIsReported)
{
    enterSettings();
    setWords(64055, {300, 300});
    setWords(64063, {300, 300});
    EXPECT_EQ(journalOf([] { EXPECT_FALSE(saveHMIIP()); }).last(),
              QStringLiteral("post 1007 \"The IP address setting is incorrect. Please re-enter it.\" 30 2"));
}

TEST_F(PanelIp, GatewayAloneIsReportedWhenTheAddressIsRight)
{
    enterSettings();
    setWords(64060, {10, 0, 0, 256});
    EXPECT_EQ(journalOf([] { EXPECT_FALSE(saveHMIIP()); }),
              registersRead +
                  QStringList(QStringLiteral(
                      "post 1007 \"The gateway setting is incorrect. Please re-enter it.\" 30 2")));
}

TEST_F(PanelIp, AnyFourBytesAreASubnetMask)
{
    enterSettings();
    setWords(64056, {1, 0, 255, 7});
    EXPECT_TRUE(saveHMIIP());
    EXPECT_EQ(sys_base_get_config_NetMask(), QStringLiteral("1.0.255.7"));
}

TEST_F(PanelIp, MessagesAreTranslated)
{
    Translation translation;
    ASSERT_TRUE(QCoreApplication::installTranslator(&translation));
    enterSettings();
    EXPECT_EQ(journalOf([] { saveHMIIP(); }).last(), QStringLiteral("post 1007 \"<Success.>\" 30 2"));
    const struct
    {
        int address;
        const char *report;
    } rows[] = {{64052, "post 1007 \"<The IP address setting is incorrect. Please re-enter it.>\" 30 2"},
                {64056, "post 1007 \"<The subnet mask setting is incorrect. Please re-enter it.>\" 30 2"},
                {64060, "post 1007 \"<The gateway setting is incorrect. Please re-enter it.>\" 30 2"},
                {64064, "post 1007 \"<The DNS setting is incorrect. Please re-enter it.>\" 30 2"}};
    for (const auto &row : rows) {
        enterSettings();
        setWords(row.address, {256});
        EXPECT_EQ(journalOf([] { saveHMIIP(); }).last(), QLatin1String(row.report));
    }
    QCoreApplication::removeTranslator(&translation);
}

TEST_F(PanelIp, SaveNewIpCalledAloneStoresNothingInTheConfiguration)
{
    ASSERT_TRUE(root.write("/etc/config/network", ""));
    configure("10.1.1.1", "255.0.0.0", "10.1.1.2", "10.1.1.3");
    bool saved = false;
    QString message = QStringLiteral("earlier");
    const QStringList calls = journalOf([&] {
        saved = saveNewIP(QStringLiteral("192.168.1.5"), QStringLiteral("255.255.255.0"),
                          QStringLiteral("192.168.1.1"), QStringLiteral("8.8.4.4"), message);
    });
    EXPECT_TRUE(saved);
    EXPECT_EQ(message, QStringLiteral("Success."));
    EXPECT_EQ(calls.mid(0, 9), addressApplied + gatewayInstalled + configurationReadAnew);
    EXPECT_EQ(calls.mid(9),
              QStringList({QStringLiteral("write 0:64052 10"), QStringLiteral("write 0:64053 1"),
                           QStringLiteral("write 0:64054 1"), QStringLiteral("write 0:64055 1"),
                           QStringLiteral("write 0:64056 255"), QStringLiteral("write 0:64057 0"),
                           QStringLiteral("write 0:64058 0"), QStringLiteral("write 0:64059 0"),
                           QStringLiteral("write 0:64060 10"), QStringLiteral("write 0:64061 1"),
                           QStringLiteral("write 0:64062 1"), QStringLiteral("write 0:64063 2"),
                           QStringLiteral("write 0:64064 10"), QStringLiteral("write 0:64065 1"),
                           QStringLiteral("write 0:64066 1"), QStringLiteral("write 0:64067 3")}));
}

TEST_F(PanelIp, SaveNewIpWorksWithoutCommunication)
{
    takeCommunicationAway();
    QString message;
    EXPECT_TRUE(saveNewIP(QStringLiteral("192.168.1.5"), QStringLiteral("255.255.255.0"),
                          QStringLiteral("192.168.1.1"), QString(), message));
    EXPECT_EQ(journal(), gatewayInstalled + QStringList(QStringLiteral("sys_base_init_config")));
}
