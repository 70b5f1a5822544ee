#include "commands/WatchedStart.h"

#include "bots/BotRoster.h"
#include "bots/BotRosterFile.h"
#include "commands/SessionName.h"
#include "generate/ServerConfigWriter.h"
#include "model/FieldIndexes.h"
#include "model/ServerProfile.h"
#include "platform/Clock.h"
#include "settings/ConfigurationFile.h"
#include "settings/MemorySettingsStore.h"
#include "settings/Profiles.h"
#include "settings/SaveSettings.h"
#include "settings/StartKeys.h"
#include "support/AppContext.h"
#include "support/Errors.h"
#include "support/Strings.h"
#include "watch/ServerFolder.h"
#include "watch/WatchState.h"

#include <QDir>

namespace steward {

namespace {

const QString kPathToJedi = QStringLiteral("PathToJedi");
const QString kPathToServer = QStringLiteral("PathToServer");

/// A whole number in the range, from a text of digits alone.
std::optional<int> numberIn(const QString& text, int low, int high)
{
    bool ok = false;
    const int value = text.trimmed().toInt(&ok);
    if (!ok || value < low || value > high)
        return std::nullopt;
    return value;
}

ServerFolder folderOf(const AppContext& app, const SessionValues& session)
{
    return serverFolderFor(app, session.sessionName);
}

void makeFolder(const ServerFolder& folder)
{
    QString reason;
    if (!folder.make(&reason))
        raiseError(err::PathFileAccess, QStringLiteral("Could not make %1 (%2)").arg(folder.path(), reason));
}

} // namespace

ServerFolder serverFolderFor(const AppContext& app, const QString& sessionName)
{
    if (!app.profileName.isEmpty())
        return ServerFolder(app.programFolder, app.profileName);
    return ServerFolder(app.programFolder, ServerFolder::idForSession(sessionName));
}

std::optional<QString> portTakenBy(const AppContext& app, int port)
{
    const QDir servers(app.programFile(QStringLiteral("servers")));
    for (const QString& folder : servers.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const auto state = readWatchState(servers.filePath(folder + QStringLiteral("/state.json")));
        if (!state || state->port != port || state->profile == app.profileName)
            continue;
        if (serverCondition(*state) != ServerCondition::NotRunning)
            return state->profile.isEmpty() ? kDefaultProfile : state->profile;
    }
    return std::nullopt;
}

bool portFree(AppContext& app, const ServerProfile& profile)
{
    const QString text = trimBlanks(profile.text(F::txtServerConfig(ServerBox::Port)));
    const int port = text.isEmpty() ? 28070 : text.toInt();
    const auto holder = portTakenBy(app, port);
    if (!holder)
        return true;
    warn(app, QStringLiteral("The port %1 is in use by the server of the profile %2").arg(port).arg(*holder));
    return false;
}

std::optional<RestartSettings> restartSettings(const ServerProfile& profile, QString* problem)
{
    const auto limit = numberIn(profile.text(F::txtRestartLimit), 1, kMaxRestartLimit);
    if (!limit) {
        if (problem)
            *problem = QStringLiteral("The restart limit must be a whole number from 1 to %1").arg(kMaxRestartLimit);
        return std::nullopt;
    }
    const auto window = numberIn(profile.text(F::txtRestartWindow), 1, kMaxRestartWindowMinutes);
    if (!window) {
        if (problem)
            *problem = QStringLiteral("The restart window must be a whole number of minutes from 1 to %1")
                           .arg(kMaxRestartWindowMinutes);
        return std::nullopt;
    }
    return RestartSettings{*limit, *window};
}

bool restartSettingsAccepted(AppContext& app, const ServerProfile& profile)
{
    QString problem;
    if (restartSettings(profile, &problem))
        return true;
    warn(app, problem);
    return false;
}

QList<QPair<QString, QString>> profileSettings(AppContext& app, ServerProfile& profile)
{
    MemorySettingsStore memory;
    memory.SaveSetting(kPathToJedi, app.gameFolder);
    memory.SaveSetting(kPathToServer, app.serverExecutable);
    AppContext onMemory = app;
    onMemory.services.store = &memory;
    SaveMainSettings(onMemory, profile);
    saveStartKeys(memory, profile);
    saveExactTexts(memory, profile);
    return memory.GetAllSettings();
}

QString sessionHost(const ServerProfile& profile)
{
    return trimBlanks(profile.text(F::txtServerConfig(ServerBox::Address)));
}

void writeStartedSettings(AppContext& app, ServerProfile& profile, const ServerFolder& folder)
{
    writeConfigurationFile(folder.startedConfiguration(), profileSettings(app, profile));
    saveRosterFile(folder.startedRoster(), rosterBots(profile), RosterForm::Comma);
}

void startWatcher(AppContext& app, ServerProfile& profile, const SessionValues& session)
{
    const ServerFolder folder = folderOf(app, session);
    makeFolder(folder);
    // What the watcher restarts is what OK starts now, saved or not.
    writeStartedSettings(app, profile, folder);

    LaunchRequest watcher;
    watcher.program = app.watcherProgram;
    watcher.arguments = {QStringLiteral("run"), QStringLiteral("--config"), folder.startedConfiguration(),
                         QStringLiteral("--roster"), folder.startedRoster()};
    if (!app.profileName.isEmpty())
        watcher.arguments << QStringLiteral("--profile") << app.profileName;
    if (app.windowSendsMessages && profile.value(F::chkSendMessage) == 1)
        watcher.arguments << QStringLiteral("--no-messages");
    watcher.workingFolder = app.gameFolder;

    QString reason;
    if (!app.services.launcher || !app.services.launcher->startDetached(watcher, &reason))
        raiseError(err::FileNotFound,
                   QStringLiteral("Could not start the watcher %1 (%2)").arg(watcher.program, reason));
}

void recordDetachedStart(AppContext& app, ServerProfile& profile, const SessionValues& session,
                         const LaunchRequest& request, qint64 pid)
{
    const ServerFolder folder = folderOf(app, session);
    if (!folder.make())
        return; // the server runs all the same; only status won't know it
    try {
        writeStartedSettings(app, profile, folder);
    } catch (const RuntimeError&) {
        // The server runs all the same; only a later start from these settings won't.
    }
    if (pid <= 0)
        return;
    WatchState state;
    state.session = session.sessionName;
    state.profile = app.profileName;
    state.host = sessionHost(profile);
    state.port = session.port;
    state.server = identifyProcess(pid);
    state.program = request.program;
    state.arguments = request.arguments;
    state.workingFolder = request.workingFolder;
    state.phase = WatchState::Phase::Running;
    state.since = app.clock().now();
    writeWatchState(folder.stateFile(), state);
}

} // namespace steward
