#pragma once
// The OK button: checks that the profile can be launched, offers to save changed
// settings, writes the configuration and starts the server, then minimises the main
// window or closes the program.
namespace steward {
class AppContext;
class ServerProfile;
class WindowHost;
void cmdOk_Click(AppContext& app, ServerProfile& profile, WindowHost& windows);
} // namespace steward
