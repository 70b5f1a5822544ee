// The real main window with its commands wired: buttons, menus, pop-ups and keys reach the
// program's routines; the profile menu and the message socket follow the window.
#include "commands/ProfileSet.h"
#include "commands/ToolTable.h"
#include "maps/MapRotation.h"
#include "messaging/ServerMessaging.h"
#include "model/Constants.h"
#include "settings/SettingsStore.h"
#include "support/ProductText.h"
#include "ui/Application.h"
#include "ui/QtPrompts.h"
#include "ui/WiredMainWindow.h"
#include "ui/frmScanner.h"
#include "ui/frmServerConsole.h"

namespace {

class Wired : public WiredMainWindow {
protected:
    void SetUp() override
    {
        lookup.name = u"box"_s; // a host named "box" at 10.0.0.7
        lookup.found = {QByteArray("\x0a\x00\x00\x07", 4)};
        openMainWindow();
    }
    /// Loads a configuration of the game's place and a host name; the window opens again.
    void loadConfiguration()
    {
        writeFile(t.gameFolder() + u"jk2ded"_s, "#!/bin/sh\n");
        const QString asc = t.root() + u"/saved.asc"_s;
        writeFile(asc, "PathToJedi," + t.gameFolder().toLatin1() +
                           "\r\nPathToServer,jk2ded\r\nRunOnce,1\r\nServerInfo10,Loaded% here\r\n");
        t.prompts.chooseFile(asc);
        action(u"id_UtilitiesConfigurationLoad"_s)->trigger();
        window = host.mainWindow();
        ASSERT_NE(window, nullptr);
    }
};

TEST_F(Wired, TheButtonsUnderThePagesReachTheirRoutines)
{
    click(u"cmdOk"_s);
    ASSERT_FALSE(t.prompts.shown.empty());
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, u"No maps have been selected"_s + kTail}));
    EXPECT_EQ(window->mainTab()->currentIndex(), 2) << "an empty rotation turns to the map page";
    window->findChild<QLineEdit*>(u"txtServerConfig(0)"_s)->setText(u"a,b"_s);
    click(u"cmdDefault"_s);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Information, u"Settings have been saved"_s + kTail}));
    EXPECT_EQ(t.store->GetSetting(u"ServerInfo10"_s), u"a%b"_s);
    click(u"cmdIP"_s);
    auto* box = window->findChild<QLineEdit*>(u"txtServerConfig(16)"_s);
    EXPECT_EQ(box->text(), u"10.0.0.7"_s);
    EXPECT_EQ(window->focusWidget(), box);
}

TEST_F(Wired, TheRotationOffersItsMenuOnlyWithARow)
{
    auto openMenu = [] { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); };
    QWidget* grid = window->control(u"lsvMapRotation"_s);
    ASSERT_NE(grid, nullptr);
    QContextMenuEvent right(QContextMenuEvent::Mouse, QPoint(5, 5), grid->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(grid, &right);
    EXPECT_EQ(openMenu(), nullptr);
    Field& rotation = profile->field(F::lsvMapRotation);
    rotation.addRow({u"ffa_yavin"_s});
    rotation.addRow({u"ctf_bespin"_s});
    QApplication::sendEvent(grid, &right);
    QMenu* menu = openMenu();
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->objectName(), u"ID_Advanced"_s);
    // A click on an entry runs its tool only after the menu is done with the click: a tool
    // that runs pending events would otherwise delete the menu under its own feet.
    QAction* sort = menu->findChild<QAction*>(u"ID_SortAscending"_s);
    ASSERT_NE(sort, nullptr);
    const QPointF at = menu->actionGeometry(sort).center();
    sendMouse(menu, QEvent::MouseButtonPress, at);
    sendMouse(menu, QEvent::MouseButtonRelease, at);
    EXPECT_EQ(rotation.cell(0, 0), u"ffa_yavin"_s) << "nothing runs inside the menu's click";
    QApplication::processEvents();
    EXPECT_EQ(rotation.cell(0, 0), u"ctf_bespin"_s);
}

