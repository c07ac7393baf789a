// How panelsim ends when something from outside ends it.

#include "tests/simulator/panelsim/program.h"
#include "tests/simulator/stillplc.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>

using namespace panelkit::simulator;
using namespace panelkit::testing;

namespace {

class PanelsimEnding : public ::testing::Test
{
protected:
    PanelsimEnding()
    {
        qputenv("TMPDIR", folder.path().toLocal8Bit());
        qputenv("FONTCONFIG_FILE", PANELKIT_TEST_FONTS);
    }
    ~PanelsimEnding() override { qunsetenv("TMPDIR"); }

    QStringList leftBehind() const
    {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    }

    // A command that has opened its session and waits for the PLC, which is silent.
    void startWaiting(QProcess &process, const QStringList &arguments)
    {
        plc.silence();
        const std::uint64_t asked = plc.server.counters().requestCount();
        process.start(QStringLiteral(PANELSIM),
                      arguments + QStringList{QStringLiteral("--plc"), plc.address()});
        EXPECT_TRUE(plc.server.waitUntil(
            [asked](const PlcCounters &counters) { return counters.requestCount() > asked; },
            std::chrono::milliseconds(programDeadline)));
        EXPECT_FALSE(leftBehind().isEmpty());
    }

    void send(const QProcess &process, int signalNumber)
    {
        ASSERT_EQ(kill(static_cast<pid_t>(process.processId()), signalNumber), 0);
    }

    StillPlc plc;
    QTemporaryDir folder;
};

const std::string badOutput =
    "panelsim: the output cannot be written (Bad file descriptor): send it to another "
    "file or to none\n";

} // namespace

TEST_F(PanelsimEnding, FailsOnceWhenTheOutputCannotBeWritten)
{
    const QStringList lines{QStringLiteral("--help"),      QStringLiteral("--version"),
                            QStringLiteral("show --help"), QStringLiteral("show"),
                            QStringLiteral("show --json"), QStringLiteral("show --watch"),
                            QStringLiteral("serve")};
    for (const QString &line : lines) {
        SCOPED_TRACE(line.toStdString());
        const ProgramRun run = runInShell("exec \"$0\" \"$@\" >&-", line.split(QLatin1Char(' ')));
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.err.toStdString(), badOutput);
    }
    EXPECT_EQ(leftBehind(), QStringList());
}

TEST_F(PanelsimEnding, FailsWhenTheOutputFillsTheDisk)
{
    const QString file = folder.filePath(QStringLiteral("out"));
    const ProgramRun run = runInShell("trap '' XFSZ; ulimit -f 0; exec \"$0\" --help > \"$1\"", {file});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err.toStdString(),
              "panelsim: the output cannot be written (File too large): send it to another "
              "file or to none\n");
}

TEST_F(PanelsimEnding, KeepsTheExitCodeOfWrongUseWithoutAnOutput)
{
    EXPECT_EQ(runInShell("exec \"$0\" shwo >&-", {}).exitCode, 2);
}

TEST_F(PanelsimEnding, IsQuietWhenTheReaderOfAPipeGoes)
{
    const ProgramRun run = runInShell(
        "{ \"$0\" \"$@\"; echo $? >&2; } | head -n 1",
        {QStringLiteral("show"), QStringLiteral("--watch"), QStringLiteral("--plc"), plc.address()});
    EXPECT_TRUE(run.out.startsWith(QStringLiteral("ITEM "))) << run.out.toStdString();
    EXPECT_EQ(run.err.toStdString(), "1\n");
    EXPECT_EQ(leftBehind(), QStringList());
}

TEST_F(PanelsimEnding, LeavesNothingWhenASignalEndsAWait)
{
    const QString target = folder.filePath(QStringLiteral("out"));
    const QList<QStringList> commands{{QStringLiteral("show")},
                                      {QStringLiteral("export"), QStringLiteral("--csv"), target},
                                      {QStringLiteral("gui"), QStringLiteral("--screenshot"), target}};
    for (const QStringList &command : commands) {
        for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP}) {
            SCOPED_TRACE(command.first().toStdString() + " and " + std::to_string(signalNumber));
            QProcess process;
            startWaiting(process, command);
            send(process, signalNumber);
            ASSERT_TRUE(process.waitForFinished(programDeadline));
            EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
            EXPECT_EQ(process.exitCode(), signalNumber);
            EXPECT_EQ(leftBehind(), QStringList());
        }
    }
}

