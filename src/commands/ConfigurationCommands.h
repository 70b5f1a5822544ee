#pragma once
// The configuration menu's Load and the "&Reset" button: both change the store, which
// reaches the window only through a restart.
#include "platform/WindowHost.h"

namespace steward {

class AppContext;

/// Reads a file the user chooses into the store and restarts the program. Returns the
/// outcome of the restart, or MainWindowOpen when there was none (the window stays).
StartupOutcome LoadConfiguration(AppContext& app, WindowHost& windows);
/// The "&Reset" button: after a warning, deletes every key of the store one by one and
/// restarts into a first run. Returns as LoadConfiguration does.
StartupOutcome cmdReset_Click(AppContext& app, WindowHost& windows);

} // namespace steward
