#pragma once
// The scan of the game's pk3 archives for maps and level shots, in three phases (the
// last two in LevelShots.h); the Utilities menu's command that runs the whole chain is
// commands/MapScanCommand.
#include "maps/LevelShots.h"

#include <QString>
#include <QStringList>

namespace steward {
class AppContext;
class ServerProfile;
struct MapScanChain;

/// The files of the game's base folder in name order, without regard to case; a
/// missing folder is error 76.
QStringList baseFolderFiles(AppContext& app, const QString& gamePath, const QString& baseName,
                            QString* folderPath = nullptr);
/// Reads every pk3 archive of the base folder (gameFolder + baseName) and writes the
/// map catalogue catalogueName + ".aml" in the program's folder. False after a
/// failure, which has been shown to the user.
/// With a chain, the archives are kept for the later phases.
bool ScanForMaps(AppContext& app, const QString& baseName, const QString& catalogueName, const QString& gameFolder,
                 MapScanChain* chain = nullptr);
/// The game folder as the scan command takes it: one trailing NUL or folder
/// separator cut off.
QString cutFolderEnd(QString folder);

/// The catalogue line of one map.
QString catalogueRecord(const QString& archive, const QString& mapName, const QString& longName, const QString& type);

/// The attribute word of a file as the scan tests it: 1 read-only, 2 hidden, 16 folder.
int fileAttributes(const QString& path);

/// The program's levelshots and Scripts folders, found without regard to case.
QString levelShotFolder(const AppContext& app);
QString scriptFolder(const AppContext& app);

} // namespace steward
