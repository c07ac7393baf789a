#include "simulator/lua/luasandbox.h"

#include "simulator/lua/luafunctions.h"
#include "simulator/lua/luarun.h"

#include <cstddef>
#include <cstring>
#include <limits>

namespace panelkit::simulator {

namespace {

// A function of the library that stands behind a bounded one, which is then its closure's first value. It is
// called as if it were the bounded one itself: same arguments, same place in messages.
int callOriginal(lua_State *state)
{
    return lua_tocfunction(state, lua_upvalueindex(1))(state);
}

bool isRepetition(char character)
{
    return character != '\0' && std::strchr("*+-?", character) != nullptr;
}

// Behind the set that begins at `p`, or the end of the pattern.
const char *skipSet(const char *p, const char *end)
{
    ++p;
    if (p != end && *p == '^')
        ++p;
    bool isFirst = true;
    for (; p != end && (isFirst || *p != ']'); ++p) {
        isFirst = false;
        if (*p == '%' && p + 1 != end)
            ++p;
    }
    return p == end ? end : p + 1;
}

void refuseCostlyPattern(lua_State *state, double steps)
{
    if (steps > LuaRun::of(state).limits().patternSteps)
        luaL_error(state, "the pattern is too costly for a text of this length");
}

int boundPattern(lua_State *state, bool isAnchored)
{
    std::size_t subject = 0;
    std::size_t length = 0;
    luaL_checklstring(state, 1, &subject);
    const char *pattern = luaL_checklstring(state, 2, &length);
    LuaRun::of(state).charge(state, 1);
    refuseCostlyPattern(state, patternSteps(subject, pattern, length, isAnchored));
    return callOriginal(state);
}

int boundedPattern(lua_State *state)
{
    return boundPattern(state, true);
}

int boundedGmatch(lua_State *state) // to which "^" is a character like others
{
    return boundPattern(state, false);
}

int boundedFind(lua_State *state)
{
    if (!lua_toboolean(state, 4))
        return boundedPattern(state);
    std::size_t subject = 0;
    std::size_t length = 0;
    luaL_checklstring(state, 1, &subject);
    luaL_checklstring(state, 2, &length);
    LuaRun::of(state).charge(state, 1);
    refuseCostlyPattern(state, static_cast<double>(subject) * static_cast<double>(length));
    return callOriginal(state);
}

// Of an empty text Lua would make any number of copies, one after the other, without needing memory for them.
int boundedRep(lua_State *state)
{
    std::size_t length = 0;
    std::size_t separatorLength = 0;
    luaL_checklstring(state, 1, &length);
    luaL_checkinteger(state, 2);
    luaL_optlstring(state, 3, "", &separatorLength);
    if (length + separatorLength == 0) {
        lua_pushliteral(state, "");
        return 1;
    }
    return callOriginal(state);
}

// Counts as work what a function of the table library is about to do on elements `first` to `last`.
void chargeElements(lua_State *state, lua_Integer first, lua_Integer last)
{
    const lua_Unsigned count =
        last < first ? 0 : static_cast<lua_Unsigned>(last) - static_cast<lua_Unsigned>(first);
    const auto most = static_cast<lua_Unsigned>(std::numeric_limits<qint64>::max());
    LuaRun::of(state).charge(state, 1 + static_cast<qint64>(qMin(count, most - 1)));
}

// The number of elements, of a table whose own it is: `__len` may say a different one each time it is asked.
lua_Integer lengthOfTable(lua_State *state, int argument)
{
    luaL_checktype(state, argument, LUA_TTABLE);
    luaL_argcheck(state, luaL_getmetafield(state, argument, "__len") == LUA_TNIL, argument,
                  "a table without __len is expected");
    return static_cast<lua_Integer>(lua_rawlen(state, argument));
}

int boundedShift(lua_State *state) // insert and remove
{
    chargeElements(state, 1, lengthOfTable(state, 1));
    return callOriginal(state);
}

int boundedConcat(lua_State *state)
{
    const lua_Integer length = lengthOfTable(state, 1);
    const lua_Integer first = luaL_optinteger(state, 3, 1);
    chargeElements(state, first, luaL_optinteger(state, 4, length));
    return callOriginal(state);
}

int boundedMove(lua_State *state)
{
    const lua_Integer first = luaL_checkinteger(state, 2);
    chargeElements(state, first, luaL_checkinteger(state, 3));
    return callOriginal(state);
}

int chargedLess(lua_State *state)
{
    const auto bytes = [state](int argument) {
        return lua_type(state, argument) == LUA_TSTRING ? static_cast<qint64>(lua_rawlen(state, argument))
                                                        : 0;
    };
    LuaRun::of(state).charge(state, 1 + qMin(bytes(1), bytes(2)) / 16);
    lua_pushboolean(state, lua_compare(state, 1, 2, LUA_OPLT));
    return 1;
}

int boundedSort(lua_State *state)
{
    chargeElements(state, 1, lengthOfTable(state, 1));
    lua_settop(state, 2);
    if (lua_isnil(state, 2)) {
        lua_pushcfunction(state, chargedLess);
        lua_replace(state, 2);
    } else {
        luaL_argcheck(state, lua_isfunction(state, 2) && !lua_iscfunction(state, 2), 2,
                      "a function of the macro's own is expected");
    }
    return callOriginal(state);
}

// A finalizer would run with no bound at all.
int boundedSetMetatable(lua_State *state)
{
    if (lua_istable(state, 2)) {
        lua_pushliteral(state, "__gc");
        luaL_argcheck(state, lua_rawget(state, 2) == LUA_TNIL, 2, "finalizers (__gc) are not available");
        lua_pop(state, 1);
    }
    return callOriginal(state);
}

int boundedLoad(lua_State *state)
{
    luaL_checktype(state, 1, LUA_TSTRING);
    const auto length = static_cast<qint64>(lua_rawlen(state, 1));
    LuaRun &run = LuaRun::of(state);
    luaL_argcheck(state, length <= run.limits().text, 1, "the text is too long");
    run.charge(state, 1 + length);
    if (lua_gettop(state) < 3)
        lua_settop(state, 3);
    lua_pushliteral(state, "t");
    lua_replace(state, 3);
    return callOriginal(state);
}

struct Bound
{
    const char *name;
    lua_CFunction function; // null: the name is taken away
};

// Puts the bounds into the table on top of the stack, and takes it off.
template <std::size_t count>
void setBounds(lua_State *state, const Bound (&bounds)[count])
{
    for (const Bound &bound : bounds) {
        if (bound.function != nullptr) {
            lua_getfield(state, -1, bound.name);
            lua_pushcclosure(state, bound.function, 1);
        } else {
            lua_pushnil(state);
        }
        lua_setfield(state, -2, bound.name);
    }
    lua_pop(state, 1);
}

} // namespace

double patternSteps(std::size_t subjectLength, const char *pattern, std::size_t patternLength,
                    bool isAnchored)
{
    const char *p = pattern;
    const char *end = pattern + patternLength;
    int choices = 1;
    double stepsAChoice = static_cast<double>(patternLength) + 1;
    if (isAnchored && p != end && *p == '^') {
        choices = 0;
        ++p;
    }
    while (p != end) {
        if (*p == '[') {
            p = skipSet(p, end);
        } else if (*p == '%' && p + 1 != end) {
            const bool isBalance = p[1] == 'b';
            if (isBalance || (p[1] >= '0' && p[1] <= '9'))
                stepsAChoice *= static_cast<double>(subjectLength) + 1;
            // Behind "%b" stand the two delimiters, which may be any characters: "%b[]" has no set.
            p += qMin(isBalance ? std::ptrdiff_t(4) : std::ptrdiff_t(2), end - p);
        } else {
            choices += isRepetition(*p) ? 1 : 0;
            ++p;
        }
    }
    double ways = 1;
    for (int i = 1; i <= choices; ++i)
        ways *= (static_cast<double>(subjectLength) + i) / i;
    return ways * stepsAChoice;
}

void openSandbox(lua_State *state)
{
    const struct
    {
        const char *name;
        lua_CFunction open;
    } libraries[] = {{LUA_GNAME, luaopen_base},       {LUA_COLIBNAME, luaopen_coroutine},
                     {LUA_TABLIBNAME, luaopen_table}, {LUA_STRLIBNAME, luaopen_string},
                     {LUA_MATHLIBNAME, luaopen_math}, {LUA_UTF8LIBNAME, luaopen_utf8}};
    for (const auto &library : libraries) {
        luaL_requiref(state, library.name, library.open, 1);
        lua_pop(state, 1);
    }

    lua_pushglobaltable(state);
    setBounds(state, {{"collectgarbage", nullptr},
                      {"dofile", nullptr},
                      {"loadfile", nullptr},
                      {"warn", nullptr},
                      {"load", boundedLoad},
                      {"setmetatable", boundedSetMetatable}});
    lua_getglobal(state, LUA_STRLIBNAME);
    setBounds(state, {{"dump", nullptr},
                      {"find", boundedFind},
                      {"match", boundedPattern},
                      {"gmatch", boundedGmatch},
                      {"gsub", boundedPattern},
                      {"rep", boundedRep}});
    lua_getglobal(state, LUA_TABLIBNAME);
    setBounds(state, {{"concat", boundedConcat},
                      {"insert", boundedShift},
                      {"remove", boundedShift},
                      {"move", boundedMove},
                      {"sort", boundedSort}});
    lua_getglobal(state, LUA_MATHLIBNAME); // what some builds of Lua keep of earlier versions
    setBounds(state, {{"atan2", nullptr},
                      {"cosh", nullptr},
                      {"frexp", nullptr},
                      {"ldexp", nullptr},
                      {"log10", nullptr},
                      {"pow", nullptr},
                      {"sinh", nullptr},
                      {"tanh", nullptr}});
    openFunctions(state);
}

} // namespace panelkit::simulator
