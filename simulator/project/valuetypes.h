// The names that data types and views have in project files and in what panelsim prints.
#pragma once

#include "register/numformat.h"

#include <QLatin1String>

#include <array>

namespace panelkit::simulator {

struct ValueType
{
    const char *name;
    NUM_DATA_TYPE item; // of an item
    int variable;       // of a script variable: the number of its DATA_TYPE_ name, or -1 for none
    int wordCount;      // words of one value; 0 where the author has to say
};

constexpr std::array<ValueType, 9> valueTypes = {{
    {"bit", NUM_BIT, 0, 1},
    {"uint16", NUM_UINT16, 1, 1},
    {"uint32", NUM_UINT32, 4, 2},
    {"int16", NUM_INT16, 2, 1},
    {"int32", NUM_INT32, 5, 2},
    {"bcd16", NUM_BCD16, 3, 1},
    {"bcd32", NUM_BCD32, 6, 2},
    {"float32", NUM_FLOAT32, 7, 2},
    {"string", NUM_STRING, -1, 0},
}};

struct ViewName
{
    const char *name;
    NUM_DATA_VIEW_TYPE view;
};

constexpr std::array<ViewName, 4> viewNames = {{
    {"dec", NUM_VIEW_DEC},
    {"hex", NUM_VIEW_HEX},
    {"oct", NUM_VIEW_OCT},
    {"bin", NUM_VIEW_BIN},
}};

// The name of an item's type or view; empty for a number that is none.
inline QLatin1String typeName(NUM_DATA_TYPE type)
{
    for (const ValueType &candidate : valueTypes)
        if (candidate.item == type)
            return QLatin1String(candidate.name);
    return QLatin1String();
}

inline QLatin1String viewName(NUM_DATA_VIEW_TYPE view)
{
    for (const ViewName &candidate : viewNames)
        if (candidate.view == view)
            return QLatin1String(candidate.name);
    return QLatin1String();
}

} // namespace panelkit::simulator
