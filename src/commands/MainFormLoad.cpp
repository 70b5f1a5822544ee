#include "commands/MainFormLoad.h"

#include "bots/BotRoster.h"
#include "commands/ProfileLoad.h"
#include "maps/MapTree.h"
#include "settings/MainSettings.h"
#include "support/AppContext.h"
#include "support/Strings.h"

namespace steward {

void MainFormLoad(AppContext& app, ServerProfile& profile, FormLoadHost& host)
{
    // Each step is one statement of the load: after an index out of range the load goes
    // on with the next one.
    runLoadSteps(app, profile,
                 {
                     [&] { LoadMapTree(app, profile, QStringLiteral("Jedi"), QStringLiteral("Jedi")); },
                     [&] {
                         host.setRotationColumns({2205, 50, 0, 0});
                     },
                     [&] { host.setSizeTwips(7490, 9600); },
                     [&] { app.helpFile = app.programFile(kHelpFileName); },
                     [&] { GetMainSettings(app, profile); },
                     [&] { SetupBotControls(app, profile); },
                     [&] { fillConfigLists(app, profile); },
                     [&] { fillStockStartingMaps(profile); },
                     [&] {
                         if (FileExists(app.lastBotsFile()))
                             loadLastBots(app, profile);
                     },
                     [&] { host.centerForm(); },
                     [&] { host.disableCloseMenu(); },
                 });
}

} // namespace steward
