#pragma once
// The start-up routine: finds the game, runs the first-run scan when due, and creates
// the main window. Also the ways the program restarts and closes its windows.
#include <QString>

namespace steward {

class AppContext;
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

/// The whole start-up routine. commandLine is the whole command line as one text.
StartupOutcome runStartup(AppContext& app, WindowHost& windows, const QString& commandLine);

/// Closes all windows, lets pending events run, runs start-up again, lets pending events run.
StartupOutcome RestartProgram(AppContext& app, WindowHost& windows, const QString& commandLine = {});

/// The first-run text of the start-up routine.
QString firstRunText();

} // namespace steward
