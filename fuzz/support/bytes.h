// Takes an input apart, byte by byte from its begin; behind its end it goes on with zeros.
#pragma once

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

class Bytes
{
public:
    Bytes(const std::uint8_t *data, std::size_t size) : m_data(data), m_size(size) {}

    template <typename Number>
    Number number() // in the machine's byte order
    {
        Number value = 0;
        const std::size_t count = std::min(m_size, sizeof(value));
        if (count > 0)
            std::memcpy(&value, m_data, count);
        skip(count);
        return value;
    }

    void fill(char *buffer, std::size_t size)
    {
        const std::size_t count = std::min(m_size, size);
        if (count > 0)
            std::memcpy(buffer, m_data, count);
        skip(count);
    }

    QByteArray rest() const
    {
        return QByteArray(reinterpret_cast<const char *>(m_data), static_cast<int>(m_size));
    }

private:
    void skip(std::size_t count)
    {
        m_data += count;
        m_size -= count;
    }

    const std::uint8_t *m_data;
    std::size_t m_size;
};
