#include "ui/frmBOT.h"

#include "bots/BotModelScan.h"
#include "bots/BotPicker.h"
#include "bots/BotRoster.h"
#include "generate/BotSkills.h"
#include "support/AppContext.h"
#include "model/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "ui/FormServices.h"
#include "ui/KeyFilters.h"
#include "ui/frmMain.h"
#include "ui/QtPrompts.h"

#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace steward {

namespace {
QLabel* namedLabel(const QString& name, const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    return label;
}
/// The scan's progress on the picker's own labels and bar.
class PickerProgress final : public ScanProgress {
public:
    PickerProgress(QWidget* form, QLabel* scanning, QLabel* activity, QProgressBar* bar)
        : m_form(form), m_scanning(scanning), m_activity(activity), m_bar(bar)
    {}
    void show() override
    {
        setShown(true);
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    void hide() override { setShown(false); }
    void unload() override {}
    void setActivity(const QString& text) override
    {
        m_activity->setText(text);
        if (m_activity->isVisible())
            m_activity->repaint();
    }
    void setActivityVisible(bool visible) override { m_activity->setVisible(visible); }
    void setMaximum(int maximum) override { m_bar->setRange(0, std::max(maximum, 1)); }
    void setValue(int value) override { m_bar->setValue(std::clamp(value, m_bar->minimum(), m_bar->maximum())); }
    void setBusy(bool busy) override
    {
        if (busy)
            m_form->setCursor(Qt::WaitCursor);
        else
            m_form->unsetCursor();
    }

private:
    void setShown(bool shown)
    {
        m_scanning->setVisible(shown);
        m_activity->setVisible(shown);
        m_bar->setVisible(shown);
    }
    QWidget* m_form;
    QLabel* m_scanning;
    QLabel* m_activity;
    QProgressBar* m_bar;
};

} // namespace

frmBOT::frmBOT(AppContext& app, ServerProfile& mainProfile, QWidget* parent)
    : QDialog(parent), m_app(app), m_mainProfile(mainProfile)
{
    setObjectName(QStringLiteral("frmBOT"));
    setWindowTitle(QStringLiteral("Add BOT"));
    setModal(false);

    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("tabBOTs"));
    auto* standard = new QWidget(m_tabs);
    auto* custom = new QWidget(m_tabs);
    buildStandardTab(standard);
    buildCustomTab(custom);
    m_tabs->addTab(standard, QStringLiteral("Standard"));
    m_tabs->addTab(custom, QStringLiteral("Custom"));
    QGridLayout* boxes = buildBotBoxes();
    buildScanProgress();
    QHBoxLayout* buttons = buildButtons();

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs, 1);
    layout->addLayout(boxes);
    layout->addWidget(m_scanning);
    layout->addWidget(m_progress);
    layout->addWidget(m_activity);
    layout->addLayout(buttons);

    connect(m_tabs, &QTabWidget::currentChanged, this, &frmBOT::tabBOTs_Click);

    // The load: the lists and their defaults, the installed models, then the placing.
    m_skill->addItems(botSkillNames());
    m_skill->setCurrentIndex(static_cast<int>(botSkillNames().indexOf(defaultBotSkill())));
    m_team->addItems(botTeams());
    m_team->setCurrentIndex(0);
    LoadBotList();

    // Keys: the names are selected on focus, the ping takes digits only; the lists take
    // no keys at all; Enter moves on as Tab does. The form's own filter comes last, so
    // that it sees each key first.
    auto* keys = new KeyFilters(app.services.beeper, this);
    keys->attach(m_name, TextBoxKeyRules{true, false, false, false});
    keys->attach(m_ping, TextBoxKeyRules{true, true, true, false});
    for (QWidget* child : findChildren<QWidget*>())
        child->installEventFilter(this);

    resize(520, 480);
    FormOnTop(app, this, true);
    CenterForm(app, this);
    DisableCloseMenu(app, this);
}

