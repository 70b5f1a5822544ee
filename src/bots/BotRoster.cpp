#include "bots/BotRoster.h"

#include <QtGlobal>

namespace steward {

// The roster comes with the bot work; until then the bot page keeps its defaults.
void SetupBotControls(AppContext& app, ServerProfile& profile)
{
    Q_UNUSED(app);
    Q_UNUSED(profile);
}

void loadLastBots(AppContext& app, ServerProfile& profile)
{
    Q_UNUSED(app);
    Q_UNUSED(profile);
}

} // namespace steward
