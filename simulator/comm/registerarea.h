// One block of the panel's own memory.
#pragma once

#include <cstdint>
#include <shared_mutex>
#include <vector>

namespace panelkit::simulator {

// 65536 words, 0 at start. Safe to use from any thread; a read of several words never sees half a write.
class RegisterArea
{
public:
    static constexpr int size = 65536;

    // Copy `count` words from or to `words`, which need not be aligned. Return false, with nothing copied,
    // when they do not lie inside of the area (`count` is at least 1).
    bool read(int index, int count, void *words) const;
    bool write(int index, int count, const void *words);

    // The same for bits kept one a word: whatever is not 0 is kept as 1.
    bool writeBits(int index, int count, const void *words);

private:
    mutable std::shared_mutex m_mutex;
    std::vector<std::uint16_t> m_words = std::vector<std::uint16_t>(size);
};

} // namespace panelkit::simulator
