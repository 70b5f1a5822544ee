#pragma once
// What follows a written session file: the server's start, or the file shown.
namespace steward {
class AppContext;
class ServerProfile;
struct SessionValues;
/// Starts the server with the command line that the profile calls for.
bool startServerAfterConfiguration(AppContext& app, ServerProfile& profile, const SessionValues& session);
/// Shows the exported session file.
bool showExportedConfiguration(AppContext& app, ServerProfile& profile, const SessionValues& session);
} // namespace steward
