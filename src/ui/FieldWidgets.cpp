#include "ui/FieldWidgets.h"

#include "support/Strings.h"

#include <QHeaderView>
#include <QResizeEvent>
#include <QToolButton>
#include <QVBoxLayout>
#include <cmath>

namespace steward {

namespace {
const char* const kPresenceProperty = "stewardFieldPresence";

/// Hides a widget, or shows again one that was hidden; a widget that was never hidden is
/// left to its parent, so that a widget not yet in a shown window doesn't pop up alone.
void setShown(QWidget* widget, bool visible)
{
    const bool explicitlyHidden = widget->isHidden() && widget->testAttribute(Qt::WA_WState_ExplicitShowHide);
    if (!visible && !explicitlyHidden)
        widget->setHidden(true);
    else if (visible && explicitlyHidden)
        widget->setHidden(false);
}

/// Runs body with the flag set, so that the widget's own signals don't write back.
template <typename F>
void syncing(bool& flag, F body)
{
    const bool was = flag;
    flag = true;
    body();
    flag = was;
}
} // namespace

// ---------------------------------------------------------------------------------------

FieldPresence::FieldPresence(QWidget* widget, Field& field) : QObject(widget), m_widget(widget), m_field(&field)
{
    widget->setObjectName(field.key());
    widget->setToolTip(field.tooltip());
    widget->setProperty("Tag", field.tag());
    widget->setProperty(kPresenceProperty, QVariant::fromValue(static_cast<QObject*>(this)));
    connect(&field, &Field::changed, this, &FieldPresence::apply);
    apply();
}

void FieldPresence::addCompanion(QWidget* companion)
{
    m_companions.append(companion);
    setShown(companion, m_visible);
    companion->setEnabled(m_enabled);
}

FieldPresence* FieldPresence::of(const QWidget* widget)
{
    if (!widget)
        return nullptr;
    return qobject_cast<FieldPresence*>(widget->property(kPresenceProperty).value<QObject*>());
}

Field* FieldPresence::fieldOf(const QWidget* widget)
{
    FieldPresence* presence = of(widget);
    return presence ? presence->m_field.data() : nullptr;
}

void FieldPresence::apply()
{
    if (!m_field)
        return;
    if (m_widget->property("Tag").toString() != m_field->tag())
        m_widget->setProperty("Tag", m_field->tag());
    // Only a change of the field's own state reaches the widgets, so that a widget that
    // the window shows, hides or greys by itself keeps that until the field changes.
    const bool visible = m_field->isVisible();
    const bool enabled = m_field->isEnabled();
    const bool force = !m_applied;
    m_applied = true;
    if (force || visible != m_visible) {
        setShown(m_widget, visible);
        for (const QPointer<QWidget>& companion : std::as_const(m_companions))
            if (companion)
                setShown(companion, visible);
    }
    if (force || enabled != m_enabled) {
        m_widget->setEnabled(enabled);
        for (const QPointer<QWidget>& companion : std::as_const(m_companions))
            if (companion)
                companion->setEnabled(enabled);
    }
    m_visible = visible;
    m_enabled = enabled;
}

// ---------------------------------------------------------------------------------------

BoundLineEdit::BoundLineEdit(Field& field, QWidget* parent) : QLineEdit(parent), m_field(field)
{
    new FieldPresence(this, field);
    if (field.isPassword()) {
        setEchoMode(QLineEdit::Password);
        // One "*" per character, whatever the style's own mask character is.
        setStyleSheet(QStringLiteral("QLineEdit { lineedit-password-character: 42; }"));
    }
    fromField();
    connect(&field, &Field::textChanged, this, &BoundLineEdit::fromField);
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (!m_syncing)
            m_field.setText(text);
    });
}

void BoundLineEdit::fromField()
{
    if (text() == m_field.text())
        return;
    syncing(m_syncing, [this] {
        setText(m_field.text());
        // A text set from outside is shown from its start.
        if (!hasFocus())
            setCursorPosition(0);
    });
}

// ---------------------------------------------------------------------------------------

