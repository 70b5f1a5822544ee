#pragma once
// The arming of the timed server messages, the last step of a launch.
namespace steward {
class AppContext;
class ServerProfile;
/// Closes the message socket if it is open, points it at the server's address and port
/// and starts the message timer. May raise error 10048 (address in use).
void ArmServerMessaging(AppContext& app, ServerProfile& profile);
} // namespace steward
