#pragma once
namespace steward {
class AppContext;
class ServerProfile;
/// Fills the bot page's controls (skill list, spinner) when the main window loads.
void SetupBotControls(AppContext& app, ServerProfile& profile);
/// Loads lastbots.csv from the program's folder into the roster, if the file exists.
void loadLastBots(AppContext& app, ServerProfile& profile);
} // namespace steward
