// The address checker on a session's project.
#pragma once

#include "simulator/host/addressexplanation.h"

#include <QList>
#include <QPair>
#include <QString>

#include <vector>

namespace panelkit::simulator {

class Session;

struct CheckedAddress
{
    AddressVerdict verdict;                 // its link is the checker's
    bool passes = false;                    // what address_check::checkAddress says
    QString explanation;                    // empty for a valid address
    QList<QPair<QString, QString>> written; // property and value; empty unless the address is valid
    int index = 0;                          // that was written
    QString shown;                          // the address as a screen shows it; empty unless it is valid
    int station = -1;                       // that is asked for it; -1 in the panel's own memory
};

// What is to be said of an item.
struct ItemFinding
{
    std::size_t item;  // its place in the project
    const char *field; // "Link", "Block", "No" or "index"
    int code;          // of the check; 0 for an index that is not the driver's
    bool passes;
    QString reason;
};

class ProjectChecker
{
public:
    // Loads the drivers of all links; the session must live longer than the checker.
    explicit ProjectChecker(const Session &session);

    // Checks an address without touching the project.
    CheckedAddress check(const TypedAddress &address);

    // The address of an item in its author's notation: "2/3#4x" for a block on link 2 with stations.
    TypedAddress typedAddress(std::size_t item) const;

    // Checks the addresses of all items, and that the index that the project gives for one is the driver's.
    std::vector<ItemFinding> checkItems();

private:
    const Session &m_session;
    address_check m_checker;
};

} // namespace panelkit::simulator
