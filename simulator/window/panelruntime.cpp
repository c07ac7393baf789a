#include "simulator/window/panelruntime.h"

#include "macro/helpmacrolua.h"
#include "simulator/comm/communication.h"
#include "simulator/host/flagpolling.h"
#include "simulator/host/session.h"

namespace panelkit::simulator {

namespace {

RuntimeEvents::Handlers handlersOf(PanelRuntime &runtime)
{
    RuntimeEvents::Handlers handlers;
    handlers.messageBox = [&runtime](const QString &text, int seconds, int needsAnswer) {
        Q_EMIT runtime.messageBoxWanted(text, seconds, needsAnswer);
    };
    handlers.systemNotice = [&runtime](unsigned short code, int argument) {
        Q_EMIT runtime.systemNotice(code, argument);
    };
    return handlers;
}

} // namespace

PanelRuntime::PanelRuntime(Session &session, QObject *parent, const MacroLimits &limits)
    : QObject(parent),
      m_session(session),
      m_macros(session),
      m_registers(session.communication()),
      m_worker(m_registers, limits,
               [this](const MacroWorker::Ended &ended) {
                   QMetaObject::invokeMethod(
                       this, [this, ended] { Q_EMIT macroEnded(ended); }, Qt::QueuedConnection);
               }),
      m_events(
          session, m_macros,
          [this](const MacroOwner &owner, const QString &name, const QString &text) {
              m_worker.run(owner, name, text);
          },
          handlersOf(*this))
{
    m_events.handleInEventLoop();
}

PanelRuntime::~PanelRuntime() = default;

void PanelRuntime::press(std::size_t item)
{
    helpMacroLua::runLua(m_macros.macro(item), ITEM_MACRO_PRESS);
}

void PanelRuntime::release(std::size_t item)
{
    helpMacroLua::runLua(m_macros.macro(item), ITEM_MACRO_RELEASE);
}

std::vector<RegisterValueChange> PanelRuntime::watchedAddresses(std::size_t item)
{
    std::vector<RegisterValueChange> addresses;
    for (const KEY_ADDRESS &key : m_macros.watchedAddresses(item)) {
        QString failure;
        const auto address =
            registerOf(m_session.communication(),
                       {key.linkName, key.blockName, key.addrIndex, key.station, key.extra}, failure);
        if (address)
            addresses.push_back(*address);
    }
    return addresses;
}

void PanelRuntime::poll()
{
    m_session.flags().poll();
}

} // namespace panelkit::simulator
