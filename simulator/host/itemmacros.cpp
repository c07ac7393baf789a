#include "simulator/host/itemmacros.h"

#include "macro/interfaceall.h"
#include "simulator/comm/communication.h"
#include "simulator/host/session.h"
#include "simulator/platform/eventlibrary.h"

namespace panelkit::simulator {

ItemMacros::ItemMacros(const Session &session) : m_session(session), m_macros(session.project().items.size())
{
    helpMacroLua::initMacroVarTable(session.projectRoot());
    for (std::size_t i = 0; i < m_macros.size(); ++i)
        helpMacroLua::loadItemMacro(session.itemNode(i), m_macros[i]);
}

ItemMacros::~ItemMacros()
{
    clearEventLibrary();
    for (const itemMacro &macro : m_macros) {
        delete macro.pressArg;
        delete macro.releaseArg;
    }
}

QList<KEY_ADDRESS> ItemMacros::watchedAddresses(std::size_t item)
{
    QList<KEY_ADDRESS> addresses;
    helpMacroLua::registerLuaMonitorAddress(m_macros[item], addresses, &m_session.communication());
    return addresses;
}

std::optional<MacroOwner> ItemMacros::ownerOf(const InterfaceAll *argument) const
{
    for (std::size_t i = 0; argument != nullptr && i < m_macros.size(); ++i) {
        if (argument == m_macros[i].pressArg)
            return MacroOwner{i, ITEM_MACRO_PRESS};
        if (argument == m_macros[i].releaseArg)
            return MacroOwner{i, ITEM_MACRO_RELEASE};
    }
    return std::nullopt;
}

} // namespace panelkit::simulator
