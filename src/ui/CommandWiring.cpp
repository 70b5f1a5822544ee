#include "ui/CommandWiring.h"

#include "generate/BanListCommands.h"
#include "generate/ExportScripts.h"
#include "generate/ExportServer.h"
#include "generate/MapCycleCommands.h"
#include "maps/MapRotation.h"
#include "maps/MapTree.h"
#include "generate/OkCommand.h"
#include "settings/ConfigurationFile.h"
#include "settings/SaveSettings.h"
#include "shell/AppContext.h"
#include "shell/Commands.h"
#include "shell/OptionRules.h"
#include "shell/ServerProfile.h"
#include "shell/ToolTable.h"
#include "support/LocalAddress.h"
#include "ui/AboutWindow.h"
#include "ui/KeyFilters.h"
#include "ui/MainWindowHost.h"
#include "ui/MenuBuilder.h"
#include "ui/frmMain.h"
#include "wizard/WizardRecords.h"

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
    : m_app(app), m_host(host), m_addresses(addresses)
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
    attachOptionRules(m_app, window.profile());
    buildMenuBar(window.menuBar(), [this](const QString& id) { m_dispatcher.SSActiveToolBars1_ToolClick(id); });
    // The two pop-ups live with the window, so that their entries can be found by tool id.
    // A chosen entry runs once the menu has finished with the click and closed: its routine
    // may run pending events (a scan, a dialog, the wizard's start).
    for (const Tool* popup : {&standardsPopup(), &advancedPopup()})
        buildPopup(*popup, &window, [this, &window](const QString& id) {
            QMetaObject::invokeMethod(
                &window, [this, id] { m_dispatcher.SSActiveToolBars1_ToolClick(id); }, Qt::QueuedConnection);
        });
    auto* keys = new KeyFilters(m_app.services.beeper, &window);
    keys->install(&window, &window.profile());

    // The two map check boxes answer a click of the user with their own routines; code
    // that sets them runs those routines itself.
    ServerProfile& profile = window.profile();
    if (auto* autoCycle = window.control<QCheckBox>(QStringLiteral("chkMapAutoCycle")))
        QObject::connect(autoCycle, &QCheckBox::clicked, &window,
                         [this, &profile] { chkMapAutoCycle_Click(m_app, profile); });
    if (auto* savedCycle = window.control<QCheckBox>(QStringLiteral("chkUseINI")))
        QObject::connect(savedCycle, &QCheckBox::clicked, &window,
                         [this, &profile] { chkUseINI_Click(m_app, profile); });
}

void CommandWiring::routeButtons()
{
    UiRoutes& routes = m_host.routes();
    routes.onClick(QStringLiteral("cmdOk"), [this](frmMain& w) { cmdOk_Click(m_app, w.profile(), m_host); });
    routes.onClick(QStringLiteral("cmdCancel"),
                   [this](frmMain& w) { cmdCancel_Click(m_app, w.profile(), m_host); });
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
    on("id_HelpContents", [this](frmMain&) { openHelpContents(m_app); });
    on("id_HelpModCentral", [this](frmMain&) { openLink(m_app, Link::ModCentral); });
    on("id_HelpOfficialSite", [this](frmMain&) { openLink(m_app, Link::OfficialSite); });
    on("id_HelpForumsForumPlanet", [this](frmMain&) { openLink(m_app, Link::ForumPlanet); });
    on("id_HelpForumsModCentral", [this](frmMain&) { openLink(m_app, Link::ModCentralForum); });
    on("id_HelpMailAuthor", [this](frmMain&) { mailAuthor(m_app); });
    on("id_HelpAboutArenaSteward", [this](frmMain& w) { showAbout(m_app, &w); });
    for (const char* id : {"id_UtilitiesMapsScanfornewmaps", "id_UtilitiesExportMapCycle", "ID_AllStandardMPMaps",
                           "ID_AllStandardSWMaps", "ID_AllStandardCPMaps", "ID_SetStartingMap", "ID_SortAscending",
                           "ID_SortDescending", "ID_RemoveMap", "ID_ClearList"}) {
        const QString tool = QString::fromLatin1(id);
        on(id, [this, tool](frmMain& w) { runMapTool(m_app, w.profile(), tool); });
    }
    on("ID_MapWizard", [this](frmMain& w) {
        // The wizard's pages come later; its start prepares the per-map records.
        WizardState state;
        prepareMapWizard(m_app, w.profile(), state);
    });
}

} // namespace steward
