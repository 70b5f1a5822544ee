#pragma once
// What the program knows of a server it started: the processes, when it started, its
// restarts and its last crash. The watcher (or the start itself) writes it beside the
// server's log; the status command and the server console read it.
#include "platform/ProcessIdentity.h"

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace steward {

struct WatchState {
    enum class Phase { Running, Restarting, Stopped };

    QString session;
    /// The named profile the server belongs to; empty for the default profile.
    QString profile;
    QString host; ///< the address the server was told to use, empty for this computer
    int port = 0;

    bool watched = false;
    ProcessIdentity watcher;
    ProcessIdentity server;
    /// What was started, so that a server can be started again as it was.
    QString program;
    QStringList arguments;
    QString workingFolder;

    Phase phase = Phase::Stopped;
    QDateTime since;
    int restarts = 0;
    QDateTime lastCrash;
    QString lastCrashCause; ///< "signal 11" or "exit status 3"
    QString stoppedReason;  ///< why it is stopped, empty while it runs

    QJsonObject toJson() const;
    static WatchState fromJson(const QJsonObject& json);
};

/// Writes the state in one step, readable by its owner only.
bool writeWatchState(const QString& file, const WatchState& state, QString* error = nullptr);
/// The state in the file, or none when there is no readable state.
std::optional<WatchState> readWatchState(const QString& file);

/// Where a recorded server stands now, after a look at its processes.
enum class ServerCondition { Running, Restarting, NotRunning };
ServerCondition serverCondition(const WatchState& state);

/// The state in one line: "Running since 14:02 · 2 restarts · last crash 13:58,
/// signal 11", "Restarting after a crash at 13:58, signal 11", the reason it stopped,
/// or "Not running".
QString watchSummary(const std::optional<WatchState>& state);

/// The cause of a process's end as the crash log and the summary say it.
QString endCause(bool bySignal, int code);

} // namespace steward
