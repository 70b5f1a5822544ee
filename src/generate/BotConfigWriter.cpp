#include "generate/BotConfigWriter.h"

#include <QtGlobal>

namespace steward {

bool gbln_MakeBOTConfig(AppContext& app, ServerProfile& profile)
{
    // The bot file comes with the bot work; until then no file is made.
    Q_UNUSED(app);
    Q_UNUSED(profile);
    return false;
}

} // namespace steward
