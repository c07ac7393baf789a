// What of Lua a macro has, with bounds where Lua has none.
#pragma once

#include <lua.hpp>

#include <cstddef>

namespace panelkit::simulator {

// Opens the libraries, takes away what reaches beyond the macro, and puts bounds around the functions that
// can work for long without an instruction of the macro's. `state` belongs to a LuaRun.
void openSandbox(lua_State *state);

// How many steps a search for `pattern` in a subject of `subjectLength` bytes may take at most: the ways to
// choose where the match begins and where each of its k repetitions ("*", "+", "-", "?") ends, that is (n + k
// + 1)! / ((k + 1)! n!), times the length of the pattern, times that of the subject for each "%b" and each
// back reference. `isAnchored` says that a "^" in front fixes the begin.
double patternSteps(std::size_t subjectLength, const char *pattern, std::size_t patternLength,
                    bool isAnchored);

} // namespace panelkit::simulator
