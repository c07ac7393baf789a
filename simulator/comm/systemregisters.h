// The panel's system registers.
#pragma once

#include "simulator/comm/registerarea.h"

#include <array>

namespace panelkit::simulator {

constexpr int wordArea = 0;
constexpr int flagArea = 1;

// Registers and flags by which a screen's settings pages reach the library.
constexpr int linkNumberRegister = 64000;   // whose parameters stand behind it
constexpr int panelAddressRegister = 64052; // four each: IP address, subnet mask, gateway, DNS server
constexpr int saveLinkFlag = 60212;
constexpr int saveAddressFlag = 60213;
constexpr int reloadAddressFlag = 60214;

// Both areas; addresses run from 0 to 65535, one word each.
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
