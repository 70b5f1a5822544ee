#pragma once
// The advanced map cycle: the wizard's per-map records as a main cycle file and one
// numbered companion file for each configured map. Pure: records in, lines out.
#include "wizard/WizardRecords.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace steward {

/// One map of the cycle: its line of the main file and, for a configured map, the
/// name and lines of its companion file (no name for a map left out).
struct AdvancedCycleEntry {
    QString line;
    QString companionName;
    QStringList companionLines;
};

struct AdvancedMapCycle {
    QList<AdvancedCycleEntry> entries;
    /// The lines behind the maps: an empty line, "vstr m1", the warning and the marker.
    QStringList tail;
};

/// The records in cycle order: the first whose MapName equals startingMap at the front,
/// the others behind it in their order. With no match position 0 is an empty record
/// and every record moves one place back, so the list grows by one.
QList<WizardMapRecord> BuildCycleRecords(const QList<WizardMapRecord>& records, const QString& startingMap);

/// The files of the cycle for as many maps as there are records, read in the order
/// that BuildCycleRecords gives (so with no starting map the last record is left out).
/// fileTitle is the main file's name; the companion of the map in place N is N + fileTitle.
AdvancedMapCycle MakeAdvancedMapCycle(const QList<WizardMapRecord>& records, const QString& startingMap,
                                      const QString& fileTitle);

/// The twelve lines of a configured map's companion file.
QStringList companionLines(const WizardMapRecord& record);

} // namespace steward
