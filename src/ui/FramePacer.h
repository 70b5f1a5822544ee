#pragma once
// Paces the hand-made repaints of a window whose work holds the event loop: at most one
// a frame. Each repaint of a window is a trip to the display server and a text layout,
// far dearer than the step of work that changed a text, and no eye sees more than one
// picture a frame.
#include <QtGlobal>
#include <functional>

namespace steward {

class FramePacer {
public:
    /// Milliseconds on a clock that only goes forward.
    using Clock = std::function<qint64()>;
    /// A frame of a 60 Hz display, rounded down.
    static constexpr qint64 kFrameMs = 16;

    /// Without a clock the pacer runs on the system's monotonic clock.
    explicit FramePacer(Clock clock = {});

    /// True when no paint was made yet, or the last one is a frame old.
    bool frameDue() const;
    /// Notes a paint made now.
    void painted();

private:
    Clock m_clock;
    bool m_painted = false;
    qint64 m_lastPaint = 0;
};

} // namespace steward
