// Registers and numbers as a user types them.
#pragma once

#include "simulator/lua/macrovalue.h"
#include "simulator/project/project.h"

#include <optional>

namespace panelkit::simulator {

struct TypedRegister
{
    MacroAddress address;
    MacroDataType type = MacroDataType::Word;
};

// A script variable by its name, or an address as `panelsim show` prints it: "4x5" (link 1), "2/3#4x1",
// "LW110", "4x_bit19.0". A type's name may stand behind a colon ("4x3:float32"); without it a variable has
// its own type, and any other register is a bit or an unsigned word, as its block is. Nothing, with one line
// in `error`, for what is neither.
std::optional<TypedRegister> parseRegister(const Project &project, const QString &text, QString &error);

// A number as Lua reads it: "12", "-3", "0x1F", "2.5e3", and "true" and "false" for 1 and 0. Nothing for
// other texts.
std::optional<MacroValue> parseNumber(const QString &text);

// The number in the fewest digits that tell it from others of its type.
QString numberText(const MacroValue &value);

} // namespace panelkit::simulator
