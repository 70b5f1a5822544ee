#include "commands/MapCycleCommands.h"
#include "commands/MapScanCommand.h"
#include "ui/CommandWiring.h"

#include "commands/ProfileCommands.h"
#include "commands/ProfileSet.h"
#include "commands/ProfileLoad.h"
#include "ui/ProfileMenu.h"
#include "commands/BanListCommands.h"
#include "bots/BotRoster.h"
#include "commands/BotRosterCommands.h"
#include "commands/ExportScriptCommands.h"
#include "commands/ExportServer.h"
#include "commands/MapCycleCommands.h"
#include "maps/MapRotation.h"
#include "maps/MapScanner.h"
#include "messaging/ArmMessaging.h"
#include "maps/MapTree.h"
#include "commands/OkCommand.h"
#include "commands/ConfigurationCommands.h"
#include "settings/ConfigurationFile.h"
#include "commands/CancelCommand.h"
#include "support/AppContext.h"
#include "commands/Commands.h"
#include "model/OptionRules.h"
#include "model/ServerProfile.h"
#include "commands/ToolTable.h"
#include "commands/AddressCommand.h"
#include "ui/frmAbout.h"
#include "ui/BotPage.h"
#include "ui/KeyFilters.h"
#include "ui/MainWindowHost.h"
#include "ui/MenuBuilder.h"
#include "ui/WizardForms.h"
#include "ui/frmBOT.h"
#include "ui/frmServerConsole.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QThread>

namespace steward {

namespace {
/// A restart that ends the process ends the event loop too. Outside any event loop
/// there is nothing to end: an exit then would stay pending and make the next loop
/// that starts, a dialog's too, return at once.
void endIfAsked(StartupOutcome outcome)
{
    if (outcome == StartupOutcome::EndProcess && QThread::currentThread()->loopLevel() > 0)
        QApplication::exit(0);
}
} // namespace

CommandWiring::CommandWiring(AppContext& app, QtWindowHost& host, AddressLookup& addresses)
    : m_app(app), m_host(host), m_addresses(addresses), m_wizard(std::make_unique<MapWizardWindows>(app, host))
{
    m_host.addWindowSetup([this](frmMain& window) { setUpWindow(window); });
    routeButtons();
    registerTools();
}

CommandWiring::~CommandWiring() = default;

void CommandWiring::withWindow(const std::function<void(frmMain&)>& routine) const
{
    if (frmMain* window = m_host.mainWindow())
        routine(*window);
}

void CommandWiring::setUpWindow(frmMain& window)
{
    // The option rules are attached before the load pours the store into the profile, so
    // that every stored value runs them.
    attachProfileRules(m_app, window.profile());
    buildMenuBar(window.menuBar(), [this](const QString& id) { m_dispatcher.SSActiveToolBars1_ToolClick(id); });
    if (auto* console = window.menuBar()->findChild<QAction*>(QStringLiteral("id_UtilitiesServerConsole")))
        console->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_K));
    if (m_profiles) {
        buildProfileMenu(window.menuBar(), *m_profiles, [this](const QString& choice) { profileChosen(choice); });
        window.setWindowTitle(mainWindowTitle(m_profiles->current()));
    }
    // The two pop-ups live with the window, so that their entries can be found by tool id.
    // A chosen entry runs once the menu has finished with the click and closed: its routine
    // may run pending events (a scan, a dialog, the wizard's start).
    for (const Tool* popup : {&standardsPopup(), &advancedPopup()})
        buildPopup(*popup, &window, [this, &window](const QString& id) {
            QMetaObject::invokeMethod(
                &window, [this, id] { m_dispatcher.SSActiveToolBars1_ToolClick(id); }, Qt::QueuedConnection);
        });
    bindBotPage(m_app, window);
    auto* keys = new KeyFilters(m_app.services.beeper, &window);
    keys->install(&window, &window.profile());

    // The boxes with a click routine answer a click of the user with it; code that sets
    // them runs the same routine through the profile.
    ServerProfile& profile = window.profile();
    for (FieldId name : {F::chkMapAutoCycle, F::chkUseINI})
        if (auto* box = window.control<QCheckBox>(name.key()))
            QObject::connect(box, &QCheckBox::clicked, &window, [&profile, name] { profile.click(name); });
}

