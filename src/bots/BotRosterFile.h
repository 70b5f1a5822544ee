#pragma once
// The two files of the roster: a bot list ".lst" with a tab between the fields and
// lastbots.csv with a comma. Each holds the data rows only, one line per bot with the
// five fields in column order, every line ended by CR LF.
//
// A field that holds the separator, or begins with a double quote, is written between
// double quotes with each quote inside doubled ("Boss, The" or """Quoted"""), so that it
// reads back as the same row. Every other field is written and read exactly as it
// stands: a hand-edited file is taken as it is, and a line with too few fields gives
// empty cells.
#include <QChar>
#include <QList>
#include <QString>
#include <QStringList>

namespace steward {

enum class RosterForm { Tab, Comma };

/// The number of cells in a roster row.
inline constexpr int kRosterColumns = 5;

QChar rosterSeparator(RosterForm form);
/// A line of these cells with the separator between them, quoted where needed.
QString delimitedLine(const QStringList& cells, QChar separator);
/// The cells of one line: always columns cells; fields past the last are dropped.
QStringList delimitedRow(const QString& line, QChar separator, int columns);
/// One line of the file for a row (without its line end).
QString rosterFileLine(const QStringList& row, RosterForm form);
/// The row that one line of the file gives: always kRosterColumns cells; fields past
/// the fifth are dropped.
QStringList rosterFileRow(const QString& line, RosterForm form);

/// Writes the rows to the file, replacing it; an empty list gives an empty file. A file
/// that can't be written is a RuntimeError.
void saveRosterFile(const QString& fileName, const QList<QStringList>& rows, RosterForm form);
/// The rows of a file; a file that can't be read is a RuntimeError.
QList<QStringList> loadRosterFile(const QString& fileName, RosterForm form);

} // namespace steward
