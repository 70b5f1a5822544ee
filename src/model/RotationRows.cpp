#include "model/RotationRows.h"

#include "model/Field.h"
#include "support/Errors.h"

#include <algorithm>

namespace steward {

QStringList rotationRow(const QString& mapName, const QString& longName, const QString& type)
{
    return {mapName, longName, type, QString(), kMarkNotSelected};
}

QString rotationMark(const Field& field, int row) { return field.cell(row, kMarkColumn); }

void setRotationMark(Field& field, int row, const QString& mark)
{
    QList<QStringList> rows = field.rows();
    if (row < 0 || row >= rows.size())
        raiseError(err::IndexOutOfBounds);
    QStringList& cells = rows[row];
    while (cells.size() <= kMarkColumn)
        cells << QString();
    cells[kMarkColumn] = mark;
    const int current = field.current();
    field.setRows(rows);
    field.setCurrent(current);
}

int currentRotationRow(const Field& field)
{
    const int count = field.count();
    if (count == 0)
        return -1;
    return std::clamp(field.current(), 0, count - 1);
}

} // namespace steward
