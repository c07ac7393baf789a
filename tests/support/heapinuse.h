// How much heap memory the process holds.
#pragma once

#include <cstddef>

#include <malloc.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace panelkit::testing {

// In bytes, as the allocator counts them, with its own share of each block.
inline std::size_t heapInUse()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 information = mallinfo2();
    return information.uordblks + information.hblkhd;
#endif
}

} // namespace panelkit::testing
