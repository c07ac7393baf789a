#include "simulator/plc/bottlingline.h"
#include "simulator/plc/plcserver.h"
#include "tests/simulator/panelsim/program.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace panelkit::simulator;
using namespace panelkit::testing;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class PanelsimMacro : public ::testing::Test
{
protected:
    ProgramRun run(const QStringList &arguments)
    {
        return runPanelsim(QStringList{QStringLiteral("macro"), QStringLiteral("--plc"),
                                       QStringLiteral("127.0.0.1:%1").arg(server.port())} +
                           arguments);
    }

    // The lines of the output from the one that begins with `first` to the next empty one, with runs of
    // blanks as one.
    static std::vector<std::string> table(const ProgramRun &run, const char *first)
    {
        std::vector<std::string> lines;
        for (const QString &line : run.out.split(QLatin1Char('\n'))) {
            if (!lines.empty() && line.isEmpty())
                break;
            if (!lines.empty() || line.startsWith(QLatin1String(first)))
                lines.push_back(line.simplified().toStdString());
        }
        return lines;
    }

    // A project with one item whose press macro is that text.
    QString projectWith(const QByteArray &lines)
    {
        const QString path = folder.filePath(QStringLiteral("project.json"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(
            R"({"name": "X", "screenWidth": 480, "screenHeight": 272, "links": [{"number": 1, "name": "L1",
            "driver": "drivers/Modbus", "blocks": ["4x"], "port": "Ethernet 1", "ip": "127.0.0.1", "tcpPort": 502}],
            "items": [{"name": "Button", "Link": "L1", "Block": "4x", "No": "1", "index": 0, "type": "uint16",
            "digits": 5, "macroMode": 1, "pressmacro": [)" +
            lines + R"(]}], "variables": [{"name": "level", "Link": "L1", "Block": "4x", "index": 0,
            "type": "uint16"}, {"name": "share", "Link": "L1", "Block": "4x", "index": 2, "type": "float32"}]})");
        return path;
    }

    int plcWord(int index) { return memory.value(1, ModbusTable::HoldingRegisters, index); }

    PlcMemory memory{BottlingLine::units(), BottlingLine::registersPerTable};
    BottlingLine line{memory};
    PlcServer server{memory};
    QTemporaryDir folder;
};

} // namespace

TEST_F(PanelsimMacro, ShowsTheAuthorsTextBesideTheRewrittenOne)
{
    const ProgramRun run = this->run({QStringLiteral("--item"), QStringLiteral("Faster")});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_THAT(table(run, "Faster"),
                ElementsAre("Faster, press macro", "LINE AUTHOR'S TEXT WHAT BECAME OF IT REWRITTEN",
                            "1 local speed = speedSetPoint reads speedSetPoint local speed=getdata(\"Line "
                            "PLC\",\"4x\",0,1,0,DATA_TYPE_WUB)",
                            "2 speedSetPoint = math.min(speed + 10, 240) writes speedSetPoint setdata(\"Line "
                            "PLC\",\"4x\",0,1,0,math.min(speed + 10, 240),DATA_TYPE_WUB)"));
    EXPECT_THAT(table(run, "VARIABLE"), ElementsAre("VARIABLE READ LINK STATION BLOCK INDEX EXTRA TYPE",
                                                    "speedSetPoint Line PLC 1 4x 0 0 DATA_TYPE_WUB"));
    EXPECT_THAT(table(run, "WATCHED"),
                ElementsAre("WATCHED: LINK STATION BLOCK INDEX EXTRA", "Line PLC 1 4x 0 0"));
    EXPECT_THAT(run.out.toStdString(), Not(HasSubstr("run on")));
}

TEST_F(PanelsimMacro, ShowsEveryMacroOfTheProjectWithoutAnItem)
{
    const ProgramRun run = this->run({});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    for (const char *title :
         {"Work out the order, press macro\n", "Lamp test, press macro\n", "Lamp test, release macro\n",
          "Faster, press macro\n", "Shift change, release macro\n"})
        EXPECT_THAT(run.out.toStdString(), HasSubstr(title));
    EXPECT_THAT(run.out.toStdString(), Not(HasSubstr("Tank level")));
}

