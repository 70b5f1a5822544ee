#include "commands/CancelCommand.h"

#include "platform/WindowHost.h"

#include <QtGlobal>

namespace steward {

void cmdCancel_Click(AppContext& app, ServerProfile& profile, WindowHost& windows)
{
    Q_UNUSED(app);
    Q_UNUSED(profile);
    windows.closeAllForms();
}

} // namespace steward