void CommandWiring::profileChosen(const QString& choice)
{
    frmMain* window = m_host.mainWindow();
    if (!window || !m_profiles)
        return;
    ServerProfile& profile = window->profile();
    if (choice == QLatin1String("new"))
        endIfAsked(mnuProfileNew_Click(m_app, profile, m_host, *m_profiles));
    else if (choice == QLatin1String("rename"))
        endIfAsked(mnuProfileRename_Click(m_app, profile, m_host, *m_profiles));
    else if (choice == QLatin1String("delete"))
        endIfAsked(mnuProfileDelete_Click(m_app, profile, m_host, *m_profiles));
    else
        endIfAsked(mnuProfileSwitch_Click(m_app, profile, m_host, *m_profiles, choice));
}

void CommandWiring::routeButtons()
{
    UiRoutes& routes = m_host.routes();
    routes.onClick(QStringLiteral("cmdOk"), [this](frmMain& w) { cmdOk_Click(m_app, w.profile(), m_host); });
    routes.onClick(QStringLiteral("cmdCancel"), [this](frmMain& w) { cmdCancel_Click(m_app, w.profile(), m_host); });
    routes.onClick(QStringLiteral("cmdDefault"), [this](frmMain& w) { cmdDefault_Click(m_app, w.profile()); });
    routes.onClick(QStringLiteral("cmdReset"), [this](frmMain&) { endIfAsked(cmdReset_Click(m_app, m_host)); });
    routes.onClick(QStringLiteral("cmdTrayIt"), [](frmMain&) {});
    routes.onClick(QStringLiteral("cmdIP"), [this](frmMain& w) {
        Field& field = cmdIP_Click(m_app, w.profile(), m_addresses);
        if (auto* box = w.control<QLineEdit>(field.key())) {
            box->setFocus();
            box->selectAll();
        }
    });
    for (int index = 0; index <= 4; ++index)
        routes.onClick(QStringLiteral("cmdBOTs(%1)").arg(index), [this, index](frmMain& w) {
            cmdBOTs_Click(m_app, w.profile(), index, [this, &w] { showBotPicker(m_app, w); });
        });
    for (int index = 2; index <= 4; ++index)
        routes.onClick(QStringLiteral("cmdThreeWave(%1)").arg(index),
                       [this, index](frmMain& w) { cmdThreeWave_Click(m_app, w.profile(), index); });
    routes.onClick(QStringLiteral("lblLink"), [this](frmMain&) { openLink(m_app, Link::ProductForum); });
    routes.onClick(QStringLiteral("Picture1"), [this](frmMain&) { openLink(m_app, Link::OfficialSite); });
    routes.onClick(QStringLiteral("Picture3"), [this](frmMain&) { openLink(m_app, Link::ProductSite); });

    routes.on(QStringLiteral("tvwAvailMaps"), UiEventKind::DblClick,
              [this](frmMain& w, const UiEvent&) { tvwAvailMaps_DblClick(m_app, w.profile()); });
    routes.on(QStringLiteral("txtServerINI"), UiEventKind::DblClick,
              [this](frmMain& w, const UiEvent&) { txtServerINI_DblClick(m_app, w.profile()); });

    // The tree always offers the stock sets; the rotation offers its commands only
    // when it has a row.
    routes.on(QStringLiteral("tvwAvailMaps"), UiEventKind::ContextMenu,
              [this](frmMain& w, const UiEvent& e) { showPopup(QStringLiteral("ID_mnuStandards"), w, e.globalPos); });
    routes.on(QStringLiteral("lsvMapRotation"), UiEventKind::ContextMenu, [this](frmMain& w, const UiEvent& e) {
        if (rotationMenuOpens(w.profile()))
            showPopup(QStringLiteral("ID_Advanced"), w, e.globalPos);
    });
}

