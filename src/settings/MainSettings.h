#pragma once
// Pours the settings store into the profile when the main window loads.
namespace steward {
class AppContext;
class ServerProfile;
void GetMainSettings(AppContext& app, ServerProfile& profile);
} // namespace steward
