#include "maps/MapTree.h"

#include <QtGlobal>

namespace steward {

void LoadMapTree(AppContext& app, ServerProfile& profile, const QString& catalogueName, const QString& rootText)
{
    // The catalogue reader comes with the map catalogue work.
    Q_UNUSED(app);
    Q_UNUSED(profile);
    Q_UNUSED(catalogueName);
    Q_UNUSED(rootText);
}

} // namespace steward
