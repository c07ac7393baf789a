// When something that has failed is tried again.
#pragma once

#include <chrono>

namespace panelkit::simulator {

// The pause after a failure: it doubles from `first` to `longest` as long as nothing is answered.
struct RetryPauses
{
    std::chrono::milliseconds first{200};
    std::chrono::milliseconds longest{5000};
};

// What is known of a peer's health. After a failure the next try comes at once, as many times as retries are
// wanted; from then on the peer counts as away, and a pause comes before each further try.
class Recovery
{
public:
    using Time = std::chrono::steady_clock::time_point;

    void answered();
    void failed(Time now, int retries, const RetryPauses &pauses);

    bool isAway() const { return m_isAway; }
    bool mayTry(Time now) const { return !m_isAway || now >= m_nextTry; }
    Time nextTry() const { return m_nextTry; } // long past while the peer is not away

private:
    int m_failuresInARow = 0;
    bool m_isAway = false;
    std::chrono::milliseconds m_pause{0};
    Time m_nextTry{};
};

} // namespace panelkit::simulator
