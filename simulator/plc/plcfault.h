// What can go wrong with a PLC, by name.
#pragma once

#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace panelkit::simulator {

enum class PlcFault
{
    Late,             // "late": each answer comes after a delay
    Silent,           // "silent": requests are taken and never answered
    CutOff,           // "cut-off": the connection is closed in the middle of an answer
    Truncated,        // "truncated": an answer stops in the middle, the connection stays open
    Short,            // "short": a well-formed answer that says and holds less than was asked for
    WrongTransaction, // "wrong-transaction": an answer to a request that nobody made
    WrongUnit,        // "wrong-unit": an answer in the name of another unit
    Exception,        // "exception": every request is refused with an exception code
    Gone              // "gone": no connection at all; for one unit, that unit is never heard of
};

inline constexpr std::array<std::string_view, 9> plcFaultNames = {
    "late", "silent", "cut-off", "truncated", "short", "wrong-transaction", "wrong-unit", "exception", "gone",
};

std::string_view plcFaultName(PlcFault fault);
std::optional<PlcFault> plcFaultNamed(std::string_view name); // compared exactly

// One fault that is switched on.
struct PlcFaultSetting
{
    static constexpr int allUnits = -1;

    PlcFault fault = PlcFault::Late;
    int unit = allUnits;
    int answers = 0;                       // over after so many faulty answers; 0: no such end
    std::chrono::milliseconds duration{0}; // over after so long; 0: no such end
    std::chrono::milliseconds delay{1500}; // of a late answer
    int exceptionCode = 4;                 // of a refusal: 1 to 11; 4 is "device failure"
};

} // namespace panelkit::simulator
