// A macro's text in UTF-8, run within narrow bounds on registers in memory.

#include "fuzz/support/demand.h"
#include "simulator/lua/macroengine.h"
#include "tests/simulator/lua/memoryregisters.h"

#include <cstddef>
#include <cstdint>

using namespace panelkit::simulator;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    MacroLimits limits;
    limits.instructions = 20000;
    limits.memory = 512UL * 1024;
    limits.patternSteps = 10000;
    limits.output = 4096;
    panelkit::testing::MemoryRegisters registers;
    MacroEngine engine(registers, limits, [] { return std::chrono::steady_clock::time_point(); });
    int printed = 0;
    engine.setOutput([&printed](const QString &line) { printed += static_cast<int>(line.toUtf8().size()); });

    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const MacroResult result = engine.run(QStringLiteral("macro"), text);
    demand(result.isDone() == result.message.isEmpty(), "it is done or says why not");
    // Lua ends a line at a carriage return too.
    const auto lines = text.count(QLatin1Char('\n')) + text.count(QLatin1Char('\r')) + 1;
    demand(result.line >= 0 && result.line <= lines, "it ends in a line of the text");
    demand(result.outcome != MacroOutcome::TooMuchTime, "the clock stands still");
    demand(result.outcome != MacroOutcome::BadSyntax || result.accesses.empty(), "a wrong text is not run");
    demand(printed <= 3 * limits.output,
           "it does not print without end"); // a character may become three bytes
    demand(registers.calls.size() <= 2 * static_cast<int>(result.accesses.size()),
           "every access is in the result");
    return 0;
}
