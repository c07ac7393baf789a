// The buttons of the items that have macros, and what became of the last one.
#pragma once

#include "register/registervaluechange.h"
#include "simulator/host/macroworker.h"
#include "simulator/window/page.h"

#include <map>
#include <vector>

class QGridLayout;
class QLabel;
class QScrollArea;

namespace panelkit::simulator {

class MacroButton;
class PanelRuntime;
class Session;

// A button's macros run when it is pressed and when it is released. What they read is watched while the page
// is in front.
class OperatePage final : public Page
{
    Q_OBJECT
public:
    OperatePage(Session &session, PanelRuntime &runtime, QWidget *parent);

    QString title() const override;
    void refresh() override;

protected:
    void retranslate() override;
    void showEvent(QShowEvent *event) override;

private:
    void addButton(std::size_t item);
    void noteRun(std::size_t item, int change);
    void showEnd(const MacroWorker::Ended &ended);
    QString variableAt(const MacroAddress &address) const;
    QString accessText(const MacroAccess &access) const;
    QWidget *buildButtons();
    QWidget *buildOutcome();

    Session &m_session;
    PanelRuntime &m_runtime;
    QGridLayout *m_grid;
    std::map<std::size_t, MacroButton *> m_buttons; // by item
    std::map<std::size_t, int> m_runs;              // by item: those that were asked for and have not ended
    std::vector<RegisterValueChange> m_watched;
    QLabel *m_outcome;
    QLabel *m_details;
    bool m_hasRun = false;
    MacroWorker::Ended m_last;
};

} // namespace panelkit::simulator
