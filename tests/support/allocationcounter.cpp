#include "tests/support/allocationcounter.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define PANELKIT_SANITIZER_OWNS_MALLOC
#endif

namespace {

thread_local long allocations = 0;

} // namespace

#ifdef PANELKIT_SANITIZER_OWNS_MALLOC

extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void *, std::size_t),
                                                         void (*onFree)(const volatile void *));

namespace {

void countAllocation(const volatile void *, std::size_t)
{
    ++allocations;
}

void ignoreRelease(const volatile void *) {}

const int hooked = __sanitizer_install_malloc_and_free_hooks(countAllocation, ignoreRelease);

} // namespace

#else

// A program's own malloc stands before the C library's for every shared library in the process.
#define PANELKIT_INTERPOSE extern "C" __attribute__((visibility("default"), used))

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
}

PANELKIT_INTERPOSE void *malloc(std::size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}

PANELKIT_INTERPOSE void *calloc(std::size_t count, std::size_t size)
{
    ++allocations;
    return __libc_calloc(count, size);
}

PANELKIT_INTERPOSE void *realloc(void *block, std::size_t size)
{
    ++allocations;
    return __libc_realloc(block, size);
}

PANELKIT_INTERPOSE void *aligned_alloc(std::size_t alignment, std::size_t size)
{
    ++allocations;
    return __libc_memalign(alignment, size);
}

PANELKIT_INTERPOSE int posix_memalign(void **block, std::size_t alignment, std::size_t size)
{
    ++allocations;
    *block = __libc_memalign(alignment, size);
    return *block == nullptr ? ENOMEM : 0;
}

#endif

namespace panelkit::testing {

AllocationCounter::AllocationCounter() : m_start(allocations) {}

long AllocationCounter::count() const
{
    return allocations - m_start;
}

} // namespace panelkit::testing
