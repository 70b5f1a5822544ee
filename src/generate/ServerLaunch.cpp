#include "generate/ServerLaunch.h"

#include <QtGlobal>

namespace steward {

// Starting the server and showing exports come with the launch work; until then the
// session file is only written.
bool startServerAfterConfiguration(AppContext& app, ServerProfile& profile, const SessionValues& session)
{
    Q_UNUSED(app);
    Q_UNUSED(profile);
    Q_UNUSED(session);
    return true;
}

bool showExportedConfiguration(AppContext& app, ServerProfile& profile, const SessionValues& session)
{
    Q_UNUSED(app);
    Q_UNUSED(profile);
    Q_UNUSED(session);
    return true;
}

} // namespace steward
