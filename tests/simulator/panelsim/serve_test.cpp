#include "simulator/plc/bottlingline.h"
#include "simulator/plc/plcserver.h"
#include "tests/simulator/panelsim/program.h"

#include <gmock/gmock.h>

using namespace panelkit::simulator;
using namespace panelkit::testing;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

TEST(PanelsimServe, RunsThePlcOfAnotherPanelsim)
{
    const ServingPanelsim plc;
    const ProgramRun run = runPanelsim({QStringLiteral("show"), QStringLiteral("--plc"), plc.address()});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_THAT(run.out.toStdString(), HasSubstr("LOT-0417-A"));
}

TEST(PanelsimServe, EndsInOrderWhenItIsTold)
{
    ServingPanelsim plc;
    EXPECT_THAT(plc.greeting.toStdString(), HasSubstr("The bottling line answers at 127.0.0.1:"));
    EXPECT_EQ(plc.end(), 0);
}

// Zeros that no PLC has sent are never passed off as its values.
TEST(PanelsimServe, AnswersWithTheFaultThatWasAskedFor)
{
    // What is waited for may be given up on a slow machine.
    const char *const waitedFor = "no value|PLC away";
    const char *const notYetKnown = "idle|away: .*";
    const struct
    {
        const char *fault;
        const char *remark; // beside the item
        const char *link;   // the state of its link
    } rows[] = {
        {"late", waitedFor, notYetKnown},
        {"silent", waitedFor, notYetKnown},
        {"cut-off", "PLC away", "away: the PLC closed the connection"},
        {"truncated", waitedFor, notYetKnown},
        {"short", "PLC away", "away: the PLC's answer does not fit the request"},
        {"wrong-transaction", "PLC away", "away: the PLC answered another request"},
        {"wrong-unit", "PLC away", "away: another station answered"},
        {"exception", "no value", "connected"},
        {"gone", "PLC away", "away: no connection to the PLC: Connection refused"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.fault);
        const ServingPanelsim plc({QStringLiteral("--fault"), QLatin1String(row.fault)});
        const ProgramRun run = runPanelsim({QStringLiteral("show"), QStringLiteral("--plc"), plc.address()});
        EXPECT_EQ(run.exitCode, 3);
        EXPECT_THAT(lineOf(run, "Tank level").toStdString(),
                    MatchesRegex(std::string("Tank level 3x2 0000 uint16 dec 0.0 (") + row.remark + ")"));
        EXPECT_THAT(lineOf(run, "1 ").toStdString(),
                    MatchesRegex(std::string("1 Line PLC (") + row.link + ")"));
        EXPECT_EQ(lineOf(run, "Night shift").toStdString(), "Night shift LB10 0000 bit dec 0");
    }
}

TEST(PanelsimServe, SaysWhichPortIsTaken)
{
    PlcMemory memory(BottlingLine::units(), BottlingLine::registersPerTable);
    const PlcServer taken(memory);
    const QString port = QString::number(taken.port());
    const ProgramRun run = runPanelsim({QStringLiteral("serve"), QStringLiteral("--port"), port});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.startsWith(QStringLiteral("panelsim: 127.0.0.1:") + port)) << run.err.toStdString();
    EXPECT_THAT(run.err.toStdString(), HasSubstr("give another --port"));
}
