#include "simulator/lua/luamemory.h"

#include <cstdlib>

namespace panelkit::simulator {

// Stands before each piece of memory.
struct alignas(std::max_align_t) LuaMemory::Block
{
    Block *previous;
    Block *next;
};

LuaMemory::~LuaMemory()
{
    for (Block *block = m_blocks; block != nullptr;) {
        Block *const next = block->next;
        std::free(block);
        block = next;
    }
}

void *LuaMemory::allocate(void *memory, void *block, std::size_t oldSize, std::size_t newSize)
{
    LuaMemory &self = *static_cast<LuaMemory *>(memory);
    Block *known = nullptr;
    if (block != nullptr)
        known = static_cast<Block *>(block) - 1;
    else
        oldSize = 0; // Lua passes the kind of the new object there
    if (newSize == 0) {
        if (known != nullptr)
            self.release(known);
        self.m_size -= oldSize;
        return nullptr;
    }
    if (newSize > oldSize && !self.mayGrow(known, oldSize, newSize))
        return nullptr;
    void *result = self.resize(known, newSize);
    if (result != nullptr) {
        self.m_size += newSize - oldSize; // shrinking included: modulo the width of size_t
        self.m_bytesAskedFor += static_cast<qint64>(newSize);
    }
    return result;
}

bool LuaMemory::mayGrow(const Block *block, std::size_t oldSize, std::size_t newSize)
{
    const bool fits = m_size <= m_limit && newSize - oldSize <= m_limit - m_size;
    const bool isSecondTry = m_isRefused && block == m_refusedBlock && newSize == m_refusedSize;
    m_isExhausted = m_isExhausted || (m_isRefused && !(isSecondTry && fits));
    m_isRefused = !fits;
    m_refusedBlock = block;
    m_refusedSize = newSize;
    return fits && !m_isExhausted;
}

void *LuaMemory::resize(Block *block, std::size_t size)
{
    Block *previous = block != nullptr ? block->previous : nullptr;
    Block *next = block != nullptr ? block->next : m_blocks;
    auto *resized = static_cast<Block *>(std::realloc(block, sizeof(Block) + size));
    if (resized == nullptr)
        return nullptr;
    resized->previous = previous;
    resized->next = next;
    (previous != nullptr ? previous->next : m_blocks) = resized;
    if (next != nullptr)
        next->previous = resized;
    return resized + 1;
}

void LuaMemory::release(Block *block)
{
    (block->previous != nullptr ? block->previous->next : m_blocks) = block->next;
    if (block->next != nullptr)
        block->next->previous = block->previous;
    std::free(block);
}

} // namespace panelkit::simulator