QGridLayout* frmBOT::buildBotBoxes()
{
    m_name = new QLineEdit(QStringLiteral("Desann"), this);
    m_name->setObjectName(QStringLiteral("txtBOTName"));
    m_skill = new QComboBox(this);
    m_skill->setObjectName(QStringLiteral("cboSkill"));
    m_team = new QComboBox(this);
    m_team->setObjectName(QStringLiteral("cboTeam"));
    m_ping = new QLineEdit(QStringLiteral("0"), this);
    m_ping->setObjectName(QStringLiteral("txtBOTPing"));
    m_ping->setToolTip(QStringLiteral("Assign a msec delay to mimic player ping"));
    auto* boxes = new QGridLayout;
    boxes->addWidget(namedLabel(QStringLiteral("Label1(0)"), QStringLiteral("Name:"), this), 0, 0);
    boxes->addWidget(m_name, 1, 0);
    boxes->addWidget(namedLabel(QStringLiteral("Label1(2)"), QStringLiteral("Skill:"), this), 0, 1);
    boxes->addWidget(m_skill, 1, 1);
    boxes->addWidget(namedLabel(QStringLiteral("Label1(1)"), QStringLiteral("Team:"), this), 0, 2);
    boxes->addWidget(m_team, 1, 2);
    boxes->addWidget(namedLabel(QStringLiteral("lblTimeOut"), QStringLiteral("Ping:"), this), 0, 3);
    boxes->addWidget(m_ping, 1, 3);
    boxes->setColumnStretch(0, 2);
    boxes->setColumnStretch(1, 2);
    return boxes;
}

void frmBOT::buildScanProgress()
{
    // Hidden while no scan runs.
    m_scanning = namedLabel(QStringLiteral("lblScanning"), QStringLiteral("Current Progress:"), this);
    m_activity = namedLabel(QStringLiteral("lblScannerShow"), QString(), this);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("pctCurrentProg"));
    m_progress->setTextVisible(false);
    m_progress->setRange(0, 1);
    m_scanView = std::make_unique<PickerProgress>(this, m_scanning, m_activity, m_progress);
    m_scanView->hide();
}

QHBoxLayout* frmBOT::buildButtons()
{
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    const char* captions[] = {"&OK", "&Cancel", "&Scan"};
    for (int i = 0; i < 3; ++i) {
        auto* button = new QPushButton(QString::fromLatin1(captions[i]), this);
        button->setObjectName(QStringLiteral("cmdOk(%1)").arg(i));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, i] { cmdOk_Click(i); });
        buttons->addWidget(button);
    }
    return buttons;
}

void frmBOT::buildStandardTab(QWidget* page)
{
    auto* frame = new QGroupBox(QStringLiteral("Models"), page);
    frame->setObjectName(QStringLiteral("fraModel"));
    auto* grid = new QGridLayout(frame);
    grid->addWidget(namedLabel(QStringLiteral("Label2(0)"), QStringLiteral("Dark Side"), frame), 0, 0, 1, 2);
    grid->addWidget(namedLabel(QStringLiteral("Label2(1)"), QStringLiteral("Light Side"), frame), 0, 2, 1, 2);
    const auto& models = stockBotModels();
    int dark = 0, light = 0;
    for (size_t i = 0; i < models.size(); ++i) {
        const int index = static_cast<int>(i);
        auto* button = new QRadioButton(models[i].name, frame);
        button->setObjectName(QStringLiteral("chkBOT(%1)").arg(index));
        // Two columns for each side.
        int& n = models[i].darkSide ? dark : light;
        const int column = (models[i].darkSide ? 0 : 2) + n / 7;
        grid->addWidget(button, 1 + n % 7, column);
        ++n;
        connect(button, &QRadioButton::clicked, this, [this, index] { chkBOT_Click(index); });
        m_models << button;
    }
    m_models.first()->setChecked(true);
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(frame);
    layout->addStretch(1);
}

