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
    int zone = 0;
    int hunk = 0;
    int sound = 0;
    QString ip;
    qint32 port = 28070;
};

/// Writes the session file into the base folder, then starts the server (exportOnly
/// false) or shows the file (exportOnly true). sessionName has been checked and ends in
/// ".cfg"; the lower-cased form with "_" for blanks comes back through it.
bool CreateJediConfiguration(AppContext& app, ServerProfile& profile, bool exportOnly, bool useSavedCycle,
                             QString& sessionName);

} // namespace steward
