// What a fuzzer says of every input, beyond that nothing crashes.
#pragma once

#include <cstdio>
#include <cstdlib>

inline void demand(bool condition, const char *what)
{
    if (condition)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}
