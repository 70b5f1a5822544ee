#pragma once
// The scan of the game's pk3 archives for maps and level shots.
#include <QString>

namespace steward {
class AppContext;
/// Reads every pk3 archive of the base folder and writes the map catalogue.
bool ScanForMaps(AppContext& app, const QString& baseName, const QString& catalogueName, const QString& gameFolder);
/// Copies the level shots of every archive into the program's levelshots folder.
bool ExtractLevelShots(AppContext& app, const QString& baseName, const QString& gameFolder);
/// Converts the extracted tga level shots to bmp.
bool ConvertTgaToBmp(AppContext& app);
} // namespace steward
