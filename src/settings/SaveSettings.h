#pragma once
// Writing the profile to the settings store, and the question that offers it.
namespace steward {
class AppContext;
class ServerProfile;
/// Writes every stored key of the profile in one pass.
void SaveMainSettings(AppContext& app, ServerProfile& profile);
/// The "&Defaults" button: saves, says "Settings have been saved", clears the change mark.
void cmdDefault_Click(AppContext& app, ServerProfile& profile);
} // namespace steward
