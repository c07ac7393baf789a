// The runtime's side of the event library: what is done about the events that are posted to it.
#pragma once

#include "simulator/host/itemmacros.h"
#include "simulator/lua/macroengine.h"
#include "simulator/platform/eventlibrary.h"

#include <QObject>
#include <QString>

#include <functional>

namespace panelkit::simulator {

class RuntimeEvents
{
public:
    // What the host does; whatever it leaves empty is passed over.
    struct Handlers
    {
        std::function<void(const QString &text, int param1, int param2)> messageBox;
        std::function<void(const MacroOwner &owner, const MacroResult &result)> macroEnded;
        std::function<void(const RegisterValueChange &address)> addressChanged;
        std::function<void(unsigned short code, int argument)> systemNotice;
    };

    // Runs the macro `text` of the item `name`, or sees to it that it is run.
    using MacroRunner =
        std::function<void(const MacroOwner &owner, const QString &name, const QString &text)>;

    // Macros are run at once by `engine`. `session`, `macros` and `engine` must live as long as this.
    RuntimeEvents(const Session &session, const ItemMacros &macros, MacroEngine &engine, Handlers handlers);

    // Macros are handed to `runMacro`, which then has to tell of their end itself.
    RuntimeEvents(const Session &session, const ItemMacros &macros, MacroRunner runMacro, Handlers handlers);
    ~RuntimeEvents();
    RuntimeEvents(const RuntimeEvents &) = delete;
    RuntimeEvents &operator=(const RuntimeEvents &) = delete;

    // Handles the events that wait now, in the order in which they were posted: an engine runs a macro to its
    // end before the next event is looked at. An event with a receiver goes to it, if it still exists. What
    // is posted meanwhile waits. Returns how many were handled.
    int handleWaiting();

    // From now on events are handled as soon as Qt's event loop runs in the thread of this object.
    void handleInEventLoop();

private:
    void handle(PostedEvent &posted);
    void handle(const RegisterValueChange &address);
    void handle(const SystemNotice &notice);

    const Session &m_session;
    const ItemMacros &m_macros;
    MacroRunner m_runMacro;
    Handlers m_handlers;
    QObject m_loop; // what is called in the event loop is called for this
};

} // namespace panelkit::simulator