TEST_F(PanelsimMacro, SaysWhyALineWasKept)
{
    const ProgramRun run =
        this->run({projectWith(R"("if level == 1 then", "x = y;", "x = level + 1", "x = levels",
        "  level = x % 2", "level = x%2", "level = a = b")")});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_THAT(
        table(run, "LINE"),
        ElementsAre(
            "LINE AUTHOR'S TEXT WHAT BECAME OF IT REWRITTEN",
            "1 if level == 1 then kept: more than one \"=\" if level == 1 then",
            "2 x = y; kept: no variable x = y;",
            "3 x = level + 1 kept: level is read only when it stands alone behind the \"=\" x = level + 1",
            "4 x = levels kept: no variable x = levels",
            "5 level = x % 2 writes level setdata(\"L1\",\"4x\",0,1,0,x % 2,DATA_TYPE_WUB)",
            "6 level = x%2 writes level; a \"%\" and a digit in the value were taken for a marker "
            "setdata(\"L1\",\"4x\",0,1,0,xDATA_TYPE_WUB,%7)",
            "7 level = a = b kept: more than one \"=\" level = a = b"));
    EXPECT_THAT(run.out.toStdString(), HasSubstr("no variable is read\n\nno address is watched\n"));
}

TEST_F(PanelsimMacro, RunsAMacroAndListsWhatItReadAndWrote)
{
    memory.setValue(1, ModbusTable::HoldingRegisters, 0, 180);
    const ProgramRun run = this->run({QStringLiteral("--item"), QStringLiteral("Faster"),
                                      QStringLiteral("--run"), QStringLiteral("press")});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_THAT(table(run, "Faster, run"),
                ElementsAre("Faster, run on press, with the registers themselves",
                            "LINE ACCESS VARIABLE LINK STATION BLOCK INDEX OLD NEW",
                            "1 read speedSetPoint Line PLC 1 4x 0 180",
                            "2 written speedSetPoint Line PLC 1 4x 0 180 190", "done"));
    EXPECT_EQ(plcWord(0), 190);
}

TEST_F(PanelsimMacro, WritesNothingInADryRun)
{
    memory.setValue(1, ModbusTable::HoldingRegisters, 18, 5);
    const ProgramRun run =
        this->run({QStringLiteral("--item"), QStringLiteral("Lamp test"), QStringLiteral("--dry-run"),
                   QStringLiteral("--set"), QStringLiteral("lamps=0x0F"), QStringLiteral("--set"),
                   QStringLiteral("filled=7")});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_THAT(table(run, "Lamp test, run on press"),
                ElementsAre("Lamp test, run on press, with a copy of the registers: nothing is written",
                            "LINE ACCESS VARIABLE LINK STATION BLOCK INDEX OLD NEW",
                            "1 read lamps Line PLC 1 4x 18 15",
                            "2 written savedLamps Internal storage area -1 LW 130 0 15",
                            "3 written lamps Line PLC 1 4x 18 15 65535", "done"));
    EXPECT_THAT(table(run, "Lamp test, run on release"),
                ElementsAre("Lamp test, run on release, with a copy of the registers: nothing is written",
                            "LINE ACCESS VARIABLE LINK STATION BLOCK INDEX OLD NEW",
                            "1 read savedLamps Internal storage area -1 LW 130 15",
                            "2 written lamps Line PLC 1 4x 18 65535 15", "done"));
    EXPECT_EQ(plcWord(18), 5);
    const PlcCounters counters = server.counters();
    for (const auto &[kind, count] : counters.requests)
        EXPECT_LT(kind.second, 5) << "function " << kind.second << " writes";
}

TEST_F(PanelsimMacro, RunsOneMacroAloneInADryRunToo)
{
    const ProgramRun run =
        this->run({QStringLiteral("--item"), QStringLiteral("Lamp test"), QStringLiteral("--dry-run"),
                   QStringLiteral("--run"), QStringLiteral("release")});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_THAT(run.out.toStdString(), HasSubstr("run on release"));
    EXPECT_THAT(run.out.toStdString(), Not(HasSubstr("run on press")));
}

TEST_F(PanelsimMacro, GivesRegistersTheirValuesBeforeTheRun)
{
    const ProgramRun run =
        this->run({QStringLiteral("--item"), QStringLiteral("Faster"), QStringLiteral("--run"),
                   QStringLiteral("press"), QStringLiteral("--set"), QStringLiteral("4x1=235"),
                   QStringLiteral("--set"), QStringLiteral("4x3:float32=1.5")});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(plcWord(0), 240);
    EXPECT_EQ(plcWord(2), 0);
    EXPECT_EQ(plcWord(3), 0x3FC0);
}

TEST_F(PanelsimMacro, SaysWhereAndWhyAMacroEnded)
{
    ProgramRun run = this->run(
        {projectWith(R"--("local x = level", "print('x', x)", "level = 70000", "error('boom\\n')")--"),
         QStringLiteral("--item"), QStringLiteral("Button"), QStringLiteral("--run"),
         QStringLiteral("press")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.out.toStdString(), HasSubstr("print: x\t"));
    EXPECT_THAT(table(run, "LINE  ACCESS"), Contains(HasSubstr("1 read level L1 1 4x 0")));
    EXPECT_THAT(run.out.toStdString(), HasSubstr("65535  rounded or cut to what its type can hold\n"));
    EXPECT_THAT(run.out.toStdString(), HasSubstr("ended in line 4: boom\\n\n"));

    PlcFaultSetting gone;
    gone.fault = PlcFault::Gone;
    server.setFault(gone);
    run = this->run({QStringLiteral("--item"), QStringLiteral("Faster"), QStringLiteral("--run"),
                     QStringLiteral("press")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.out.toStdString(),
                HasSubstr("ended in line 1: cannot read 4x 0 of \"Line PLC\", station 1: "));
}

TEST_F(PanelsimMacro, PrintsNothingThatSteersTheTerminal)
{
    const ProgramRun run =
        this->run({projectWith(R"--("print('a\\27[2Jb\\nc', 1)")--"), QStringLiteral("--item"),
                   QStringLiteral("Button"), QStringLiteral("--run"), QStringLiteral("press")});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_THAT(run.out.toStdString(), HasSubstr("print: a\\x1b[2Jb\\nc\t1\n"));
    EXPECT_THAT(run.out.toStdString(), Not(HasSubstr("\x1b")));
}

TEST_F(PanelsimMacro, StopsAMacroThatRunsAway)
{
    const ProgramRun run =
        this->run({projectWith(R"("while true do", "end")"), QStringLiteral("--item"),
                   QStringLiteral("Button"), QStringLiteral("--run"), QStringLiteral("press")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.out.toStdString(), HasSubstr("ended in line 1: stopped after "));
}

TEST_F(PanelsimMacro, RefusesWhatItCannotDoInOneLine)
{
    const struct
    {
        QStringList arguments;
        const char *complaint;
    } rows[] = {
        {{QStringLiteral("--run"), QStringLiteral("press")}, "panelsim: --run needs --item NAME\n"},
        {{QStringLiteral("--dry-run")}, "panelsim: --dry-run needs --item NAME\n"},
        {{QStringLiteral("--set"), QStringLiteral("LW1=1")}, "panelsim: --set needs --item NAME\n"},
        {{QStringLiteral("--item"), QStringLiteral("X")},
         "panelsim: --item 'X': there is no such item; these have a macro: Work out the order, Lamp test, "
         "Faster, Shift "
         "change\n"},
        {{QStringLiteral("--item"), QStringLiteral("Faster"), QStringLiteral("--run"),
          QStringLiteral("release")},
         "panelsim: --run release: 'Faster' has no release macro\n"},
        {{QStringLiteral("--item"), QStringLiteral("Faster"), QStringLiteral("--run"),
          QStringLiteral("both")},
         "panelsim: --run 'both' is neither press nor release\n"},
        {{QStringLiteral("--item"), QStringLiteral("Faster"), QStringLiteral("--run"), QString()},
         "panelsim: macro: --run is given an empty text: name what is meant, or leave the option out\n"},
        {{QStringLiteral("--item"), QStringLiteral("Faster"), QStringLiteral("--set"),
          QStringLiteral("4x1=55")},
         "panelsim: --set needs --run press, --run release or --dry-run: without a run no register is given "
         "a "
         "value\n"},
        {{QStringLiteral("--item"), QStringLiteral("Faster"), QStringLiteral("--dry-run"),
          QStringLiteral("--set"), QStringLiteral("LW1")},
         "panelsim: --set 'LW1' is not ADDRESS=VALUE, as in LW110=5\n"},
        {{QStringLiteral("--item"), QStringLiteral("Faster"), QStringLiteral("--dry-run"),
          QStringLiteral("--set"), QStringLiteral("9/4x1=1")},
         "panelsim: --set '9/4x1' is no script variable, and there is no link 9\n"},
        {{QStringLiteral("--item"), QStringLiteral("Faster"), QStringLiteral("--dry-run"),
          QStringLiteral("--set"), QStringLiteral("4x1=70000")},
         "panelsim: --set '4x1=70000': '70000' is no number that the register can hold as a value of its "
         "type\n"},
        {{QStringLiteral("--item"), QStringLiteral("Faster"), QStringLiteral("--dry-run"),
          QStringLiteral("--set"), QStringLiteral("4x1=high")},
         "panelsim: --set '4x1=high': 'high' is no number that the register can hold as a value of its "
         "type\n"},
    };
    for (const auto &row : rows) {
        const ProgramRun run = this->run(row.arguments);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_EQ(run.err.toStdString(), row.complaint);
        EXPECT_EQ(run.out, QString());
    }
    const ProgramRun run =
        this->run({QStringLiteral("--item"), QStringLiteral("Faster"), QStringLiteral("--run"),
                   QStringLiteral("press"), QStringLiteral("--set"), QStringLiteral("filled=5")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err.toStdString(),
              "panelsim: --set: 3x 4 of \"Line PLC\": the register cannot be written\n");
}
