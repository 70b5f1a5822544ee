#pragma once
// The server console's hold on the server that OK started: its state in one line, and
// Stop and Restart, each asked first.
#include <QString>

namespace steward {

class AppContext;
class ServerFolder;
class ServerProfile;

/// The session file that the profile starts: its name completed with ".cfg", blanks
/// made "_", lower-cased.
QString sessionFileName(const ServerProfile& profile);
/// The program's folder of that session's server.
ServerFolder serverFolderOf(const AppContext& app, const ServerProfile& profile);

/// "Running since 14:02 · 2 restarts · last crash 13:58, signal 11", "Not running", or
/// why it stopped.
QString serverStateText(const AppContext& app, const ServerProfile& profile);

/// Asks "Stop the server of <session>?"; Yes stops it, through its watcher when it has one.
void cmdServerStop_Click(AppContext& app, const ServerProfile& profile);
/// Asks "Restart the server of <session>?"; Yes has its watcher restart it with its
/// files written afresh, or stops a server without a watcher and starts it again as
/// it was started.
void cmdServerRestart_Click(AppContext& app, const ServerProfile& profile);

} // namespace steward
