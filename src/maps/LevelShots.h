#pragma once
// The level shot phases of the map scan (see MapScanner.h), and the fallback pictures
// of the preview, shipped inside the program.
#include <QString>

namespace steward {
class AppContext;
struct MapScanChain;

/// Copies the level shots of every archive into the program's levelshots folder.
/// Stays true after a failure, which goes to the log. With a chain, the tga level shots
/// are converted in memory instead of being written, and ConvertTgaToBmp with the same
/// chain must follow.
bool ExtractLevelShots(AppContext& app, const QString& baseName, const QString& gameFolder,
                       MapScanChain* chain = nullptr);
/// Converts the extracted tga level shots to bmp and deletes the tga files. Stays
/// true after a failure, which goes to the log.
/// With a chain, the pictures converted in memory are waited for and reported first.
bool ConvertTgaToBmp(AppContext& app, MapScanChain* chain = nullptr);

/// Writes unknown.jpg and unknown.bmp into the program's levelshots folder where they
/// are missing, creating the folder. False when one could not be written.
bool EnsureFallbackPictures(const AppContext& app);

/// The stem of a file name: everything before its last ".".
QString fileStem(const QString& name);

} // namespace steward