TEST_F(PanelsimEnding, IsInOrderWhenASignalEndsAWatchBeforeItIsDrawn)
{
    for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP}) {
        SCOPED_TRACE(signalNumber);
        QProcess process;
        startWaiting(process, {QStringLiteral("show"), QStringLiteral("--watch")});
        send(process, signalNumber);
        ASSERT_TRUE(process.waitForFinished(programDeadline));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 3); // since the PLC is silent
        EXPECT_EQ(leftBehind(), QStringList());
    }
}

TEST_F(PanelsimEnding, LeavesNothingWhenASecondSignalEndsAWatch)
{
    QProcess process;
    startWaiting(process, {QStringLiteral("show"), QStringLiteral("--watch")});
    send(process, SIGINT);
    QThread::msleep(50); // two of a kind at once may count as one
    send(process, SIGTERM);
    ASSERT_TRUE(process.waitForFinished(programDeadline));
    EXPECT_EQ(leftBehind(), QStringList());
}

TEST_F(PanelsimEnding, PassesOverAHangUpThatIsSwitchedOff)
{
    QProcess process;
    process.start(QStringLiteral("sh"),
                  {QStringLiteral("-c"),
                   QStringLiteral("trap '' HUP; exec \"$0\" show --watch --json --plc \"$1\""),
                   QStringLiteral(PANELSIM), plc.address()});
    const auto readLine = [&process] {
        while (!process.canReadLine() && process.waitForReadyRead(programDeadline)) {
        }
        return process.readLine();
    };
    EXPECT_FALSE(readLine().isEmpty());
    send(process, SIGHUP);
    EXPECT_FALSE(readLine().isEmpty());
    EXPECT_FALSE(readLine().isEmpty());
    send(process, SIGTERM);
    ASSERT_TRUE(process.waitForFinished(programDeadline));
    EXPECT_EQ(process.exitCode(), 0);
}

// A machine that gives no more threads is played by a stack for each that no machine has room for.
TEST_F(PanelsimEnding, SaysThatThreadsCannotBeStarted)
{
    const char *trial = "ulimit -s 1000000000000; \"$0\" --version > /dev/null 2>&1 || exit 77";
    if (sizeof(void *) == 4 && runInShell(trial, {}).exitCode == 77)
        GTEST_SKIP() << "an emulator of 32 bits starts no program under such a limit";
    const struct
    {
        QString arguments;
        const char *complaint;
    } rows[] = {
        {QStringLiteral("show"), "panelsim: no PLC can be started on a loopback port (Resource temporarily "
                                 "unavailable): name one with --plc HOST:PORT\n"},
        {QStringLiteral("show --plc ") + plc.address(),
         "panelsim: the links cannot be started (Resource temporarily unavailable): end other programs, or "
         "raise "
         "the limit of processes and memory\n"},
        {QStringLiteral("serve"),
         "panelsim: 127.0.0.1:0: Resource temporarily unavailable: give another --port, or "
         "none for a free one\n"},
    };
    for (const auto &row : rows) {
        const ProgramRun run =
            runInShell("ulimit -s 1000000000000; exec \"$0\" \"$@\"", row.arguments.split(QLatin1Char(' ')));
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.err.toStdString(), row.complaint);
    }
    EXPECT_EQ(leftBehind(), QStringList());
}

TEST_F(PanelsimEnding, SaysInOneLineThatThereIsNoPlaceForTemporaryFiles)
{
    for (const char *command : {"export --csv /dev/stdout", "gui --screenshot /dev/stdout", "show"}) {
        const ProgramRun run = runInShell("TMPDIR=/proc; unset XDG_RUNTIME_DIR; exec \"$0\" \"$@\"",
                                          QString::fromLatin1(command).split(QLatin1Char(' ')));
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.err.toStdString(),
                  "panelsim: no temporary folder can be made in /proc (No such file or "
                  "directory): name a folder with --root\n");
    }
}
