#include "simulator/platform/systembase.h"

#include <QFile>
#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>
#include <sys/resource.h>

using namespace panelkit::simulator;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class SystemBase : public ::testing::Test
{
protected:
    ~SystemBase() override
    {
        setApplicationRecord(nullptr);
        setCommandPolicy(CommandPolicy::Record);
        setConfigurationFile(QString());
        setSystemBaseObserver({});
        clearRecordedCommands();
    }

    QString inFolder(const char *name) const { return folder.filePath(QLatin1String(name)); }

    // A command line that makes the file, seen from outside by the file being there.
    static QByteArray touch(const QString &path) { return "touch '" + path.toUtf8() + "'"; }

    static QStringList settings()
    {
        return {sys_base_get_config_Ip(false), sys_base_get_config_NetMask(), sys_base_get_config_Gateway(),
                sys_base_get_config_DNS()};
    }

    static void setSettings(const char *ip, const char *mask, const char *gateway, const char *dns)
    {
        sys_base_set_config_Ip(QLatin1String(ip));
        sys_base_set_config_NetMask(QLatin1String(mask));
        sys_base_set_config_Gateway(QLatin1String(gateway));
        sys_base_set_config_DNS(QLatin1String(dns));
    }

    static QStringList texts(const char *ip, const char *mask, const char *gateway, const char *dns)
    {
        return {QLatin1String(ip), QLatin1String(mask), QLatin1String(gateway), QLatin1String(dns)};
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(SystemBase, HasNoApplicationRecordAtStart)
{
    EXPECT_EQ(sys_base_get_app_pro(), nullptr);
}

TEST_F(SystemBase, GivesTheRecordThatTheHostSet)
{
    sys_base_app_pro record = {};
    setApplicationRecord(&record);
    EXPECT_EQ(sys_base_get_app_pro(), &record);
    setApplicationRecord(nullptr);
    EXPECT_EQ(sys_base_get_app_pro(), nullptr);
}

TEST_F(SystemBase, RecordsCommandsAndRunsNone)
{
    const QString path = inFolder("made");
    EXPECT_EQ(sys_base_do_system(touch(path).constData()), 0);
    EXPECT_EQ(sys_base_do_system("exit 3"), 0);
    EXPECT_THAT(recordedCommands(), ElementsAre(touch(path), QByteArray("exit 3")));
    EXPECT_FALSE(QFile::exists(path));
}

TEST_F(SystemBase, RunsCommandsOnlyWhenToldTo)
{
    const QString path = inFolder("made");
    setCommandPolicy(CommandPolicy::Run);
    EXPECT_EQ(sys_base_do_system(touch(path).constData()), 0);
    EXPECT_TRUE(QFile::exists(path)) << "before the call returns";
    EXPECT_NE(sys_base_do_system("exit 3"), 0);
    EXPECT_THAT(recordedCommands(), ElementsAre(touch(path), QByteArray("exit 3")));

    setCommandPolicy(CommandPolicy::Record);
    const QString second = inFolder("second");
    sys_base_do_system(touch(second).constData());
    EXPECT_FALSE(QFile::exists(second));
}

TEST_F(SystemBase, ForgetsCommandsWhenAsked)
{
    sys_base_do_system("sync");
    clearRecordedCommands();
    EXPECT_THAT(recordedCommands(), IsEmpty());
}

TEST_F(SystemBase, RefusesANullCommand)
{
    QStringList seen;
    setSystemBaseObserver([&seen](const QByteArray &line) { seen << QString::fromUtf8(line); });
    EXPECT_EQ(sys_base_do_system(nullptr), -1);
    EXPECT_THAT(recordedCommands(), IsEmpty());
    EXPECT_TRUE(seen.isEmpty());
}

TEST_F(SystemBase, KeepsTheSettingsInMemoryWithoutAFile)
{
    EXPECT_EQ(settings(), texts("", "", "", ""));
    setSettings("10.0.0.5", "255.0.0.0", "10.0.0.1", "9.9.9.9");
    sys_base_init_config();
    EXPECT_EQ(settings(), texts("10.0.0.5", "255.0.0.0", "10.0.0.1", "9.9.9.9"));
    EXPECT_EQ(sys_base_get_config_Ip(true), QStringLiteral("10.0.0.5")) << "one address for any device";
}

TEST_F(SystemBase, WritesEachSettingToTheFile)
{
    const QString path = inFolder("system.ini");
    setConfigurationFile(path);
    setSettings("10.0.0.5", "255.0.0.0", "10.0.0.1", "9.9.9.9");

    const QSettings file(path, QSettings::IniFormat);
    EXPECT_EQ(file.value(QStringLiteral("network/ip")).toString(), QStringLiteral("10.0.0.5"));
    EXPECT_EQ(file.value(QStringLiteral("network/netmask")).toString(), QStringLiteral("255.0.0.0"));
    EXPECT_EQ(file.value(QStringLiteral("network/gateway")).toString(), QStringLiteral("10.0.0.1"));
    EXPECT_EQ(file.value(QStringLiteral("network/dns")).toString(), QStringLiteral("9.9.9.9"));
}

TEST_F(SystemBase, FindsTheSettingsOfAnEarlierRun)
{
    const QString path = inFolder("system.ini");
    setConfigurationFile(path);
    setSettings("10.0.0.5", "255.0.0.0", "10.0.0.1", "9.9.9.9");

    setConfigurationFile(QString());
    EXPECT_EQ(settings(), texts("", "", "", ""));
    setConfigurationFile(path);
    EXPECT_EQ(settings(), texts("10.0.0.5", "255.0.0.0", "10.0.0.1", "9.9.9.9"));
}

TEST_F(SystemBase, ReadsTheFileAgainWhenAsked)
{
    const QString path = inFolder("system.ini");
    setConfigurationFile(path);
    setSettings("10.0.0.5", "255.0.0.0", "10.0.0.1", "9.9.9.9");

    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("[network]\nip=172.16.0.2\nnetmask=255.255.0.0\n");
    file.close();
    EXPECT_EQ(settings(), texts("10.0.0.5", "255.0.0.0", "10.0.0.1", "9.9.9.9"));
    sys_base_init_config();
    EXPECT_EQ(settings(), texts("172.16.0.2", "255.255.0.0", "", ""));
}

TEST_F(SystemBase, ReadsAMissingFileAsEmptyTexts)
{
    setSettings("10.0.0.5", "255.0.0.0", "10.0.0.1", "9.9.9.9");
    setConfigurationFile(inFolder("missing.ini"));
    EXPECT_EQ(settings(), texts("", "", "", ""));
}

TEST_F(SystemBase, LosesNothingThatTheFileHeldOnADiskThatFillsUp)
{
    // Longer than the file by which the toolkit locks the settings, whose failure would end it all.
    const QByteArray before = "[network]\nip=192.168.1.10\n\n[other]\nvalue=" + QByteArray(600, '7') + '\n';
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit earlier = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &earlier), 0);
    for (int room = 0; room <= before.size(); room += 25) {
        const QString path = inFolder("panel.ini") + QString::number(room);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(before);
        file.close();
        setConfigurationFile(path);

        rlimit full = earlier;
        full.rlim_cur = static_cast<rlim_t>(room);
        setrlimit(RLIMIT_FSIZE, &full);
        sys_base_set_config_Ip(QStringLiteral("10.0.0.1"));
        setrlimit(RLIMIT_FSIZE, &earlier);

        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), before) << room;
    }
    std::signal(SIGXFSZ, handler);
}

