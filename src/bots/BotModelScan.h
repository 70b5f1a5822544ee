#pragma once
// The scan for installed player models: every pk3 archive of the base folder (the three
// stock archives left out) is asked for its first entry under models/players/NAME/, and
// BOT.txt in the program's folder gets one line "NAME,archive" for each archive that
// has one. Only the archives' central directories are read; nothing is extracted.
#include <QList>
#include <QString>
#include <QStringList>

namespace steward {
class AppContext;
class ScanProgress;

/// The name of BOT.txt's folder's file.
inline const QString kBotListFile = QStringLiteral("BOT.txt");

/// The model folder of an archive entry's text (as ArchiveReader::entryText gives it):
/// the third folder when the first two are "models" and "players" in any case, kept
/// as it stands; empty for any other entry, and for the folder models/players itself.
QString playerModelOfEntry(const QString& entryText);

/// True for a file name the scan reads: it ends in "PK3" in any case and isn't one of
/// assets0.pk3, assets1.pk3 and assets2.pk3 in any case.
bool isModelArchive(const QString& fileName);

/// Scans folder + "/" + subfolder (found without regard to case) and rewrites BOT.txt,
/// showing its progress on the picker, then says how many were found. An archive that
/// can't be read is logged and skipped. A failure of the scan itself (no such folder,
/// BOT.txt can't be written) goes to the log and is thrown on to the caller. True
/// otherwise.
bool ScanBotModels(AppContext& app, ScanProgress& progress, const QString& folder, const QString& subfolder);

/// The installed models' grid: the heading "BOT Name", "PK3" and the rows of BOT.txt,
/// if it exists.
QList<QStringList> LoadBotList(AppContext& app);

} // namespace steward
