// The memory of one Lua state: bounded, and given back as a whole.
#pragma once

#include <QtGlobal>

#include <cstddef>

namespace panelkit::simulator {

class LuaMemory
{
public:
    explicit LuaMemory(std::size_t limit) : m_limit(limit) {}
    ~LuaMemory();
    LuaMemory(const LuaMemory &) = delete;
    LuaMemory &operator=(const LuaMemory &) = delete;

    // A lua_Alloc function; `memory` is the LuaMemory. What would pass the limit is refused. Lua then
    // collects its garbage and asks once more; when that does not help, every growth is refused from then on.
    static void *allocate(void *memory, void *block, std::size_t oldSize, std::size_t newSize);

    bool isExhausted() const { return m_isExhausted; }
    qint64 bytesAskedFor() const { return m_bytesAskedFor; } // in all, whatever was given back since

private:
    struct Block;

    bool mayGrow(const Block *block, std::size_t oldSize, std::size_t newSize);
    void *resize(Block *block, std::size_t size);
    void release(Block *block);

    const std::size_t m_limit;
    std::size_t m_size = 0;
    qint64 m_bytesAskedFor = 0;
    bool m_isRefused = false; // the last growth: of this block, to that size
    const Block *m_refusedBlock = nullptr;
    std::size_t m_refusedSize = 0;
    bool m_isExhausted = false;
    Block *m_blocks = nullptr;
};

} // namespace panelkit::simulator
