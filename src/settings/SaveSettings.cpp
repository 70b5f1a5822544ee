#include "settings/SaveSettings.h"

#include "shell/ServerProfile.h"

namespace steward {

void SaveMainSettings(AppContext& app, ServerProfile& profile)
{
    // Saving comes with the settings work.
    Q_UNUSED(app);
    Q_UNUSED(profile);
}

void cmdDefault_Click(AppContext& app, ServerProfile& profile)
{
    SaveMainSettings(app, profile);
    profile.setConfigurationChanged(false);
}

} // namespace steward
