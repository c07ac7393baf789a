#include "simulator/comm/systemregisters.h"

namespace panelkit::simulator {

bool SystemRegisters::read(int area, int address, int count, void *words) const
{
    return (area == 0 || area == 1) && m_areas[static_cast<std::size_t>(area)].read(address, count, words);
}

bool SystemRegisters::write(int area, int address, int count, const void *words)
{
    return (area == 0 || area == 1) && m_areas[static_cast<std::size_t>(area)].write(address, count, words);
}

} // namespace panelkit::simulator
