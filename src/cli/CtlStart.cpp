// start and run: what OK does, without a window and without a question.
#include "cli/CtlStart.h"

#include "cli/CtlSession.h"
#include "cli/CtlSystem.h"
#include "commands/OkCommand.h"
#include "commands/WatchedStart.h"
#include "model/FieldIndexes.h"
#include "platform/Clock.h"
#include "platform/TerminationSignals.h"
#include "platform/WindowHost.h"
#include "support/AppContext.h"
#include "watch/ServerWatcher.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLockFile>
#include <QTextStream>

namespace steward {

namespace {

/// No window to minimise or close.
class NoWindows final : public WindowHost {
public:
    ServerProfile* loadMainWindow() override { return nullptr; }
    void showMainWindow() override {}
    void unloadMainWindow() override {}
    void closeAllForms() override {}
    void unloadScanner() override {}
    void minimizeMainWindow() override {}
};

/// Passes starts on and remembers whether one succeeded.
class StartCounter final : public ProcessLauncher {
public:
    explicit StartCounter(ProcessLauncher* next) : m_next(next) {}
    bool startDetached(const LaunchRequest& request, QString* error, qint64* pid) override
    {
        const bool started = m_next && m_next->startDetached(request, error, pid);
        if (started)
            ++starts;
        else if (error)
            lastError = *error;
        return started;
    }
    int starts = 0;
    QString lastError;

private:
    ProcessLauncher* m_next;
};

/// The watcher's own start of the server: a child of this process.
class ChildLauncher final : public ProcessLauncher {
public:
    explicit ChildLauncher(ServerWatcher& watcher) : m_watcher(watcher) {}
    bool startDetached(const LaunchRequest& request, QString* error, qint64*) override
    {
        return m_watcher.start(request, error);
    }

private:
    ServerWatcher& m_watcher;
};

/// After a refusal on the window's own settings: where the settings of the window's
/// last start lie, which hold what the window keeps only while it runs (the starting
/// map above all).
void hintAtStartedSettings(CtlSession& session, const CtlOptions& options)
{
    if (!options.config.isEmpty())
        return;
    const QString started = session.folder().startedConfiguration();
    if (QFileInfo(started).isFile())
        session.fail(QStringLiteral("The settings of the window's last start of %1 are in %2: "
                                    "give them with --config to start that again")
                         .arg(session.sessionName(), started));
}

/// Runs OK on the session; true when it started what it was to start.
bool runOk(CtlSession& session, StartCounter& counter)
{
    session.prompts().reset();
    const int before = counter.starts;
    NoWindows windows;
    cmdOk_Click(session.app(), session.profile(), windows);
    return !session.prompts().refused() && counter.starts > before;
}

// How the watcher restarts a crashed server: the profile's limits, or a refusal.
bool watchOptions(CtlSession& session, const CtlOptions& options, ServerWatcher::Options* watch)
{
    const ServerProfile& profile = session.profile();
    watch->restartOnCrash = profile.isSet(F::chkRestartServer);
    if (watch->restartOnCrash) {
        QString problem;
        const auto limits = restartSettings(profile, &problem);
        if (!limits) {
            session.fail(problem);
            return false;
        }
        watch->restartLimit = limits->limit;
        watch->windowMinutes = limits->windowMinutes;
    }
    watch->restartDelayMs = options.restartDelayMs;
    return true;
}

// One watcher for a server: false, said, when another process holds the lock.
bool lockWatch(CtlSession& session, QLockFile& lock)
{
    lock.setStaleLockTime(0);
    if (lock.tryLock(0))
        return true;
    qint64 pid = 0;
    QString host;
    QString application;
    lock.getLockInfo(&pid, &host, &application);
    session.fail(
        QStringLiteral("The server of %1 is already watched by process %2").arg(session.sessionName()).arg(pid));
    return false;
}

// What state.json first says of the watched server.
WatchState watchStateOf(CtlSession& session)
{
    const ServerProfile& profile = session.profile();
    WatchState where;
    where.session = session.sessionName();
    where.profile = session.app().profileName;
    where.host = sessionHost(profile);
    where.port = profile.text(F::txtServerConfig(ServerBox::Port)).trimmed().isEmpty()
                     ? 28070
                     : profile.text(F::txtServerConfig(ServerBox::Port)).trimmed().toInt();
    return where;
}

} // namespace

int ctlStart(CtlSystem& system, const CtlOptions& options)
{
    CtlSession session(system, options.profile, options.config, options.roster);
    if (!session.load() || !session.readyToStart())
        return ctl_exit::Refused;
    StartCounter counter(system.launcher);
    session.app().services.launcher = &counter;
    if (!runOk(session, counter)) {
        hintAtStartedSettings(session, options);
        return ctl_exit::Refused;
    }
    *system.out << (session.profile().isSet(F::chkRestartServer) ? "Started the watched server of "
                                                                 : "Started the server of ")
                << session.sessionName() << Qt::endl;
    return ctl_exit::Ok;
}

int ctlRun(CtlSystem& system, const CtlOptions& options)
{
    CtlSession session(system, options.profile, options.config, options.roster);
    if (!session.load() || !session.readyToStart())
        return ctl_exit::Refused;
    ServerProfile& profile = session.profile();
    AppContext& app = session.app();

    ServerWatcher::Options watch;
    if (!watchOptions(session, options, &watch))
        return ctl_exit::Refused;
    const ServerFolder folder = session.folder();
    QString reason;
    if (!folder.make(&reason)) {
        session.fail(reason);
        return ctl_exit::Refused;
    }
    QLockFile lock(folder.lockFile());
    if (!lockWatch(session, lock))
        return ctl_exit::Refused;

    // The watcher starts the server itself, and sends the timed messages unless the
    // window that started it sends them.
    app.startsInsideWatcher = true;
    if (options.noMessages)
        profile.setValue(F::chkSendMessage, 0);

    ServerWatcher watcher(folder, watchStateOf(session), watch, *system.clock);
    ChildLauncher child(watcher);
    StartCounter counter(&child);
    app.services.launcher = &counter;
    watcher.setRelaunch([&session, &counter](QString* why) {
        if (runOk(session, counter))
            return true;
        *why = session.prompts().refused() ? session.prompts().refusal() : counter.lastError;
        return false;
    });

    TerminationSignals termination;
    QObject::connect(&termination, &TerminationSignals::terminationRequested, &watcher, &ServerWatcher::stop);
    QObject::connect(&termination, &TerminationSignals::hangup, &watcher, &ServerWatcher::restart);
    int exitCode = ctl_exit::Ok;
    QObject::connect(&watcher, &ServerWatcher::finished, &watcher, [&exitCode](int code) {
        exitCode = code;
        QCoreApplication::exit(code);
    });

    if (!runOk(session, counter)) {
        hintAtStartedSettings(session, options);
        return ctl_exit::Refused;
    }
    *system.out << "Watching the server of " << session.sessionName() << Qt::endl;
    QCoreApplication::exec();
    *system.out << watcher.state().stoppedReason << Qt::endl;
    return exitCode;
}

} // namespace steward
