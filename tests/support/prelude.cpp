// The source of the library that owns the precompiled header of all tests; it has nothing of its own.
