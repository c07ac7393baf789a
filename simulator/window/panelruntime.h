// The panel's runtime behind its screen: events, macros, flags.
#pragma once

#include "simulator/host/itemmacros.h"
#include "simulator/host/macroworker.h"
#include "simulator/host/runtimeevents.h"
#include "simulator/lua/linkregisters.h"

#include <QObject>

namespace panelkit::simulator {

class Session;

// Handles what the library posts as soon as the event loop runs. Macros run in a thread of their own.
class PanelRuntime : public QObject
{
    Q_OBJECT
public:
    // `session` must live longer than the runtime.
    explicit PanelRuntime(Session &session, QObject *parent = nullptr,
                          const MacroLimits &limits = MacroLimits());
    ~PanelRuntime() override;

    // Asks for the item's macro, which the library does by an event.
    void press(std::size_t item);
    void release(std::size_t item);

    // What the item's macros read, to be watched as long as it is shown.
    std::vector<RegisterValueChange> watchedAddresses(std::size_t item);

    // One step of what is done again and again: looks at the flags by which a screen asks for settings to be
    // saved.
    void poll();

Q_SIGNALS:
    void macroEnded(const panelkit::simulator::MacroWorker::Ended &ended);
    void messageBoxWanted(const QString &text, int seconds, int needsAnswer);
    void systemNotice(int code, int argument);

private:
    Session &m_session;
    ItemMacros m_macros;
    LinkRegisters m_registers;
    MacroWorker m_worker;
    RuntimeEvents m_events;
};

} // namespace panelkit::simulator
