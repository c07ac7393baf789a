#include "tests/simulator/panelsim/program.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QSet>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>

using panelkit::testing::programDeadline;
using panelkit::testing::ProgramRun;
using ::testing::HasSubstr;

namespace {

// The window of panelsim on a machine whose only display is the one named here; none by default.
class Gui : public ::testing::Test
{
protected:
    Gui()
    {
        for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(QLatin1String(name));
        environment.insert(QStringLiteral("FONTCONFIG_FILE"), QStringLiteral(PANELKIT_TEST_FONTS));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder.path());
    }

    void start(QProcess &process, const QStringList &arguments)
    {
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(PANELSIM), QStringList(QStringLiteral("gui")) + arguments);
        process.closeWriteChannel();
    }

    ProgramRun gui(const QStringList &arguments)
    {
        QProcess process;
        start(process, arguments);
        if (!process.waitForFinished(programDeadline) || process.exitStatus() != QProcess::NormalExit) {
            ADD_FAILURE() << "panelsim gui did not end by itself";
            return {};
        }
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    QImage picture(QStringList arguments)
    {
        const QString file = folder.filePath(QStringLiteral("picture.png"));
        arguments << QStringLiteral("--screenshot") << file;
        const ProgramRun run = gui(arguments);
        EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
        EXPECT_EQ(run.err.toStdString(), "");
        return QImage(file);
    }

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    QTemporaryDir folder;
};

int colourCount(const QImage &image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            colours.insert(image.pixel(x, y));
    return static_cast<int>(colours.size());
}

} // namespace

TEST_F(Gui, WritesAPictureOfEveryPageWithoutADisplay)
{
    const QString pages = QStringLiteral("values operate export network device address");
    QList<QImage> pictures;
    for (const QString &page : pages.split(QLatin1Char(' '))) {
        const QImage image = picture({QStringLiteral("--page"), page});
        EXPECT_EQ(image.size(), QSize(800, 480)) << page.toStdString();
        EXPECT_GT(colourCount(image), 20) << page.toStdString();
        EXPECT_FALSE(pictures.contains(image)) << page.toStdString() << " looks as another page does";
        pictures << image;
    }
}

TEST_F(Gui, WritesAPictureOfEverySizeInEveryLanguage)
{
    for (const char *screen : {"480x272", "272x480", "800x480"}) {
        const QStringList arguments{QStringLiteral("--screen"), QLatin1String(screen)};
        const QImage english = picture(arguments);
        EXPECT_EQ(english.size(), QSize(QString::fromLatin1(screen).section(QLatin1Char('x'), 0, 0).toInt(),
                                        QString::fromLatin1(screen).section(QLatin1Char('x'), 1).toInt()));
        const QImage chinese =
            picture(arguments + QStringList{QStringLiteral("--language"), QStringLiteral("zh_CN")});
        EXPECT_EQ(chinese.size(), english.size());
        EXPECT_NE(chinese, english) << screen;
    }
}

TEST_F(Gui, SaysThatAPictureCannotBeWritten)
{
    const QString file = folder.filePath(QStringLiteral("nowhere/picture.png"));
    const ProgramRun run = gui({QStringLiteral("--screenshot"), file});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err,
              QStringLiteral("panelsim: %1: the picture cannot be written there: name a file in a folder of "
                             "yours\n")
                  .arg(file));
}

// A disk that is full is played by a limit on the size of files. The panel's larger files are there by then.
TEST_F(Gui, KeepsThePictureThatWasThereWhenTheDiskIsFull)
{
    const QString root = folder.filePath(QStringLiteral("panel"));
    const QString file = folder.filePath(QStringLiteral("picture.png"));
    const QStringList arguments{QStringLiteral("--root"), root, QStringLiteral("--screenshot"), file};
    ASSERT_EQ(gui(arguments).exitCode, 0);
    ASSERT_GT(QFileInfo(file).size(), 8192);
    const QImage before(file);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral("sh"),
                  QStringList{QStringLiteral("-c"),
                              QStringLiteral("trap '' XFSZ; ulimit -f 8; exec \"$0\" gui \"$@\""),
                              QStringLiteral(PANELSIM)} +
                      arguments);
    ASSERT_TRUE(process.waitForFinished(programDeadline));
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_THAT(process.readAllStandardError().toStdString(),
                HasSubstr("the picture cannot be written there"));
    EXPECT_EQ(QImage(file), before);
    const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    EXPECT_EQ(QDir(folder.path()).entryList(all).filter(QStringLiteral(".panelsim")), QStringList());
}

