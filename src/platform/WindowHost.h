#pragma once
// The seam through which start-up and the commands reach the windows: the main
// window's load, showing, minimising and unloading. The windows implement it; tests
// fake it.

namespace steward {

class ServerProfile;

/// What the windows offer to start-up. The windows implement it; tests fake it.
class WindowHost {
public:
    virtual ~WindowHost() = default;
    /// Creates frmMain with a fresh profile and runs its load (MainFormLoad). Returns the
    /// profile, owned by the window.
    virtual ServerProfile* loadMainWindow() = 0;
    virtual void showMainWindow() = 0;
    /// Unloads frmMain alone (the second-instance refusal).
    virtual void unloadMainWindow() = 0;
    /// Unloads every window whose name is not "frmMain", then frmMain.
    virtual void closeAllForms() = 0;
    /// Unloads the map scanner's window if it is loaded.
    virtual void unloadScanner() = 0;
    /// Minimises the main window if it isn't minimised.
    virtual void minimizeMainWindow() = 0;
};

enum class StartupOutcome {
    MainWindowOpen, ///< the program now lives on window events
    EndProcess,     ///< the process ends at once (cancelled dialog, failed first scan, second instance)
    Returned,       ///< an error before the main window: the routine returned without a window
};

} // namespace steward
