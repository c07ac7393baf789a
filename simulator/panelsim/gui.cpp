#include "simulator/comm/communication.h"
#include "simulator/host/filereplacement.h"
#include "simulator/panelsim/application.h"
#include "simulator/panelsim/commands.h"
#include "simulator/panelsim/interrupt.h"
#include "simulator/panelsim/texttable.h"
#include "simulator/window/panelstyle.h"
#include "simulator/window/panelwindow.h"

#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QPixmap>
#include <QTimer>

#include <chrono>

namespace panelkit::simulator {

namespace {

constexpr std::chrono::milliseconds lookInterval{50};
constexpr std::chrono::seconds longestWait{15}; // for values; a PLC that is away is known to be so by then

struct Request
{
    SessionOptions options;
    QString language;
    QString page;
    QString picture; // empty: a window is wanted
};

// "WIDTHxHEIGHT" in pixels, or nothing.
QSize parseScreen(const QString &text)
{
    const QStringList sides = text.split(QLatin1Char('x'));
    if (sides.size() != 2)
        return {};
    const QSize size(sides.at(0).toInt(), sides.at(1).toInt());
    const bool isScreen =
        size.width() >= 240 && size.height() >= 240 && size.width() <= 4096 && size.height() <= 4096;
    return isScreen ? size : QSize();
}

void addOptions(QCommandLineParser &parser)
{
    addSessionOptions(parser);
    parser.addOption(
        {QStringLiteral("language"),
         QStringLiteral("Start with the texts in LANGUAGE: %1. A button of the screen changes it.")
             .arg(PanelLanguage::known().join(QLatin1String(" or "))),
         QStringLiteral("LANGUAGE")});
    parser.addOption({QStringLiteral("screen"),
                      QStringLiteral("Let the panel's screen be so large, in place of the project's size."),
                      QStringLiteral("WIDTHxHEIGHT")});
    parser.addOption({QStringLiteral("page"),
                      QStringLiteral("Start with this page in front: values, operate, export, network, "
                                     "device, address."),
                      QStringLiteral("NAME")});
    parser.addOption(
        {QStringLiteral("screenshot"),
         QStringLiteral("Write what the screen shows once it shows live values to FILE, as PNG, and "
                        "end. Takes no display."),
         QStringLiteral("FILE")});
}

// What can be looked at before a session is opened; false after a complaint.
bool readRequest(const QCommandLineParser &parser, Request &request)
{
    request.language = parser.value(QStringLiteral("language"));
    if (request.language.isEmpty())
        request.language = PanelLanguage::known().constFirst();
    request.page = parser.value(QStringLiteral("page"));
    request.picture = parser.value(QStringLiteral("screenshot"));
    if (parser.isSet(QStringLiteral("screen"))) {
        request.options.screen = parseScreen(parser.value(QStringLiteral("screen")));
        if (request.options.screen.isEmpty()) {
            complain(
                QStringLiteral("--screen '%1' is not WIDTHxHEIGHT with sides from 240 to 4096 pixels, as in "
                               "480x272")
                    .arg(parser.value(QStringLiteral("screen"))));
            return false;
        }
    }
    if (!PanelLanguage::known().contains(request.language)) {
        complain(QStringLiteral("--language '%1': there are %2")
                     .arg(request.language, PanelLanguage::known().join(QLatin1String(" and "))));
        return false;
    }
    return true;
}

// Of those that anything is wanted of.
bool hasEachLinkAnswered(const Communication &comm)
{
    for (const int number : comm.linkNumbers()) {
        const LinkState state = comm.linkState(number);
        const bool isOpen = state.condition == LinkCondition::Idle ||
                            (state.condition == LinkCondition::Connected && state.rounds == 0);
        if (isOpen && state.isAskedFor)
            return false;
    }
    return true;
}

void waitForValues(const Communication &comm)
{
    QEventLoop loop;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (hasEachLinkAnswered(comm))
            loop.quit();
    });
    look.start(lookInterval);
    QTimer::singleShot(longestWait, &loop, &QEventLoop::quit);
    loop.exec();
}

bool writePicture(const QPixmap &picture, const QString &path)
{
    QString error;
    FileReplacement replacement(path);
    if (!replacement.begin(error))
        return false;
    QFile file(replacement.workPath());
    return file.open(QIODevice::WriteOnly) && picture.save(&file, "PNG", 0) && file.flush() &&
           replacement.finish(error);
}

ExitCode takePicture(const Session &session, PanelWindow &window, const QString &file)
{
    window.refresh();
    waitForValues(session.communication());
    window.refresh();
    if (!writePicture(window.grab(), file)) {
        complain(QStringLiteral("%1: the picture cannot be written there: name a file in a folder of yours")
                     .arg(file));
        return ExitCode::Failed;
    }
    print(QStringLiteral("%1: %2 x %3 pixels\n")
              .arg(printable(file), QString::number(window.width()), QString::number(window.height())));
    return doneIfEveryPlcAnswers(session, displayItems(session));
}

} // namespace

ExitCode runGui(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    const auto ended = readOptions(
        parser,
        QStringLiteral(
            "Shows the panel's screen in a window: live values, buttons that run macros, exports, the "
            "panel's address, the panel itself, and a check of addresses."),
        arguments, 1);
    if (ended)
        return *ended;
    Request request;
    if (!readRequest(parser, request))
        return ExitCode::WrongUse;
    if (request.picture.isEmpty() && !hasDisplay()) {
        complain(
            QStringLiteral("gui: there is no display to open a window on: run it in a graphical session, or "
                           "give --screenshot FILE for a picture"));
        return ExitCode::Failed;
    }
    if (!hasPanelFont())
        complain(
            QStringLiteral("gui: the font \"%1\" is missing, Chinese may be unreadable: install the package "
                           "fonts-wqy-microhei")
                .arg(panelFontFamily()));

    if (request.picture.isEmpty())
        quitOnInterrupt();
    request.options.announceMessageBoxClose = true;
    ExitCode exitCode = ExitCode::Done;
    const auto session = openSession(parser, request.options, exitCode);
    if (!session)
        return exitCode;
    PanelWindow window(*session);
    QString error;
    if (!window.changeLanguage(request.language, error)) {
        complain(QLatin1String("gui: ") + error);
        return ExitCode::Failed;
    }
    if (!request.page.isEmpty() && !window.showPage(request.page)) {
        complain(QStringLiteral("--page '%1': there are %2")
                     .arg(request.page, window.pageNames().join(QLatin1String(", "))));
        return ExitCode::WrongUse;
    }
    window.show();
    if (!request.picture.isEmpty())
        return takePicture(*session, window, request.picture);
    print(QStringLiteral("The window is open. Ctrl-C ends this.\n"));
    QApplication::exec();
    return ExitCode::Done;
}

} // namespace panelkit::simulator
