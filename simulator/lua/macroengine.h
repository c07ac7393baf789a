// The script engine: runs the Lua of a macro, within bounds, and says what it did.
#pragma once

#include "simulator/lua/macroregisters.h"
#include "simulator/lua/macrovalue.h"

#include <QString>

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <optional>

class UExternalFuncCallEvent;

namespace panelkit::simulator {

struct MacroLimits
{
    // Work is counted in instructions of Lua. What the library does at one stroke is counted as so many: an
    // allocation as one for each 256 bytes, a loop over a table as one a step, a register as 50.
    qint64 instructions = 5'000'000;

    // From the begin of the run; what registers take is part of it. Looked at after every 16 instructions and
    // every register.
    std::chrono::milliseconds time{5000};

    std::size_t memory = 4UL * 1024 * 1024; // bytes, all of Lua's own included

    // Bytes of the record of the accesses, which is not Lua's: of each, also of one that failed, the size of
    // a MacroAccess, two for each character of its texts and 96 besides. That is some 300 an access, with
    // which `instructions` end a run first, and 1000 at most. A run that passes this ends for want of memory.
    std::size_t record = 32UL * 1024 * 1024;

    // A pattern function refuses a subject and a pattern that may take more steps than this, by an error of
    // the macro's that it can catch. `patternSteps` in luasandbox.h says how they are counted.
    double patternSteps = 1e8;

    int text = 256 * 1024;  // bytes of UTF-8 of a macro's text, and of one that it loads
    int output = 64 * 1024; // bytes of UTF-8 that are printed; what is more is left out
};

enum class MacroOutcome
{
    Done,
    BadSyntax, // not run at all
    Failed,    // by an error: of Lua's, of its own, or of a register
    TooManyInstructions,
    TooMuchTime,
    TooMuchMemory
};

// One call of getdata or setdata that named a register.
struct MacroAccess
{
    int line = 0; // of the macro's text, from 1; 0 where it is not known, as deep inside of a loaded text
    bool isWrite = false;
    MacroAddress address;
    MacroDataType type = MacroDataType::Bit;
    std::optional<MacroValue> before; // of a write: what stood there, where that is known
    std::optional<MacroValue> value;  // what was read, or what stands there now
    bool isExact = true; // of a write: nothing had to be rounded or cut off; a single is not asked
    QString failure;     // why it could not be done; empty when it was
};

struct MacroResult
{
    MacroOutcome outcome = MacroOutcome::Done;
    int line = 0; // where it ended, of the macro's text, from 1; 0 when it is done or the line is not known
    QString message;                  // why, in one line or more; empty when it is done
    std::deque<MacroAccess> accesses; // in the order of the calls

    bool isDone() const { return outcome == MacroOutcome::Done; }
};

// Runs macros one after the other; none finds anything that another left behind.
//
// A macro has Lua 5.4 without whatever reaches beyond the macro or cannot be bounded: no files, no operating
// system, no modules, no debug interface, no binary chunks, no finalizers (`__gc`), no control of the garbage
// collector. It has besides
//   getdata(link, block, index, station, extra, type)          a number; bits are 0 and 1
//   setdata(link, block, index, station, extra, value, type)   a number or a boolean
// and the types DATA_TYPE_BIT to DATA_TYPE_DF. Both raise an error when the register cannot be reached, when
// its words are no BCD number, when the value is not a number, or when a name is longer than a project's can
// be (192 bytes of a link's and 64 of a block's), which is written down nowhere.
//
// A limit ends the run where it stands: nothing of the macro runs after that, no handler of an error, no
// closing of variables, no coroutine.
class MacroEngine
{
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    using Sink = std::function<void(const QString &line)>; // what the macro prints, a line each

    explicit MacroEngine(MacroRegisters &registers, const MacroLimits &limits = {}, Clock clock = {});

    void setOutput(Sink sink) { m_output = std::move(sink); }

    // `name` stands for the macro in the messages of Lua, in front of the line.
    MacroResult run(const QString &name, const QString &text);

    // What a posted "runLua" event carries: the text that the first of its arguments points to. Nothing when
    // the event asks for another function or carries no text.
    static std::optional<QString> textOf(const UExternalFuncCallEvent &event);

    // Runs that text, if there is one.
    std::optional<MacroResult> run(const QString &name, const UExternalFuncCallEvent &event);

private:
    MacroRegisters &m_registers;
    MacroLimits m_limits;
    Clock m_clock;
    Sink m_output;
};

} // namespace panelkit::simulator
