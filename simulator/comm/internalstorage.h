// The panel's own blocks, which screens and macros use like those of a PLC.
#pragma once

#include "simulator/comm/registerarea.h"

#include <QLatin1String>

#include <array>

namespace panelkit::simulator {

// "LB" holds bits, one a word, 0 or 1; "LW", "RWI" and "LWF" hold words. Indexes run from 0 to 65535.
class InternalStorage
{
public:
    static bool hasBlock(QLatin1String block);

    // Return false, with nothing copied, for an unknown block and for words that lie outside of it.
    bool read(QLatin1String block, int index, int count, void *words) const;
    bool write(QLatin1String block, int index, int count, const void *words);

private:
    static constexpr std::array<const char *, 4> blockNames = {"LB", "LW", "RWI", "LWF"};
    static constexpr std::size_t noBlock = blockNames.size();

    static std::size_t blockNumber(QLatin1String block);

    std::array<RegisterArea, blockNames.size()> m_blocks;
};

} // namespace panelkit::simulator
