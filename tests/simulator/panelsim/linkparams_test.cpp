#include "simulator/plc/bottlingline.h"
#include "simulator/plc/plcserver.h"
#include "tests/simulator/panelsim/program.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace panelkit::simulator;
using namespace panelkit::testing;
using ::testing::HasSubstr;

namespace {

class PanelsimLinkParams : public ::testing::Test
{
protected:
    ProgramRun run(const QStringList &arguments)
    {
        return runPanelsim(QStringList(QStringLiteral("link-params")) + arguments);
    }

    ProgramRun runBelowRoot(const QStringList &arguments)
    {
        return run(arguments + QStringList{QStringLiteral("--root"), folder.path()});
    }

    static std::string table(const ProgramRun &run)
    {
        QStringList lines;
        for (const QString &line : run.out.split(QLatin1Char('\n')))
            lines << line.simplified();
        return lines.join(QLatin1Char('\n')).toStdString();
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(PanelsimLinkParams, ShowsWhatTheRegistersHoldForAnEthernetLink)
{
    const ProgramRun shown = run({QStringLiteral("1")});
    EXPECT_EQ(shown.exitCode, 0) << shown.err.toStdString();
    EXPECT_EQ(table(shown), "Link 1, Line PLC (Ethernet 1, drivers/Modbus), as the project has it\n"
                            "KEY REGISTERS VALUE\n"
                            "station 64002 1\n"
                            "interval 64003 200 ms\n"
                            "timeout 64004 1000 ms\n"
                            "retry 64005 2\n"
                            "addmore 64006 0\n"
                            "addrinterval 64007 8 registers\n"
                            "ip 64020-64023 127.0.0.1\n"
                            "port 64024 502\n");
}

TEST_F(PanelsimLinkParams, KeepsBelowTheRootWhatWasSetOnASerialLink)
{
    const ProgramRun set =
        runBelowRoot({QStringLiteral("3"), QStringLiteral("set"), QStringLiteral("baud=115200"),
                      QStringLiteral("mode=7"), QStringLiteral("station=9")});
    EXPECT_EQ(set.exitCode, 0) << set.err.toStdString();
    EXPECT_THAT(set.out.toStdString(), HasSubstr("Kept below "));
    EXPECT_EQ(table(runBelowRoot({QStringLiteral("3"), QStringLiteral("show")})),
              "Link 3, Steam PLC (COM1, drivers/ByteAddressed), as an operator saved it\n"
              "KEY REGISTERS VALUE\n"
              "station 64002 9\n"
              "interval 64003 500 ms\n"
              "timeout 64004 1500 ms\n"
              "retry 64005 3\n"
              "addmore 64006 0\n"
              "addrinterval 64007 0 registers\n"
              "mode 64040 2\n" // what is none of 0, 1 and 2 comes back as 2
              "baud 64041-64042 115200 baud\n"
              "data 64043 8 bits\n"
              "check 64044 2\n"
              "stop 64045 1 bits\n");
}

TEST_F(PanelsimLinkParams, SaysWithoutARootThatNothingIsKept)
{
    const ProgramRun set = run({QStringLiteral("1"), QStringLiteral("set"), QStringLiteral("retry=5")});
    EXPECT_EQ(set.exitCode, 0);
    EXPECT_THAT(set.out.toStdString(), HasSubstr("Nothing of this is kept"));
}

TEST_F(PanelsimLinkParams, MoveALinkForAllLaterCommands)
{
    PlcMemory memory(BottlingLine::units(), BottlingLine::registersPerTable);
    memory.setValue(1, ModbusTable::InputRegisters, 1, 123);
    const PlcServer plc(memory);
    const QString port = QStringLiteral("port=%1").arg(plc.port());
    EXPECT_EQ(runBelowRoot({QStringLiteral("1"), QStringLiteral("set"), port}).exitCode, 0);
    const ProgramRun shown = runPanelsim({QStringLiteral("show"), QStringLiteral("--root"), folder.path()});
    EXPECT_THAT(shown.out.simplified().toStdString(), HasSubstr("Tank level 3x2 007b uint16 dec 12.3 "));
}

TEST_F(PanelsimLinkParams, TakeTheProjectThatIsNamed)
{
    const QString project = folder.filePath(QStringLiteral("none.json"));
    QFile file(project);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"name": "X", "screenWidth": 480, "screenHeight": 272})");
    file.close();
    const ProgramRun refused = run({QStringLiteral("1"), QStringLiteral("--project"), project});
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_EQ(refused.err,
              QStringLiteral("panelsim: link-params: there is no link '1': the project has none\n"));
}

TEST_F(PanelsimLinkParams, AreStoredOverAFileThatHoldsRubbish)
{
    const QString path = folder.filePath(QStringLiteral("usr/tesk42/APP/linkparams.ini"));
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[link1\nno settings\n");
    file.close();
    const ProgramRun set =
        runBelowRoot({QStringLiteral("1"), QStringLiteral("set"), QStringLiteral("retry=5")});
    EXPECT_EQ(set.exitCode, 0) << set.err.toStdString();
    EXPECT_THAT(table(runBelowRoot({QStringLiteral("1")})), HasSubstr("retry 64005 5\n"));
}

TEST_F(PanelsimLinkParams, SayWhenTheFileCannotBeWritten)
{
    // A folder in its place: nobody can write that, not even root.
    ASSERT_TRUE(QDir().mkpath(folder.filePath(QStringLiteral("usr/tesk42/APP/linkparams.ini"))));
    const ProgramRun refused =
        runBelowRoot({QStringLiteral("1"), QStringLiteral("set"), QStringLiteral("retry=5")});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err,
              QStringLiteral("panelsim: %1/usr/tesk42/APP/linkparams.ini: the parameters cannot be "
                             "stored (the file may not be written): see to it, or name another folder "
                             "with --root\n")
                  .arg(folder.path()));
}

TEST_F(PanelsimLinkParams, RefuseWrongArgumentsInOneLine)
{
    const QString use =
        QStringLiteral("panelsim: link-params takes a link's number and then show, or set with "
                       "KEY=VALUE\n");
    const struct
    {
        QStringList arguments;
        QString complaint;
    } rows[] = {
        {{}, use},
        {{QStringLiteral("1"), QStringLiteral("get")}, use},
        {{QStringLiteral("1"), QStringLiteral("show"), QStringLiteral("retry")}, use},
        {{QStringLiteral("9")},
         QStringLiteral("panelsim: link-params: there is no link '9': the project has 1, 2, 3\n")},
        {{QStringLiteral("0")},
         QStringLiteral("panelsim: link-params: there is no link '0': the project has 1, 2, 3\n")},
        {{QStringLiteral("x")},
         QStringLiteral("panelsim: link-params: there is no link 'x': the project has 1, 2, 3\n")},
        {{QStringLiteral("1"), QStringLiteral("set"), QStringLiteral("baud=9600")},
         QStringLiteral("panelsim: link-params: 'baud=9600' names none of station, interval, timeout, retry, "
                        "addmore, addrinterval, ip, port\n")},
        {{QStringLiteral("3"), QStringLiteral("set"), QStringLiteral("ip=1.2.3.4")},
         QStringLiteral(
             "panelsim: link-params: 'ip=1.2.3.4' names none of station, interval, timeout, retry, "
             "addmore, addrinterval, mode, baud, data, check, stop\n")},
        {{QStringLiteral("1"), QStringLiteral("set"), QStringLiteral("retry=70000")},
         QStringLiteral("panelsim: link-params: retry '70000' is not a number from 0 to 65535\n")},
        {{QStringLiteral("1"), QStringLiteral("set")}, use},
        {{QStringLiteral("1"), QStringLiteral("set"), QStringLiteral("station=256")},
         QStringLiteral("panelsim: link-params: station '256' is not a number from 0 to 255\n")},
        {{QStringLiteral("1"), QStringLiteral("set"), QStringLiteral("retry=-1")},
         QStringLiteral("panelsim: link-params: retry '-1' is not a number from 0 to 65535\n")},
        {{QStringLiteral("3"), QStringLiteral("set"), QStringLiteral("baud=2147483648")},
         QStringLiteral("panelsim: link-params: baud '2147483648' is not a number from 0 to 2147483647\n")},
        {{QStringLiteral("1"), QStringLiteral("set"), QStringLiteral("ip=1.2.3.256")},
         QStringLiteral("panelsim: link-params: ip '1.2.3.256' is not four numbers from 0 to 255 with dots "
                        "between\n")},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.complaint.toStdString());
        const ProgramRun refused = run(row.arguments);
        EXPECT_EQ(refused.exitCode, 2);
        EXPECT_EQ(refused.err.toStdString(), row.complaint.toStdString());
        EXPECT_TRUE(refused.out.isEmpty());
    }
}