BoundCheckBox::BoundCheckBox(Field& field, QWidget* parent) : QCheckBox(field.caption(), parent), m_field(field)
{
    new FieldPresence(this, field);
    fromField();
    connect(&field, &Field::valueChanged, this, &BoundCheckBox::fromField);
    connect(this, &QCheckBox::toggled, this, [this](bool checked) {
        if (!m_syncing)
            m_field.setValue(checked ? 1 : 0);
    });
}

void BoundCheckBox::fromField()
{
    if (isChecked() == m_field.isSet())
        return;
    syncing(m_syncing, [this] { setChecked(m_field.isSet()); });
}

// ---------------------------------------------------------------------------------------

BoundRadioButton::BoundRadioButton(Field& field, QWidget* parent)
    : QRadioButton(field.caption(), parent), m_field(field)
{
    // The profile keeps a group exclusive; Qt's own exclusivity would refuse to clear an
    // option from code and leave the widget out of step with its field.
    setAutoExclusive(false);
    new FieldPresence(this, field);
    fromField();
    connect(&field, &Field::valueChanged, this, &BoundRadioButton::fromField);
    connect(this, &QRadioButton::toggled, this, [this](bool checked) {
        if (!m_syncing)
            m_field.setValue(checked ? 1 : 0);
    });
}

void BoundRadioButton::nextCheckState()
{
    if (!isChecked())
        setChecked(true);
}

void BoundRadioButton::fromField()
{
    if (isChecked() == m_field.isSet())
        return;
    syncing(m_syncing, [this] { setChecked(m_field.isSet()); });
}

// ---------------------------------------------------------------------------------------

BoundComboBox::BoundComboBox(Field& field, QWidget* parent) : QComboBox(parent), m_field(field)
{
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    // The text is what was typed; nothing completes it from the list.
    setCompleter(nullptr);
    new FieldPresence(this, field);
    itemsFromField();
    connect(&field, &Field::itemsChanged, this, &BoundComboBox::itemsFromField);
    connect(&field, &Field::textChanged, this, &BoundComboBox::textFromField);
    connect(this, &QComboBox::editTextChanged, this, [this](const QString& text) {
        if (!m_syncing)
            m_field.setText(text);
    });
}

void BoundComboBox::itemsFromField()
{
    syncing(m_syncing, [this] {
        clear();
        addItems(m_field.items());
        setCurrentIndex(static_cast<int>(m_field.items().indexOf(m_field.text())));
        setEditText(m_field.text());
    });
}

void BoundComboBox::textFromField()
{
    if (currentText() == m_field.text())
        return;
    syncing(m_syncing, [this] {
        const int position = findText(m_field.text(), Qt::MatchExactly | Qt::MatchCaseSensitive);
        setCurrentIndex(position);
        setEditText(m_field.text());
    });
}

// ---------------------------------------------------------------------------------------

BoundListWidget::BoundListWidget(Field& field, QWidget* parent) : QListWidget(parent), m_field(field)
{
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    new FieldPresence(this, field);
    itemsFromField();
    connect(&field, &Field::itemsChanged, this, &BoundListWidget::itemsFromField);
    connect(&field, &Field::selectionChanged, this, &BoundListWidget::selectionFromField);
    connect(this, &QListWidget::itemSelectionChanged, this, &BoundListWidget::selectionToField);
    connect(this, &QListWidget::currentRowChanged, this, [this](int row) {
        if (!m_syncing)
            syncing(m_syncing, [&] { m_field.setCurrent(row); });
    });
}

void BoundListWidget::itemsFromField()
{
    syncing(m_syncing, [this] {
        clear();
        addItems(m_field.items());
    });
    selectionFromField();
}

void BoundListWidget::selectionFromField()
{
    if (m_syncing)
        return;
    syncing(m_syncing, [this] {
        clearSelection();
        for (int position : m_field.selection())
            if (QListWidgetItem* it = item(position))
                it->setSelected(true);
        if (currentRow() != m_field.current())
            setCurrentRow(m_field.current(), QItemSelectionModel::NoUpdate);
    });
}

