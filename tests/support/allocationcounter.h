// Counts heap allocations, exactly, for the contracts that promise none.
#pragma once

namespace panelkit::testing {

// The number of allocations (malloc, calloc, realloc, operator new, Qt's containers included) that the
// calling thread has made since the counter was constructed.
class AllocationCounter
{
public:
    AllocationCounter();
    long count() const;

private:
    long m_start;
};

} // namespace panelkit::testing
