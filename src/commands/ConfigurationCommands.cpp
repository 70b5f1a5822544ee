#include "commands/ConfigurationCommands.h"

#include "commands/Startup.h"
#include "settings/ConfigurationFile.h"
#include "settings/SaveSettings.h"

namespace steward {

StartupOutcome LoadConfiguration(AppContext& app, WindowHost& windows)
{
    if (!loadConfigurationIntoStore(app))
        return StartupOutcome::MainWindowOpen;
    return RestartProgram(app, windows);
}

StartupOutcome cmdReset_Click(AppContext& app, WindowHost& windows)
{
    if (!resetStore(app))
        return StartupOutcome::MainWindowOpen;
    return RestartProgram(app, windows);
}

void cmdDefault_Click(AppContext& app, ServerProfile& profile) { saveAsDefaults(app, profile); }

} // namespace steward
