#pragma once
// One named, indexed setting of the server profile. A field holds a text, a value, a
// list of items or a grid of rows, and carries its constant caption, Tag, design
// default and tooltip. Every change of state emits changed(); setting a field to the
// state it already has emits nothing.
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

namespace steward {

enum class FieldKind {
    Text,   ///< Text, possibly empty
    Check,  ///< Value 0 (clear) or 1 (checked)
    Option, ///< Value 0 (false) or 1 (true); the options of one group exclude each other
    Combo,  ///< Text plus a list of choices (items)
    List,   ///< an ordered list of strings (items)
    Grid,   ///< rows of cells
    Label,  ///< a display text set by the logic
    State,  ///< a window state without a widget of its own (a page index, a flag, a property)
};

/// The constant description of a field.
struct FieldDefinition {
    QString name;
    int index = -1; ///< -1 for a field that is not part of an array
    FieldKind kind = FieldKind::Text;
    QString caption;
    QString captionLabel; ///< object name of the label that shows the caption, if any
    QString tag;
    QString defaultText; ///< Text, or for checks and options "0"/"1"
    QString tooltip;
    bool password = false;
    QString optionGroup; ///< options with the same group exclude each other
};

class Field : public QObject {
    Q_OBJECT
public:
    explicit Field(FieldDefinition definition, QObject* parent = nullptr);

    const FieldDefinition& definition() const { return m_definition; }
    const QString& name() const { return m_definition.name; }
    int index() const { return m_definition.index; }
    FieldKind kind() const { return m_definition.kind; }
    const QString& caption() const { return m_definition.caption; }
    const QString& tag() const { return m_tag; }
    const QString& tooltip() const { return m_definition.tooltip; }
    bool isPassword() const { return m_definition.password; }
    /// "txtServerConfig(12)" for an array member, the plain name otherwise.
    QString key() const;
    static QString makeKey(const QString& name, int index);

    const QString& text() const { return m_text; }
    void setText(const QString& text);

    int value() const { return m_value; }
    bool isSet() const { return m_value != 0; }
    void setValue(int value);

    const QStringList& items() const { return m_items; }
    int count() const;
    void setItems(const QStringList& items);
    void addItem(const QString& item);
    void removeItem(int position);

    const QList<QStringList>& rows() const { return m_rows; }
    void setRows(const QList<QStringList>& rows);
    void addRow(const QStringList& row);
    void removeRow(int position);
    /// The cell of a row, or an empty text past the row's end; a row past the end is error 35600.
    QString cell(int row, int column) const;

    /// The selected positions of a list or grid, and its current position (-1 for none).
    const QList<int>& selection() const { return m_selection; }
    void setSelection(const QList<int>& positions);
    int current() const { return m_current; }
    void setCurrent(int position);

    bool isVisible() const { return m_visible; }
    void setVisible(bool visible);
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);

    /// Only grids carry a Tag that changes at run time (the rotation's starting row).
    void setTag(const QString& tag);

    /// Puts the field back to its design default.
    void reset();

signals:
    /// Any change of text, value, items, rows, selection, tag or visibility.
    void changed(steward::Field* field);
    void textChanged(steward::Field* field);
    void valueChanged(steward::Field* field);
    void itemsChanged(steward::Field* field);
    void rowsChanged(steward::Field* field);
    void selectionChanged(steward::Field* field);
    void visibilityChanged(steward::Field* field);

private:
    FieldDefinition m_definition;
    QString m_tag;
    QString m_text;
    int m_value = 0;
    QStringList m_items;
    QList<QStringList> m_rows;
    QList<int> m_selection;
    int m_current = -1;
    bool m_visible = true;
    bool m_enabled = true;
};

} // namespace steward
