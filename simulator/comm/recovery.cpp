#include "simulator/comm/recovery.h"

#include <algorithm>

namespace panelkit::simulator {

void Recovery::answered()
{
    *this = Recovery();
}

void Recovery::failed(Time now, int retries, const RetryPauses &pauses)
{
    if (!m_isAway && m_failuresInARow++ < retries)
        return;
    m_pause = m_isAway ? std::min(m_pause * 2, pauses.longest) : std::min(pauses.first, pauses.longest);
    m_isAway = true;
    m_nextTry = now + m_pause;
}

} // namespace panelkit::simulator
