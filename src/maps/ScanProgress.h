#pragma once
// What the map scan needs of its progress window frmScanner ("Map Scanner"): shown
// without blocking, an activity text, a progress bar, the form's own busy cursor,
// hidden or unloaded by the caller. The scan holds the event loop, so the window
// paints by hand; it may keep up with the eye rather than with every archive, as long
// as the end of each phase stands on screen. The windows supply one through
// AppContext::scanProgress; without one the scan shows nothing.
#include <QString>

namespace steward {

class AppContext;

class ScanProgress {
public:
    virtual ~ScanProgress() = default;
    /// Loads the form if needed and shows it without blocking.
    virtual void show() = 0;
    virtual void hide() = 0;
    /// Unloads the form; the next show loads a fresh one.
    virtual void unload() = 0;
    /// The activity text lblScannerShow, on screen by the next frame at the latest.
    virtual void setActivity(const QString& text) = 0;
    virtual void setActivityVisible(bool visible) = 0;
    /// The progress bar pctCurrentProg.
    virtual void setMaximum(int maximum) = 0;
    virtual void setValue(int value) = 0;
    /// The busy cursor of the form itself.
    virtual void setBusy(bool busy) = 0;
    /// A phase of the scan has ended: its last text and value go on screen now.
    virtual void phaseDone() {}
};

/// A progress that shows nothing.
class SilentScanProgress final : public ScanProgress {
public:
    void show() override {}
    void hide() override {}
    void unload() override {}
    void setActivity(const QString&) override {}
    void setActivityVisible(bool) override {}
    void setMaximum(int) override {}
    void setValue(int) override {}
    void setBusy(bool) override {}
};

/// The scan window of the program, or a silent one when there is none.
ScanProgress& scanProgress(AppContext& app);

} // namespace steward
