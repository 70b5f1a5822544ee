#pragma once
// The configuration menu's Load and the "&Reset" button, which change the store and
// reach the window only through a restart, and the "&Defaults" button, which saves the
// window's settings into the store.
#include "platform/WindowHost.h"

namespace steward {

class AppContext;
class ServerProfile;

/// Reads a file the user chooses into the store and restarts the program. Returns the
/// outcome of the restart, or MainWindowOpen when there was none (the window stays).
StartupOutcome LoadConfiguration(AppContext& app, WindowHost& windows);
/// The "&Reset" button: after a warning, deletes every key of the store one by one and
/// restarts into a first run. Returns as LoadConfiguration does.
StartupOutcome cmdReset_Click(AppContext& app, WindowHost& windows);
/// The "&Defaults" button: saves, says "Settings have been saved" whatever the save
/// did, and clears the change mark.
void cmdDefault_Click(AppContext& app, ServerProfile& profile);

} // namespace steward