void frmBOT::buildCustomTab(QWidget* page)
{
    auto* frame = new QGroupBox(QStringLiteral("Installed BOT's"), page);
    frame->setObjectName(QStringLiteral("Frame1"));
    m_installed = new QTableWidget(0, 2, frame);
    m_installed->setObjectName(QStringLiteral("grdBOTs"));
    m_installed->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_installed->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_installed->setSelectionMode(QAbstractItemView::SingleSelection);
    m_installed->verticalHeader()->hide();
    m_installed->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_installed->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    connect(m_installed, &QTableWidget::cellClicked, this, [this](int row, int) {
        const QTableWidgetItem* cell = m_installed->item(row, 0);
        grdBOTs_Click(cell ? cell->text() : QString());
    });
    // A click on the heading reads the heading's text.
    connect(m_installed->horizontalHeader(), &QHeaderView::sectionClicked, this,
            [this] { grdBOTs_Click(QStringLiteral("BOT Name")); });
    auto* inFrame = new QVBoxLayout(frame);
    inFrame->addWidget(m_installed);

    m_selectedCaption = namedLabel(QStringLiteral("lblSelectedBOT"), QStringLiteral("Selected BOT:"), page);
    m_selected = namedLabel(QStringLiteral("lblTheSelectedBOT"), QString(), page);
    m_selectedCaption->setHidden(true);
    m_selected->setHidden(true);
    auto* selected = new QHBoxLayout;
    selected->addWidget(m_selectedCaption);
    selected->addWidget(m_selected, 1);

    auto* layout = new QVBoxLayout(page);
    layout->addWidget(frame, 1);
    layout->addLayout(selected);
}

void frmBOT::LoadBotList() { fillInstalled(steward::LoadBotList(m_app)); }

void frmBOT::fillInstalled(const QList<QStringList>& rows)
{
    const QStringList heading = rows.value(0);
    m_installed->setHorizontalHeaderLabels({heading.value(0), heading.value(1)});
    m_installed->setRowCount(std::max(0, static_cast<int>(rows.size()) - 1));
    for (int r = 1; r < rows.size(); ++r)
        for (int c = 0; c < 2; ++c) {
            auto* item = new QTableWidgetItem(rows.at(r).value(c));
            item->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
            m_installed->setItem(r - 1, c, item);
        }
}

void frmBOT::chkBOT_Click(int index)
{
    if (!m_models.at(index)->isChecked())
        return;
    m_name->setText(m_models.at(index)->text());
    m_customTab = false;
}

void frmBOT::tabBOTs_Click(int index)
{
    m_customTab = index == 1;
    m_name->clear();
}

void frmBOT::grdBOTs_Click(const QString& firstCell)
{
    const QString model = pickedCustomModel(firstCell);
    m_name->setText(model);
    m_selected->setText(model);
    m_selectedCaption->setVisible(!model.isEmpty());
    m_selected->setVisible(!model.isEmpty());
}

void frmBOT::ok()
{
    PickerInput input;
    input.name = m_name->text();
    input.customTab = m_customTab;
    input.customModel = m_selected->text();
    for (int i = 0; i < m_models.size(); ++i)
        if (m_models.at(i)->isChecked()) {
            input.stockIndex = i;
            break;
        }
    input.skill = m_skill->currentText();
    input.team = m_team->currentText();
    input.ping = m_ping->text();
    const std::optional<QStringList> row = pickedBotRow(input);
    if (!row)
        return;
    appendRosterBot(m_mainProfile, *row);
    unloadForm(this);
}

void frmBOT::cmdOk_Click(int index)
{
    AppContext& app = m_app;
    // The questions of the scan open above this form, which stays on top.
    const AskingWindow asking(this);
    try {
        switch (index) {
        case 0:
            ok();
            break;
        case 1:
            unloadForm(this);
            break;
        case 2:
            if (runBotScan(app, *m_scanView))
                LoadBotList();
            break;
        default:
            break;
        }
    } catch (const RuntimeError& e) {
        unloadForm(this);
        reportInformation(app, e);
    }
}

bool frmBOT::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            focusNextChild();
            return true;
        }
        if (watched == m_skill || watched == m_team)
            return true;
    }
    return QDialog::eventFilter(watched, event);
}

frmBOT* showBotPicker(AppContext& app, frmMain& window)
{
    auto* picker = window.findChild<frmBOT*>(QStringLiteral("frmBOT"), Qt::FindDirectChildrenOnly);
    if (!picker || isUnloading(picker))
        picker = new frmBOT(app, window.profile(), &window);
    picker->show();
    picker->raise();
    picker->activateWindow();
    return picker;
}

} // namespace steward
