// An end in order, however it comes.
#pragma once

#include <QString>

#include <memory>
#include <thread>

class QTemporaryDir;

namespace panelkit::simulator {

// From construction to destruction SIGINT, SIGTERM and SIGHUP end the process only when nothing temporary is
// left behind, and a reader who has gone from behind a pipe does not end it at all: writing to him fails. A
// hang-up that nohup has switched off stays so. One at a time, before the application is made.
class OrderlyEnd
{
public:
    // With `hasTemporaryFolder` all temporary files and folders of this process and of those that it starts
    // lie in one folder, which goes with this object. Where none can be made, they lie where they did.
    explicit OrderlyEnd(bool hasTemporaryFolder);
    ~OrderlyEnd();
    OrderlyEnd(const OrderlyEnd &) = delete;
    OrderlyEnd &operator=(const OrderlyEnd &) = delete;

private:
    void watchSignals() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::thread m_watcher;
};

// From here on the first of these signals ends QCoreApplication's loop, at once when it has not begun yet, so
// that what a command has opened is closed in order. A second one ends the process. May be called again.
void quitOnInterrupt();

// Removes what is temporary, for whoever ends the process without going back to main().
void removeTemporaryFiles();

} // namespace panelkit::simulator
