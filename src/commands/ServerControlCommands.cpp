#include "commands/ServerControlCommands.h"

#include "commands/SessionName.h"
#include "commands/WatchedStart.h"
#include "model/Constants.h"
#include "model/FieldIndexes.h"
#include "model/ServerProfile.h"
#include "platform/Clock.h"
#include "platform/Prompts.h"
#include "platform/System.h"
#include "support/AppContext.h"
#include "watch/ServerControl.h"
#include "watch/ServerFolder.h"
#include "watch/WatchState.h"

namespace steward {

namespace {

bool confirmed(AppContext& app, const QString& question)
{
    return app.prompts().message(question + kTail, kProductTitle, Icon::Question, Buttons::YesNo, 1) == Answer::Yes;
}

void inform(AppContext& app, const QString& text)
{
    app.prompts().message(text + kTail, kProductTitle, Icon::Information);
}

/// Starts a server that has no watcher again as it was started, and records it.
bool startAgain(AppContext& app, WatchState state, const QString& stateFile)
{
    qint64 pid = 0;
    QString reason;
    if (!app.services.launcher ||
        !app.services.launcher->startDetached({state.program, state.arguments, state.workingFolder}, &reason, &pid))
        return false;
    state.server = identifyProcess(pid);
    state.phase = WatchState::Phase::Running;
    state.since = app.clock().now();
    state.stoppedReason.clear();
    ++state.restarts;
    return writeWatchState(stateFile, state);
}

} // namespace

QString sessionFileName(const ServerProfile& profile)
{
    return sessionNameAsWritten(completeSessionName(profile.text(F::txtServerConfig(ServerBox::Session))));
}

ServerFolder serverFolderOf(const AppContext& app, const ServerProfile& profile)
{
    return serverFolderFor(app, sessionFileName(profile));
}

QString serverStateText(const AppContext& app, const ServerProfile& profile)
{
    return watchSummary(readWatchState(serverFolderOf(app, profile).stateFile()));
}

void cmdServerStop_Click(AppContext& app, const ServerProfile& profile)
{
    const QString session = sessionFileName(profile);
    const QString stateFile = serverFolderOf(app, profile).stateFile();
    const auto state = readWatchState(stateFile);
    if (!state || serverCondition(*state) == ServerCondition::NotRunning) {
        inform(app, QStringLiteral("The server of %1 is not running").arg(session));
        return;
    }
    if (!confirmed(app, QStringLiteral("Stop the server of %1?").arg(session)))
        return;
    if (stopRecordedServer(stateFile) == ControlOutcome::NoEnd)
        app.prompts().message(QStringLiteral("The server of %1 did not end").arg(session) + kTail, kProductTitle,
                              Icon::Exclamation);
}

void cmdServerRestart_Click(AppContext& app, const ServerProfile& profile)
{
    const QString session = sessionFileName(profile);
    const QString stateFile = serverFolderOf(app, profile).stateFile();
    const auto state = readWatchState(stateFile);
    if (!state || serverCondition(*state) == ServerCondition::NotRunning) {
        inform(app, QStringLiteral("The server of %1 is not running: OK starts it").arg(session));
        return;
    }
    if (!confirmed(app, QStringLiteral("Restart the server of %1?").arg(session)))
        return;
    if (state->watched && restartWatchedServer(stateFile) == ControlOutcome::Done)
        return;
    const bool stopped = stopRecordedServer(stateFile) != ControlOutcome::NoEnd;
    if (!stopped || !startAgain(app, *state, stateFile))
        app.prompts().message(QStringLiteral("Could not restart the server of %1").arg(session) + kTail, kProductTitle,
                              Icon::Exclamation);
}

} // namespace steward
