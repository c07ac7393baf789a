#include "tests/simulator/panelsim/program.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace panelkit::testing;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

const QStringList address = {QStringLiteral("ip=192.168.1.5"), QStringLiteral("mask=255.255.255.0"),
                             QStringLiteral("gateway=192.168.1.1"), QStringLiteral("dns=8.8.4.4")};

class PanelsimNetwork : public ::testing::Test
{
protected:
    ProgramRun run(const QStringList &arguments)
    {
        return runPanelsim(QStringList(QStringLiteral("network")) + arguments);
    }

    ProgramRun runBelowRoot(const QStringList &arguments)
    {
        return run(arguments + QStringList{QStringLiteral("--root"), root()});
    }

    QString root() const { return folder.filePath(QStringLiteral("panel")); }

    bool write(const QString &path, const QByteArray &content)
    {
        QFile file(path);
        return QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly) &&
               file.write(content) == content.size();
    }

    // The words of the line that begins so, with runs of blanks as one.
    static std::string lineOf(const ProgramRun &run, const char *beginning)
    {
        for (const QString &line : run.out.split(QLatin1Char('\n')))
            if (line.startsWith(QLatin1String(beginning)))
                return line.simplified().toStdString();
        return {};
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(PanelsimNetwork, ShowsThatAFreshPanelHasNoAddress)
{
    const ProgramRun shown = run({});
    EXPECT_EQ(shown.exitCode, 0) << shown.err.toStdString();
    EXPECT_EQ(lineOf(shown, "IP address"), "IP address 64052-64055 not set");
    EXPECT_EQ(lineOf(shown, "DNS server"), "DNS server 64064-64067 not set");
}

TEST_F(PanelsimNetwork, KeepsBelowTheRootWhatWasSet)
{
    const ProgramRun set = runBelowRoot(QStringList(QStringLiteral("set")) + address);
    EXPECT_EQ(set.exitCode, 0) << set.err.toStdString();
    EXPECT_THAT(set.out.toStdString(), HasSubstr("The panel says: Success.\n"));
    EXPECT_THAT(set.out.toStdString(), HasSubstr("Kept below " + root().toStdString() + ".\n"));
    EXPECT_TRUE(set.err.isEmpty());

    const ProgramRun shown = runBelowRoot({QStringLiteral("show")});
    EXPECT_EQ(lineOf(shown, "IP address"), "IP address 64052-64055 192.168.1.5");
    EXPECT_EQ(lineOf(shown, "Subnet mask"), "Subnet mask 64056-64059 255.255.255.0");
    EXPECT_EQ(lineOf(shown, "Gateway"), "Gateway 64060-64063 192.168.1.1");
    EXPECT_EQ(lineOf(shown, "DNS server"), "DNS server 64064-64067 8.8.4.4");
}

TEST_F(PanelsimNetwork, LeavesAsItIsWhatIsNotGiven)
{
    runBelowRoot(QStringList(QStringLiteral("set")) + address);
    EXPECT_EQ(runBelowRoot({QStringLiteral("set"), QStringLiteral("dns=001.1.01.1")}).exitCode, 0);
    const ProgramRun shown = runBelowRoot({});
    EXPECT_EQ(lineOf(shown, "IP address"), "IP address 64052-64055 192.168.1.5");
    EXPECT_EQ(lineOf(shown, "DNS server"), "DNS server 64064-64067 1.1.1.1");
}

TEST_F(PanelsimNetwork, SaysWithoutARootThatNothingIsKept)
{
    const ProgramRun set = run(QStringList(QStringLiteral("set")) + address);
    EXPECT_EQ(set.exitCode, 0);
    EXPECT_THAT(set.out.toStdString(), HasSubstr("Nothing of this is kept"));
}

TEST_F(PanelsimNetwork, HandsOnWhatThePanelSaysOfAWrongAddress)
{
    const ProgramRun set =
        runBelowRoot({QStringLiteral("set"), address.at(0), QStringLiteral("mask=255.255.255.300"),
                      address.at(2), address.at(3)});
    EXPECT_EQ(set.exitCode, 1);
    EXPECT_EQ(set.err,
              QStringLiteral("panelsim: the panel says: The subnet mask setting is incorrect. Please "
                             "re-enter it.\n"));
    EXPECT_EQ(lineOf(runBelowRoot({}), "IP address"), "IP address 64052-64055 not set");
}

TEST_F(PanelsimNetwork, SaysWhenTheSettingsCannotBeStored)
{
    // A folder in the file's place: nobody can write that, not even root.
    ASSERT_TRUE(QDir().mkpath(root() + QStringLiteral("/etc/panel.ini")));
    for (const char *model :
         {"T7", "W10"}) { // one that reads its configuration anew by itself, one that does not
        ASSERT_TRUE(
            write(root() + QStringLiteral("/usr/tesk42/config.ini"), QByteArray("MODEL=") + model + "\n"));
        const ProgramRun set = runBelowRoot(QStringList(QStringLiteral("set")) + address);
        EXPECT_EQ(set.exitCode, 1);
        EXPECT_EQ(set.err,
                  QStringLiteral("panelsim: %1/etc/panel.ini: the settings cannot be stored: name another "
                                 "folder with --root\n")
                      .arg(root()));
        EXPECT_TRUE(set.out.isEmpty());
    }
}

TEST_F(PanelsimNetwork, WarnsOfWhatThePanelLetsPass)
{
    const ProgramRun set = run({QStringLiteral("set"), address.at(0), address.at(1),
                                QStringLiteral("gateway=10.0.0.1"), address.at(3)});
    EXPECT_EQ(set.exitCode, 0);
    EXPECT_EQ(set.err,
              QStringLiteral("panelsim: warning: The gateway 10.0.0.1 lies outside of the panel's subnet: "
                             "nothing beyond it can be reached.\n"));
}

TEST_F(PanelsimNetwork, ListsTheCommandsAndRunsNoneByItself)
{
    ASSERT_TRUE(write(root() + QStringLiteral("/etc/config/network"), ""));
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", OPENWRT_COMMANDS ":" + path);
    qputenv("UCI_STATE", folder.path().toLocal8Bit());
    const ProgramRun listed = runBelowRoot(QStringList(QStringLiteral("set")) + address);
    const bool ranUnasked = QFileInfo::exists(folder.filePath(QStringLiteral("calls")));
    const ProgramRun ran = runBelowRoot(QStringList(QStringLiteral("set")) + address +
                                        QStringList(QStringLiteral("--run-commands")));
    qputenv("PATH", path);
    qunsetenv("UCI_STATE");

    EXPECT_FALSE(ranUnasked);
    EXPECT_THAT(
        listed.out.toStdString(),
        HasSubstr("Commands that a panel runs, and --run-commands here:\n"
                  "  uci set network.eth0.ipaddr=192.168.1.5\n"
                  "  uci set network.eth0.netmask=255.255.255.0\n"
                  "  touch /usr/tesk42/IOT/gateway.sh && echo \"route add default gw 192.168.1.1\\n"));
    EXPECT_THAT(ran.out.toStdString(), HasSubstr("Commands that were run on this machine:\n  uci set "));
    QFile calls(folder.filePath(QStringLiteral("calls")));
    ASSERT_TRUE(calls.open(QIODevice::ReadOnly));
    EXPECT_EQ(calls.readAll(), "uci set network.eth0.ipaddr=192.168.1.5\n"
                               "uci set network.eth0.netmask=255.255.255.0\n"
                               "touch /usr/tesk42/IOT/gateway.sh\n"
                               "sync\n");
}

TEST_F(PanelsimNetwork, PlansStepByStepAndMakesNotEvenTheRoot)
{
    const ProgramRun plan = runBelowRoot(QStringList(QStringLiteral("plan")) + address);
    EXPECT_EQ(plan.exitCode, 0) << plan.err.toStdString();
    EXPECT_EQ(lineOf(plan, " 1"), "1 register 64052-64055 = 192 168 1 5");
    EXPECT_EQ(lineOf(plan, " 5"), "5 flag 60213 = 1");
    EXPECT_EQ(lineOf(plan, " 7"), "7 setting IP address = 192.168.1.5");
    EXPECT_EQ(lineOf(plan, "12"), "12 command sync");
    EXPECT_EQ(lineOf(plan, "18"), "18 message Success.");
    EXPECT_EQ(lineOf(plan, "19"), "");
    EXPECT_THAT(plan.out.toStdString(), Not(HasSubstr("Warning")));
    EXPECT_FALSE(QFileInfo::exists(root()));
}

TEST_F(PanelsimNetwork, PlansOnTopOfWhatIsStoredAndWarns)
{
    runBelowRoot(QStringList(QStringLiteral("set")) + address);
    const ProgramRun plan = runBelowRoot({QStringLiteral("plan"), QStringLiteral("ip=192.168.1.255")});
    EXPECT_EQ(plan.exitCode, 0);
    EXPECT_EQ(lineOf(plan, " 9"), "9 setting gateway = 192.168.1.1");
    EXPECT_EQ(lineOf(plan, "Warning"),
              "Warning: The IP address 192.168.1.255 is the broadcast address of its network.");
    EXPECT_EQ(lineOf(runBelowRoot({}), "IP address"), "IP address 64052-64055 192.168.1.5");
}

TEST_F(PanelsimNetwork, PlansTheRefusalToo)
{
    const ProgramRun plan = run({QStringLiteral("plan"), QStringLiteral("ip=192.168.1.300"), address.at(1),
                                 address.at(2), address.at(3)});
    EXPECT_EQ(plan.exitCode, 1);
    EXPECT_EQ(lineOf(plan, " 7"), "7 message The IP address setting is incorrect. Please re-enter it.");
}

TEST_F(PanelsimNetwork, RefusesWrongArgumentsInOneLine)
{
    const struct
    {
        QStringList arguments;
        const char *complaint;
    } rows[] = {
        {{QStringLiteral("reset")},
         "panelsim: network: 'reset' is neither show, nor set or plan with settings\n"},
        {{QStringLiteral("show"), QStringLiteral("ip=1.2.3.4")},
         "panelsim: network: 'show ip=1.2.3.4' is neither show, nor set or plan with settings\n"},
        {{QStringLiteral("set"), QStringLiteral("192.168.1.5")},
         "panelsim: network: '192.168.1.5' is not KEY=VALUE\n"},
        {{QStringLiteral("set"), QStringLiteral("netmask=1.2.3.4")},
         "panelsim: network: 'netmask=1.2.3.4' names none of ip, mask, gateway, dns\n"},
        {{QStringLiteral("plan"), QStringLiteral("ip=1.2.3.4"), QStringLiteral("ip=1.2.3.5")},
         "panelsim: network: 'ip=1.2.3.5' gives ip a second time\n"},
        {{QStringLiteral("set"), QStringLiteral("ip=1.2.3.4")},
         "panelsim: network: the panel has no mask yet: give mask=A.B.C.D too\n"},
        {{QStringLiteral("plan"), QStringLiteral("ip=1.2.3")},
         "panelsim: network: ip '1.2.3' is not four numbers from 0 to 65535, which the registers hold, with "
         "dots "
         "between\n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.complaint);
        const ProgramRun refused = run(row.arguments);
        EXPECT_EQ(refused.exitCode, 2);
        EXPECT_EQ(refused.err.toStdString(), row.complaint);
        EXPECT_TRUE(refused.out.isEmpty());
    }
}
