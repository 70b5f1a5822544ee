#pragma once
// The seams to the system and the program's fixed facts (its folders, the game's
// folder and executable, the command line), shared by the whole program. One
// AppContext lives for the process; a restart keeps it and runs start-up again. State
// of a run lives with the objects that own it: the form's load with the profile, the
// scan's progress with its window.
#include <QString>

namespace steward {

class Prompts;
class Clock;
class SystemNames;
class ProcessLauncher;
class Opener;
class Beeper;
class InstanceGuard;
class SettingsStore;
class ScanProgress;
class DatagramSockets;
class BlockingWait;

struct Services {
    Prompts* prompts = nullptr;
    Clock* clock = nullptr;
    SystemNames* names = nullptr;
    ProcessLauncher* launcher = nullptr;
    Opener* opener = nullptr;
    Beeper* beeper = nullptr;
    InstanceGuard* instances = nullptr;
    SettingsStore* store = nullptr;
    /// The map scan's progress window (frmScanner), set by the windows; none shows nothing.
    ScanProgress* scanProgress = nullptr;
    DatagramSockets* sockets = nullptr;
    BlockingWait* blockingWait = nullptr;
};

/// The error log: the file that the last entry went to, which later entries follow.
class ErrorLog {
public:
    const QString& lastFile() const { return m_lastFile; }
    void setLastFile(const QString& file) { m_lastFile = file; }

private:
    QString m_lastFile;
};

class AppContext {
public:
    explicit AppContext(Services services, QString programFolder,
                        QString programName = QStringLiteral("arena-steward"));

    Services services;

    Prompts& prompts() const { return *services.prompts; }
    Clock& clock() const { return *services.clock; }
    SettingsStore& store() const { return *services.store; }
    ErrorLog& errorLog() { return m_errorLog; }

    /// Folder that holds the game executable; it may or may not end in "/".
    QString gameFolder;
    /// File name, without folder, of the game or dedicated server executable.
    QString serverExecutable;
    /// The per-user data folder of the program (catalogue, level shots, log).
    QString programFolder;
    /// The executable's name without extension.
    QString programName;
    /// The help file that start-up names.
    QString helpFile;
    /// The process's whole command line as one text. Start-up keeps it here, so that a
    /// restart inside the same process reads the same switch again.
    QString commandLine;
    /// The program without a window (arena-stewardctl) that watches a server when
    /// "Restart the server when it stops unexpectedly" is ticked.
    QString watcherProgram = QStringLiteral("arena-stewardctl");
    /// True inside that watcher: the server it starts is its own child, never a further
    /// watcher.
    bool startsInsideWatcher = false;
    /// True where the timed messages are the window's: a watcher that the window starts
    /// then leaves them to the window.
    bool windowSendsMessages = true;
    /// GameFolder, "/", then the existing child folder named "base" in any case, else "Base".
    QString baseFolder() const;
    /// A file in the program's folder.
    QString programFile(const QString& name) const;

    /// The named profile whose settings are in use; empty for the default profile.
    QString profileName;
    /// A file of the profile's own: in the program's folder for the default profile, in
    /// servers/<profile>/ for a named one.
    QString profileFile(const QString& name) const;
    /// The bot roster kept between runs (lastbots.csv) of the profile.
    QString lastBotsFile() const { return profileFile(QStringLiteral("lastbots.csv")); }

private:
    ErrorLog m_errorLog;
};

/// A child folder of parent whose name equals name without regard to case, or
/// fallback when there is none.
QString findChildFolder(const QString& parent, const QString& name, const QString& fallback);

} // namespace steward
