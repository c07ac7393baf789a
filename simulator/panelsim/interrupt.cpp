#include "simulator/panelsim/interrupt.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <unistd.h>

namespace panelkit::simulator {

namespace {

int wakePipe[2] = {-1, -1};

// A signal handler may do next to nothing; the loop does the rest when the byte arrives.
void wake(int signalNumber)
{
    const char byte = 0;
    const ssize_t written = write(wakePipe[1], &byte, 1);
    static_cast<void>(written);
    std::signal(signalNumber, SIG_DFL);
}

} // namespace

void quitOnInterrupt()
{
    if (pipe(wakePipe) != 0)
        return; // the signals then end the process, as they do by themselves
    auto *notifier = new QSocketNotifier(wakePipe[0], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, QCoreApplication::instance(),
                     &QCoreApplication::quit);
    std::signal(SIGINT, wake);
    std::signal(SIGTERM, wake);
}

} // namespace panelkit::simulator