void BoundListWidget::selectionToField()
{
    if (m_syncing)
        return;
    QList<int> positions;
    for (int i = 0; i < count(); ++i)
        if (item(i)->isSelected())
            positions.append(i);
    syncing(m_syncing, [&] { m_field.setSelection(positions); });
}

// ---------------------------------------------------------------------------------------

BoundLabel::BoundLabel(Field& field, QWidget* parent) : QLabel(field.text(), parent), m_field(field)
{
    new FieldPresence(this, field);
    connect(&field, &Field::textChanged, this, [this] { setText(m_field.text()); });
}

// ---------------------------------------------------------------------------------------

BoundTable::BoundTable(Field& field, int columns, bool headingRow, QWidget* parent)
    : QTableWidget(0, columns, parent), m_field(field), m_heading(headingRow)
{
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setVisible(headingRow);
    new FieldPresence(this, field);
    rowsFromField();
    connect(&field, &Field::rowsChanged, this, &BoundTable::rowsFromField);
    connect(&field, &Field::selectionChanged, this, &BoundTable::selectionFromField);
    connect(this, &QTableWidget::itemSelectionChanged, this, &BoundTable::selectionToField);
}

void BoundTable::rowsFromField()
{
    syncing(m_syncing, [this] {
        const QList<QStringList>& rows = m_field.rows();
        const int first = m_heading ? 1 : 0;
        if (m_heading) {
            QStringList heading = rows.isEmpty() ? QStringList() : rows.first();
            while (heading.size() < columnCount())
                heading.append(QString());
            setHorizontalHeaderLabels(heading);
        }
        setRowCount(std::max(0, static_cast<int>(rows.size()) - first));
        for (int r = first; r < rows.size(); ++r)
            for (int c = 0; c < columnCount(); ++c)
                setItem(r - first, c, new QTableWidgetItem(rows.at(r).value(c)));
    });
    selectionFromField();
}

void BoundTable::selectionFromField()
{
    if (m_syncing)
        return;
    const int first = m_heading ? 1 : 0;
    syncing(m_syncing, [&] {
        clearSelection();
        for (int position : m_field.selection())
            if (position - first >= 0 && position - first < rowCount())
                selectRow(position - first);
    });
}

void BoundTable::selectionToField()
{
    if (m_syncing)
        return;
    const int first = m_heading ? 1 : 0;
    QList<int> positions;
    for (int r = 0; r < rowCount(); ++r)
        if (item(r, 0) && item(r, 0)->isSelected())
            positions.append(r + first);
    syncing(m_syncing, [&] { m_field.setSelection(positions); });
}

// ---------------------------------------------------------------------------------------

