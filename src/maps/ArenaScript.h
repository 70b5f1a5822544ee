#pragma once
// The arena script of a custom map: the long name and the game types of its first
// block.
#include <QString>
#include <QStringList>

namespace steward {

/// Reads the lines of a script up to the end of its first block. Blanks around a line
/// are trimmed; "{" is passed over and "}" ends the reading. A line whose part before
/// the first double quote holds "longname" gives the long name (the part between the
/// first and the second double quote), else one that holds "type" gives the type; a
/// later line overwrites an earlier one, and a value no line gives keeps what it had.
void readArenaScript(const QStringList& lines, QString& longName, QString& type);

} // namespace steward
