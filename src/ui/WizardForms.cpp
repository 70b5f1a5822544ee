#include "ui/WizardForms.h"
#include "model/FieldNames.h"

#include "support/AppContext.h"
#include "model/KeyRules.h"
#include "ui/FieldWidgets.h"
#include "ui/FormServices.h"
#include "ui/KeyFilters.h"
#include "ui/MainWindowHost.h"
#include "ui/MapWidgets.h"
#include "ui/QtPrompts.h"
#include "ui/frmMain.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace steward {

namespace {
/// 15 twips to a pixel.
int pixels(int twips) { return twips / 15; }

const char* const kTitles[] = {"Map Wizard - Select a Map", "Map Wizard - Game Type",
                               "Map Wizard - Limits and Options"};
} // namespace

WizardPage::WizardPage(AppContext& app, MapWizard& wizard, int number, QWidget* parent)
    : QDialog(parent), m_app(app), m_wizard(wizard), m_number(number)
{
    setObjectName(QStringLiteral("frmWizard_%1").arg(number));
    setWindowTitle(QString::fromLatin1(kTitles[number - 1]));
    auto* layout = new QVBoxLayout(this);
    if (number == 1)
        buildPage1(layout);
    else if (number == 2)
        buildPage2(layout);
    else
        buildPage3(layout);
    adjustSize();
    DisableCloseMenu(app, this);
    CenterForm(app, this);
}

void WizardPage::asking(const std::function<void()>& work)
{
    // The flow's boxes and its save dialog open above this page.
    const AskingWindow page(this);
    work();
}

QWidget* WizardPage::fieldWidget(FieldId id) { return createFieldWidget(m_wizard.fields().field(id), this); }

QPushButton* WizardPage::button(FieldId name, const QString& caption, const std::function<void()>& click)
{
    auto* b = new QPushButton(caption, this);
    b->setObjectName(name.key());
    b->setAutoDefault(false);
    connect(b, &QPushButton::clicked, this, [this, click] { asking(click); });
    return b;
}

void WizardPage::buildPage1(QVBoxLayout* layout)
{
    auto* motd = static_cast<QLineEdit*>(fieldWidget(W::txtMOTD));
    motd->setReadOnly(true);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("MOTD"), motd);
    layout->addLayout(form);

    layout->addWidget(new QLabel(QStringLiteral("Select a map to configure:"), this));
    auto* grid = new RotationGrid(m_wizard.fields().field(W::grdMapList), this);
    grid->header()->setStretchLastSection(false);
    grid->header()->setMinimumSectionSize(0);
    const int widths[] = {pixels(2205), pixels(50), 0, 0};
    for (int c = 0; c < 4; ++c)
        grid->setColumnWidth(c, widths[c]);
    grid->setSelectionMode(QAbstractItemView::SingleSelection);
    grid->setContextMenuPolicy(Qt::CustomContextMenu);
    grid->setMinimumHeight(200);
    connect(grid, &QTreeWidget::itemClicked, this, [this, grid](QTreeWidgetItem* item) {
        asking([&] { m_wizard.grdMapList_Click(grid->indexOfTopLevelItem(item)); });
    });
    connect(grid, &QWidget::customContextMenuRequested, this,
            [this, grid](const QPoint& at) { showWizardPopup(grid->viewport()->mapToGlobal(at)); });
    layout->addWidget(grid);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(button(W::cmdCancel, QStringLiteral("Cancel"), [this] { m_wizard.cmdCancel_Click(); }));
    QPushButton* next = button(W::cmdNext, QStringLiteral("Next >"), [this] { m_wizard.cmdNext_Click(1); });
    // Next follows the flow's enabled state.
    new FieldPresence(next, m_wizard.fields().field(W::cmdNext));
    buttons->addWidget(next);
    layout->addLayout(buttons);

    // The pop-up ID_Wizard, found by its tool ids.
    auto* popup = new QMenu(this);
    popup->setObjectName(QStringLiteral("ID_Wizard"));
    const char* entries[][2] = {
        {"ID_SetStartingMap", "Set Starting Map"}, {nullptr, nullptr}, {"ID_SortAscending", "Sort Ascending"},
        {"ID_SortDescending", "Sort Descending"},  {nullptr, nullptr}, {"ID_Cancel", "Cancel"}};
    for (const auto& entry : entries) {
        if (!entry[0]) {
            popup->addSeparator();
            continue;
        }
        QAction* action = popup->addAction(QString::fromLatin1(entry[1]));
        const QString id = QString::fromLatin1(entry[0]);
        action->setObjectName(id);
        // The tool runs once the menu has closed.
        connect(action, &QAction::triggered, this, [this, id] {
            QMetaObject::invokeMethod(
                this, [this, id] { asking([&] { m_wizard.runPopupTool(id); }); }, Qt::QueuedConnection);
        });
    }
}

