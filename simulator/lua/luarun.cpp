#include "simulator/lua/luarun.h"

#include "simulator/lua/luasandbox.h"

#include <QCoreApplication>

#include <cstring>

namespace panelkit::simulator {

namespace {

constexpr qint64 bytesAnInstruction = 256;
constexpr qint64 instructionsATimeCheck = 16;
constexpr int garbagePause =
    125; // percent of what is in use; not all of Lua waits for it when memory is short
constexpr int levelsForALine = 100; // Lua counts down to each anew, and every access asks
constexpr int longestName = 50;     // bytes; Lua cuts behind 59, also within a character

struct MacroText
{
    Q_DECLARE_TR_FUNCTIONS(MacroText)
};

// What Lua's messages show as the name of the text.
QByteArray chunkName(const QString &name)
{
    QString cut = name;
    while (cut.toUtf8().size() > longestName)
        cut.chop(cut.at(cut.size() - 1).isLowSurrogate() ? 2 : 1);
    return '=' + cut.toUtf8();
}

QString limitMessage(MacroOutcome outcome, const MacroLimits &limits)
{
    switch (outcome) {
    case MacroOutcome::TooManyInstructions:
        return MacroText::tr("stopped after %1 instructions").arg(limits.instructions);
    case MacroOutcome::TooMuchTime:
        return MacroText::tr("stopped after %1 ms").arg(limits.time.count());
    case MacroOutcome::TooMuchMemory:
        return MacroText::tr("stopped: it needs more than %1 KiB of memory").arg(limits.memory / 1024);
    case MacroOutcome::Done:
    case MacroOutcome::BadSyntax:
    case MacroOutcome::Failed:
        break;
    }
    return QString();
}

void countInstruction(lua_State *state, lua_Debug *)
{
    LuaRun::of(state).charge(state, 1);
}

// Takes Lua's own positions off the front of a message: an error that was caught and raised again has
// several. Returns the line of the last, where it was raised first, or 0 when there is none.
int takeLine(QByteArray &message, const QByteArray &name)
{
    const QByteArray before = name + ':';
    int line = 0;
    while (message.startsWith(before)) {
        const int end = static_cast<int>(message.indexOf(": ", static_cast<int>(before.size())));
        const int number = message.mid(before.size(), end - before.size()).toInt();
        if (end < 0 || number <= 0)
            break;
        line = number;
        message.remove(0, end + 2);
    }
    return line;
}

// Of an access in the record, with what three texts take besides their characters.
std::size_t sizeOf(const MacroAccess &access)
{
    const auto characters = access.address.link.size() + access.address.block.size() + access.failure.size();
    return sizeof(MacroAccess) + 96 + static_cast<std::size_t>(characters) * sizeof(QChar);
}

QString described(const MacroAccess &access)
{
    const MacroAddress &address = access.address;
    const QString sentence = access.isWrite ? MacroText::tr("cannot write %1 %2 of \"%3\", station %4: %5")
                                            : MacroText::tr("cannot read %1 %2 of \"%3\", station %4: %5");
    return sentence.arg(address.block, QString::number(address.index), address.link,
                        QString::number(address.station), access.failure);
}

} // namespace

LuaRun::LuaRun(MacroRegisters &registers, const MacroLimits &limits, const MacroEngine::Clock &clock,
               const MacroEngine::Sink &output)
    : m_registers(registers),
      m_limits(limits),
      m_clock(clock),
      m_output(output),
      m_memory(limits.memory)
{
}

MacroResult LuaRun::run(const QString &name, const QString &text)
{
    m_chunkName = chunkName(name);
    m_text = text.toUtf8();
    m_deadline = m_clock() + m_limits.time;
    if (m_text.size() > m_limits.text) {
        m_result.outcome = MacroOutcome::BadSyntax;
        m_message = "the text is longer than " + QByteArray::number(m_limits.text) + " bytes";
    } else {
        execute();
    }
    const QString limit = isRecordFull() && m_result.outcome == MacroOutcome::TooMuchMemory
                              ? MacroText::tr("stopped: the record of its accesses needs more than %1 KiB")
                                    .arg(m_limits.record / 1024)
                              : limitMessage(m_result.outcome, m_limits);
    // As a string of C++: Qt 5 takes a byte array only up to a zero, which a macro's own message may hold.
    m_result.message = limit.isEmpty() ? QString::fromStdString(m_message.toStdString()) : limit;
    return std::move(m_result);
}

LuaRun &LuaRun::of(lua_State *state)
{
    return **static_cast<LuaRun **>(lua_getextraspace(state));
}

void LuaRun::execute()
{
    if (setjmp(m_exit) != 0)
        return;
    lua_State *main = lua_newstate(LuaMemory::allocate, &m_memory);
    if (main == nullptr)
        stop(nullptr, MacroOutcome::TooMuchMemory);
    *static_cast<LuaRun **>(lua_getextraspace(main)) = this; // coroutines inherit it
    lua_atpanic(main, panic);
    lua_gc(main, LUA_GCINC, garbagePause, 0, 0);
    openSandbox(main);

    // A coroutine that ends by an error keeps its stack, so that the line can still be seen.
    lua_State *state = lua_newthread(main);
    const int loaded = luaL_loadbufferx(state, m_text.constData(), static_cast<std::size_t>(m_text.size()),
                                        m_chunkName.constData(), "t");
    if (loaded == LUA_ERRSYNTAX)
        return end(state, MacroOutcome::BadSyntax, true);
    if (loaded != LUA_OK)
        return end(state, MacroOutcome::TooMuchMemory, false);
    lua_sethook(state, countInstruction, LUA_MASKCOUNT, 1);
    int resultCount = 0;
    const int status = lua_resume(state, nullptr, 0, &resultCount);
    if (m_memory.isExhausted() || status == LUA_ERRMEM)
        return end(state, MacroOutcome::TooMuchMemory, false);
    if (status == LUA_YIELD)
        m_message = "attempt to yield from outside a coroutine";
    if (status != LUA_OK)
        end(state, MacroOutcome::Failed, status != LUA_YIELD);
}

void LuaRun::end(lua_State *state, MacroOutcome outcome, bool hasError)
{
    m_result.outcome = outcome;
    m_result.line = state != nullptr ? currentLine(state) : 0;
    if (!hasError)
        return;
    const int type = lua_type(state, -1);
    if (type == LUA_TSTRING) {
        std::size_t length = 0;
        const char *message = lua_tolstring(state, -1, &length);
        m_message = QByteArray(message, static_cast<int>(length));
    } else {
        m_message = QByteArray("an error that is no text but a ") + lua_typename(state, type);
    }
    // The macro may have asked for another line than the one where the error was raised.
    if (const int line = takeLine(m_message, m_chunkName.mid(1)))
        m_result.line = line;
    if (m_message.isEmpty())
        m_message = "an error without a text";
}

void LuaRun::stop(lua_State *state, MacroOutcome outcome)
{
    end(state, outcome, false);
    std::longjmp(m_exit, 1);
}

// Outside of a protected call, that is, before the macro runs, only memory can fail.
int LuaRun::panic(lua_State *state)
{
    of(state).stop(nullptr, MacroOutcome::TooMuchMemory);
}

void LuaRun::charge(lua_State *state, qint64 instructions)
{
    m_instructions += qMin(instructions, m_limits.instructions + 1);
    const qint64 all = m_instructions + m_memory.bytesAskedFor() / bytesAnInstruction;
    if (m_memory.isExhausted() || isRecordFull())
        stop(state, MacroOutcome::TooMuchMemory);
    if (all > m_limits.instructions)
        stop(state, MacroOutcome::TooManyInstructions);
    if (all < m_nextTimeCheck)
        return;
    m_nextTimeCheck = all + instructionsATimeCheck;
    if (m_clock() > m_deadline)
        stop(state, MacroOutcome::TooMuchTime);
}

int LuaRun::currentLine(lua_State *state) const
{
    lua_Debug frame;
    for (int level = 0; level < levelsForALine && lua_getstack(state, level, &frame) != 0; ++level) {
        lua_getinfo(state, "Sl", &frame);
        if (frame.currentline > 0 && std::strcmp(frame.source, m_chunkName.constData()) == 0)
            return frame.currentline;
    }
    return 0;
}

bool LuaRun::perform(MacroAccess access)
{
    RegisterWords words;
    words.count = wordCountOf(access.type);
    if (!access.isWrite) {
        access.failure = m_registers.read(access.address, words);
    } else if (const auto encoded = encodeValue(access.type, *access.value)) {
        words = encoded->words;
        access.isExact = encoded->isExact;
        std::optional<RegisterWords> before;
        access.failure = m_registers.write(access.address, words, before);
        if (before)
            access.before = decodeValue(access.type, *before);
    } else {
        access.failure = MacroText::tr("the value is not a number (NaN)");
    }
    access.value.reset();
    if (access.failure.isEmpty()) {
        access.value = decodeValue(access.type, words);
        if (!access.value)
            access.failure = MacroText::tr("it holds no BCD number");
    }
    m_recordSize += sizeOf(access);
    m_failure = access.failure.isEmpty() ? QByteArray() : described(access).toUtf8();
    m_result.accesses.push_back(std::move(access));
    return m_failure.isEmpty();
}

void LuaRun::print(const char *text, std::size_t length)
{
    const int left = m_limits.output - m_printed;
    if (!m_output || left < 0)
        return;
    const bool fits = length < static_cast<std::size_t>(left);
    m_printed = fits ? m_printed + static_cast<int>(length) + 1 : m_limits.output + 1;
    m_output(fits ? QString::fromUtf8(text, static_cast<int>(length))
                  : MacroText::tr("(what else it prints is left out)"));
}

} // namespace panelkit::simulator
