#include "simulator/comm/internalstorage.h"

namespace panelkit::simulator {

std::size_t InternalStorage::blockNumber(QLatin1String block)
{
    std::size_t number = 0;
    while (number < noBlock && block != QLatin1String(blockNames[number]))
        ++number;
    return number;
}

bool InternalStorage::hasBlock(QLatin1String block)
{
    return blockNumber(block) != noBlock;
}

bool InternalStorage::read(QLatin1String block, int index, int count, void *words) const
{
    const std::size_t number = blockNumber(block);
    return number != noBlock && m_blocks[number].read(index, count, words);
}

bool InternalStorage::write(QLatin1String block, int index, int count, const void *words)
{
    const std::size_t number = blockNumber(block);
    if (number == noBlock)
        return false;
    return number == 0 ? m_blocks[number].writeBits(index, count, words)
                       : m_blocks[number].write(index, count, words);
}

} // namespace panelkit::simulator
