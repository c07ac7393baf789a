#include "tests/simulator/panelsim/program.h"

#include <gmock/gmock.h>

using namespace panelkit::testing;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

ProgramRun lookUp(const char *link, const char *block, const char *number, const QStringList &more = {})
{
    return runPanelsim(QStringList{QStringLiteral("lookup"), QStringLiteral("--link"),
                                   QString::fromUtf8(link), QStringLiteral("--block"),
                                   QString::fromUtf8(block), QStringLiteral("--number"),
                                   QString::fromUtf8(number)} +
                       more);
}

} // namespace

TEST(PanelsimLookup, ShowsTheIndexAndHowItCameAbout)
{
    const ProgramRun run = lookUp("Steam PLC", "MX", "3.1");
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_THAT(run.out.toStdString(), StartsWith("index 25: the driver was asked with mode 2 and width 8\n"
                                                  "  read    the project's list of links\n"
                                                  "  driver  byteaddressed\n"
                                                  "  file    /"));
    EXPECT_THAT(run.out.toStdString(), HasSubstr("/libByteAddressed_3.so\n"));
}

TEST(PanelsimLookup, ReadsTheIotRuntimesListOnRequest)
{
    const ProgramRun run = lookUp("Steam PLC", "IX", "17", {QStringLiteral("--iot")});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_THAT(run.out.toStdString(), StartsWith("index 15: "));
    EXPECT_THAT(run.out.toStdString(), HasSubstr("  read    the IoT runtime's list of links\n"));
}

TEST(PanelsimLookup, FailsWhenTheDriverGivesNoIndex)
{
    const ProgramRun run = lookUp("Line PLC", "4x", "0");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.out.toStdString(),
                StartsWith("index -1: the driver was asked with mode 1 and width 1, and gave no index\n"));
}

TEST(PanelsimLookup, ReadsTheTextAsANumberOnAnUnknownLink)
{
    const ProgramRun run = lookUp("Nobody", "4x", "10.5");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out.toStdString(),
              "index 165: no driver is known for the link: the text was read as a number\n"
              "  read    the project's list of links\n"
              "  driver  none\n"
              "  file    none\n");
}

TEST(PanelsimLookup, SaysWhatItMisses)
{
    const ProgramRun run = runPanelsim({QStringLiteral("lookup"), QStringLiteral("--link=x")});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.err.toStdString(), "panelsim: lookup: there is no --block\n");
}
