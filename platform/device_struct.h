// The panel's object library, libdevice_struct: the project tree, nodes with children and properties.
//
// Declarations only. On a panel the maker's library defines them, on a PC the simulator's stand-in of the
// same name does. Every node and property belongs to the runtime that loaded the project: libpanelkit gets
// pointers for the time of a call (an address checker: for its own lifetime), never frees one, and calls
// from the runtime's GUI thread. Names are NUL-terminated 8-bit texts and compared exactly.
#pragma once

#include "platform/export.h"

#include <QString>

struct object;
struct property;

// The child of `node` with that name, or null if there is none.
PANELKIT_EXPORT object *object_get_child(object *node, const char *name);

// The first child of `node`, or null if it has none; with object_next the children in their order.
PANELKIT_EXPORT object *object_first_child(object *node);

// The sibling after `node`, or null after the last.
PANELKIT_EXPORT object *object_next(object *node);

// The property of `node` with that name, or null if it has none. Valid as long as the node is.
PANELKIT_EXPORT property *object_get_property(object *node, const char *name);

// The value of a property as a number or as a text, or `defaultValue` if the node has no such property.
PANELKIT_EXPORT int object_get_property_value_type_int32(object *node, const char *name, int defaultValue);
PANELKIT_EXPORT QString object_get_property_value_type_string(object *node, const char *name,
                                                              const QString &defaultValue);

// Give an existing property a new value. `utf8` is a NUL-terminated text and is copied.
PANELKIT_EXPORT void property_set_value_number(property *target, int value);
PANELKIT_EXPORT void property_set_value_ustring(property *target, const char *utf8);
