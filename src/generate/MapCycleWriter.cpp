#include "generate/MapCycleWriter.h"

#include <QtGlobal>

namespace steward {

// The cycle writer comes with the map catalogue work; until then it only names the file.
bool MakeMapCycle(AppContext& app, ServerProfile& profile, QString& cycleFileName, bool exportOnly, bool useSavedCycle)
{
    Q_UNUSED(app);
    Q_UNUSED(profile);
    Q_UNUSED(exportOnly);
    Q_UNUSED(useSavedCycle);
    cycleFileName = QStringLiteral("jediMaps.cfg");
    return true;
}

QString gbln_LoadMapCycle(AppContext& app, ServerProfile& profile, const QString& cycleFile)
{
    Q_UNUSED(app);
    Q_UNUSED(profile);
    Q_UNUSED(cycleFile);
    return {};
}

} // namespace steward
