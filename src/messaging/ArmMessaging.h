#pragma once
// The main window's side of the timed server messages: the arming at the end of a
// launch, the check box's click and the socket's close on the way out.
namespace steward {
class AppContext;
class ServerProfile;
/// Closes the message socket if it is open, points it at the server's address and port
/// and starts the message timer. May raise error 10048 (address in use).
void ArmServerMessaging(AppContext& app, ServerProfile& profile);
/// A ticked chkSendMessage selects optStartMinimize; clearing it changes nothing.
void chkSendMessage_Click(ServerProfile& profile);
/// Runs chkSendMessage_Click on every change of the box, whether the user, the store or
/// other code made it. Call it before the store is read into the profile; a second call
/// does nothing.
void attachMessagingRules(ServerProfile& profile);
/// Closes the message socket of the profile's window if it is open (cmdCancel).
void closeMessagingSocket(const ServerProfile& profile);
} // namespace steward
