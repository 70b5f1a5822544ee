#pragma once
// Copies of the whole settings store in a configuration file (.asc), taking such a
// file back, and wiping the store. These work on the store, never on the profile: a
// changed store reaches the window only through a restart.
#include "shell/Startup.h"

#include <QString>
#include <QStringList>

namespace steward {

class AppContext;
class ServerProfile;
class WindowHost;

/// Writes every key of the store as a line "key,value" into a file the user chooses.
void SaveConfiguration(AppContext& app);

/// The Save tool of the configuration menu: the question about a changed
/// configuration (No leaves the change mark set), then SaveConfiguration.
void UtilitiesConfigurationSave(AppContext& app, ServerProfile& profile);

/// Reads a file the user chooses into the store and restarts the program. Returns the
/// outcome of the restart, or MainWindowOpen when there was none (the window stays).
StartupOutcome LoadConfiguration(AppContext& app, WindowHost& windows);

/// The "&Reset" button: after a warning, deletes every key of the store one by one and
/// restarts into a first run. Returns as LoadConfiguration does.
StartupOutcome cmdReset_Click(AppContext& app, WindowHost& windows);

/// The fields of a configuration file's text, read as a stream: a field ends at a
/// comma or a line end, blanks in front of it are skipped, and a field that opens
/// with a double quote runs to the next one. A value with a comma therefore splits in
/// two. Throws when the fields don't come in pairs (error 62) or there are none (9).
QStringList readConfigurationFields(const QString& text);

/// The warning text of the reset.
QString resetWarningText();

} // namespace steward
