#pragma once
#include <QString>

namespace steward {
class AppContext;
class ServerProfile;
/// Reads the map catalogue into the tree of available maps.
void LoadMapTree(AppContext& app, ServerProfile& profile, const QString& catalogueName, const QString& rootText);
} // namespace steward
