#include "commands/AddressCommand.h"

#include "model/FieldIndexes.h"
#include "model/ServerProfile.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "support/FileDialog.h"
#include "support/LocalAddress.h"

#include <exception>

namespace steward {

Field& cmdIP_Click(AppContext& app, ServerProfile& profile, AddressLookup& lookup)
{
    Field& address = profile.field(F::txtServerConfig(ServerBox::Address));
    try {
        CCursor cursor(app.prompts());
        cursor.SetCursor(pointer::Hourglass);
        address.setText(GetIPAddress(app, lookup));
        cursor.RestoreCursor();
    } catch (const std::exception&) {
        // Errors are ignored here.
    }
    return address;
}

} // namespace steward