void WizardPage::showWizardPopup(const QPoint& where)
{
    if (!m_wizard.popupOpens())
        return;
    if (auto* popup = findChild<QMenu*>(QStringLiteral("ID_Wizard")))
        popup->popup(where);
}

void WizardPage::buildPage2(QVBoxLayout* layout)
{
    auto* note = new QLabel(QStringLiteral("Make sure the selected map supports this game type!"), this);
    note->setObjectName(QStringLiteral("lblGameTypeNote"));
    layout->addWidget(note);

    auto* types = new QGroupBox(QStringLiteral("Game Type"), this);
    auto* typeLayout = new QVBoxLayout(types);
    for (int i = 0; i <= 6; ++i) {
        auto* option =
            static_cast<QRadioButton*>(createFieldWidget(m_wizard.fields().field(F::optDefaultGameType(i)), types));
        connect(option, &QRadioButton::clicked, this,
                [this, i] { asking([&] { m_wizard.optDefaultGameType_Click(i); }); });
        typeLayout->addWidget(option);
    }
    typeLayout->addWidget(createFieldWidget(m_wizard.fields().field(W::chkWizardDuelNoWeapons), types));
    layout->addWidget(types);

    auto* flags = new QGroupBox(QStringLiteral("DM Flags"), this);
    auto* flagLayout = new QVBoxLayout(flags);
    for (int i = 0; i <= 2; ++i)
        flagLayout->addWidget(createFieldWidget(m_wizard.fields().field(F::chkDMFlags(i)), flags));
    layout->addWidget(flags);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(button(W::cmdCancel, QStringLiteral("Cancel"), [this] { m_wizard.cmdCancel_Click(); }));
    buttons->addWidget(button(W::cmdBack, QStringLiteral("< Back"), [this] { m_wizard.cmdBack_Click(2); }));
    buttons->addWidget(button(W::cmdNext, QStringLiteral("Next >"), [this] { m_wizard.cmdNext_Click(2); }));
    layout->addLayout(buttons);
}

void WizardPage::buildPage3(QVBoxLayout* layout)
{
    auto* keys = new KeyFilters(m_app.services.beeper, this);
    auto* form = new QFormLayout;
    auto addText = [&](FieldId id, bool filtered) {
        Field& field = m_wizard.fields().field(id);
        QWidget* box = createFieldWidget(field, this);
        TextBoxKeyRules rules;
        rules.selectOnFocus = true;
        rules.keyDownFilter = filtered;
        rules.characterFilter = filtered;
        keys->attach(box, rules);
        form->addRow(field.caption(), box);
    };
    for (int i = 0; i <= 3; ++i)
        addText(F::txtGameLimits(i), false);
    addText(F::txtSpeed(1), false);
    addText(F::txtSpeed(0), false);
    addText(W::txtWarmup(1), true);
    layout->addLayout(form);

    auto* switches = new QGroupBox(QStringLiteral("Options"), this);
    auto* switchLayout = new QVBoxLayout(switches);
    for (int index : {5, 11, 15, 16, 0})
        switchLayout->addWidget(createFieldWidget(m_wizard.fields().field(F::chkQuake3Specific(index)), switches));
    layout->addWidget(switches);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(button(W::cmdCancel, QStringLiteral("Cancel"), [this] { m_wizard.cmdCancel_Click(); }));
    buttons->addWidget(button(W::cmdBack, QStringLiteral("< Back"), [this] { m_wizard.cmdBack_Click(3); }));
    buttons->addWidget(button(W::cmdNextMap, QStringLiteral("Next Map >>"), [this] { m_wizard.cmdNextMap_Click(); }));
    buttons->addWidget(button(W::cmdFinish, QStringLiteral("Finish"), [this] { m_wizard.cmdFinish_Click(); }));
    layout->addLayout(buttons);
}

// ---------------------------------------------------------------------------------------

QtWizardWindows::QtWizardWindows(AppContext& app, QtWindowHost& host) : m_app(app), m_host(host) {}

void QtWizardWindows::hideMainWindow()
{
    if (frmMain* window = m_host.mainWindow())
        window->hide();
}

void QtWizardWindows::showMainWindow() { m_host.showMainWindow(); }

void QtWizardWindows::showPage(int page)
{
    QPointer<WizardPage>& form = m_pages.at(page - 1);
    if ((!form || isUnloading(form)) && m_wizard)
        form = new WizardPage(m_app, *m_wizard, page);
    if (form)
        form->show();
}

void QtWizardWindows::hidePage(int page)
{
    if (WizardPage* form = m_pages.at(page - 1))
        form->hide();
}

void QtWizardWindows::unloadPage(int page)
{
    QPointer<WizardPage>& form = m_pages.at(page - 1);
    unloadForm(form);
    form = nullptr;
}

MapWizardWindows::MapWizardWindows(AppContext& app, QtWindowHost& host) : m_windows(app, host), m_wizard(app, m_windows)
{
    m_windows.setWizard(&m_wizard);
}

} // namespace steward
