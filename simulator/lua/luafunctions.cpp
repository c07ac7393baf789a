#include "simulator/lua/luafunctions.h"

#include "macro/helpmacrolua.h"
#include "simulator/lua/luarun.h"
#include "simulator/project/project.h"

#include <limits>

namespace panelkit::simulator {

namespace {

constexpr qint64 instructionsAnAccess = 50;

// In bytes of UTF-8, which are three of a character of UTF-16 at most and two of one of Latin-1. A longer
// name is none of any project's.
constexpr std::size_t longestLink = std::size_t(3) * longestLinkName;
constexpr std::size_t longestBlock = std::size_t(2) * longestBlockName;

// The arguments of a call as Lua holds them: nothing of Qt's may be alive while Lua can raise an error.
struct Arguments
{
    const char *link;
    std::size_t linkLength;
    const char *block;
    std::size_t blockLength;
    int index, station, extra;
    MacroDataType type;
};

int checkInt(lua_State *state, int argument)
{
    const lua_Integer number = luaL_checkinteger(state, argument);
    luaL_argcheck(state,
                  number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max(),
                  argument, "a number of 32 bits is expected");
    return static_cast<int>(number);
}

Arguments checkArguments(lua_State *state, int typeArgument)
{
    Arguments arguments = {};
    arguments.link = luaL_checklstring(state, 1, &arguments.linkLength);
    arguments.block = luaL_checklstring(state, 2, &arguments.blockLength);
    luaL_argcheck(state, arguments.linkLength <= longestLink, 1, "the name of the link is too long");
    luaL_argcheck(state, arguments.blockLength <= longestBlock, 2, "the name of the block is too long");
    arguments.index = checkInt(state, 3);
    arguments.station = checkInt(state, 4);
    arguments.extra = checkInt(state, 5);
    const lua_Integer type = luaL_checkinteger(state, typeArgument);
    luaL_argcheck(state, type >= 0 && type < macroDataTypeCount, typeArgument, "a DATA_TYPE_ is expected");
    arguments.type = static_cast<MacroDataType>(type);
    return arguments;
}

bool perform(LuaRun &run, const Arguments &arguments, const MacroValue *written, int line)
{
    MacroAccess access;
    access.line = line;
    access.isWrite = written != nullptr;
    access.address.link = QString::fromUtf8(arguments.link, static_cast<int>(arguments.linkLength));
    access.address.block = QString::fromUtf8(arguments.block, static_cast<int>(arguments.blockLength));
    access.address.index = arguments.index;
    access.address.station = arguments.station;
    access.address.extra = arguments.extra;
    access.type = arguments.type;
    if (written != nullptr)
        access.value = *written;
    return run.perform(std::move(access));
}

int getData(lua_State *state)
{
    LuaRun &run = LuaRun::of(state);
    run.charge(state, instructionsAnAccess);
    const Arguments arguments = checkArguments(state, 6);
    if (!perform(run, arguments, nullptr, run.currentLine(state)))
        return luaL_error(state, "%s", run.failure());
    const MacroValue &value = *run.lastAccess().value;
    if (const auto *whole = std::get_if<qint64>(&value))
        lua_pushinteger(state, *whole);
    else
        lua_pushnumber(state, std::get<double>(value));
    return 1;
}

MacroValue checkValue(lua_State *state, int argument)
{
    if (lua_isboolean(state, argument))
        return qint64(lua_toboolean(state, argument));
    int isWhole = 0;
    const lua_Integer whole = lua_tointegerx(state, argument, &isWhole);
    if (isWhole != 0)
        return qint64(whole);
    return luaL_checknumber(state, argument);
}

int setData(lua_State *state)
{
    LuaRun &run = LuaRun::of(state);
    run.charge(state, instructionsAnAccess);
    const Arguments arguments = checkArguments(state, 7);
    const MacroValue value = checkValue(state, 6);
    if (!perform(run, arguments, &value, run.currentLine(state)))
        return luaL_error(state, "%s", run.failure());
    return 0;
}

int print(lua_State *state)
{
    const int count = lua_gettop(state);
    luaL_Buffer line;
    luaL_buffinit(state, &line);
    for (int i = 1; i <= count; ++i) {
        if (i > 1)
            luaL_addchar(&line, '\t');
        luaL_tolstring(state, i, nullptr);
        luaL_addvalue(&line);
    }
    luaL_pushresult(&line);
    std::size_t length = 0;
    const char *text = lua_tolstring(state, -1, &length);
    LuaRun &run = LuaRun::of(state);
    run.charge(state, 1);
    run.print(text, length);
    return 0;
}

// In a function of its own: the text must be gone before Lua is called.
void copyTypeName(int type, char (&name)[32])
{
    qstrncpy(name, helpMacroLua::VarTableDataTypeConverty(type).toLatin1().constData(), sizeof(name));
}

} // namespace

void openFunctions(lua_State *state)
{
    lua_register(state, "getdata", getData);
    lua_register(state, "setdata", setData);
    lua_register(state, "print", print);
    for (int type = 0; type < macroDataTypeCount; ++type) {
        char name[32];
        copyTypeName(type, name);
        lua_pushinteger(state, type);
        lua_setglobal(state, name);
    }
}

} // namespace panelkit::simulator
