#include "ui/FramePacer.h"

#include <QElapsedTimer>
#include <memory>

namespace steward {

namespace {
FramePacer::Clock monotonicClock()
{
    auto timer = std::make_shared<QElapsedTimer>();
    timer->start();
    return [timer] { return timer->elapsed(); };
}
} // namespace

FramePacer::FramePacer(Clock clock) : m_clock(clock ? std::move(clock) : monotonicClock()) {}

bool FramePacer::frameDue() const { return !m_painted || m_clock() - m_lastPaint >= kFrameMs; }

void FramePacer::painted()
{
    m_painted = true;
    m_lastPaint = m_clock();
}

} // namespace steward
