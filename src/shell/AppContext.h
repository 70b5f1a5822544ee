#pragma once
// The globals that the whole program shares, and the seams to the system. One
// AppContext lives for the process; a restart keeps it and runs start-up again.
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
    DatagramSockets* sockets = nullptr;
    BlockingWait* blockingWait = nullptr;
};

class AppContext {
public:
    explicit AppContext(Services services, QString programFolder,
                        QString programName = QStringLiteral("arena-steward"));

    Services services;

    Prompts& prompts() const { return *services.prompts; }
    Clock& clock() const { return *services.clock; }
    SettingsStore& store() const { return *services.store; }

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
    /// The log file used last.
    QString lastLogFile;
    /// True while the main window's load runs.
    bool formLoading = false;
    /// The process's whole command line as one text. Start-up keeps it here, so that a
    /// restart inside the same process reads the same switch again.
    QString commandLine;
    /// The map scan's progress window (frmScanner), set by the windows; none shows nothing.
    ScanProgress* scanProgress = nullptr;

    /// GameFolder, "/", then the existing child folder named "base" in any case, else "Base".
    QString baseFolder() const;
    /// A file in the program's folder.
    QString programFile(const QString& name) const;
};

/// A child folder of parent whose name equals name without regard to case, or
/// fallback when there is none.
QString findChildFolder(const QString& parent, const QString& name, const QString& fallback);

} // namespace steward
