// What happens by chance in a soak, the same for the same seed.
#pragma once

#include <QtGlobal>

#include <iterator>

namespace panelkit::simulator {

// The draws of one action. Each action has its own, made of the seed and its number, so that what one action
// draws never shifts those after it.
class Chance
{
public:
    Chance(quint64 seed, quint64 action) : m_state(seed ^ action * Q_UINT64_C(0xbf58476d1ce4e5b9)) { bits(); }

    quint64 bits()
    {
        m_state += Q_UINT64_C(0x9e3779b97f4a7c15);
        quint64 mixed = m_state;
        mixed = (mixed ^ mixed >> 30) * Q_UINT64_C(0xbf58476d1ce4e5b9);
        mixed = (mixed ^ mixed >> 27) * Q_UINT64_C(0x94d049bb133111eb);
        return mixed ^ mixed >> 31;
    }

    // A whole number, both ends included.
    int between(int lowest, int highest)
    {
        const quint64 count = static_cast<quint64>(static_cast<qint64>(highest) - lowest) + 1;
        return static_cast<int>(lowest + static_cast<qint64>(bits() % count));
    }

    bool oneIn(int times) { return between(1, times) == 1; }

    // An entry of a list that is not empty.
    template <typename List>
    const auto &of(const List &list)
    {
        return *(std::begin(list) + between(0, static_cast<int>(std::size(list)) - 1));
    }

private:
    quint64 m_state;
};

} // namespace panelkit::simulator
