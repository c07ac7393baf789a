#include "simulator/host/itemdisplay.h"

#include "register/addresstext.h"
#include "register/numformat.h"
#include "register/registervaluechange.h"
#include "simulator/comm/communication.h"
#include "simulator/host/session.h"

namespace panelkit::simulator {

void watchItems(const Session &session)
{
    for (std::size_t i = 0; i < session.project().items.size(); ++i)
        isDisplayedAtOnce(session, i);
}

bool isDisplayedAtOnce(const Session &session, std::size_t index)
{
    RegisterValueChange address = {};
    return !ObjectAddress2RegisterValueChange(session.itemNode(index), address) ||
           session.communication().watchAddress(address, session.project().items.at(index).wordCount);
}

ItemDisplay displayItem(const Session &session, std::size_t index)
{
    const ItemDefinition &item = session.project().items.at(index);
    Communication &comm = session.communication();
    ItemDisplay display;

    RegisterValueChangeSize address = {};
    if (!ObjectAddress2RegisterValueChangeSize(session.itemNode(index), address))
        return display;
    display.linkNumber = address.linkId;
    conversionAddr2UIText(address, item.number, &comm, display.address);

    display.words.resize(item.wordCount);
    display.isCurrent = comm.readAddressWords(&address, item.wordCount, display.words.data()) == 0;
    getValueToQString(address, item.wordCount, item.digits, item.decimals, item.type, item.view,
                      display.text);
    return display;
}

std::vector<ItemDisplay> displayItems(const Session &session)
{
    std::vector<ItemDisplay> displays;
    for (std::size_t i = 0; i < session.project().items.size(); ++i)
        displays.push_back(displayItem(session, i));
    return displays;
}

bool isOwed(const Session &session, const ItemDisplay &display)
{
    if (display.isCurrent)
        return false;
    switch (session.communication().linkState(display.linkNumber).condition) {
    case LinkCondition::Unknown:
    case LinkCondition::Internal:
    case LinkCondition::WithoutConnection:
        return false;
    case LinkCondition::Idle:
    case LinkCondition::Connected:
    case LinkCondition::Disturbed:
    case LinkCondition::Away:
        break;
    }
    return true;
}

} // namespace panelkit::simulator
