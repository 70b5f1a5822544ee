#pragma once
// What the program without a window takes from the system: its seams, its folders and
// its two output streams. main() fills it with the real ones; tests with their own.
#include <QString>

class QTextStream;

namespace steward {

class Clock;
class ProcessLauncher;
class SystemNames;
class DatagramSockets;
class BlockingWait;

struct CtlSystem {
    Clock* clock = nullptr;
    ProcessLauncher* launcher = nullptr;
    SystemNames* names = nullptr;
    DatagramSockets* sockets = nullptr;
    BlockingWait* blockingWait = nullptr;
    /// The program's data folder ($XDG_DATA_HOME/ArenaSteward).
    QString programFolder;
    /// The window's settings file ($XDG_CONFIG_HOME/ArenaSteward/ArenaSteward.conf).
    QString settingsFile;
    /// The folder of the user's systemd units ($XDG_CONFIG_HOME/systemd/user).
    QString unitFolder;
    /// This program, with its absolute path: the watcher that a watched start runs and
    /// the ExecStart of the service unit.
    QString ownProgram;
    QTextStream* out = nullptr;
    QTextStream* err = nullptr;
};

} // namespace steward
