// A display that is drawn again and again.
#pragma once

#include <chrono>
#include <functional>

namespace panelkit::simulator {

enum class Drawing
{
    InPlace, // over the one before, on a terminal
    Below    // one behind the other, for pipes and files
};

// Calls `draw` at once and then after each `interval`, until the loop ends, as
// quitOnInterrupt() has it. In place only when
// `mayOverdraw` is true and stdout is a terminal, which is afterwards as it was before. To be called once.
void drawUntilInterrupt(std::chrono::milliseconds interval, bool mayOverdraw,
                        const std::function<void(Drawing)> &draw);

} // namespace panelkit::simulator
