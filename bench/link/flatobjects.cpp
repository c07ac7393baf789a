#include "bench/link/flatobjects.h"

namespace {

int indexOf(const char *name, std::initializer_list<const char *> names)
{
    int index = 0;
    for (const char *candidate : names) {
        if (std::strcmp(candidate, name) == 0)
            return index;
        ++index;
    }
    return -1;
}

const QString *field(const object *node, const char *name)
{
    const int index =
        indexOf(name, {"linkID", "AddressMode", "blockNames", "PLCID", "linkName", "driverLib"});
    return index < 0 ? nullptr : &node->fields[static_cast<std::size_t>(index)];
}

} // namespace

object *object_get_child(object *node, const char *)
{
    return node;
}

object *object_first_child(object *node)
{
    return node->firstChild;
}

object *object_next(object *node)
{
    return node->next;
}

property *object_get_property(object *node, const char *name)
{
    const int index = indexOf(name, {"Link", "Block", "No", "index", "station", "length"});
    return index < 0 ? nullptr : &node->address[static_cast<std::size_t>(index)];
}

int object_get_property_value_type_int32(object *node, const char *name, int defaultValue)
{
    const QString *value = field(node, name);
    return value == nullptr ? defaultValue : value->toInt();
}

QString object_get_property_value_type_string(object *node, const char *name, const QString &defaultValue)
{
    const QString *value = field(node, name);
    return value == nullptr ? defaultValue : *value;
}

void property_set_value_number(property *target, int value)
{
    target->number = value;
}

void property_set_value_ustring(property *target, const char *utf8)
{
    std::strncpy(target->text, utf8, sizeof(target->text) - 1);
}
