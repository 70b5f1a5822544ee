#include "ui/frmMain.h"

#include "ui/TwoLineCheckBox.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "ui/FieldWidgets.h"
#include "ui/FormServices.h"
#include "ui/MainLayout.h"
#include "ui/MapWidgets.h"

#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <cmath>
#include <functional>

namespace steward {

namespace {

constexpr int kTwipsPerPixel = 15;
/// Room for this many digits in a narrow number box and in a mask box.
constexpr int kNarrowDigits = 4;
constexpr int kMaskDigits = 7;
constexpr int kFontPointSize = 9;
constexpr QSize kPictureSize(176, 132);
const char* const kEventKeyProperty = "stewardEventKey";

int twipsToPixels(int twips) { return static_cast<int>(std::lround(twips / static_cast<double>(kTwipsPerPixel))); }

/// A label that acts on a click, shown as a link.
class LinkLabel final : public QLabel {
public:
    LinkLabel(const QString& text, std::function<void()> onClick, QWidget* parent)
        : QLabel(text, parent), m_onClick(std::move(onClick))
    {
        setCursor(Qt::PointingHandCursor);
        QFont f = font();
        f.setUnderline(true);
        setFont(f);
        QPalette p = palette();
        p.setColor(QPalette::WindowText, p.color(QPalette::Link));
        setPalette(p);
    }

protected:
    void mouseReleaseEvent(QMouseEvent* event) override
    {
        QLabel::mouseReleaseEvent(event);
        if (rect().contains(event->position().toPoint()))
            m_onClick();
    }

private:
    std::function<void()> m_onClick;
};

/// The width of a text box that shows this many digits.
int digitsWidth(const QLineEdit& box, int digits)
{
    const QMargins text = box.textMargins();
    constexpr int kFrameAndPadding = 10;
    return box.fontMetrics().horizontalAdvance(QString(digits, QLatin1Char('0'))) + text.left() + text.right() +
           kFrameAndPadding;
}

bool growsTall(const QWidget* widget) { return widget->sizePolicy().verticalPolicy() & QSizePolicy::ExpandFlag; }

/// The keys of the controls that an item of a layout table puts side by side ("a+b").
QStringList parts(const QString& item) { return item.split(QLatin1Char('+')); }

/// "name(3)" as name and index, "name" as name and -1.
std::pair<QString, int> splitKey(const QString& key)
{
    const qsizetype open = key.indexOf(QLatin1Char('('));
    if (open < 0 || !key.endsWith(QLatin1Char(')')))
        return {key, -1};
    bool ok = false;
    const int index = key.mid(open + 1, key.size() - open - 2).toInt(&ok);
    return ok ? std::pair{key.left(open), index} : std::pair{key, -1};
}

} // namespace

frmMain::frmMain(AppContext& app, QWidget* parent)
    : QMainWindow(parent), m_app(app), m_profile(std::make_unique<ServerProfile>())
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(kProductTitle);
    setAttribute(Qt::WA_DeleteOnClose);
    // The window holds its many fields at a fixed size, so its text has a fixed size too.
    QFont compact = font();
    compact.setPointSize(kFontPointSize);
    setFont(compact);

    auto* central = new QWidget(this);
    auto* column = new QVBoxLayout(central);
    column->setContentsMargins(4, 4, 4, 4);
    column->setSpacing(4);

    m_mainTab = makeTabs(QStringLiteral("vsMainTab"), mainPages(), central);
    column->addWidget(m_mainTab, 1);

    auto* commands = new QHBoxLayout;
    for (const QString& name : commandBarButtons()) {
        if (name.isEmpty())
            commands->addStretch(1);
        else
            commands->addWidget(makeControl(name, central));
    }
    column->addLayout(commands);
    setCentralWidget(central);

    connect(&m_profile->field(F::MousePointer), &Field::valueChanged, this, &frmMain::applyPointer);
    applyPointer();
}

frmMain::~frmMain()
{
    // The controls go before the profile that they are bound to.
    delete takeCentralWidget();
    m_controls.clear();
}

QWidget* frmMain::control(const QString& key) const { return m_controls.value(key, nullptr); }

