#include "simulator/host/runtimeevents.h"

#include "macro/events.h"
#include "simulator/host/session.h"

#include <QCoreApplication>

namespace panelkit::simulator {

RuntimeEvents::RuntimeEvents(const Session &session, const ItemMacros &macros, MacroEngine &engine,
                             Handlers handlers)
    : RuntimeEvents(session, macros, MacroRunner(), std::move(handlers))
{
    m_runMacro = [this, &engine](const MacroOwner &owner, const QString &name, const QString &text) {
        const MacroResult result = engine.run(name, text);
        if (m_handlers.macroEnded)
            m_handlers.macroEnded(owner, result);
    };
}

RuntimeEvents::RuntimeEvents(const Session &session, const ItemMacros &macros, MacroRunner runMacro,
                             Handlers handlers)
    : m_session(session),
      m_macros(macros),
      m_runMacro(std::move(runMacro)),
      m_handlers(std::move(handlers))
{
}

RuntimeEvents::~RuntimeEvents()
{
    setEventLibraryListener({});
}

int RuntimeEvents::handleWaiting()
{
    const int count = eventLibraryEntryCount();
    int handled = 0;
    while (handled < count) {
        std::optional<EventLibraryEntry> entry = takeEventLibraryEntry();
        if (!entry)
            break;
        std::visit([this](auto &known) { handle(known); }, *entry);
        ++handled;
    }
    return handled;
}

void RuntimeEvents::handleInEventLoop()
{
    const auto handleLater = [this] {
        QMetaObject::invokeMethod(
            &m_loop, [this] { handleWaiting(); }, Qt::QueuedConnection);
    };
    setEventLibraryListener(handleLater);
    handleLater(); // for those that wait already
}

void RuntimeEvents::handle(PostedEvent &posted)
{
    if (posted.hadReceiver) {
        if (posted.receiver)
            QCoreApplication::sendEvent(posted.receiver, posted.event.get());
        return;
    }
    if (const auto *message = dynamic_cast<const UMessageBoxEvent *>(posted.event.get())) {
        if (m_handlers.messageBox)
            m_handlers.messageBox(message->text, message->param1, message->param2);
        return;
    }
    const auto *call = dynamic_cast<const UExternalFuncCallEvent *>(posted.event.get());
    const auto owner = call != nullptr ? m_macros.ownerOf(call->arg) : std::nullopt;
    const auto text = owner ? MacroEngine::textOf(*call) : std::nullopt;
    if (text)
        m_runMacro(*owner, m_session.project().items[owner->item].name, *text);
}

void RuntimeEvents::handle(const RegisterValueChange &address)
{
    if (m_handlers.addressChanged)
        m_handlers.addressChanged(address);
}

void RuntimeEvents::handle(const SystemNotice &notice)
{
    if (m_handlers.systemNotice)
        m_handlers.systemNotice(notice.code, notice.argument);
}

} // namespace panelkit::simulator
