// The macros of a project's items, as a panel's runtime keeps them.
#pragma once

#include "macro/helpmacrolua.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace panelkit::simulator {

class Session;

// Which macro of which item.
struct MacroOwner
{
    std::size_t item = 0;
    ITEM_MACRO_TYPE type = ITEM_MACRO_PRESS;
};

class ItemMacros
{
public:
    // Declares the project's script variables (the library's table is the process's: those of an earlier
    // project stay) and loads the macros of all items. The records stay where they are.
    explicit ItemMacros(const Session &session);

    // Also drops every event that still waits, since it may point to a record.
    ~ItemMacros();
    ItemMacros(const ItemMacros &) = delete;
    ItemMacros &operator=(const ItemMacros &) = delete;

    const itemMacro &macro(std::size_t item) const { return m_macros[item]; }

    // What is to be watched for the item, as long as it is on the screen.
    QList<KEY_ADDRESS> watchedAddresses(std::size_t item);

    // Whose argument an event carries, or nothing for a foreign one.
    std::optional<MacroOwner> ownerOf(const InterfaceAll *argument) const;

private:
    const Session &m_session;
    std::vector<itemMacro> m_macros;
};

} // namespace panelkit::simulator
