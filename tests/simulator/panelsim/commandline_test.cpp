#include "tests/simulator/panelsim/program.h"

#include <gmock/gmock.h>

using namespace panelkit::testing;
using ::testing::HasSubstr;

TEST(PanelsimCommandLine, ListsItsCommandsWithHelp)
{
    const ProgramRun run = runPanelsim({QStringLiteral("--help")});
    EXPECT_EQ(run.exitCode, 0);
    for (const char *command : {"  info ", "  link-params ", "  network ", "  serve ", "  show "})
        EXPECT_THAT(run.out.toStdString(), HasSubstr(command));
    EXPECT_TRUE(run.err.isEmpty());
}

TEST(PanelsimCommandLine, GivesEachCommandsOptionsWithItsHelp)
{
    const ProgramRun show = runPanelsim({QStringLiteral("show"), QStringLiteral("--help")});
    EXPECT_EQ(show.exitCode, 0);
    EXPECT_TRUE(show.out.startsWith(QStringLiteral("Usage: panelsim show ")));
    for (const char *option : {"--plc", "--root", "--json", "--watch", "PROJECT"})
        EXPECT_THAT(show.out.toStdString(), HasSubstr(option));
    const ProgramRun serve = runPanelsim({QStringLiteral("serve"), QStringLiteral("--help")});
    EXPECT_EQ(serve.exitCode, 0);
    EXPECT_THAT(serve.out.toStdString(), HasSubstr("wrong-transaction"));
}

TEST(PanelsimCommandLine, PrintsItsVersion)
{
    const ProgramRun run = runPanelsim({QStringLiteral("--version")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, QStringLiteral("panelsim " PANELKIT_VERSION "\n"));
}

TEST(PanelsimCommandLine, PrintsItsUseOnStderrWithoutACommand)
{
    const ProgramRun run = runPanelsim({});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.out.isEmpty());
    EXPECT_THAT(run.err.toStdString(), HasSubstr("Usage: panelsim COMMAND"));
}

TEST(PanelsimCommandLine, RefusesWhatItDoesNotKnowInOneLine)
{
    const struct
    {
        QStringList arguments;
        const char *complaint;
    } rows[] = {
        {{QStringLiteral("shwo")}, "panelsim: there is no command 'shwo': 'panelsim --help' lists them\n"},
        {{QStringLiteral("show"), QStringLiteral("--jsno")},
         "panelsim: show: Unknown option 'jsno'. 'panelsim show --help' says what it takes.\n"},
        {{QStringLiteral("show"), QStringLiteral("a.json"), QStringLiteral("b.json")},
         "panelsim: show: 'b.json' is one argument too many. 'panelsim show --help' says what it takes.\n"},
        {{QStringLiteral("show"), QStringLiteral("--plc"), QStringLiteral("localhost")},
         "panelsim: --plc 'localhost' is not HOST:PORT with a port from 1 to 65535, as in 127.0.0.1:502\n"},
        {{QStringLiteral("show"), QString()},
         "panelsim: show: an argument is an empty text: name what is meant, or leave it out\n"},
        {{QStringLiteral("show"), QStringLiteral("--root"), QString()},
         "panelsim: show: --root is given an empty text: name what is meant, or leave the option out\n"},
        {{QStringLiteral("link-params"), QStringLiteral("1"), QStringLiteral("--project=")},
         "panelsim: link-params: --project is given an empty text: name what is meant, or leave the option "
         "out\n"},
        {{QStringLiteral("check"), QStringLiteral("--all"), QStringLiteral("--link"), QStringLiteral("x")},
         "panelsim: check: --link is for one address: leave it out, or leave out --all\n"},
        {{QStringLiteral("check"), QStringLiteral("--drivers"), QStringLiteral("--bit")},
         "panelsim: check: --bit is for one address: leave it out, or leave out --drivers\n"},
        {{QStringLiteral("a\x1b[2J\nb")},
         "panelsim: there is no command 'a\\x1b[2J\\nb': 'panelsim --help' lists them\n"},
        {{QStringLiteral("serve"), QStringLiteral("--port"), QStringLiteral("70000")},
         "panelsim: --port '70000' is not a port from 1 to 65535\n"},
        {{QStringLiteral("serve"), QStringLiteral("--fault"), QStringLiteral("tired")},
         "panelsim: --fault 'tired' is none of late, silent, cut-off, truncated, short, wrong-transaction, "
         "wrong-unit, exception, gone\n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.complaint);
        const ProgramRun run = runPanelsim(row.arguments);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_EQ(run.err.toStdString(), row.complaint);
        EXPECT_TRUE(run.out.isEmpty());
    }
}
