#pragma once
#include <QString>

namespace steward {
class AppContext;
class ServerProfile;
/// Writes the map cycle of the rotation and sets cycleFileName to its file name.
bool MakeMapCycle(AppContext& app, ServerProfile& profile, QString& cycleFileName, bool exportOnly, bool useSavedCycle);
/// Reads the starting map back from a saved advanced cycle.
QString gbln_LoadMapCycle(AppContext& app, ServerProfile& profile, const QString& cycleFile);
} // namespace steward
