#include "maps/MapScanner.h"

#include <QtGlobal>

namespace steward {

// The scan itself comes with the map catalogue work; until then each step succeeds
// without touching anything.
bool ScanForMaps(AppContext& app, const QString& baseName, const QString& catalogueName, const QString& gameFolder)
{
    Q_UNUSED(app);
    Q_UNUSED(baseName);
    Q_UNUSED(catalogueName);
    Q_UNUSED(gameFolder);
    return true;
}

bool ExtractLevelShots(AppContext& app, const QString& baseName, const QString& gameFolder)
{
    Q_UNUSED(app);
    Q_UNUSED(baseName);
    Q_UNUSED(gameFolder);
    return true;
}

bool ConvertTgaToBmp(AppContext& app)
{
    Q_UNUSED(app);
    return true;
}

} // namespace steward
