// The panel's system registers.
#pragma once

#include "simulator/comm/registerarea.h"

#include <array>

namespace panelkit::simulator {

// Area 0 holds the word registers, area 1 the flag registers; addresses run from 0 to 65535, one word each.
class SystemRegisters
{
public:
    // Return false, with nothing copied, for another area and for registers that lie outside of it.
    bool read(int area, int address, int count, void *words) const;
    bool write(int area, int address, int count, const void *words);

private:
    std::array<RegisterArea, 2> m_areas;
};

} // namespace panelkit::simulator
