#include "watch/ServerWatcher.h"

#include "platform/Clock.h"
#include "platform/IdlePages.h"
#include "watch/PrivateFile.h"

#include <csignal>
#include <unistd.h>

namespace steward {

ServerWatcher::ServerWatcher(const ServerFolder& folder, const WatchState& session, const Options& options,
                             Clock& clock, QObject* parent)
    : QObject(parent),
      m_folder(folder),
      m_options(options),
      m_clock(clock),
      m_policy(options.restartLimit, options.windowMinutes),
      m_log(folder.serverLog(), options.logLimit)
{
    m_state.session = session.session;
    m_state.profile = session.profile;
    m_state.host = session.host;
    m_state.port = session.port;
    m_state.watched = true;
    m_state.watcher = identifyProcess(::getpid());
    m_steady.start();
    m_restartTimer.setSingleShot(true);
    connect(&m_restartTimer, &QTimer::timeout, this, &ServerWatcher::relaunchNow);
    m_idleTimer.setSingleShot(true);
    m_idleTimer.setInterval(kIdleAfterMs);
    connect(&m_idleTimer, &QTimer::timeout, this, [] { releaseIdlePages(); });
    m_killTimer.setSingleShot(true);
    connect(&m_killTimer, &QTimer::timeout, this, [this] {
        if (m_process)
            m_process->kill();
    });
}

ServerWatcher::~ServerWatcher()
{
    if (m_process) {
        m_process->disconnect(this);
        m_process->kill();
        m_process->waitForFinished(m_options.stopGraceMs);
        delete m_process;
    }
}

bool ServerWatcher::start(const LaunchRequest& request, QString* error)
{
    if (m_process) {
        if (error)
            *error = QStringLiteral("the server already runs");
        return false;
    }
    auto* process = new QProcess(this);
    process->setProgram(request.program);
    process->setArguments(request.arguments);
    process->setWorkingDirectory(request.workingFolder);
    process->setStandardInputFile(QProcess::nullDevice());
    process->setProcessChannelMode(QProcess::MergedChannels);
    connect(process, &QProcess::readyReadStandardOutput, this,
            [this, process] { m_log.append(process->readAllStandardOutput()); });
    process->start();
    if (!process->waitForStarted(-1)) {
        if (error)
            *error = process->errorString();
        delete process;
        return false;
    }
    m_process = process;
    connect(process, &QProcess::finished, this, &ServerWatcher::serverEnded);

    m_log.clearLines();
    m_log.note(QStringLiteral("started %1 (pid %2)").arg(request.program).arg(process->processId()));
    m_state.server = identifyProcess(process->processId());
    m_state.program = request.program;
    m_state.arguments = request.arguments;
    m_state.workingFolder = request.workingFolder;
    m_state.phase = WatchState::Phase::Running;
    m_state.since = m_clock.now();
    m_state.stoppedReason.clear();
    saveState();
    // Once the server has settled, the pages that the start read go back to the kernel:
    // a watcher waits for weeks.
    m_idleTimer.start();
    return true;
}

void ServerWatcher::stop()
{
    if (m_over)
        return;
    m_stopping = true;
    m_restartTimer.stop();
    if (m_process)
        terminateServer();
    else
        endWatch(0, QStringLiteral("Stopped"));
}

void ServerWatcher::restart()
{
    if (m_over || m_stopping)
        return;
    if (m_process) {
        m_restartRequested = true;
        terminateServer();
    } else {
        m_restartTimer.stop();
        relaunchNow();
    }
}

void ServerWatcher::terminateServer()
{
    m_process->terminate();
    m_killTimer.start(m_options.stopGraceMs);
}

void ServerWatcher::serverEnded(int code, QProcess::ExitStatus status)
{
    m_killTimer.stop();
    QProcess* ended = m_process;
    m_process = nullptr;
    if (ended) {
        m_log.append(ended->readAllStandardOutput());
        ended->deleteLater();
    }
    const bool bySignal = status == QProcess::CrashExit;
    m_log.note(QStringLiteral("the server ended: %1").arg(endCause(bySignal, code)));

    if (m_stopping) {
        endWatch(0, QStringLiteral("Stopped"));
        return;
    }
    if (m_restartRequested) {
        m_restartRequested = false;
        relaunchNow();
        return;
    }
    if (!bySignal && code == 0) {
        endWatch(0, QStringLiteral("The server quit"));
        return;
    }
    crashed(endCause(bySignal, code));
}

void ServerWatcher::crashed(const QString& cause)
{
    const QDateTime when = m_clock.now();
    m_state.lastCrash = when;
    m_state.lastCrashCause = cause;

    QByteArray report = "The server crashed: " + cause.toUtf8() + "\nTime: " + when.toString(Qt::ISODate).toUtf8() +
                        "\nProgram: " + m_state.program.toUtf8() +
                        "\nArguments: " + m_state.arguments.join(QLatin1Char(' ')).toUtf8() +
                        "\nFolder: " + m_state.workingFolder.toUtf8() + "\n\nThe last lines of its output:\n";
    for (const QString& line : m_log.lastLines())
        report += line.toUtf8() + '\n';
    writePrivateFile(m_folder.newCrashLog(when), report);
    m_folder.pruneCrashLogs(kKeptCrashLogs);

    if (!m_options.restartOnCrash) {
        endWatch(1, QStringLiteral("Stopped after a crash, ") + cause);
        return;
    }
    if (!m_policy.allowRestartAfterCrash(m_steady.elapsed())) {
        endWatch(1, QStringLiteral("Stopped after %1 crashes in %2 minutes")
                        .arg(m_policy.crashesInWindow())
                        .arg(m_options.windowMinutes));
        return;
    }
    m_state.phase = WatchState::Phase::Restarting;
    saveState();
    m_restartTimer.start(m_options.restartDelayMs);
}

void ServerWatcher::relaunchNow()
{
    if (m_over)
        return;
    ++m_state.restarts;
    QString reason;
    if (!m_relaunch || !m_relaunch(&reason)) {
        endWatch(1, QStringLiteral("Could not restart the server: ") + reason);
        return;
    }
}

void ServerWatcher::endWatch(int exitCode, const QString& reason)
{
    if (m_over)
        return;
    m_over = true;
    m_state.phase = WatchState::Phase::Stopped;
    m_state.stoppedReason = reason;
    m_log.note(reason);
    saveState();
    emit finished(exitCode);
}

void ServerWatcher::saveState() { writeWatchState(m_folder.stateFile(), m_state); }

} // namespace steward
