#include "tests/simulator/panelsim/program.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace panelkit::testing;
using ::testing::HasSubstr;

namespace {

// A panel of known kind below a root of its own.
class PanelsimInfo : public ::testing::Test
{
protected:
    void write(const char *path, const QByteArray &content)
    {
        QFile file(folder.path() + QLatin1String(path));
        ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    QStringList arguments(const QStringList &more = {}) const
    {
        return QStringList{QStringLiteral("info"), QStringLiteral("--root"), folder.path(),
                           QStringLiteral("--interval"), QStringLiteral("100")} +
               more;
    }

    static QString valueOf(const ProgramRun &run, const char *name)
    {
        for (const QString &line : run.out.split(QLatin1Char('\n')))
            if (line.startsWith(QLatin1String(name)))
                return line.mid(static_cast<int>(qstrlen(name))).simplified();
        return QStringLiteral("missing");
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(PanelsimInfo, ShowsEachFigureWithItsUnit)
{
    write("/usr/tesk42/config.ini", "MODEL=W10\n");
    write("/usr/tesk42/iot_work/iotRunTime/driver/libsiemens_s7_200_ppi.so", "");
    const ProgramRun run = runPanelsim(arguments());
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(valueOf(run, "CPU load").endsWith(QStringLiteral(" %")));
    EXPECT_TRUE(valueOf(run, "Free memory").contains(QStringLiteral(" KiB")));
    EXPECT_TRUE(valueOf(run, "Disk").endsWith(QStringLiteral(" MiB ") + folder.path()));
    EXPECT_TRUE(valueOf(run, "  used").endsWith(QStringLiteral(" MiB")));
    EXPECT_TRUE(valueOf(run, "  free").endsWith(QStringLiteral(" MiB")));
    EXPECT_EQ(valueOf(run, "Device model"), QStringLiteral("W10"));
    EXPECT_EQ(valueOf(run, "Device kind"), QStringLiteral("panel with the IoT runtime"));
    EXPECT_EQ(valueOf(run, "IoT version"), QStringLiteral("2"));
}

TEST_F(PanelsimInfo, TellsThreeKindsOfDeviceApart)
{
    EXPECT_EQ(valueOf(runPanelsim(arguments()), "Device kind"), QStringLiteral("panel"));
    EXPECT_EQ(valueOf(runPanelsim(arguments()), "Device model"), QStringLiteral("not set"));
    write("/usr/tesk42/config.ini", "MODEL=G2-Keld\n");
    EXPECT_EQ(valueOf(runPanelsim(arguments()), "Device kind"),
              QStringLiteral("gateway box with the IoT runtime"));
}

TEST_F(PanelsimInfo, MeasuresTheLoadOfThisMachineThroughThePanelsFiles)
{
    const ProgramRun run = runPanelsim(arguments({QStringLiteral("--json")}));
    ASSERT_EQ(run.exitCode, 0);
    const double load = QJsonDocument::fromJson(run.out.toUtf8())
                            .object()
                            .value(QStringLiteral("cpuLoadPercent"))
                            .toDouble(-1);
    EXPECT_GE(load, 0.0);
    EXPECT_LE(load, 100.0);
    EXPECT_EQ(QFileInfo(folder.path() + QStringLiteral("/proc/stat")).symLinkTarget(),
              QStringLiteral("/proc/stat"));
}

TEST_F(PanelsimInfo, GivesTheSameAsJson)
{
    write("/usr/tesk42/config.ini", "MODEL=W10\n");
    write("/proc/stat", "cpu  100 0 0 900\n"); // stands still
    const ProgramRun run =
        runPanelsim(arguments({QStringLiteral("--json"), QStringLiteral("--disk"), QStringLiteral("/")}));
    ASSERT_EQ(run.exitCode, 0);
    const QJsonObject root = QJsonDocument::fromJson(run.out.toUtf8()).object();
    EXPECT_EQ(root.value(QStringLiteral("cpuLoadPercent")).toDouble(-1), 0.0);
    EXPECT_TRUE(root.value(QStringLiteral("freeMemoryKiB")).isDouble());
    EXPECT_TRUE(root.value(QStringLiteral("freeMemoryWrapped")).isBool());
    EXPECT_EQ(root.value(QStringLiteral("model")).toString(), QStringLiteral("W10"));
    EXPECT_EQ(root.value(QStringLiteral("isIotDevice")), QJsonValue(true));
    EXPECT_EQ(root.value(QStringLiteral("isBoxDevice")), QJsonValue(false));
    EXPECT_EQ(root.value(QStringLiteral("iotVersion")).toInt(), 1);
    const QJsonObject disk = root.value(QStringLiteral("disk")).toObject();
    EXPECT_EQ(disk.value(QStringLiteral("path")).toString(), QStringLiteral("/"));
    EXPECT_GT(disk.value(QStringLiteral("totalMiB")).toDouble(), 0.0);
}

TEST_F(PanelsimInfo, TakesThisMachineForThePanelWithoutARoot)
{
    const ProgramRun run =
        runPanelsim({QStringLiteral("info"), QStringLiteral("--interval"), QStringLiteral("10")});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(valueOf(run, "Disk").endsWith(QStringLiteral(" MiB /")));
}

TEST_F(PanelsimInfo, PrintsOneLineOfJsonEachTimeUntilItIsTold)
{
    QProcess process;
    process.start(QStringLiteral(PANELSIM), arguments({QStringLiteral("--watch"), QStringLiteral("--json")}));
    for (int shown = 0; shown < 3; ++shown) {
        while (!process.canReadLine() && process.waitForReadyRead(programDeadline)) {
        }
        EXPECT_TRUE(QJsonDocument::fromJson(process.readLine()).isObject());
    }
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(programDeadline));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);
}

TEST_F(PanelsimInfo, MakesNoPanelWhereThereIsNone)
{
    const QString missing = folder.filePath(QStringLiteral("typo"));
    const ProgramRun run = runPanelsim({QStringLiteral("info"), QStringLiteral("--root"), missing});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err, QStringLiteral("panelsim: --root '%1': there is no such folder: name the one that the "
                                      "panel's files lie in\n")
                           .arg(missing));
    EXPECT_FALSE(QFileInfo::exists(missing));
}

TEST_F(PanelsimInfo, RefusesWrongOptionsInOneLine)
{
    for (const char *interval : {"0", "9", "3600001", "-5", "fast"}) {
        const ProgramRun run =
            runPanelsim({QStringLiteral("info"), QStringLiteral("--interval"), QLatin1String(interval)});
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_EQ(run.err.toStdString(), "panelsim: --interval '" + std::string(interval) +
                                             "' is not a number of milliseconds from 10 to 3600000\n");
    }
    const ProgramRun run =
        runPanelsim({QStringLiteral("info"), QStringLiteral("--disk"), QStringLiteral("/there/is/none")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err,
              QStringLiteral("panelsim: --disk '/there/is/none' is on no disk that can be measured\n"));
}
