#include "messaging/ArmMessaging.h"

#include "messaging/ServerMessaging.h"
#include "model/ServerProfile.h"

#include <QVariant>

namespace steward {

void ArmServerMessaging(AppContext& app, ServerProfile& profile) { ServerMessaging::of(app, profile).arm(); }

void chkSendMessage_Click(ServerProfile& profile)
{
    // Messages need the program running after the start, so ticking the box keeps it.
    if (profile.isSet(F::chkSendMessage))
        profile.setValue(F::optStartMinimize, 1);
}

void attachMessagingRules(ServerProfile& profile)
{
    const char* const attached = "stewardMessagingRules";
    if (profile.property(attached).toBool())
        return;
    profile.setProperty(attached, true);
    QObject::connect(&profile.field(F::chkSendMessage), &Field::valueChanged, &profile,
                     [p = &profile](Field*) { chkSendMessage_Click(*p); });
}

void closeMessagingSocket(const ServerProfile& profile)
{
    if (ServerMessaging* messaging = ServerMessaging::find(profile))
        messaging->closeSocket();
}

} // namespace steward
