#pragma once
// The batch file and the shell script that start the server without the program.
// Their command lines are their own: always a dedicated Internet server, the memory
// values as their leading numbers, unrounded, the port as typed unless its leading
// number is 0.
#include <QString>

namespace steward {

class AppContext;
class ServerProfile;

/// What both scripts read from the profile at the moment of the command.
struct ScriptValues {
    QString port; ///< txtServerConfig(12), "28070" when its leading number is 0
    QString zone; ///< the leading numbers of the memory fields as shortest decimal text
    QString hunk;
    QString sound;
    QString ip;      ///< txtServerConfig(16); only the batch file writes it
    QString session; ///< txtServerConfig(1) as typed
    bool merc = false;
};

ScriptValues readScriptValues(const ServerProfile& profile);

/// A number as its shortest decimal text: 16 stays 16, 016 gives 16, 32.5 stays 32.5.
QString shortestNumberText(double value);

/// The one line of the batch file, for a session name that is already complete.
QString batchFileLine(const QString& executable, const ScriptValues& values, const QString& session);
/// The lines of the shell script; fileTitle is the script's own name.
QStringList shellScriptLines(AppContext& app, const ScriptValues& values, const QString& session,
                             const QString& fileTitle);

} // namespace steward
