#include "messaging/ArmMessaging.h"

#include <QtGlobal>

namespace steward {

void ArmServerMessaging(AppContext& app, ServerProfile& profile)
{
    // The socket and the timer come with the messaging work; until then arming does nothing.
    Q_UNUSED(app);
    Q_UNUSED(profile);
}

} // namespace steward
