#pragma once
// How often a crashed server is started again: at most `limit` restarts within a
// sliding window of minutes. The crash past the limit stops the watcher.
#include <QtGlobal>

#include <deque>

namespace steward {

class RestartPolicy {
public:
    RestartPolicy(int limit, int windowMinutes) : m_limit(limit), m_windowMs(qint64(windowMinutes) * 60'000) {}

    /// Counts a crash at the time (milliseconds on a steady clock); true when the server
    /// may be started again, false when that would pass the limit within the window.
    bool allowRestartAfterCrash(qint64 nowMs);
    /// The crashes that the window now holds, the last one included.
    int crashesInWindow() const { return static_cast<int>(m_crashes.size()); }

private:
    int m_limit;
    qint64 m_windowMs;
    std::deque<qint64> m_crashes;
};

} // namespace steward
