#include "watch/RestartPolicy.h"

namespace steward {

bool RestartPolicy::allowRestartAfterCrash(qint64 nowMs)
{
    while (!m_crashes.empty() && nowMs - m_crashes.front() >= m_windowMs)
        m_crashes.pop_front();
    m_crashes.push_back(nowMs);
    return static_cast<int>(m_crashes.size()) <= m_limit;
}

} // namespace steward
