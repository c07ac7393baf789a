#include "simulator/panelsim/application.h"

#include "simulator/panelsim/commandline.h"
#include "simulator/panelsim/interrupt.h"

#include <QApplication>
#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cstring>

namespace panelkit::simulator {

namespace {

// The toolkit ends the process when it cannot reach the display; its last words are long.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext &, const QString &)
{
    if (type != QtFatalMsg)
        return;
    complain(
        QStringLiteral("gui: the display '%1' cannot be opened: run it in a session that has one, or give "
                       "--screenshot FILE for a picture")
            .arg(qEnvironmentVariable("WAYLAND_DISPLAY", qEnvironmentVariable("DISPLAY"))));
    removeTemporaryFiles();
    std::_Exit(static_cast<int>(ExitCode::Failed));
}

QtMessageHandler afterFilter = nullptr;

void passAllButPaths(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!text.startsWith(QLatin1String("QStandardPaths")))
        afterFilter(type, context, text);
}

bool isForPicture(int argc, char **argv)
{
    return std::any_of(argv, argv + argc,
                       [](const char *text) { return std::strncmp(text, "--screenshot", 12) == 0; });
}

void useNoDisplay()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) { // the toolkit complains where there is none
        static const QTemporaryDir folder;
        if (folder.isValid())
            qputenv("XDG_RUNTIME_DIR", QFile::encodeName(folder.path()));
        else // what does without one is done; a session says itself what it lacks
            afterFilter = qInstallMessageHandler(passAllButPaths);
    }
}

std::unique_ptr<QCoreApplication> makeToolkit(Application kind, int &argc, char **argv)
{
    std::unique_ptr<QCoreApplication> application;
    switch (kind) {
    case Application::Console:
        return std::make_unique<QCoreApplication>(argc, argv);
    case Application::Drawing:
        qputenv("QT_QPA_PLATFORM", "offscreen");
        useNoDisplay();
        application = std::make_unique<QGuiApplication>(argc, argv);
        break;
    case Application::Hidden:
        qputenv("QT_QPA_PLATFORM", "offscreen");
        useNoDisplay();
        application = std::make_unique<QApplication>(argc, argv);
        break;
    case Application::Window:
        if (!hasDisplay() || isForPicture(argc, argv))
            useNoDisplay();
        const QtMessageHandler before = qInstallMessageHandler(endWithoutDisplay);
        application = std::make_unique<QApplication>(argc, argv);
        qInstallMessageHandler(before);
        break;
    }
    return application;
}

} // namespace

bool hasDisplay()
{
    // Asked before the platform is chosen for want of one.
    static const bool has = !qEnvironmentVariableIsEmpty("DISPLAY") ||
                            !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
                            qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    return has;
}

std::unique_ptr<QCoreApplication> makeApplication(Application kind, int &argc, char **argv)
{
    std::unique_ptr<QCoreApplication> application = makeToolkit(kind, argc, argv);
    // The toolkit takes the user's locale over, in which numbers may have a comma: Lua and the C library
    // would write and expect it, too.
    std::setlocale(LC_NUMERIC, "C");
    // Where this machine lacks the panel's font, one that like it has letters half as wide as Chinese
    // characters.
    if (kind != Application::Console)
        QFont::insertSubstitution(QStringLiteral("SimSun"), QStringLiteral("WenQuanYi Micro Hei Mono"));
    return application;
}

} // namespace panelkit::simulator
