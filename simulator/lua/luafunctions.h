// The functions that a macro calls and Lua does not have: getdata, setdata and the panel's own print.
#pragma once

#include <lua.hpp>

namespace panelkit::simulator {

// Makes them globals of a state that belongs to a LuaRun, with the names of the data types.
void openFunctions(lua_State *state);

} // namespace panelkit::simulator
