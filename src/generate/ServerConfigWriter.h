#pragma once
// The session file: the console script that the server executes at start. The writer
// reads the profile and the facts it is given and puts out lines; the bot and ban
// sections between its opening and its closing belong to the routine that runs it.
#include <QString>

#include <functional>

namespace steward {

class Clock;
class LineSink;
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

/// What the session file needs besides the profile.
struct SessionFacts {
    const Clock* clock = nullptr;
    QString serverExecutable;
    /// The session runs a saved cycle; its starting map is asked for when the first map
    /// is written, not before.
    bool useSavedCycle = false;
    std::function<QString()> savedCycleStart;
};

/// The session's values for the command line: the memory fields' leading numbers
/// (16-bit overflow raised), the address, and the port (a port that is no number raised).
void readLaunchValues(const ServerProfile& profile, SessionValues& session);
/// "Jedi vs Merc" is ticked and no box after it is.
bool mercSelected(const ServerProfile& profile);

/// The lines from the heading to the cycle's exec line. session.cycleFile is read; the
/// launch values and merc are filled in on the way. Run-time errors are raised, and the
/// lines before them have reached the sink.
void writeSessionOpening(const ServerProfile& profile, const SessionFacts& facts, SessionValues& session,
                         LineSink& out);
/// The exec lines of the additional configurations and the end of the file.
void writeSessionClosing(const ServerProfile& profile, LineSink& out);

/// "Enable BOT" or "Enable User Defined BOT's" is ticked.
bool sessionWantsBots(const ServerProfile& profile);
/// "Enable BOT" is ticked and the server has a password (blanks count).
bool botsMeetAPassword(const ServerProfile& profile);

} // namespace steward
