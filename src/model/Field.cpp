#include "model/Field.h"

#include "support/Errors.h"

namespace steward {

Field::Field(FieldDefinition definition, QObject* parent) : QObject(parent), m_definition(std::move(definition))
{
    reset();
}

QString Field::makeKey(const QString& name, int index)
{
    return index < 0 ? name : QStringLiteral("%1(%2)").arg(name).arg(index);
}

QString Field::key() const { return makeKey(m_definition.name, m_definition.index); }

void Field::reset()
{
    m_tag = m_definition.tag;
    switch (m_definition.kind) {
    case FieldKind::Check:
    case FieldKind::Option:
    case FieldKind::State:
        m_value = m_definition.defaultText.toInt();
        m_text = m_definition.kind == FieldKind::State ? m_definition.defaultText : QString();
        break;
    default:
        m_text = m_definition.defaultText;
        m_value = 0;
        break;
    }
    m_items.clear();
    m_rows.clear();
    m_selection.clear();
    m_current = -1;
}

void Field::setText(const QString& text)
{
    if (text == m_text)
        return;
    m_text = text;
    emit textChanged(this);
    emit changed(this);
}

void Field::setValue(int value)
{
    if (m_definition.kind == FieldKind::Check || m_definition.kind == FieldKind::Option)
        value = value != 0 ? 1 : 0;
    if (value == m_value)
        return;
    m_value = value;
    emit valueChanged(this);
    emit changed(this);
}

int Field::count() const
{
    return m_definition.kind == FieldKind::Grid ? static_cast<int>(m_rows.size()) : static_cast<int>(m_items.size());
}

void Field::setItems(const QStringList& items)
{
    if (items == m_items)
        return;
    m_items = items;
    m_selection.clear();
    emit itemsChanged(this);
    emit changed(this);
}

void Field::addItem(const QString& item)
{
    m_items.append(item);
    emit itemsChanged(this);
    emit changed(this);
}

void Field::removeItem(int position)
{
    if (position < 0 || position >= m_items.size())
        raiseError(err::IndexOutOfBounds);
    m_items.removeAt(position);
    m_selection.removeAll(position);
    for (int& s : m_selection)
        if (s > position)
            --s;
    emit itemsChanged(this);
    emit changed(this);
}

void Field::setRows(const QList<QStringList>& rows)
{
    if (rows == m_rows)
        return;
    m_rows = rows;
    m_selection.clear();
    emit rowsChanged(this);
    emit changed(this);
}

void Field::addRow(const QStringList& row)
{
    m_rows.append(row);
    emit rowsChanged(this);
    emit changed(this);
}

void Field::removeRow(int position)
{
    if (position < 0 || position >= m_rows.size())
        raiseError(err::IndexOutOfBounds);
    m_rows.removeAt(position);
    m_selection.removeAll(position);
    for (int& s : m_selection)
        if (s > position)
            --s;
    emit rowsChanged(this);
    emit changed(this);
}

QString Field::cell(int row, int column) const
{
    if (row < 0 || row >= m_rows.size())
        raiseError(err::IndexOutOfBounds);
    const QStringList& cells = m_rows.at(row);
    return column >= 0 && column < cells.size() ? cells.at(column) : QString();
}

void Field::setSelection(const QList<int>& positions)
{
    if (positions == m_selection)
        return;
    m_selection = positions;
    emit selectionChanged(this);
    emit changed(this);
}

void Field::setCurrent(int position)
{
    if (position == m_current)
        return;
    m_current = position;
    emit selectionChanged(this);
    emit changed(this);
}

void Field::setVisible(bool visible)
{
    if (visible == m_visible)
        return;
    m_visible = visible;
    emit visibilityChanged(this);
    emit changed(this);
}

void Field::setEnabled(bool enabled)
{
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    emit visibilityChanged(this);
    emit changed(this);
}

void Field::setTag(const QString& tag)
{
    if (tag == m_tag)
        return;
    m_tag = tag;
    emit changed(this);
}

} // namespace steward