QTabWidget* frmMain::makeTabs(const QString& key, const QList<PageLayout>& pages, QWidget* parent)
{
    auto* tabs = new QTabWidget(parent);
    for (const PageLayout& page : pages)
        tabs->addTab(buildPage(page), page.caption);
    Field& field = *m_profile->findByName(key);
    new FieldPresence(tabs, field);
    tabs->setCurrentIndex(field.value());
    connect(&field, &Field::valueChanged, tabs, [tabs, &field] {
        if (tabs->currentIndex() != field.value())
            tabs->setCurrentIndex(field.value());
    });
    connect(tabs, &QTabWidget::currentChanged, &field, [&field](int index) { field.setValue(index); });
    m_controls.insert(key, tabs);
    return tabs;
}

QWidget* frmMain::buildPage(const PageLayout& layout)
{
    auto* page = new QWidget;
    auto* grid = new QGridLayout(page);
    grid->setContentsMargins(layout.margin, layout.margin, layout.margin, layout.margin);
    grid->setSpacing(4);
    bool tall = false;
    int rows = 0;
    for (const Block& block : layout.blocks) {
        QWidget* box = nullptr;
        if (block.frame.isEmpty()) {
            box = new QWidget(page);
        } else {
            auto* frame = new QGroupBox(block.caption, page);
            frame->setObjectName(block.frame);
            m_controls.insert(block.frame, frame);
            box = frame;
        }
        auto* stack = new QVBoxLayout(box);
        if (block.frame.isEmpty())
            stack->setContentsMargins(0, 0, 0, 0);
        else
            stack->setContentsMargins(4, 2, 4, 4);
        stack->setSpacing(4);
        bool blockTall = false;
        for (const Section& section : block.sections) {
            auto* sectionGrid = new QGridLayout;
            sectionGrid->setHorizontalSpacing(4);
            sectionGrid->setVerticalSpacing(section.spacing >= 0 ? section.spacing : section.captionsAbove ? 2 : 3);
            stack->addLayout(sectionGrid);
            buildSection(sectionGrid, section);
            for (int i = 0; i < sectionGrid->count(); ++i)
                if (QWidget* w = sectionGrid->itemAt(i)->widget(); w && growsTall(w)) {
                    blockTall = true;
                    stack->setStretchFactor(sectionGrid, 1);
                }
        }
        if (!blockTall)
            stack->addStretch(1);
        tall = tall || blockTall;
        grid->addWidget(box, block.row, block.column, block.rowSpan, block.columnSpan,
                        block.top ? Qt::AlignTop : Qt::Alignment());
        if (blockTall)
            grid->setRowStretch(block.row, 1);
        rows = std::max(rows, block.row + block.rowSpan);
    }
    for (int c = 0; c < layout.columnStretch.size(); ++c)
        grid->setColumnStretch(c, layout.columnStretch.at(c));
    if (!tall)
        grid->setRowStretch(rows, 1);
    return page;
}

void frmMain::buildSection(QGridLayout* grid, const Section& section)
{
    const int columns = std::max(1, section.columns);
    const int count = static_cast<int>(section.keys.size());
    const int perColumn = (count + columns - 1) / columns;
    for (int i = 0; i < count; ++i) {
        const QString& item = section.keys.at(i);
        if (item.isEmpty())
            continue;
        const int row = perColumn > 0 ? i % perColumn : 0;
        const int column = perColumn > 0 ? i / perColumn : 0;
        QWidget* caption = nullptr;
        QWidget* widget = makeItem(item, grid->parentWidget(), &caption);
        if (section.captionsAbove) {
            // Each item takes two rows: its caption (or nothing), then its control.
            if (caption)
                grid->addWidget(caption, 2 * row, column);
            grid->addWidget(widget, 2 * row + 1, column);
            if (growsTall(widget))
                grid->setRowStretch(2 * row + 1, 1);
        } else if (caption) {
            grid->addWidget(caption, row, 2 * column);
            grid->addWidget(widget, row, 2 * column + 1);
        } else {
            grid->addWidget(widget, row, 2 * column, 1, 2);
        }
    }
    if (!section.captionsAbove)
        for (int c = 0; c < columns; ++c)
            grid->setColumnStretch(2 * c + 1, 1);
}

