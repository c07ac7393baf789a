// Ctrl-C as an event of the loop.
#pragma once

namespace panelkit::simulator {

// From here on SIGINT and SIGTERM end QCoreApplication's loop instead of the process, so that what a command
// has opened is closed in order. A second signal ends the process at once. To be called once, with the
// application there.
void quitOnInterrupt();

} // namespace panelkit::simulator
