#pragma once
// Writing the session file and what follows it: the server's start, or the file shown.
#include <QString>

namespace steward {

class AppContext;
class ServerProfile;

/// Writes the session file into the base folder, then starts the server (exportOnly
/// false) or shows the file (exportOnly true). sessionName has been checked and ends in
/// ".cfg"; the lower-cased form with "_" for blanks comes back through it.
///
/// The form's pointer shows the hourglass while it runs. False when the map cycle can't
/// be made, when bots meet a server password (the file is cut off there and the
/// hourglass stays until the next run) and after a run-time error, which is reported
/// and leaves what was written on disk; otherwise the result of the follow-up.
bool CreateJediConfiguration(AppContext& app, ServerProfile& profile, bool exportOnly, bool useSavedCycle,
                             QString& sessionName);

/// The text of the box that refuses bots on a server with a password.
QString botsWithPasswordText();

} // namespace steward
