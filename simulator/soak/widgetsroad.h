// The widgets, shown, touched and closed.
#pragma once

#include "simulator/soak/road.h"

#include <QStringList>
#include <QTemporaryDir>

#include <memory>

class FileBrowser;

namespace panelkit::simulator {

// Needs a QApplication. A touch has to have the effect that it has on a panel: a signal, an event to the
// runtime, a file that is selected. The file browser looks at a folder that changes all the time, and has to
// list what is in it.
class WidgetsRoad final : public Road
{
public:
    WidgetsRoad();
    ~WidgetsRoad() override;

    void beginShift(Session &session) override;
    void endShift() override;
    void act(Chance &chance) override;

    // Lets the browser list the folder, and compares.
    void judgeListing();

    QString folder() const { return m_folder.path(); }

private:
    void changeFolder(Chance &chance);
    void pickFile(Chance &chance);
    void showProgress(Chance &chance);
    void showTips(Chance &chance);
    void showNotice(Chance &chance);
    void showMessage(Chance &chance);
    void editLine(Chance &chance);
    void settleAs(bool isAsExpected, const char *what);

    QTemporaryDir m_folder;
    std::unique_ptr<FileBrowser> m_browser;
};

} // namespace panelkit::simulator
