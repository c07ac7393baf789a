// Both of the C library's records of an entry are meant here, the short one and the long one.
#undef _FILE_OFFSET_BITS

#include "tests/support/entrytypes.h"

#include <dirent.h>
#include <dlfcn.h>

namespace {

bool typesTold = true;

template <typename Entry>
Entry *withItsType(Entry *entry)
{
    if (entry != nullptr && !typesTold)
        entry->d_type = DT_UNKNOWN;
    return entry;
}

} // namespace

void panelkit::testing::setEntryTypesTold(bool told)
{
    typesTold = told;
}

// These stand before the C library's own.
extern "C" __attribute__((visibility("default"))) dirent *readdir(DIR *folder)
{
    static const auto next = reinterpret_cast<dirent *(*)(DIR *)>(dlsym(RTLD_NEXT, "readdir"));
    return withItsType(next(folder));
}

extern "C" __attribute__((visibility("default"))) dirent64 *readdir64(DIR *folder)
{
    static const auto next = reinterpret_cast<dirent64 *(*)(DIR *)>(dlsym(RTLD_NEXT, "readdir64"));
    return withItsType(next(folder));
}