void CommandWiring::showPopup(const QString& popupId, frmMain& window, const QPoint& where)
{
    if (auto* menu = window.findChild<QMenu*>(popupId))
        menu->popup(where);
}

void CommandWiring::registerTools()
{
    auto on = [this](const char* id, std::function<void(frmMain&)> routine) {
        m_dispatcher.on(QString::fromLatin1(id), [this, routine] { withWindow(routine); });
    };
    on("id_FileExit", [this](frmMain& w) { cmdCancel_Click(m_app, w.profile(), m_host); });
    on("id_UtilitiesConfigurationSave", [this](frmMain& w) { UtilitiesConfigurationSave(m_app, w.profile()); });
    on("id_UtilitiesConfigurationLoad", [this](frmMain&) { endIfAsked(LoadConfiguration(m_app, m_host)); });
    on("id_UtilitiesExportLinuxShellScript", [this](frmMain& w) { mnuLinux_Click(m_app, w.profile()); });
    on("id_UtilitiesExportBatchFile", [this](frmMain& w) { mnuBatchFile_Click(m_app, w.profile()); });
    on("id_UtilitiesExportServerConfiguration", [this](frmMain& w) { mnuExportServer_Click(m_app, w.profile()); });
    on("id_UtilitiesServerConsole", [this](frmMain& w) { showServerConsole(m_app, w.profile(), &w); });
    on("id_HelpContents", [this](frmMain&) { openHelpContents(m_app); });
    on("id_HelpModCentral", [this](frmMain&) { openLink(m_app, Link::ModCentral); });
    on("id_HelpOfficialSite", [this](frmMain&) { openLink(m_app, Link::OfficialSite); });
    on("id_HelpForumsForumPlanet", [this](frmMain&) { openLink(m_app, Link::ForumPlanet); });
    on("id_HelpForumsModCentral", [this](frmMain&) { openLink(m_app, Link::ModCentralForum); });
    on("id_HelpMailAuthor", [this](frmMain&) { mailAuthor(m_app); });
    on("id_HelpAboutArenaSteward", [this](frmMain& w) { showAbout(m_app, &w); });
    on("id_UtilitiesMapsScanfornewmaps", [this](frmMain& w) { mnuMapScan_Click(m_app, w.profile()); });
    on("id_UtilitiesExportMapCycle", [this](frmMain& w) { mnuExportMapCycle_Click(m_app, w.profile()); });
    on("ID_AllStandardMPMaps", [this](frmMain& w) { AddStandardMaps(m_app, w.profile(), StockSet::FreeForAll); });
    on("ID_AllStandardSWMaps", [this](frmMain& w) { AddStandardMaps(m_app, w.profile(), StockSet::CaptureTheFlag); });
    on("ID_AllStandardCPMaps", [this](frmMain& w) { AddStandardMaps(m_app, w.profile(), StockSet::Duel); });
    on("ID_SetStartingMap", [this](frmMain& w) { ID_SetStartingMap(m_app, w.profile()); });
    on("ID_SortAscending", [](frmMain& w) { ID_SortAscending(w.profile()); });
    on("ID_SortDescending", [](frmMain& w) { ID_SortDescending(w.profile()); });
    on("ID_RemoveMap", [this](frmMain& w) { ID_RemoveMap(m_app, w.profile()); });
    on("ID_ClearList", [this](frmMain& w) { ID_ClearList(m_app, w.profile()); });
    on("ID_MapWizard", [this](frmMain& w) { m_wizard->wizard().ID_MapWizard(w.profile()); });
}

} // namespace steward
