// The order of a record's fields, which closed libraries rely on.
#pragma once

#include <cstdint>
#include <initializer_list>

namespace panelkit::testing {

struct Place
{
    template <typename Field>
    Place(const Field &field)
        : address(reinterpret_cast<std::uintptr_t>(&field)),
          size(sizeof(Field)),
          alignment(alignof(Field))
    {
    }

    std::uintptr_t address, size, alignment;
};

// Whether the fields stand in this order, with no more between them than their alignment asks for.
inline bool followEachOther(std::initializer_list<Place> fields)
{
    const Place *before = fields.begin();
    for (const Place *field = before + 1; field != fields.end(); before = field++) {
        const std::uintptr_t end = before->address + before->size;
        if (field->address != (end + field->alignment - 1) / field->alignment * field->alignment)
            return false;
    }
    return true;
}

} // namespace panelkit::testing
