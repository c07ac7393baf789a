#include "simulator/panelsim/interrupt.h"

#include "simulator/host/filereplacement.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSocketNotifier>
#include <QTemporaryDir>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace panelkit::simulator {

namespace {

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr char noSignal = 0; // asks the watcher to end
constexpr int mostAttempts = 100;

int wakePipe[2] = {-1, -1}; // from the handler to the watcher
int loopPipe[2] = {-1, -1}; // from the watcher to the application's loop
std::atomic<bool> isLoopToQuit{false};
QString temporaryFolder; // empty while there is none; set while there is one thread

// A signal handler may do next to nothing; the watcher does the rest when the byte arrives.
void wake(int signalNumber)
{
    const int fault = errno;
    const auto byte = static_cast<char>(signalNumber);
    const ssize_t written = write(wakePipe[1], &byte, 1);
    static_cast<void>(written);
    errno = fault;
}

void ignore(int) {}

void handle(int signalNumber, void (*handler)(int))
{
    struct sigaction before = {};
    sigaction(signalNumber, nullptr, &before);
    if (signalNumber == SIGHUP && before.sa_handler == SIG_IGN)
        return;
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signalNumber, &action, nullptr);
}

void sendByte(int descriptor, char byte)
{
    const ssize_t written = write(descriptor, &byte, 1);
    static_cast<void>(written);
}

} // namespace

OrderlyEnd::OrderlyEnd(bool hasTemporaryFolder)
{
    handle(SIGPIPE, ignore); // no SIG_IGN, which the commands that are started would inherit
    if (hasTemporaryFolder) {
        m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + QLatin1String("/panelsim-XXXXXX"));
        if (m_folder->isValid()) {
            temporaryFolder = m_folder->path();
            qputenv("TMPDIR", QFile::encodeName(temporaryFolder));
        }
    }
    if (pipe2(wakePipe, O_CLOEXEC) != 0)
        return; // the signals then end the process, as they do by themselves
    try {
        m_watcher = std::thread([this] { watchSignals(); });
    } catch (const std::system_error &) {
        return;
    }
    for (const int signalNumber : endingSignals)
        handle(signalNumber, wake);
}

OrderlyEnd::~OrderlyEnd()
{
    m_folder.reset();
    if (!m_watcher.joinable())
        return;
    sendByte(wakePipe[1], noSignal);
    m_watcher.join();
    for (const int signalNumber : endingSignals)
        handle(signalNumber, SIG_DFL);
}

void OrderlyEnd::watchSignals() const
{
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, nullptr);
    char byte = noSignal;
    while (read(wakePipe[0], &byte, 1) == 1 && byte != noSignal) {
        if (isLoopToQuit.exchange(false)) {
            sendByte(loopPipe[1], byte);
            continue;
        }
        removeTemporaryFiles();
        handle(byte, SIG_DFL);
        kill(getpid(), byte);
    }
}

void quitOnInterrupt()
{
    if (loopPipe[0] < 0) {
        if (pipe2(loopPipe, O_CLOEXEC) != 0)
            return; // the process ends without the loop
        auto *notifier =
            new QSocketNotifier(loopPipe[0], QSocketNotifier::Read, QCoreApplication::instance());
        QObject::connect(notifier, &QSocketNotifier::activated, QCoreApplication::instance(), [notifier] {
            notifier->setEnabled(false);
            QCoreApplication::quit();
        });
        isLoopToQuit = true;
    }
}

void removeTemporaryFiles()
{
    removeUnfinishedFiles();
    if (temporaryFolder.isEmpty())
        return;
    // Another thread may still be making files there.
    for (int attempt = 0; attempt < mostAttempts && !QDir(temporaryFolder).removeRecursively(); ++attempt)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

} // namespace panelkit::simulator
