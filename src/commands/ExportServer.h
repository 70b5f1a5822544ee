#pragma once
// File > Export: writes the session file without starting the server and shows it.
namespace steward {
class AppContext;
class ServerProfile;
void mnuExportServer_Click(AppContext& app, ServerProfile& profile);
} // namespace steward