QWidget* frmMain::makeItem(const QString& item, QWidget* parent, QWidget** captionLabel)
{
    const QStringList members = parts(item);
    QWidget* row = nullptr;
    QHBoxLayout* line = nullptr;
    if (members.size() > 1) {
        row = new QWidget(parent);
        line = new QHBoxLayout(row);
        line->setContentsMargins(0, 0, 0, 0);
        line->setSpacing(4);
    }
    QWidget* first = makeControl(members.first(), row ? row : parent);
    if (Field* field = FieldPresence::fieldOf(first); field && !field->definition().captionLabel.isEmpty()) {
        auto* caption = new QLabel(field->caption(), parent);
        caption->setObjectName(field->definition().captionLabel);
        caption->setBuddy(first);
        FieldPresence::of(first)->addCompanion(caption);
        m_controls.insert(caption->objectName(), caption);
        *captionLabel = caption;
    }
    if (!row)
        return first;
    line->addWidget(first);
    bool fills = first->sizePolicy().horizontalPolicy() & QSizePolicy::ExpandFlag;
    for (qsizetype i = 1; i < members.size(); ++i) {
        QWidget* member = makeControl(members.at(i), row);
        line->addWidget(member);
        fills = fills || (member->sizePolicy().horizontalPolicy() & QSizePolicy::ExpandFlag);
    }
    if (!fills)
        line->addStretch(1);
    return row;
}

QWidget* frmMain::makeControl(const QString& key, QWidget* parent)
{
    QWidget* widget = nullptr;
    if (key == QLatin1String("vsExtraGameFlags")) {
        widget = makeTabs(key, gamePages(), parent);
        static_cast<QTabWidget*>(widget)->setDocumentMode(true);
    } else if (key == QLatin1String("updBOTThinkTime")) {
        Field& buddy = m_profile->field(F::txtBOTThinkTime);
        auto* spinner = new UpDown(buddy, parent);
        spinner->setObjectName(key);
        spinner->setProperty("Tag", QString());
        if (QWidget* box = control(QStringLiteral("txtBOTThinkTime"))) {
            FieldPresence::of(box)->addCompanion(spinner);
            spinner->setFixedHeight(box->sizeHint().height());
        }
        widget = spinner;
    } else {
        const auto [name, index] = splitKey(key);
        if (Field* field = m_profile->findByName(name, index))
            widget = makeFieldControl(*field, parent);
        else
            widget = makeStaticControl(key, parent);
    }
    Q_ASSERT(widget);
    m_controls.insert(key, widget);
    return widget;
}

QWidget* frmMain::makeFieldControl(Field& field, QWidget* parent)
{
    QWidget* widget = nullptr;
    const QString& name = field.name();
    if (name == QLatin1String("tvwAvailMaps")) {
        widget = new MapTreeView(m_app, *m_profile, parent);
    } else if (name == QLatin1String("lsvMapRotation")) {
        widget = new RotationGrid(field, parent);
    } else if (name == QLatin1String("grdBOTList")) {
        widget = new BoundTable(field, 5, true, parent);
    } else if (name == QLatin1String("chkRestartServer")) {
        // The Misc. page has room for this caption only on two lines.
        widget = new TwoLineCheckBox(field, parent);
    } else if (name == QLatin1String("picMap")) {
        auto* picture = new BoundPicture(field, parent);
        picture->setFixedSize(kPictureSize);
        widget = picture;
    } else {
        widget = createFieldWidget(field, parent);
    }
    if (auto* box = qobject_cast<QLineEdit*>(widget)) {
        if (isNarrowTextField(name))
            box->setFixedWidth(digitsWidth(*box, kNarrowDigits));
        if (isMaskField(name)) {
            box->setFixedWidth(digitsWidth(*box, kMaskDigits));
            box->setReadOnly(true);
        }
    }
    if (auto* label = qobject_cast<BoundLabel*>(widget)) {
        // A display label keeps its line while it is empty, so that nothing moves when it fills.
        label->setWordWrap(true);
        label->setMinimumHeight(label->fontMetrics().height());
    }
    watchEvents(widget, field.key());
    return widget;
}

