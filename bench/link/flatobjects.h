// An object library that neither searches long nor allocates: what a panel's own one costs is not known, and
// is not what is measured.
#pragma once

#include "platform/device_struct.h"

#include <QString>

#include <array>
#include <cstring>
#include <vector>

struct property
{
    char text[64];
    int number;
};

struct object
{
    enum Field
    {
        LinkID,
        AddressMode,
        BlockNames,
        PlcID,
        LinkName,
        DriverLib,
        FieldCount
    };

    // Of a link node.
    std::array<QString, FieldCount> fields;
    object *next = nullptr;
    object *firstChild = nullptr;

    // Of an item: "Link", "Block", "No", "index", "station", "length".
    std::array<property, 6> address = {};
};