TEST_F(SystemBase, TellsTheObserverOfEachCallBeforeItTakesEffect)
{
    QStringList seen;
    setSystemBaseObserver([&seen](const QByteArray &line) {
        seen << QString::fromUtf8(line) + QStringLiteral(" (%1)").arg(recordedCommands().size());
    });
    sys_base_do_system("sync");
    sys_base_init_config();
    sys_base_get_config_Ip(true);
    sys_base_get_config_Ip(false);
    sys_base_get_config_NetMask();
    sys_base_get_config_Gateway();
    sys_base_get_config_DNS();
    setSettings("1.2.3.4", "255.0.0.0", "1.0.0.1", "8.8.8.8");
    sys_base_get_app_pro();
    EXPECT_EQ(seen, (QStringList{QStringLiteral("sys_base_do_system sync (0)"),
                                 QStringLiteral("sys_base_init_config (1)"),
                                 QStringLiteral("sys_base_get_config_Ip true (1)"),
                                 QStringLiteral("sys_base_get_config_Ip false (1)"),
                                 QStringLiteral("sys_base_get_config_NetMask (1)"),
                                 QStringLiteral("sys_base_get_config_Gateway (1)"),
                                 QStringLiteral("sys_base_get_config_DNS (1)"),
                                 QStringLiteral("sys_base_set_config_Ip 1.2.3.4 (1)"),
                                 QStringLiteral("sys_base_set_config_NetMask 255.0.0.0 (1)"),
                                 QStringLiteral("sys_base_set_config_Gateway 1.0.0.1 (1)"),
                                 QStringLiteral("sys_base_set_config_DNS 8.8.8.8 (1)")}));
}

TEST_F(SystemBase, LetsAnObserverTakeItselfAway)
{
    int calls = 0;
    setSystemBaseObserver([&calls](const QByteArray &) {
        setSystemBaseObserver({});
        ++calls;
    });
    sys_base_init_config();
    sys_base_init_config();
    EXPECT_EQ(calls, 1);
}
