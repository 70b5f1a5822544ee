#include "commands/MainFormLoad.h"

#include "bots/BotRoster.h"
#include "maps/MapTree.h"
#include "settings/MainSettings.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/Strings.h"

#include <QDir>
#include <functional>

namespace steward {

namespace {

const QString kLoadTag = QStringLiteral("::frmMain.Form_Load(Sub)");
constexpr int kRotationPage = 2;

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

} // namespace

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

void MainFormLoad(AppContext& app, ServerProfile& profile, FormLoadHost& host)
{
    profile.setLoading(true);

    // Each step is one statement of the load: after an index out of range the load goes
    // on with the next one.
    const std::function<void()> steps[] = {
        [&] { LoadMapTree(app, profile, QStringLiteral("Jedi"), QStringLiteral("Jedi")); },
        [&] { host.setRotationColumns({2205, 50, 0, 0}); },
        [&] { host.setSizeTwips(7490, 9600); },
        [&] { app.helpFile = app.programFile(kHelpFileName); },
        [&] { GetMainSettings(app, profile); },
        [&] { SetupBotControls(app, profile); },
        [&] { fillConfigLists(app, profile); },
        [&] { fillStockStartingMaps(profile); },
        [&] {
            if (FileExists(app.programFile(QStringLiteral("lastbots.csv"))))
                loadLastBots(app, profile);
        },
        [&] { host.centerForm(); },
        [&] { host.disableCloseMenu(); },
    };

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
            break;
        }
    }

    profile.setLoading(false);
}

} // namespace steward
