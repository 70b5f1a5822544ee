#include "commands/CancelCommand.h"

#include "bots/BotRoster.h"
#include "messaging/ArmMessaging.h"
#include "platform/WindowHost.h"

namespace steward {

void cmdCancel_Click(AppContext& app, ServerProfile& profile, WindowHost& windows)
{
    closeMessagingSocket(profile);
    // The roster is the one thing kept on the way out.
    saveLastBots(app, profile);
    windows.closeAllForms();
}

} // namespace steward
