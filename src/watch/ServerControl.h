#pragma once
// Stopping and restarting a server that the program recorded, from another process than
// its watcher (the status command, the server console). Only the recorded processes are
// ever signalled, and only while they still run.
#include "watch/WatchState.h"

#include <QString>

namespace steward {

enum class ControlOutcome {
    Done,
    NotRunning,
    /// The process did not end in time; it was signalled.
    NoEnd,
};

/// Stops the server of the state file: through its watcher when it has one (which
/// records why), else by SIGTERM and, after a grace, SIGKILL, recording "Stopped".
ControlOutcome stopRecordedServer(const QString& stateFile, int graceMs = 5000);

/// Asks the watcher of the state file to restart its server (SIGHUP); NotRunning when
/// the server has no running watcher.
ControlOutcome restartWatchedServer(const QString& stateFile);

} // namespace steward
