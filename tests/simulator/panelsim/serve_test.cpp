#include "simulator/plc/bottlingline.h"
#include "simulator/plc/plcserver.h"
#include "tests/simulator/panelsim/program.h"

#include <gmock/gmock.h>

using namespace panelkit::simulator;
using namespace panelkit::testing;
using ::testing::HasSubstr;

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

TEST(PanelsimServe, AnswersWithTheFaultThatWasAskedFor)
{
    const ServingPanelsim plc({QStringLiteral("--fault"), QStringLiteral("exception")});
    const ProgramRun run = runPanelsim({QStringLiteral("show"), QStringLiteral("--plc"), plc.address()});
    EXPECT_THAT(run.out.toStdString(), ::testing::Not(HasSubstr("LOT-0417-A")));
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
