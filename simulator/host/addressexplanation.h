// Why an address is refused, in a sentence for its author.
#pragma once

#include "link/address_check.h"

#include <QString>

namespace panelkit::simulator {

struct Project;

// An address as an author types it.
struct TypedAddress
{
    QString linkName;
    QString block; // with the prefixes of link and station, where they are needed
    QString number;
    bool isBit = false;
    int length = 1;
};

// What the checker of `project` found, with what the author can do about it: which blocks the link has, which
// numbers are allowed. Empty for a valid address. The sentence is English unless a translator is installed.
QString explain(const AddressVerdict &verdict, const TypedAddress &address, const Project &project);

} // namespace panelkit::simulator
