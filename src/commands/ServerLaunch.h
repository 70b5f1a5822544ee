#pragma once
// What follows a written session file: the server's start, or the file shown.
#include "generate/ServerCommandLine.h"
#include "platform/System.h"

#include <functional>

namespace steward {
class AppContext;
class ServerProfile;
struct SessionValues;

/// Starts the server with the command line that the profile calls for, then arms the
/// messaging when chkSendMessage is 1. A start that fails raises a RuntimeError for the
/// caller's error road; with no server type selected nothing is started.
bool startServerAfterConfiguration(AppContext& app, ServerProfile& profile, const SessionValues& session);
/// Says that the exported session file has been created and opens it in the desktop's
/// text editor.
bool showExportedConfiguration(AppContext& app, ServerProfile& profile, const SessionValues& session);

/// Creates an empty Default.cfg in the base folder when there is none.
void EnsureDefaultCfg(AppContext& app);

/// The command line of a launch with these session values.
ServerCommand launchCommand(AppContext& app, const ServerProfile& profile, const SessionValues& session,
                            int serverType);

/// The program to start for a command: GameFolder/executable when that file exists,
/// else the bare name; the working folder is GameFolder.
LaunchRequest launchRequest(AppContext& app, const ServerCommand& command);

/// The last step of a launch: counts up the retry counter and, when chkSendMessage is 1,
/// arms the messaging. An address in use (10048) tries again until the counter is above
/// 1000, then gives up silently; any other error goes to the caller.
void runMessagingStep(AppContext& app, ServerProfile& profile,
                      const std::function<void(AppContext&, ServerProfile&)>& arm);

/// The retry counter: 16 bits, 0 when the process starts, never reset.
int launchRetryCount();
void setLaunchRetryCount(int count);

} // namespace steward