TEST_F(Wired, OptionRulesActThroughTheWidgetsAndACharacterKeyInAnyControlMarksAChangeButNotTabOtherKeysOrMenus)
{
    for (int i = 0; i < 3; ++i)
        window->findChild<QCheckBox*>(u"chkDMFlags(%1)"_s.arg(i))->click();
    EXPECT_EQ(window->findChild<QLineEdit*>(u"txtDMFlags"_s)->text(), u"56"_s);
    EXPECT_FALSE(profile->configurationChanged()) << "mouse changes raise no question";
    auto pressed = [this](QWidget* w, int key, const QString& text) {
        profile->setConfigurationChanged(false);
        QKeyEvent e(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(w, &e);
        return profile->configurationChanged();
    };
    for (QWidget* w : window->findChildren<QWidget*>())
        EXPECT_TRUE(qobject_cast<QMenu*>(w->window()) || pressed(w, Qt::Key_X, u"x"_s))
            << w->metaObject()->className() << " " << w->objectName().toStdString();
    auto* combo = window->control<QComboBox>(u"cboConfig(0)"_s); // a list that opens later is still part of it
    combo->addItem(u"a.cfg"_s);
    combo->showPopup();
    EXPECT_TRUE(pressed(combo->view(), Qt::Key_X, u"x"_s));
    combo->hidePopup();
    for (const auto& [key, text] : {std::pair{Qt::Key_Tab, "\t"}, {Qt::Key_Left, ""}, {Qt::Key_F5, ""}})
        EXPECT_FALSE(pressed(window->control(u"txtServerConfig(0)"_s), key, QString::fromLatin1(text))) << key;
    tool(u"ID_AllStandardMPMaps"_s);
    EXPECT_TRUE(profile->configurationChanged()) << "a stock set marks a change";
}

TEST_F(Wired, LoadingAConfigurationRestartsIntoANewWindowAndAResetCanEndTheProgram)
{
    QPointer<frmMain> old = window;
    loadConfiguration();
    EXPECT_NE(window, old.data());
    EXPECT_EQ(window->profile().text(F::txtServerConfig(0)), u"Loaded, here"_s);
    settle();
    EXPECT_TRUE(old.isNull()) << "the old window is gone once its click has ended";
    // With the store wiped the restart asks for the executable; a cancel ends the program.
    t.prompts.answerNext(Answer::Yes);
    t.prompts.cancelNextDialog();
    // As in the program, the last window closing doesn't quit by itself: that would leave
    // a quit behind in the queue for the next loop.
    QApplication::setQuitOnLastWindowClosed(false);
    struct Restore {
        ~Restore() { QApplication::setQuitOnLastWindowClosed(true); }
    } restore;
    QObject scope;
    QTimer::singleShot(0, &scope, [this] { click(u"cmdReset"_s); });
    QTimer::singleShot(5000, &scope, [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QApplication::exec(), 0) << "the loop ends with the program";
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, u"User cancelled!"_s + kTail}));
    EXPECT_EQ(host.mainWindow(), nullptr);
    EXPECT_EQ(t.store->GetAllSettings().size(), 1) << "only the fallback game folder";
}

TEST_F(Wired, AnEndOutsideAnEventLoopLeavesNothingPendingForTheNextLoop)
{
    loadConfiguration(); // then a reset that ends the program with no event loop running to end
    t.prompts.answerNext(Answer::Yes);
    t.prompts.cancelNextDialog();
    click(u"cmdReset"_s);
    ASSERT_EQ(host.mainWindow(), nullptr);
    QDialog dialog; // a later dialog runs its own loop until it is answered
    QTimer::singleShot(0, &dialog, [&dialog] { dialog.accept(); });
    EXPECT_EQ(dialog.exec(), QDialog::Accepted);
}

TEST_F(Wired, UtilitiesServerConsoleOpensOneWindowWithCtrlK)
{
    QAction* entry = action(u"id_UtilitiesServerConsole"_s);
    EXPECT_EQ(entry->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_K));
    entry->trigger();
    entry->trigger();
    const auto windows = window->findChildren<frmServerConsole*>(u"frmServerConsole"_s);
    ASSERT_EQ(windows.size(), 1);
    EXPECT_TRUE(windows[0]->isVisible() && !windows[0]->isModal());
}

// A misspelled tool id on either side of the tool table leaves a menu entry that does
// nothing. No main window is loaded, so a routine that is reached runs nothing.
using ToolTableRoutes = WiredMainWindow;

TEST_F(ToolTableRoutes, EveryIdOfTheTablesReachesARoutine)
{
    const QStringList ids = toolIdsInTableOrder();
    ASSERT_FALSE(ids.isEmpty());
    for (const QString& id : ids)
        EXPECT_TRUE(wiring.dispatcher().SSActiveToolBars1_ToolClick(id)) << id.toStdString() << " reaches nothing";
    for (const Tool& menu : menuBarTools())
        EXPECT_FALSE(wiring.dispatcher().SSActiveToolBars1_ToolClick(menu.id)) << "a menu of its own is no command";
    EXPECT_FALSE(wiring.dispatcher().SSActiveToolBars1_ToolClick(u"id_FileExlt"_s));
    EXPECT_FALSE(wiring.dispatcher().on(u"id_FileExlt"_s, [] {})) << "an id outside the tables is refused";
    EXPECT_TRUE(t.prompts.shown.empty());
}

