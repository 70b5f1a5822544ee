#pragma once
// The map cycle: a chain of console variables m1, m2, ... each loading a map and
// pointing nextmap at the next, made from the rotation.
#include <QString>
#include <QStringList>

namespace steward {
class Clock;
class ServerProfile;

/// The lists with the first entry named startingMap moved to the front and the others
/// behind it in their order. With no match, position 0 is left empty and every entry
/// moves one place back, so the lists grow by one.
void MoveStartingMapFirst(QStringList& names, QStringList& gravities, int count, const QString& startingMap);

/// The lines of a simple map cycle for these maps; names and gravities as the writer
/// takes them after the move, count the number of rows.
QStringList mapCycleLines(const Clock& clock, const QStringList& names, const QStringList& gravities, int count,
                          const QString& onlyMap);
/// The lines of the rotation's map cycle: its maps with the starting map first, each
/// with the gravity of txtSpeed(1).
QStringList rotationCycleLines(const ServerProfile& profile, const Clock& clock);
} // namespace steward
