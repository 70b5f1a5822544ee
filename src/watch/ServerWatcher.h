#pragma once
// The watcher of one server: it starts the server as its child, keeps its output, and
// when the server ends by a signal or with a non-zero status writes a crash log, waits
// and has the server's files written and the server started again, within a limit of
// restarts in a window of minutes. A clean end (status 0) ends the watch. Nothing
// polls: the child's end and its output arrive as events.
#include "platform/System.h"
#include "watch/RestartPolicy.h"
#include "watch/ServerFolder.h"
#include "watch/ServerLog.h"
#include "watch/WatchState.h"

#include <QElapsedTimer>
#include <QObject>
#include <QProcess>
#include <QTimer>

#include <functional>

namespace steward {

class Clock;

class ServerWatcher : public QObject {
    Q_OBJECT
public:
    /// The crash logs kept beside the server's log; older ones go.
    static constexpr int kKeptCrashLogs = 20;

    struct Options {
        bool restartOnCrash = false;
        int restartLimit = 5;
        int windowMinutes = 10;
        int restartDelayMs = 5000;
        qint64 logLimit = ServerLog::kDefaultLimit;
        /// How long a stopped server has to end before it is killed.
        int stopGraceMs = 3000;
    };
    /// Writes the server's files again and starts it through start(); false with the
    /// reason when it could not.
    using Relaunch = std::function<bool(QString* reason)>;

    /// The state's session, address and port are kept; the rest is the watcher's.
    ServerWatcher(const ServerFolder& folder, const WatchState& session, const Options& options, Clock& clock,
                  QObject* parent = nullptr);
    ~ServerWatcher() override;

    void setRelaunch(Relaunch relaunch) { m_relaunch = std::move(relaunch); }

    /// Starts the server as a child; false with the reason when it could not start.
    bool start(const LaunchRequest& request, QString* error);
    /// Stops the server and ends the watch (exit code 0).
    void stop();
    /// Stops the server and starts it again with its files written afresh; not a crash.
    void restart();

    const WatchState& state() const { return m_state; }
    bool serverRunning() const { return m_process != nullptr; }

signals:
    /// The watch is over; the program's exit code.
    void finished(int exitCode);

private:
    void serverEnded(int code, QProcess::ExitStatus status);
    void crashed(const QString& cause);
    void relaunchNow();
    void endWatch(int exitCode, const QString& reason);
    void terminateServer();
    void saveState();

    ServerFolder m_folder;
    Options m_options;
    Clock& m_clock;
    WatchState m_state;
    RestartPolicy m_policy;
    ServerLog m_log;
    Relaunch m_relaunch;
    QProcess* m_process = nullptr;
    QTimer m_restartTimer;
    QTimer m_killTimer;
    QTimer m_idleTimer;
    static constexpr int kIdleAfterMs = 2000;
    QElapsedTimer m_steady;
    bool m_stopping = false;
    bool m_restartRequested = false;
    bool m_over = false;
};

} // namespace steward
