#include "simulator/comm/registerarea.h"

#include <cstring>
#include <mutex>

namespace panelkit::simulator {

namespace {

bool isInside(int index, int count)
{
    return index >= 0 && count >= 1 && index < RegisterArea::size && count <= RegisterArea::size - index;
}

std::size_t byteCount(int words)
{
    return static_cast<std::size_t>(words) * sizeof(std::uint16_t);
}

} // namespace

bool RegisterArea::read(int index, int count, void *words) const
{
    if (!isInside(index, count))
        return false;
    const std::shared_lock<std::shared_mutex> lock(m_mutex);
    std::memcpy(words, m_words.data() + index, byteCount(count));
    return true;
}

bool RegisterArea::write(int index, int count, const void *words)
{
    if (!isInside(index, count))
        return false;
    const std::unique_lock<std::shared_mutex> lock(m_mutex);
    std::memcpy(m_words.data() + index, words, byteCount(count));
    return true;
}

bool RegisterArea::writeBits(int index, int count, const void *words)
{
    if (!isInside(index, count))
        return false;
    const std::unique_lock<std::shared_mutex> lock(m_mutex);
    std::uint16_t *const target = m_words.data() + index;
    std::memcpy(target, words, byteCount(count));
    for (int i = 0; i < count; ++i)
        target[i] = target[i] != 0;
    return true;
}

} // namespace panelkit::simulator
