// One run of a macro: its Lua state, and the bounds that end it.
//
// A bound that is reached ends the run by a long jump out of the state, not by an error of Lua's: a macro can
// catch an error, and would go on. The state is abandoned where it stands. Therefore nothing with a
// destructor may be alive in a function that Lua calls while it calls Lua's interface or `charge`; Lua's own
// errors ask for the same.
#pragma once

#include "simulator/lua/luamemory.h"
#include "simulator/lua/macroengine.h"

#include <lua.hpp>

#include <QByteArray>

#include <chrono>
#include <csetjmp>
#include <cstddef>

namespace panelkit::simulator {

class LuaRun
{
public:
    LuaRun(MacroRegisters &registers, const MacroLimits &limits, const MacroEngine::Clock &clock,
           const MacroEngine::Sink &output);
    LuaRun(const LuaRun &) = delete;
    LuaRun &operator=(const LuaRun &) = delete;

    MacroResult run(const QString &name, const QString &text);

    // The rest is for the functions that Lua calls.
    static LuaRun &of(lua_State *state);

    const MacroLimits &limits() const { return m_limits; }

    // Counts work, and ends the run when a bound is reached.
    void charge(lua_State *state, qint64 instructions);

    // The line of the macro's text that is being run; 0 when none is, or when a hundred calls in texts that
    // it has loaded lie above it.
    int currentLine(lua_State *state) const;

    // Does what `access` says, adds to it what came of that, and writes it down. False when it failed;
    // `failure` then says what and why.
    bool perform(MacroAccess access);
    const MacroAccess &lastAccess() const { return m_result.accesses.back(); }
    const char *failure() const { return m_failure.constData(); }

    void print(const char *text, std::size_t length);

private:
    void execute();
    bool isRecordFull() const { return m_recordSize > m_limits.record; }

    // Fills the result; `hasError` when there is an error on top of the stack. A null state has no line.
    void end(lua_State *state, MacroOutcome outcome, bool hasError);
    [[noreturn]] void stop(lua_State *state, MacroOutcome outcome);
    static int panic(lua_State *state);

    MacroRegisters &m_registers;
    const MacroLimits &m_limits;
    const MacroEngine::Clock &m_clock;
    const MacroEngine::Sink &m_output;

    QByteArray m_chunkName;
    QByteArray m_text;
    QByteArray m_message;
    QByteArray m_failure;
    MacroResult m_result;

    std::jmp_buf m_exit;
    LuaMemory m_memory;
    qint64 m_instructions = 0; // charged; those for memory come on top
    qint64 m_nextTimeCheck = 0;
    std::chrono::steady_clock::time_point m_deadline;
    int m_printed = 0;            // bytes
    std::size_t m_recordSize = 0; // of the accesses
};

} // namespace panelkit::simulator