class ProfileMenu : public WiredMainWindow {
protected:
    void SetUp() override
    {
        writeFile(t.gameFolder() + u"jk2mvded"_s, "#!/bin/sh\n");
        for (const QString& name : {QString(), u"ctf"_s}) {
            IniSettingsStore store(profiles.settingsFile(name));
            store.SaveSetting(u"PathToJedi"_s, t.gameFolder());
            store.SaveSetting(u"PathToServer"_s, u"jk2mvded"_s);
            store.SaveSetting(u"RunOnce"_s, u"1"_s);
            store.SaveSetting(u"ServerInfo12"_s, name.isEmpty() ? u"Default Arena"_s : u"Flag Arena"_s);
        }
        profiles.use(*t.app, QString());
        wiring.setProfiles(&profiles);
        openMainWindow();
    }
    ProfileSet profiles{t.root() + u"/config"_s};
};

TEST_F(ProfileMenu, OffersEveryProfileAndSwitchesTheWindowToIt)
{
    auto* menu = child<QMenu>(window->menuBar(), u"mnuProfile"_s);
    ASSERT_NE(menu, nullptr);
    QStringList entries;
    for (const QAction* entry : menu->actions())
        entries << entry->objectName() + u'=' + entry->text();
    EXPECT_EQ(entries.join(u'|'),
              u"mnuProfileNew=New Profile...|mnuProfileRename=Rename Profile...|"
              "mnuProfileDelete=Delete Profile...|=|mnuProfile_default=default|mnuProfile_ctf=ctf"_s);
    EXPECT_TRUE(action(u"mnuProfile_default"_s)->isChecked());
    EXPECT_EQ(profile->text(F::txtServerConfig(2)), u"Default Arena"_s);
    action(u"mnuProfile_ctf"_s)->trigger();
    QApplication::processEvents();
    ASSERT_NE(host.mainWindow(), nullptr);
    EXPECT_EQ(host.mainWindow()->windowTitle(), u"Arena Steward - ctf"_s);
    EXPECT_EQ(host.mainWindow()->profile().text(F::txtServerConfig(2)), u"Flag Arena"_s);
    EXPECT_TRUE(action(u"mnuProfile_ctf"_s)->isChecked());
}

TEST(ProfileArgument, IsTakenOutOfTheCommandLineThatStartUpReads)
{
    const std::tuple<QStringList, const char*, const char*> cases[] = {
        {{}, "", ""},
        {{u"-check"_s}, "-check", ""},
        {{u"--profile"_s, u"ctf"_s}, "", "ctf"},
        {{u"--profile=duel"_s, u"-check"_s}, "-check", "duel"},
        {{u"-check"_s, u"--profile"_s}, "-check --profile", ""}};
    for (const auto& [arguments, commandLine, name] : cases) {
        QString profile;
        EXPECT_EQ(commandLineText(arguments, &profile), QString::fromLatin1(commandLine));
        EXPECT_EQ(profile, QString::fromLatin1(name));
    }
}

class MessagingWindow : public WiredMainWindow {
protected:
    void SetUp() override
    {
        t.app->services.sockets = &sockets;
        openMainWindow();
    }
    RecordingSockets sockets;
};

TEST_F(MessagingWindow, AFirstRunTicksTheBoxWithMinimiseAndCloseAndFileExitShutTheMessageSocket)
{
    EXPECT_TRUE(window->control<QCheckBox>(u"chkSendMessage"_s)->isChecked());
    EXPECT_TRUE(window->control<QRadioButton>(u"optStartMinimize"_s)->isChecked());
    for (const bool exit : {false, true}) {
        SCOPED_TRACE(exit ? "File > Exit" : "Close");
        if (!window)
            openMainWindow();
        profile->setText(F::txtMsgTimer, u"1"_s); // armed and sent once, so that its socket is open
        ServerMessaging& messaging = ServerMessaging::of(*t.app, *profile);
        messaging.arm();
        messaging.tmrServerMessage_Timer();
        ASSERT_TRUE(messaging.udpPeerA().isOpen());
        sockets.journal.clear();
        if (exit)
            action(u"id_FileExit"_s)->trigger();
        else
            click(u"cmdCancel"_s);
        QApplication::processEvents();
        EXPECT_EQ(exit ? sockets.journal.value(0) : sockets.journal.join(u'|'), u"close"_s);
        window = host.mainWindow();
    }
}

