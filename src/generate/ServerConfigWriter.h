#pragma once
// The session file: the console script that the server executes at start.
#include <QString>

namespace steward {

class AppContext;
class ServerProfile;

/// The values that the session file works out and the command line uses again.
struct SessionValues {
    QString sessionName; ///< after blanks became "_" and the whole was lower-cased
    QString fileName;    ///< the session file's full path
    QString cycleFile;   ///< the cycle file's name, empty with auto cycle
    bool merc = false;   ///< "Jedi vs Merc" is ticked
    int zone = 0;        ///< the leading numbers of the memory fields, as 16-bit whole numbers
    int hunk = 0;
    int sound = 0;
    QString ip;          ///< the address field as it stands
    qint32 port = 28070; ///< the port field, trimmed and converted; 28070 when it is empty
};

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

} // namespace steward
