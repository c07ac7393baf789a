// A project made ready for a soak: with items that prove what they show, macros that count, and links whose
// drivers refuse.
#pragma once

#include "simulator/project/project.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace panelkit::simulator {

class Chance;

// What was added.
struct SoakProject
{
    struct Counter
    {
        QString item;     // its press macro counts, its release macro takes more memory than it may
        QString link;     // where it counts
        int station = 0;  // that the variable names
        int index = 0;    // of the two holding registers, low word first
        QString variable; // of the registers
    };

    QByteArray file;
    Project project;                       // the same, read
    std::vector<Counter> counters;         // one for each Modbus link over Ethernet
    std::vector<int> refusingLinks;        // numbers of links with the driver "SoakDriver"
    std::vector<int> stations = {1, 2, 3}; // that a PLC for it has to have

    // Whether the item shows witnesses of a soak's PLC.
    bool isWitness(const ItemDefinition &item) const;
};

// Nothing, with one line in `error`, when `file` is no project or leaves no numbers for more links.
std::optional<SoakProject> makeSoakProject(const QByteArray &file, Chance &chance, QString &error);

} // namespace panelkit::simulator
