#pragma once
// The "&Close" button.
namespace steward {

class AppContext;
class ServerProfile;
class WindowHost;

/// Writes nothing to the store and asks nothing, whatever the change mark says; closes
/// the message socket, keeps the bot roster in lastbots.csv, then closes all windows.
void cmdCancel_Click(AppContext& app, ServerProfile& profile, WindowHost& windows);

} // namespace steward
