#include "tests/simulator/panelsim/program.h"
#include "tests/simulator/stillplc.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace panelkit::simulator;
using namespace panelkit::testing;
using ::testing::HasSubstr;

TEST(PanelsimShow, ShowsNameAddressWordsTypeViewAndTextOfEachItem)
{
    const StillPlc plc;
    const ProgramRun run = runPanelsim({QStringLiteral("show"), QStringLiteral("--plc"), plc.address()});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.isEmpty());
    const struct
    {
        const char *item;
        const char *line;
    } rows[] = {
        {"Tank level", "Tank level 3x2 036b uint16 dec 87.5"},
        {"Product temperature", "Product temperature 3x3 0000 4080 float32 dec 4.00"},
        {"Pump pressure", "Pump pressure 3x8 ffdd int16 dec -0.35"},
        {"Flow balance", "Flow balance 3x9 fa24 ffff int32 dec -1.500"},
        {"Bottles filled", "Bottles filled 3x5 3dc6 0001 uint32 dec 81350"},
        {"Litres filled", "Litres filled 3x12 6750 0040 bcd32 dec 40675.0"},
        {"Line clock", "Line clock 3x11 0600 bcd16 dec 6.00"},
        {"Batch code", "Batch code 4x11 4f4c 2d54 3430 3731 412d 0000 0000 0000 string dec LOT-0417-A"},
        {"State word", "State word 3x1 0003 uint16 hex 3"},
        {"State bits", "State bits 3x1 0003 uint16 bin 11"},
        {"Filler runs", "Filler runs 0x1 0001 bit dec 1"},
        {"Doors closed", "Doors closed 1x2 0001 bit dec 1"},
        {"Green lamp", "Green lamp 4x_bit19.0 0001 bit dec 1"},
        {"Cases packed, hexadecimal", "Cases packed, hexadecimal 2/2#3x1 34f6 0000 uint32 hex 34f6"},
        {"Pallet weight", "Pallet weight 2/3#3x3 cccd 428c float32 dec 70.4"},
        {"Night shift", "Night shift LB10 0000 bit dec 0"},
        {"Steam pressure", "Steam pressure 3/MW10 0000 int16 dec 0.00 without connection"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(lineOf(run, row.item).toStdString(), row.line);
    EXPECT_EQ(lineOf(run, "1 ").toStdString(), "1 Line PLC connected");
    EXPECT_EQ(lineOf(run, "3 ").toStdString(), "3 Steam PLC without connection");
}

TEST(PanelsimShow, StartsAPlcOfItsOwnWhenNoneIsNamed)
{
    const ProgramRun run = runPanelsim({QStringLiteral("show")});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_THAT(lineOf(run, "Batch code").toStdString(), HasSubstr("LOT-0417-A"));
    EXPECT_EQ(lineOf(run, "2 ").toStdString(), "2 Packing PLC connected");
}

TEST(PanelsimShow, SaysInExitCodeAndTextThatThePlcIsAway)
{
    quint16 port = 0;
    {
        PlcMemory memory(BottlingLine::units(), BottlingLine::registersPerTable);
        port = PlcServer(memory).port(); // free again behind this line
    }
    const ProgramRun run = runPanelsim(
        {QStringLiteral("show"), QStringLiteral("--plc"), QStringLiteral("127.0.0.1:%1").arg(port)});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(lineOf(run, "Tank level").toStdString(), "Tank level 3x2 0000 uint16 dec 0.0 PLC away");
    EXPECT_THAT(lineOf(run, "1 ").toStdString(), HasSubstr("away: "));
}

TEST(PanelsimShow, GivesTheSameAsJson)
{
    const StillPlc plc;
    const ProgramRun run = runPanelsim(
        {QStringLiteral("show"), QStringLiteral("--json"), QStringLiteral("--plc"), plc.address()});
    ASSERT_EQ(run.exitCode, 0);
    const QJsonObject root = QJsonDocument::fromJson(run.out.toUtf8()).object();
    EXPECT_EQ(root.value(QStringLiteral("project")).toString(), QStringLiteral("Bottling line"));
    EXPECT_EQ(root.value(QStringLiteral("links")).toArray().size(), 4);
    const QJsonArray items = root.value(QStringLiteral("items")).toArray();
    ASSERT_GT(items.size(), 9);
    const QJsonObject level = items.at(0).toObject();
    EXPECT_EQ(level, QJsonDocument::fromJson(R"({"name": "Tank level", "link": 1, "address": "3x2",
        "words": ["036b"], "type": "uint16", "view": "dec", "text": "87.5", "current": true, "remark": ""})")
                         .object());
}