BoundTree::BoundTree(Field& field, int columns, QWidget* parent) : QTreeWidget(parent), m_field(field)
{
    setColumnCount(columns);
    setHeaderHidden(true);
    setRootIsDecorated(field.kind() != FieldKind::Grid);
    setSelectionMode(field.kind() == FieldKind::Grid ? QAbstractItemView::ExtendedSelection
                                                     : QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    new FieldPresence(this, field);
    fromField();
    connect(&field, &Field::rowsChanged, this, &BoundTree::fromField);
    connect(&field, &Field::itemsChanged, this, &BoundTree::fromField);
    connect(&field, &Field::selectionChanged, this, &BoundTree::selectionFromField);
    connect(this, &QTreeWidget::itemSelectionChanged, this, &BoundTree::selectionToField);
    connect(this, &QTreeWidget::currentItemChanged, this, &BoundTree::selectionToField);
}

void BoundTree::decorate(QTreeWidgetItem*, const QStringList&) {}

QList<QStringList> BoundTree::lines() const
{
    if (m_field.kind() == FieldKind::Grid)
        return m_field.rows();
    QList<QStringList> result;
    for (const QString& item : m_field.items())
        result.append(QStringList{item});
    return result;
}

void BoundTree::fromField()
{
    syncing(m_syncing, [this] {
        clear();
        QList<QTreeWidgetItem*> items;
        for (const QStringList& cells : lines()) {
            auto* item = new QTreeWidgetItem;
            for (int c = 0; c < columnCount(); ++c)
                item->setText(c, cells.value(c));
            decorate(item, cells);
            items.append(item);
        }
        addTopLevelItems(items);
    });
    selectionFromField();
}

void BoundTree::selectionFromField()
{
    if (m_syncing)
        return;
    syncing(m_syncing, [this] {
        clearSelection();
        for (int position : m_field.selection())
            if (QTreeWidgetItem* item = topLevelItem(position))
                item->setSelected(true);
        QTreeWidgetItem* current = topLevelItem(m_field.current());
        if (current != currentItem())
            setCurrentItem(current, 0, QItemSelectionModel::NoUpdate);
    });
}

void BoundTree::selectionToField()
{
    if (m_syncing)
        return;
    QList<int> positions;
    for (int i = 0; i < topLevelItemCount(); ++i)
        if (topLevelItem(i)->isSelected())
            positions.append(i);
    const int current = currentItem() ? indexOfTopLevelItem(currentItem()) : -1;
    syncing(m_syncing, [&] {
        m_field.setSelection(positions);
        m_field.setCurrent(current);
    });
}

// ---------------------------------------------------------------------------------------

BoundPicture::BoundPicture(Field& field, QWidget* parent) : QLabel(parent), m_field(field)
{
    setAlignment(Qt::AlignCenter);
    setFrameShape(QFrame::StyledPanel);
    setFrameShadow(QFrame::Sunken);
    setMinimumSize(1, 1);
    new FieldPresence(this, field);
    fromField();
    connect(&field, &Field::textChanged, this, &BoundPicture::fromField);
}

void BoundPicture::fromField()
{
    m_picture = m_field.text().isEmpty() ? QPixmap() : QPixmap(m_field.text());
    showScaled();
}

void BoundPicture::showScaled()
{
    if (m_picture.isNull()) {
        clear();
        return;
    }
    setPixmap(m_picture.scaled(contentsRect().size(), Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

void BoundPicture::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    showScaled();
}

// ---------------------------------------------------------------------------------------

UpDown::UpDown(Field& buddy, QWidget* parent) : QWidget(parent), m_buddy(buddy)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_up = new QToolButton(this);
    m_down = new QToolButton(this);
    m_up->setArrowType(Qt::UpArrow);
    m_down->setArrowType(Qt::DownArrow);
    for (QToolButton* b : {m_up, m_down}) {
        b->setAutoRepeat(true);
        b->setFocusPolicy(Qt::NoFocus);
        b->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
        b->setFixedWidth(16);
        b->setMinimumHeight(8);
        b->setIconSize(QSize(8, 6));
        layout->addWidget(b);
    }
    connect(m_up, &QToolButton::clicked, this, [this] { stepBy(1); });
    connect(m_down, &QToolButton::clicked, this, [this] { stepBy(-1); });
}

void UpDown::stepBy(int steps)
{
    constexpr double kLowest = 0;
    constexpr double kHighest = 9999;
    const double current = std::floor(leadingNumber(m_buddy.text()));
    const double next = std::clamp(current + static_cast<double>(steps), kLowest, kHighest);
    m_buddy.setText(QString::number(static_cast<qint64>(next)));
}

// ---------------------------------------------------------------------------------------

QWidget* createFieldWidget(Field& field, QWidget* parent)
{
    switch (field.kind()) {
    case FieldKind::Text:
        return new BoundLineEdit(field, parent);
    case FieldKind::Check:
        return new BoundCheckBox(field, parent);
    case FieldKind::Option:
        return new BoundRadioButton(field, parent);
    case FieldKind::Combo:
        return new BoundComboBox(field, parent);
    case FieldKind::List:
        return new BoundListWidget(field, parent);
    case FieldKind::Grid:
        return new BoundTable(field, 1, false, parent);
    case FieldKind::Label:
        return new BoundLabel(field, parent);
    case FieldKind::State:
        break;
    }
    return nullptr;
}

} // namespace steward
