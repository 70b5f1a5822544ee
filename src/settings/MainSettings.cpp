#include "settings/MainSettings.h"
#include <QtGlobal>

namespace steward {

void GetMainSettings(AppContext& app, ServerProfile& profile)
{
    // Reading the stored settings comes with the settings work; until then the profile
    // keeps its design defaults.
    Q_UNUSED(app);
    Q_UNUSED(profile);
}

} // namespace steward
