#pragma once
// The map cycle: a chain of console variables m1, m2, ... each loading a map and
// pointing nextmap at the next, written from the rotation; and the starting map read
// back from a saved advanced cycle.
#include <QString>
#include <QStringList>

namespace steward {
class AppContext;
class ServerProfile;

/// Writes the map cycle of the rotation. exportOnly: cycleFileName is the full path
/// to write. Otherwise with useSavedCycle nothing is written and cycleFileName takes
/// the name of the saved cycle in txtServerINI; without it the file is jediMaps.cfg in
/// the base folder and cycleFileName takes that name. False after a failure, which
/// has been shown.
bool MakeMapCycle(AppContext& app, ServerProfile& profile, QString& cycleFileName, bool exportOnly, bool useSavedCycle);

/// The lists with the first entry named startingMap moved to the front and the others
/// behind it in their order. With no match, position 0 is left empty and every entry
/// moves one place back, so the lists grow by one.
void MoveStartingMapFirst(QStringList& names, QStringList& gravities, int count, const QString& startingMap);

/// The starting map of a saved advanced cycle: its last line from the third character
/// on, when that line starts with "//". Empty, after a warning, otherwise.
QString gbln_LoadMapCycle(AppContext& app, ServerProfile& profile, const QString& cycleFile);

/// The lines of a simple map cycle for these maps; names and gravities as the writer
/// takes them after the move, count the number of rows.
QStringList mapCycleLines(AppContext& app, const QStringList& names, const QStringList& gravities, int count,
                          const QString& onlyMap);
} // namespace steward