TEST(PanelsimShow, SaysInJsonThatAValueIsNotCurrent)
{
    StillPlc plc;
    plc.silence();
    const ProgramRun run = runPanelsim(
        {QStringLiteral("show"), QStringLiteral("--json"), QStringLiteral("--plc"), plc.address()});
    EXPECT_EQ(run.exitCode, 3);
    const QJsonArray items =
        QJsonDocument::fromJson(run.out.toUtf8()).object().value(QStringLiteral("items")).toArray();
    EXPECT_EQ(items.at(0), QJsonDocument::fromJson(R"({"name": "Tank level", "link": 1, "address": "3x2",
        "words": ["0000"], "type": "uint16", "view": "dec", "text": "0.0", "current": false,
        "remark": "no value"})")
                               .object());
}

TEST(PanelsimShow, RefusesAWrongProjectInOneLineThatNamesTheValue)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("wrong.json"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"name": "X", "screenWidth": 480, "screenHeight": "high"})");
    file.close();
    const ProgramRun run = runPanelsim({QStringLiteral("show"), path});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.out.isEmpty());
    EXPECT_EQ(run.err,
              QStringLiteral("panelsim: ") + path +
                  QStringLiteral(": screenHeight: found \"high\", expected a whole number from 1 to 8192\n"));
}

TEST(PanelsimShow, KeepsThePanelsFilesBelowTheRoot)
{
    const StillPlc plc;
    const QTemporaryDir folder;
    const ProgramRun run = runPanelsim({QStringLiteral("show"), QStringLiteral("--root"), folder.path(),
                                        QStringLiteral("--plc"), plc.address()});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(QFileInfo(folder.filePath(QStringLiteral("usr/tesk42/project/cache/links.json"))).isFile());
}

TEST(PanelsimShow, LeavesNoTemporaryFolderBehind)
{
    const QTemporaryDir folder;
    qputenv("TMPDIR", folder.path().toLocal8Bit());
    const StillPlc plc;
    const ProgramRun run = runPanelsim({QStringLiteral("show"), QStringLiteral("--plc"), plc.address()});
    qunsetenv("TMPDIR");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(QDir(folder.path()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden));
}

TEST(PanelsimShowWatch, PrintsOneLineOfJsonEachTimeUntilItIsTold)
{
    const StillPlc plc;
    QProcess process;
    process.start(QStringLiteral(PANELSIM),
                  {QStringLiteral("show"), QStringLiteral("--watch"), QStringLiteral("--json"),
                   QStringLiteral("--plc"), plc.address()});
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

// On a terminal, as an operator sees it: drawn over itself, and Ctrl-C gives the terminal back.
TEST(PanelsimShowWatch, RedrawsInPlaceOnATerminalAndEndsWithCtrlC)
{
    StillPlc plc;
    const QByteArray address = plc.address().toLatin1();
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    ASSERT_GE(child, 0);
    if (child == 0) {
        execl(PANELSIM, PANELSIM, "show", "--watch", "--plc", address.constData(),
              static_cast<char *>(nullptr));
        _exit(127);
    }

    std::string seen;
    const auto readUntil = [&](const std::string &wanted) {
        pollfd ready = {terminal, POLLIN, 0};
        char bytes[4096];
        while (seen.find(wanted) == std::string::npos && poll(&ready, 1, programDeadline) > 0) {
            const ssize_t count = read(terminal, bytes, sizeof(bytes));
            if (count <= 0)
                break;
            seen.append(bytes, static_cast<std::size_t>(count));
        }
        return seen.find(wanted) != std::string::npos;
    };
    EXPECT_TRUE(readUntil("Tank level")) << seen;
    EXPECT_TRUE(readUntil("Ctrl-C ends this.")) << seen;
    EXPECT_THAT(seen, HasSubstr("\x1b[?1049h")); // on a screen of its own
    EXPECT_THAT(seen, HasSubstr("connected"));

    plc.memory.setValue(1, ModbusTable::InputRegisters, 1, 123);
    EXPECT_TRUE(readUntil("12.3")) << seen;
    EXPECT_THAT(seen, HasSubstr("\x1b[H")); // drawn over the last one

    seen.clear();
    const char controlC = 3;
    ASSERT_EQ(write(terminal, &controlC, 1), 1);
    EXPECT_TRUE(readUntil("\x1b[?1049l")) << seen;
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    close(terminal);
}
