#include "generate/BanListWriter.h"

#include <QtGlobal>

namespace steward {

bool gbln_MakeBANList(AppContext& app, ServerProfile& profile, int count)
{
    // The ban file comes with the ban list work; until then no file is made.
    Q_UNUSED(app);
    Q_UNUSED(profile);
    Q_UNUSED(count);
    return false;
}

} // namespace steward
