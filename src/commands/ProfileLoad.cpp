#include "commands/ProfileLoad.h"

#include "commands/MainFormLoad.h"

#include "bots/BotRoster.h"
#include "commands/MapCycleCommands.h"
#include "messaging/ArmMessaging.h"
#include "model/OptionRules.h"
#include "bots/BotRosterFile.h"
#include "settings/MainSettings.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/Strings.h"

#include <QDir>

namespace steward {

namespace {
const QString kLoadTag = QStringLiteral("::frmMain.Form_Load(Sub)");
constexpr int kRotationPage = 2;
} // namespace

void fillConfigLists(AppContext& app, ServerProfile& profile)
{
    const QStringList configs = baseFolderConfigs(app);
    for (const QString& name : configs)
        for (int i = profile.lbound(F::cboConfig); i <= profile.ubound(F::cboConfig); ++i)
            profile.field(F::cboConfig(i)).addItem(name);
}

void fillStockStartingMaps(ServerProfile& profile)
{
    Field& list = profile.field(F::cboStartingMap);
    for (const char* map : kStockStartingMaps)
        list.addItem(QString::fromLatin1(map));
    // The list opens on its entry 1, so that an auto cycle always has a map to load.
    list.setText(list.items().value(1));
}

QStringList baseFolderConfigs(const AppContext& app)
{
    const QDir base(app.baseFolder());
    if (!base.exists())
        return {};
    QStringList configs;
    const QStringList files = base.entryList(QDir::Files, QDir::Name | QDir::IgnoreCase);
    for (const QString& name : files)
        if (name.toLower().endsWith(QLatin1String("cfg")))
            configs << name;
    return configs;
}

bool runLoadSteps(AppContext& app, ServerProfile& profile, const std::vector<std::function<void()>>& steps)
{
    profile.setLoading(true);
    bool complete = true;
    for (const auto& step : steps) {
        try {
            step();
        } catch (const RuntimeError& e) {
            if (e.number() == err::IndexOutOfBounds) {
                // A setting that names a row the rotation doesn't have: show that page.
                if (profile.value(F::vsMainTab) != kRotationPage)
                    profile.setValue(F::vsMainTab, kRotationPage);
                continue;
            }
            reportTagged(app, e, kLoadTag);
            complete = false;
            break;
        }
    }
    profile.setLoading(false);
    return complete;
}

void attachProfileRules(AppContext& app, ServerProfile& profile)
{
    attachOptionRules(app, profile);
    attachClickRoutines(app, profile);
    attachMessagingRules(profile);
}

bool loadProfileWithoutWindow(AppContext& app, ServerProfile& profile, const QString& rosterFile)
{
    // The window's load, less the map tree and the window itself.
    return runLoadSteps(app, profile,
                        {
                            [&] { GetMainSettings(app, profile); },
                            [&] { SetupBotControls(app, profile); },
                            [&] { fillConfigLists(app, profile); },
                            [&] { fillStockStartingMaps(profile); },
                            [&] {
                                if (!rosterFile.isEmpty())
                                    replaceRosterBots(profile, loadRosterFile(rosterFile, RosterForm::Comma));
                                else if (FileExists(app.lastBotsFile()))
                                    loadLastBots(app, profile);
                            },
                        });
}

} // namespace steward
