#include "tests/simulator/panelsim/program.h"

#include <QTemporaryDir>

using panelkit::testing::ProgramRun;
using panelkit::testing::runPanelsim;

namespace {

ProgramRun soak(const QStringList &arguments)
{
    // What AddressSanitizer keeps from being used again, to see it used after all, would count as growth.
    qputenv("ASAN_OPTIONS", "quarantine_size_mb=1:thread_local_quarantine_size_kb=64");
    return runPanelsim(QStringList(QStringLiteral("soak")) + arguments);
}

} // namespace

TEST(Soak, LosesNothingInAFewSecondsAndPrintsItsCounts)
{
    const ProgramRun run = soak({"--seconds", "5", "--seed", "11"});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.err, QString());
    EXPECT_TRUE(run.out.startsWith(QStringLiteral("seed 11\n"))) << run.out.toStdString();
    for (const char *road : {"show ", "check ", "macro ", "link settings ", "panel address ", "CSV export ",
                             "PDF export ", "widgets "})
        EXPECT_TRUE(run.out.contains(QLatin1Char('\n') + QLatin1String(road))) << road;
}

TEST(Soak, TakesAProjectOfItsUsers)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("project.json"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"name": "Boiler", "screenWidth": 480, "screenHeight": 272,
        "links": [{"number": 901, "name": "PLC", "driver": "drivers/Modbus", "blocks": ["3x", "4x"],
                   "port": "Ethernet 1", "ip": "192.0.2.1", "tcpPort": 502, "station": 7}]})");
    file.close();
    const ProgramRun run = soak({path, "--seconds", "2", "--seed", "3"});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.err, QString());
}

TEST(Soak, NamesAProjectThatItCannotUse)
{
    const ProgramRun missing = soak({"/nowhere/project.json"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(
        missing.err,
        QStringLiteral(
            "panelsim: /nowhere/project.json: found No such file or directory, expected a project file\n"));

    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("project.json"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"name": "Boiler", "screenWidth": 0, "screenHeight": 272})");
    file.close();
    const ProgramRun refused = soak({path});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err, QStringLiteral("panelsim: %1: screenWidth: found 0, expected a whole number from "
                                          "1 to 8192\n")
                               .arg(path));
}

TEST(Soak, RefusesWhatIsNoDurationAndNoSeed)
{
    const struct
    {
        QStringList arguments;
        const char *complaint;
    } rows[] = {
        {{"--minutes", "0"}, "--minutes '0' is not a number above 0 and up to 1000000"},
        {{"--minutes", "soon"}, "--minutes 'soon' is not a number above 0 and up to 1000000"},
        {{"--seconds", "-1"}, "--seconds '-1' is not a number above 0 and up to 1000000"},
        {{"--seconds", "nan"}, "--seconds 'nan' is not a number above 0 and up to 1000000"},
        {{"--minutes", "1", "--seconds", "1"}, "soak: give --minutes or --seconds, not both"},
        {{"--seed", "-4"}, "--seed '-4' is no whole number from 0 on"},
        {{"a.json", "b.json"},
         "soak: 'b.json' is one argument too many. 'panelsim soak --help' says what it takes."},
    };
    for (const auto &row : rows) {
        const ProgramRun run = soak(row.arguments);
        EXPECT_EQ(run.exitCode, 2) << row.complaint;
        EXPECT_EQ(run.err, QStringLiteral("panelsim: %1\n").arg(QLatin1String(row.complaint)));
        EXPECT_EQ(run.out, QString()) << row.complaint;
    }
}

TEST(Soak, EndsEarlyWithItsCountsWhenItIsInterrupted)
{
    QProcess process;
    process.start(QStringLiteral(PANELSIM), {"soak", "--minutes", "60", "--seed", "5"});
    QByteArray out;
    while (!out.startsWith("seed 5\n") && process.waitForReadyRead(panelkit::testing::programDeadline))
        out += process.readAllStandardOutput();
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(panelkit::testing::programDeadline));
    out += process.readAllStandardOutput();
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    EXPECT_TRUE(out.contains("\nROAD ")) << out.toStdString();
    EXPECT_TRUE(out.contains("rows were exported to CSV")) << out.toStdString();
}
