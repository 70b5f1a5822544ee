#include "commands/ProfileCommands.h"

#include "bots/BotRoster.h"
#include "bots/BotRosterFile.h"
#include "commands/SessionName.h"
#include "commands/ProfileSet.h"
#include "commands/Startup.h"
#include "commands/WatchedStart.h"
#include "messaging/ArmMessaging.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "platform/Prompts.h"
#include "settings/ConfigurationFile.h"
#include "settings/Profiles.h"
#include "settings/SaveSettings.h"
#include "settings/SettingsStore.h"
#include "support/AppContext.h"
#include "support/Errors.h"
#include "watch/ServerFolder.h"
#include "watch/WatchState.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace steward {

namespace {

const QString kLocationKeys[] = {QStringLiteral("PathToJedi"), QStringLiteral("PathToServer"),
                                 QStringLiteral("RunOnce")};

bool asked(AppContext& app, const QString& question)
{
    return app.prompts().message(question + kTail, kProductTitle, Icon::Question, Buttons::YesNo) == Answer::Yes;
}

/// A name for a profile that doesn't exist yet, or none after a cancel or a box.
std::optional<QString> askNewName(AppContext& app, const ProfileSet& profiles, const QString& title,
                                  const QString& offered)
{
    const std::optional<QString> typed =
        app.prompts().askText(title, QStringLiteral("Profile name (letters, digits, - and _):"), offered);
    if (!typed)
        return std::nullopt;
    const QString name = typed->trimmed();
    if (!validProfileName(name)) {
        warn(app, profileNameRule());
        return std::nullopt;
    }
    if (profiles.exists(name)) {
        warn(app, QStringLiteral("A profile named %1 already exists").arg(name));
        return std::nullopt;
    }
    return name;
}

/// True when the profile's server runs: its files are then left as they are.
bool serverRuns(AppContext& app, const QString& name)
{
    const auto state = readWatchState(ServerFolder(app.programFolder, name).stateFile());
    if (!state || serverCondition(*state) == ServerCondition::NotRunning)
        return false;
    warn(app, QStringLiteral("The server of the profile %1 is running: stop it first").arg(name));
    return true;
}

/// Leaves the profile in use as Close leaves the program: the question about changed
/// settings, the message socket closed, the roster kept.
void leaveProfile(AppContext& app, ServerProfile& profile)
{
    askSaveChangedConfiguration_Save(app, profile);
    closeMessagingSocket(profile);
    saveLastBots(app, profile);
}

/// The named profile in use when it may be renamed or deleted; none after the box that
/// says why not (the default profile, or a server that runs).
std::optional<QString> changeableProfile(AppContext& app, const ProfileSet& profiles, const QString& defaultRefusal)
{
    const QString name = profiles.current();
    if (name.isEmpty()) {
        warn(app, defaultRefusal);
        return std::nullopt;
    }
    if (serverRuns(app, name))
        return std::nullopt;
    return name;
}

StartupOutcome reopenOn(AppContext& app, WindowHost& windows, ProfileSet& profiles, const QString& name)
{
    profiles.use(app, name);
    return RestartProgram(app, windows);
}

} // namespace

StartupOutcome mnuProfileNew_Click(AppContext& app, ServerProfile& profile, WindowHost& windows, ProfileSet& profiles)
{
    const auto name = askNewName(app, profiles, QStringLiteral("New Profile"), QString());
    if (!name)
        return StartupOutcome::MainWindowOpen;
    const bool fromCurrent = asked(app, QStringLiteral("Start from the current settings?"));
    try {
        QList<QPair<QString, QString>> rows;
        // The game's place and the first scan are the machine's, not a profile's: a new
        // profile takes them along, from the defaults too.
        if (fromCurrent)
            rows = profileSettings(app, profile);
        const QString file = profiles.settingsFile(*name);
        QDir().mkpath(QFileInfo(file).absolutePath());
        IniSettingsStore store(file);
        SettingsBatch batch(store);
        // The store keeps no start keys and no exact texts: those belong to a start.
        for (const auto& [key, value] : rows)
            if (!key.startsWith(QLatin1String("Exact ")) && !key.startsWith(QLatin1String("Run")))
                store.SaveSetting(key, value);
        for (const QString& key : kLocationKeys)
            if (app.store().HasSetting(key))
                store.SaveSetting(key, app.store().GetSetting(key));
        batch.commit();
        if (fromCurrent) {
            const QString roster = ServerFolder(app.programFolder, *name).path() + QStringLiteral("/lastbots.csv");
            QDir().mkpath(QFileInfo(roster).absolutePath());
            saveRosterFile(roster, rosterBots(profile), RosterForm::Comma);
        }
    } catch (const RuntimeError& e) {
        warn(app, e.description());
        return StartupOutcome::MainWindowOpen;
    }
    leaveProfile(app, profile);
    return reopenOn(app, windows, profiles, *name);
}

StartupOutcome mnuProfileRename_Click(AppContext& app, ServerProfile& profile, WindowHost& windows,
                                      ProfileSet& profiles)
{
    const auto current = changeableProfile(app, profiles, QStringLiteral("The default profile keeps its name"));
    if (!current)
        return StartupOutcome::MainWindowOpen;
    const QString old = *current;
    const auto name = askNewName(app, profiles, QStringLiteral("Rename Profile"), old);
    if (!name)
        return StartupOutcome::MainWindowOpen;
    leaveProfile(app, profile);
    const QString oldFolder = ServerFolder(app.programFolder, old).path();
    const QString newFolder = ServerFolder(app.programFolder, *name).path();
    if (!QFile::rename(profiles.settingsFile(old), profiles.settingsFile(*name)) ||
        (QFileInfo(oldFolder).isDir() && !QDir().rename(oldFolder, newFolder))) {
        warn(app, QStringLiteral("Could not rename the profile %1").arg(old));
        return StartupOutcome::MainWindowOpen;
    }
    return reopenOn(app, windows, profiles, *name);
}

StartupOutcome mnuProfileDelete_Click(AppContext& app, ServerProfile& profile, WindowHost& windows,
                                      ProfileSet& profiles)
{
    const auto current = changeableProfile(app, profiles, QStringLiteral("The default profile can't be deleted"));
    if (!current)
        return StartupOutcome::MainWindowOpen;
    const QString name = *current;
    if (app.prompts().message(QStringLiteral("Delete the profile %1 with its settings?").arg(name) + kTail,
                              kProductTitle, Icon::Question, Buttons::YesNo, 1) != Answer::Yes)
        return StartupOutcome::MainWindowOpen;
    closeMessagingSocket(profile);
    QFile::remove(profiles.settingsFile(name));
    QDir(ServerFolder(app.programFolder, name).path()).removeRecursively();
    return reopenOn(app, windows, profiles, QString());
}

StartupOutcome mnuProfileSwitch_Click(AppContext& app, ServerProfile& profile, WindowHost& windows,
                                      ProfileSet& profiles, const QString& name)
{
    const QString target = name == kDefaultProfile ? QString() : name;
    if (target == profiles.current() || !profiles.exists(target))
        return StartupOutcome::MainWindowOpen;
    leaveProfile(app, profile);
    return reopenOn(app, windows, profiles, target);
}

QString mainWindowTitle(const QString& profileName)
{
    return profileName.isEmpty() ? kProductTitle : kProductTitle + QStringLiteral(" - ") + profileName;
}

} // namespace steward
