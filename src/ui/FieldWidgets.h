#pragma once
// Widgets bound to a field of the profile. Each one carries its field's key as object
// name, its tooltip and its Tag (the dynamic property "Tag"), follows the field's
// visibility and enabled state, and keeps its state and the field's in step both ways:
// the user's edit sets the field, a change of the field from code updates the widget.
// A field only signals real changes, and each widget only writes back a state that
// differs, so a change never runs round in a loop.
#include "model/Field.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QRadioButton>
#include <QTableWidget>
#include <QTreeWidget>

class QToolButton;

namespace steward {

/// The part every bound widget shares: name, tooltip, Tag, visibility, enabled state.
/// Companions (the caption label, a spinner) are shown, hidden, enabled and disabled
/// with the widget.
class FieldPresence : public QObject {
    Q_OBJECT
public:
    FieldPresence(QWidget* widget, Field& field);

    void addCompanion(QWidget* companion);

    /// The presence of a bound widget, or null for a widget without a field.
    static FieldPresence* of(const QWidget* widget);
    /// The field a widget is bound to, or null.
    static Field* fieldOf(const QWidget* widget);

private:
    void apply();

    QWidget* m_widget;
    QPointer<Field> m_field;
    QList<QPointer<QWidget>> m_companions;
    bool m_applied = false;
    bool m_visible = true;
    bool m_enabled = true;
};

/// A Text field. Password fields show "*" for each character.
class BoundLineEdit : public QLineEdit {
    Q_OBJECT
public:
    BoundLineEdit(Field& field, QWidget* parent = nullptr);

private:
    void fromField();
    Field& m_field;
    bool m_syncing = false;
};

/// A Check field: Value 0 or 1.
class BoundCheckBox : public QCheckBox {
    Q_OBJECT
public:
    BoundCheckBox(Field& field, QWidget* parent = nullptr);

private:
    void fromField();
    Field& m_field;
    bool m_syncing = false;
};

/// An Option field. The profile keeps the options of a group exclusive; a click selects
/// the option and never clears it, as with any option button.
class BoundRadioButton : public QRadioButton {
    Q_OBJECT
public:
    BoundRadioButton(Field& field, QWidget* parent = nullptr);

protected:
    void nextCheckState() override;

private:
    void fromField();
    Field& m_field;
    bool m_syncing = false;
};

/// A Combo field: the edit text is the field's Text, the list its items.
class BoundComboBox : public QComboBox {
    Q_OBJECT
public:
    BoundComboBox(Field& field, QWidget* parent = nullptr);

private:
    void itemsFromField();
    void textFromField();
    Field& m_field;
    bool m_syncing = false;
};

/// A List field: items, selection and current position.
class BoundListWidget : public QListWidget {
    Q_OBJECT
public:
    BoundListWidget(Field& field, QWidget* parent = nullptr);

private:
    void itemsFromField();
    void selectionFromField();
    void selectionToField();
    Field& m_field;
    bool m_syncing = false;
};

/// A Label field: the text and the visibility that the logic gives it.
class BoundLabel : public QLabel {
    Q_OBJECT
public:
    BoundLabel(Field& field, QWidget* parent = nullptr);

private:
    Field& m_field;
};

/// A Grid field shown as a table. With a heading row, row 0 of the field is the
/// table's heading and the table shows the rows below it.
class BoundTable : public QTableWidget {
    Q_OBJECT
public:
    BoundTable(Field& field, int columns, bool headingRow, QWidget* parent = nullptr);

private:
    void rowsFromField();
    void selectionFromField();
    void selectionToField();
    Field& m_field;
    bool m_heading;
    bool m_syncing = false;
};

/// A Grid field shown as a list of rows with cells (the map rotation), or a List field
/// shown as a tree of items (the available maps).
class BoundTree : public QTreeWidget {
    Q_OBJECT
public:
    BoundTree(Field& field, int columns, QWidget* parent = nullptr);

protected:
    /// Lets a kind of grid dress a row after its cells are shown.
    virtual void decorate(QTreeWidgetItem* item, const QStringList& cells);
    /// Shows the field's lines again.
    void refresh() { fromField(); }

private:
    void fromField();
    void selectionFromField();
    void selectionToField();
    QList<QStringList> lines() const;
    Field& m_field;
    bool m_syncing = false;
};

/// A field whose Text is the path of a picture file; the picture is shown scaled to
/// fit, with its proportions. A path that gives no picture shows nothing.
class BoundPicture : public QLabel {
    Q_OBJECT
public:
    BoundPicture(Field& field, QWidget* parent = nullptr);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void fromField();
    void showScaled();
    Field& m_field;
    QPixmap m_picture;
};

/// Up and down arrows that step the leading number of a text field, as a spinner
/// buddied to a text box.
class UpDown : public QWidget {
    Q_OBJECT
public:
    UpDown(Field& buddy, QWidget* parent = nullptr);

    /// One step up (positive) or down (negative), within 0 to 9999.
    void stepBy(int steps);

private:
    Field& m_buddy;
    QToolButton* m_up;
    QToolButton* m_down;
};

/// The widget for a field of any kind but State.
QWidget* createFieldWidget(Field& field, QWidget* parent);

} // namespace steward
