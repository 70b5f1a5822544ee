#pragma once
// The rows of the rotation grid lsvMapRotation: the map name, the long name, the type,
// an empty cell and, in the mark column, the name of the row's mark picture.
#include <QString>
#include <QStringList>

namespace steward {

class Field;

/// The cell that names the mark picture of column 0.
inline constexpr int kMarkColumn = 4;
inline const QString kMarkNotSelected = QStringLiteral("imgMapNotSelected");
inline const QString kMarkSelected = QStringLiteral("imgSelectedMap");

/// A new row of the rotation, with the common mark.
QStringList rotationRow(const QString& mapName, const QString& longName, const QString& type);
/// The mark picture of a row: one of the two names, or empty for a row without one.
QString rotationMark(const Field& grid, int row);
void setRotationMark(Field& grid, int row, const QString& mark);
/// The current row of the grid: its current position, 0 when it has none, -1 when
/// the grid is empty.
int currentRotationRow(const Field& grid);

} // namespace steward