TEST_F(Gui, SaysThatThereIsNoDisplayAndTheWayOut)
{
    const ProgramRun run = gui({});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err.toStdString(),
              "panelsim: gui: there is no display to open a window on: run it in a graphical "
              "session, or give --screenshot FILE for a picture\n");
}

TEST_F(Gui, SaysThatTheDisplayCannotBeOpened)
{
    environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":987"));
    const ProgramRun run = gui({});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err.toStdString(),
              "panelsim: gui: the display ':987' cannot be opened: run it in a session that "
              "has one, or give --screenshot FILE for a picture\n");
}

TEST_F(Gui, RefusesWhatItDoesNotKnow)
{
    ProgramRun run = gui({QStringLiteral("--language"), QStringLiteral("xx")});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.err.toStdString(), "panelsim: --language 'xx': there are en and zh_CN\n");
    run = gui({QStringLiteral("--screen"), QStringLiteral("480")});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.err.toStdString(),
              "panelsim: --screen '480' is not WIDTHxHEIGHT with sides from 240 to 4096 pixels, "
              "as in 480x272\n");
    run = gui({QStringLiteral("--page"), QStringLiteral("nowhere"), QStringLiteral("--screenshot"),
               folder.filePath(QStringLiteral("picture.png"))});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.err.toStdString(),
              "panelsim: --page 'nowhere': there are values, operate, export, network, device, address\n");
}

TEST_F(Gui, NamesEveryPageInItsHelp)
{
    const ProgramRun help = gui({QStringLiteral("--help")});
    const ProgramRun run =
        gui({QStringLiteral("--page"), QStringLiteral("nowhere"), QStringLiteral("--screenshot"),
             folder.filePath(QStringLiteral("picture.png"))});
    const QString names = run.err.section(QStringLiteral("there are "), 1).trimmed();
    ASSERT_TRUE(names.contains(QLatin1String("values, "))) << run.err.toStdString();
    EXPECT_TRUE(help.out.simplified().contains(QLatin1String("page in front: ") + names + QLatin1Char('.')))
        << help.out.toStdString();
}

// It would wait for 15 seconds.
TEST_F(Gui, WaitsForNoLinkOfWhichNothingIsWanted)
{
    QFile project(folder.filePath(QStringLiteral("project.json")));
    ASSERT_TRUE(project.open(QIODevice::WriteOnly));
    project.write(R"({"name": "X", "screenWidth": 480, "screenHeight": 272, "links": [
        {"number": 1, "name": "L1", "driver": "drivers/Modbus", "blocks": ["4x"], "port": "Ethernet 1",
         "ip": "127.0.0.1", "tcpPort": 502},
        {"number": 2, "name": "L2", "driver": "drivers/Modbus", "blocks": ["4x"], "port": "Ethernet 1",
         "ip": "127.0.0.1", "tcpPort": 502}],
        "items": [{"name": "Speed", "Link": "L1", "Block": "4x", "No": "1", "index": 0, "type": "uint16",
        "digits": 5}]})");
    project.close();
    QElapsedTimer waited;
    waited.start();
    EXPECT_EQ(picture({project.fileName()}).size(), QSize(480, 272));
    EXPECT_LT(waited.elapsed(), 12000);
}

TEST_F(Gui, SaysThatAPlcDidNotAnswerForThePicture)
{
    const QString file = folder.filePath(QStringLiteral("picture.png"));
    const ProgramRun run =
        gui({QStringLiteral("--plc"), QStringLiteral("127.0.0.1:1"), QStringLiteral("--screenshot"), file});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(QImage(file).size(), QSize(800, 480));
}

TEST_F(Gui, EndsCleanlyOnSigintAndSigterm)
{
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    for (const int signalNumber : {SIGINT, SIGTERM}) {
        QProcess process;
        start(process, {});
        while (process.state() != QProcess::NotRunning && !process.canReadLine())
            process.waitForReadyRead(100);
        EXPECT_EQ(process.readLine().trimmed().toStdString(), "The window is open. Ctrl-C ends this.");
        kill(static_cast<pid_t>(process.processId()), signalNumber);
        ASSERT_TRUE(process.waitForFinished(programDeadline));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 0);
        EXPECT_EQ(process.readAllStandardError().toStdString(), "");
    }
}