QWidget* frmMain::makeStaticControl(const QString& key, QWidget* parent)
{
    for (const StaticControl& entry : staticControls()) {
        if (entry.name != key)
            continue;
        QWidget* widget = nullptr;
        switch (entry.kind) {
        case StaticControl::Kind::Button: {
            auto* button = new QPushButton(entry.text, parent);
            button->setAutoDefault(false);
            connect(button, &QPushButton::clicked, this, [this, key] { raiseEvent({key, UiEventKind::Click, {}}); });
            widget = button;
            break;
        }
        case StaticControl::Kind::Label: {
            auto* label = new QLabel(entry.text, parent);
            label->setWordWrap(entry.wrap);
            widget = label;
            break;
        }
        case StaticControl::Kind::Link:
            widget = new LinkLabel(
                entry.text,
                [this, key] {
                    raiseEvent({key, UiEventKind::Click, {}});
                },
                parent);
            break;
        }
        widget->setObjectName(key);
        widget->setToolTip(entry.tooltip);
        widget->setProperty("Tag", QString());
        if (entry.hidden)
            widget->setHidden(true);
        return widget;
    }
    return nullptr;
}

void frmMain::watchEvents(QWidget* widget, const QString& key)
{
    widget->setProperty(kEventKeyProperty, key);
    widget->installEventFilter(this);
    if (auto* area = qobject_cast<QAbstractScrollArea*>(widget)) {
        area->viewport()->setProperty(kEventKeyProperty, key);
        area->viewport()->installEventFilter(this);
    }
}

bool frmMain::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::MouseButtonDblClick && event->type() != QEvent::ContextMenu)
        return QMainWindow::eventFilter(watched, event);
    const QString key = watched->property(kEventKeyProperty).toString();
    if (key.isEmpty())
        return QMainWindow::eventFilter(watched, event);
    if (event->type() == QEvent::MouseButtonDblClick) {
        raiseEvent({key, UiEventKind::DblClick, {}});
        return QMainWindow::eventFilter(watched, event);
    }
    // A right click with a routine of its own replaces the control's standard menu.
    const auto* menu = static_cast<QContextMenuEvent*>(event);
    const bool routed = m_routes && m_routes->has(key, UiEventKind::ContextMenu);
    raiseEvent({key, UiEventKind::ContextMenu, menu->globalPos()});
    return routed || QMainWindow::eventFilter(watched, event);
}

void frmMain::raiseEvent(const UiEvent& event)
{
    emit uiEvent(event);
    if (m_routes)
        m_routes->dispatch(m_app, *this, event);
}

void frmMain::applyPointer()
{
    switch (m_profile->formPointer()) {
    case 0:
        unsetCursor();
        break;
    case 1:
        setCursor(Qt::ArrowCursor);
        break;
    case 2:
        setCursor(Qt::CrossCursor);
        break;
    case 3:
        setCursor(Qt::IBeamCursor);
        break;
    case 11:
        setCursor(Qt::WaitCursor);
        break;
    case 13:
        setCursor(Qt::BusyCursor);
        break;
    default:
        unsetCursor();
        break;
    }
}

void frmMain::unload() { unloadForm(this); }

bool frmMain::isUnloading() const { return steward::isUnloading(this); }

void frmMain::closeEvent(QCloseEvent* event)
{
    // A close that gets here shrinks the window to the task bar in the instant before it
    // goes; it is never refused here.
    if (isVisible() && !isMinimized())
        showMinimized();
    event->accept();
}

void frmMain::setRotationColumns(const QList<int>& twips)
{
    auto* rotation = control<QTreeWidget>(QStringLiteral("lsvMapRotation"));
    if (!rotation)
        return;
    if (rotation->columnCount() < twips.size())
        rotation->setColumnCount(static_cast<int>(twips.size()));
    for (int c = 0; c < twips.size(); ++c)
        rotation->setColumnWidth(c, twipsToPixels(twips.at(c)));
}

void frmMain::setSizeTwips(int height, int width) { resize(twipsToPixels(width), twipsToPixels(height)); }

void frmMain::centerForm() { CenterForm(m_app, this); }

void frmMain::disableCloseMenu() { DisableCloseMenu(m_app, this); }

} // namespace steward
