// One item of a project as its screen would show it now.
#pragma once

#include <QString>
#include <QVector>

#include <cstddef>
#include <vector>

namespace panelkit::simulator {

class Session;

struct ItemDisplay
{
    QString address;        // as conversionAddr2UIText gives it
    QVector<quint16> words; // what the text is made of, as the communication interface holds it
    QString text;           // what the screen shows
    bool isCurrent = false; // the words are the register's; else they are 0, for want of an answer
    int linkNumber = 0;
};

// Announces the addresses of all items to the communication interface, so that they come with few requests.
void watchItems(const Session &session);

// Whether displayItem would not wait for the PLC's first answer now. Announces the item's address.
bool isDisplayedAtOnce(const Session &session, std::size_t index);

// Goes the whole road for `session.project().items[index]`: node, address record, words, text.
ItemDisplay displayItem(const Session &session, std::size_t index);

// The same for all items, in their order.
std::vector<ItemDisplay> displayItems(const Session &session);

// Whether a PLC should have given the item's words and has not: it is away, refuses them or has not answered
// in time. What lies on a link without connection is owed by nobody.
bool isOwed(const Session &session, const ItemDisplay &display);

} // namespace panelkit::simulator
