#include "commands/OkCommand.h"

#include "commands/CreateJediConfiguration.h"
#include "generate/ServerConfigWriter.h"
#include "commands/SessionName.h"
#include "commands/WatchedStart.h"
#include "model/FieldIndexes.h"
#include "platform/Prompts.h"
#include "settings/SaveSettings.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "commands/Startup.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/Strings.h"

namespace steward {

namespace {

constexpr int kMapPage = 2;

void showMapPage(ServerProfile& profile)
{
    if (profile.value(F::vsMainTab) != kMapPage)
        profile.setValue(F::vsMainTab, kMapPage);
}

/// The map checks; false after a refusal. Sets useSavedCycle from chkUseINI unless the
/// game cycles the maps itself.
bool mapsReady(AppContext& app, ServerProfile& profile, bool& useSavedCycle)
{
    useSavedCycle = false;
    if (profile.isSet(F::chkMapAutoCycle))
        return true;
    useSavedCycle = profile.isSet(F::chkUseINI);
    if (useSavedCycle) {
        if (!FileExists(profile.text(F::txtServerINI))) {
            warn(app, QStringLiteral("Selected mapcycle file does not exist"));
            return false;
        }
        return true;
    }
    if (profile.field(F::lsvMapRotation).count() == 0) {
        warn(app, QStringLiteral("No maps have been selected"));
        showMapPage(profile);
        return false;
    }
    if (profile.startingMap().isEmpty()) {
        warn(app, QStringLiteral("No Starting map has been selected"));
        showMapPage(profile);
        return false;
    }
    return true;
}

} // namespace

void cmdOk_Click(AppContext& app, ServerProfile& profile, WindowHost& windows)
{
    try {
        bool useSavedCycle = false;
        if (!mapsReady(app, profile, useSavedCycle))
            return;

        QString name = profile.text(F::txtServerConfig(ServerBox::Session));
        if (name.isEmpty()) {
            warn(app, QStringLiteral("A Session name is required"));
            return;
        }
        if (!ValidSessionName(app, name))
            return;
        name = completeSessionName(name);

        askSaveChangedConfiguration_Ok(app, profile);

        if (profile.value(F::chkSendMessage) == 1 &&
            profile.text(F::txtServerConfig(ServerBox::RemotePassword)).isEmpty()) {
            warn(app, QStringLiteral("An rcon password is required to enable server messaging"));
            return;
        }

        if (profile.isSet(F::chkRestartServer) && !restartSettingsAccepted(app, profile))
            return;
        if (!portFree(app, profile))
            return;

        if (!CreateJediConfiguration(app, profile, false, useSavedCycle, name)) {
            app.prompts().message(QStringLiteral("Could not start server!") + kTail, kProductTitle, Icon::Critical);
            return;
        }

        // Messages need the program running, so they keep the window open.
        if (profile.value(F::chkSendMessage) != 0)
            profile.setValue(F::optStartMinimize, 1);
        if (profile.isSet(F::optStartMinimize))
            windows.minimizeMainWindow();
        else
            windows.closeAllForms();
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::frmMain.cmdOk_Click(Sub)"));
    }
}

} // namespace steward