// The real prompts open each box above the window that asked for it, not behind it.
class BoxOwner : public WiredMainWindow {
protected:
    void SetUp() override
    {
        openMainWindow();
        prompts.setOwner(window);
        t.app->services.prompts = &prompts;
    }
    void TearDown() override
    {
        t.app->services.prompts = &t.prompts;
        WiredMainWindow::TearDown();
    }
    /// Runs action; every box or file dialog that comes up meanwhile is noted by the
    /// object name of the window it belongs to, and answered No, or cancelled.
    QStringList ownersDuring(const std::function<void()>& action)
    {
        QStringList owners;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            for (QWidget* w : QApplication::topLevelWidgets()) {
                auto* box = qobject_cast<QMessageBox*>(w);
                auto* dialog = qobject_cast<QFileDialog*>(w);
                if ((!box && !dialog) || !w->isVisible())
                    continue;
                owners << (w->parentWidget() ? w->parentWidget()->window()->objectName() : u"(none)"_s);
                if (dialog)
                    dialog->reject();
                else
                    (box->button(QMessageBox::No) ? box->button(QMessageBox::No) : box->button(QMessageBox::Ok))
                        ->click();
            }
        });
        poll.start(10);
        action();
        return owners;
    }
    /// Clicks a button of a form and names the owners of the boxes that come up.
    QStringList ownersOfClick(const QString& formName, const QString& button)
    {
        auto* b = child(form(formName), button);
        return b ? ownersDuring([b] { b->click(); }) : QStringList();
    }
    QtPrompts prompts;
};

TEST_F(BoxOwner, ThePickersTheWizardsAndTheScannersBoxesAndDialogsOpenAboveThem)
{
    window->control<QPushButton>(u"cmdBOTs(3)"_s)->click();
    EXPECT_EQ(ownersOfClick(u"frmBOT"_s, u"cmdOk(2)"_s), QStringList{u"frmBOT"_s}) << "the scan question";
    for (const char* map : {"ffa_bespin", "duel_bay"})
        profile->field(F::lsvMapRotation).addRow(rotationRow(QString::fromLatin1(map), u"Long"_s, u"ffa"_s));
    tool(u"ID_MapWizard"_s);
    EXPECT_EQ(ownersOfClick(u"frmWizard_1"_s, u"cmdCancel"_s), QStringList{u"frmWizard_1"_s});
    auto* grid = child<QTreeWidget>(form(u"frmWizard_1"_s), u"grdMapList"_s);
    emit grid->itemClicked(grid->topLevelItem(0), 0);
    child(form(u"frmWizard_1"_s), u"cmdNext"_s)->click();
    child(form(u"frmWizard_2"_s), u"cmdNext"_s)->click();
    EXPECT_EQ(ownersOfClick(u"frmWizard_3"_s, u"cmdFinish"_s), QStringList{u"frmWizard_3"_s}) << "the save dialog";
    frmScannerProgress scanner(window);
    scanner.show();
    EXPECT_EQ(ownersDuring([&] { t.app->prompts().message(u"Cannot read maps.pk3"_s, {}, Icon::Exclamation); }),
              QStringList{u"frmScanner"_s});
    scanner.unload();
    EXPECT_EQ(ownersDuring([&] { t.app->prompts().message(u"Map scan complete"_s, {}, Icon::Information); }),
              QStringList{u"frmMain"_s})
        << "once it has gone, the main window owns them again";
}

TEST_F(BoxOwner, TheServerConsolesQuestionsOpenAboveTheConsole)
{
    FakeServer server;
    server.answer = [](const QByteArray& request) -> QList<QByteArray> {
        if (request == oob("getstatus"))
            return {
                oob("statusResponse\n\\sv_hostname\\Arena\\mapname\\ffa_bespin\\sv_maxclients\\8\n3 40 \"Luke\"\n")};
        return {};
    };
    profile->setText(F::txtServerConfig(16), u"127.0.0.1"_s);
    profile->setText(F::txtServerConfig(12), QString::number(server.port()));
    auto* players = child<QTableWidget>(showServerConsole(*t.app, *profile, window), u"grdPlayers"_s);
    ASSERT_TRUE(waitUntil([&] { return players->rowCount() == 1; }));
    players->selectRow(0);
    for (const QString& button : {u"cmdServerKick"_s, u"cmdServerStop"_s, u"cmdServerRestart"_s})
        EXPECT_EQ(ownersOfClick(u"frmServerConsole"_s, button), QStringList{u"frmServerConsole"_s})
            << button.toStdString();
}

} // namespace
