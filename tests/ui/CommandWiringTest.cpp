// The real main window with its commands wired: buttons, menus, pop-ups and keys reach
// the program's routines, which answer through the scripted prompts.
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/LocalAddress.h"
#include "testkit/TestApp.h"
#include "ui/CommandWiring.h"
#include "ui/MainWindowHost.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QTimer>
#include <QThread>
#include <QAbstractItemView>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPushButton>
#include <QPointer>
#include <gtest/gtest.h>

using namespace steward;

namespace {

// A host named "box" at 10.0.0.7.
class BoxAddress : public AddressLookup {
public:
    bool hostName(QString& name, int&) override
    {
        name = QStringLiteral("box");
        return true;
    }
    QList<QByteArray> addresses(const QString&) override { return {QByteArray("\x0a\x00\x00\x07", 4)}; }
    QList<QByteArray> interfaceAddresses() override { return {}; }
};

class Wired : public ::testing::Test {
protected:
    void SetUp() override
    {
        profile = host.loadMainWindow();
        window = host.mainWindow();
        ASSERT_NE(window, nullptr);
        host.showMainWindow();
    }
    void TearDown() override
    {
        host.closeAllForms();
        QApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void click(const QString& name)
    {
        auto* button = window->findChild<QPushButton*>(name);
        ASSERT_NE(button, nullptr) << name.toStdString();
        button->click();
    }
    QAction* action(const QString& id) { return window->menuBar()->findChild<QAction*>(id); }

    steward::testing::TestApp t;
    QtWindowHost host{*t.app};
    BoxAddress addresses;
    CommandWiring wiring{*t.app, host, addresses};
    ServerProfile* profile = nullptr;
    frmMain* window = nullptr;
};

} // namespace

TEST_F(Wired, OkWithAnEmptyRotationTurnsToTheMapPage)
{
    click(QStringLiteral("cmdOk"));
    ASSERT_FALSE(t.prompts.shown.empty());
    EXPECT_EQ(t.prompts.last().request.text, QStringLiteral("No maps have been selected") + kTail);
    EXPECT_EQ(window->mainTab()->currentIndex(), 2);
}

TEST_F(Wired, DefaultsSavesTheWindowToTheStore)
{
    window->findChild<QLineEdit*>(QStringLiteral("txtServerConfig(0)"))->setText(QStringLiteral("a,b"));
    click(QStringLiteral("cmdDefault"));
    EXPECT_EQ(t.prompts.last().request.text, QStringLiteral("Settings have been saved") + kTail);
    EXPECT_EQ(t.store->GetSetting(QStringLiteral("ServerInfo10")), QStringLiteral("a%b"));
}

TEST_F(Wired, TheAddressButtonFillsTheFieldAndGivesItTheFocus)
{
    click(QStringLiteral("cmdIP"));
    auto* box = window->findChild<QLineEdit*>(QStringLiteral("txtServerConfig(16)"));
    EXPECT_EQ(box->text(), QStringLiteral("10.0.0.7"));
    EXPECT_EQ(window->focusWidget(), box);
}

TEST_F(Wired, MenuEntriesReachTheirRoutines)
{
    ASSERT_NE(action(QStringLiteral("id_HelpMailAuthor")), nullptr);
    action(QStringLiteral("id_HelpMailAuthor"))->trigger();
    action(QStringLiteral("id_HelpForumsModCentral"))->trigger();
    ASSERT_EQ(t.opener.opened.size(), 2u);
    EXPECT_EQ(t.opener.opened[0].scheme(), QStringLiteral("mailto"));
    EXPECT_EQ(t.opener.opened[1], QUrl(kModForum));

    // The batch file export offers its save dialog; a cancel writes nothing.
    t.prompts.cancelNextDialog();
    action(QStringLiteral("id_UtilitiesExportBatchFile"))->trigger();
    ASSERT_EQ(t.prompts.dialogs.size(), 1u);
    EXPECT_EQ(t.prompts.dialogs[0].state.DialogTitle, QStringLiteral("Save Batch File"));
    EXPECT_FALSE(t.prompts.dialogs[0].open);
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(Wired, TheRotationsToolsGoThroughTheOneDispatcher)
{
    // The pop-up entries are tools of the same table as the menu bar's.
    auto* entry = window->findChild<QAction*>(QStringLiteral("ID_AllStandardSWMaps"));
    ASSERT_NE(entry, nullptr);
    entry->trigger();
    QApplication::processEvents();
    ASSERT_EQ(profile->field(F::lsvMapRotation).count(), 4);
    profile->field(F::lsvMapRotation).setCurrent(3);
    window->findChild<QAction*>(QStringLiteral("ID_SetStartingMap"))->trigger();
    QApplication::processEvents();
    EXPECT_EQ(profile->startingMap(), QStringLiteral("ctf_yavin"));
}

TEST_F(Wired, TheRotationOffersItsMenuOnlyWithARow)
{
    auto openMenus = [] {
        int n = 0;
        for (QWidget* w : QApplication::topLevelWidgets())
            if (qobject_cast<QMenu*>(w) && w->isVisible() && w->objectName() == QLatin1String("ID_Advanced"))
                ++n;
        return n;
    };
    QWidget* grid = window->control(QStringLiteral("lsvMapRotation"));
    ASSERT_NE(grid, nullptr);
    QContextMenuEvent right(QContextMenuEvent::Mouse, QPoint(5, 5), grid->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(grid, &right);
    EXPECT_EQ(openMenus(), 0);

    Field& rotation = profile->field(F::lsvMapRotation);
    rotation.addRow({QStringLiteral("ffa_yavin")});
    rotation.addRow({QStringLiteral("ctf_bespin")});
    QApplication::sendEvent(grid, &right);
    ASSERT_EQ(openMenus(), 1);

    // A click on an entry runs its tool only after the menu is done with the click: a tool
    // that runs pending events would otherwise delete the menu under its own feet.
    QMenu* menu = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == QLatin1String("ID_Advanced") && w->isVisible())
            menu = qobject_cast<QMenu*>(w);
    ASSERT_NE(menu, nullptr);
    QAction* sort = menu->findChild<QAction*>(QStringLiteral("ID_SortAscending"));
    ASSERT_NE(sort, nullptr);
    const QPointF at = menu->actionGeometry(sort).center();
    QMouseEvent press(QEvent::MouseButtonPress, at, menu->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QMouseEvent release(QEvent::MouseButtonRelease, at, menu->mapToGlobal(at), Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(menu, &press);
    QApplication::sendEvent(menu, &release);
    EXPECT_EQ(rotation.cell(0, 0), QStringLiteral("ffa_yavin")) << "nothing runs inside the menu's click";
    QApplication::processEvents();
    EXPECT_EQ(rotation.cell(0, 0), QStringLiteral("ctf_bespin"));
}

TEST_F(Wired, OptionRulesAndKeysActThroughTheWidgets)
{
    for (int i = 0; i < 3; ++i)
        window->findChild<QCheckBox*>(QStringLiteral("chkDMFlags(%1)").arg(i))->click();
    EXPECT_EQ(window->findChild<QLineEdit*>(QStringLiteral("txtDMFlags"))->text(), QStringLiteral("56"));
    EXPECT_FALSE(profile->configurationChanged()) << "mouse changes raise no question";

    auto* knockback = window->findChild<QLineEdit*>(QStringLiteral("txtKnockBack"));
    knockback->setFocus();
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
    QApplication::sendEvent(knockback, &letter);
    EXPECT_EQ(t.beeper.beeps, 2) << "a letter beeps in both filters";
    EXPECT_EQ(knockback->text(), QString());
    EXPECT_TRUE(profile->configurationChanged()) << "any key in the window marks a change";
}

TEST_F(Wired, AKeyInAnyControlOfTheWindowMarksAChangeButTabAndMenusDoNot)
{
    auto pressed = [this](QWidget* w, int key, const QString& text) {
        profile->setConfigurationChanged(false);
        QKeyEvent e(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(w, &e);
        return profile->configurationChanged();
    };
    auto inMenu = [](QWidget* w) {
        for (; w; w = w->parentWidget())
            if (qobject_cast<QMenu*>(w))
                return true;
        return false;
    };
    for (QWidget* w : window->findChildren<QWidget*>()) {
        if (!inMenu(w)) {
            EXPECT_TRUE(pressed(w, Qt::Key_X, QStringLiteral("x")))
                << w->metaObject()->className() << " " << w->objectName().toStdString();
        }
    }

    // A list that opens later is still part of the window.
    auto* combo = window->control<QComboBox>(QStringLiteral("cboConfig(0)"));
    combo->addItem(QStringLiteral("a.cfg"));
    combo->showPopup();
    EXPECT_TRUE(pressed(combo->view(), Qt::Key_X, QStringLiteral("x")));
    combo->hidePopup();

    EXPECT_FALSE(pressed(window->control(QStringLiteral("txtServerConfig(0)")), Qt::Key_Tab, QStringLiteral("\t")));

    wiring.dispatcher().SSActiveToolBars1_ToolClick(QStringLiteral("ID_AllStandardMPMaps"));
    EXPECT_TRUE(profile->configurationChanged()) << "a stock set marks a change";
}

TEST_F(Wired, TheStartingMapShowsWithAutoCycleWhoseClickClearsTheSavedCycle)
{
    QWidget* combo = window->control(QStringLiteral("cboStartingMap"));
    QWidget* caption = window->control(QStringLiteral("lblServerConfig(34)"));
    ASSERT_TRUE(combo && caption);
    EXPECT_TRUE(combo->isHidden());
    EXPECT_TRUE(caption->isHidden());

    profile->setValue(F::chkUseINI, 1);
    profile->setText(F::txtServerINI, QStringLiteral("/games/base/cycle.cfg"));
    auto* autoCycle = window->findChild<QCheckBox*>(QStringLiteral("chkMapAutoCycle"));
    autoCycle->click();
    EXPECT_FALSE(combo->isHidden());
    EXPECT_FALSE(caption->isHidden());
    EXPECT_FALSE(profile->isSet(F::chkUseINI));
    EXPECT_EQ(profile->text(F::txtServerINI), QString()) << "the saved cycle's own click ran";
    EXPECT_TRUE(profile->field(F::tvwAvailMaps).isVisible()) << "and showed the map controls again";

    autoCycle->click();
    EXPECT_TRUE(combo->isHidden());
    EXPECT_TRUE(caption->isHidden());
    EXPECT_FALSE(profile->configurationChanged()) << "mouse clicks";
}

TEST_F(Wired, LoadingAConfigurationRestartsIntoANewWindowAndAResetCanEndTheProgram)
{
    steward::testing::writeFile(t.gameFolder() + QStringLiteral("jk2ded"), "#!/bin/sh\n");
    const QString asc = t.root() + QStringLiteral("/saved.asc");
    steward::testing::writeFile(asc, "PathToJedi," + t.gameFolder().toLatin1() +
                                         "\r\nPathToServer,jk2ded\r\nRunOnce,1\r\nServerInfo10,Loaded% here\r\n");
    t.prompts.chooseFile(asc);
    QPointer<frmMain> old = window;
    action(QStringLiteral("id_UtilitiesConfigurationLoad"))->trigger();
    window = host.mainWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_NE(window, old.data());
    EXPECT_EQ(window->profile().text(F::txtServerConfig(0)), QStringLiteral("Loaded, here"));
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(old.isNull()) << "the old window is gone once its click has ended";

    // With the store wiped the restart asks for the executable; a cancel ends the
    // program, and with it the event loop the click came from.
    t.prompts.answerNext(Answer::Yes);
    t.prompts.cancelNextDialog();
    // The program's own event loop, which alone forgets an exit once it has ended. As
    // in the program, the last window closing doesn't quit by itself: that would leave
    // a quit behind in the queue for the next loop.
    QApplication::setQuitOnLastWindowClosed(false);
    struct Restore {
        ~Restore() { QApplication::setQuitOnLastWindowClosed(true); }
    } restore;
    QObject scope;
    QTimer::singleShot(0, &scope, [this] { window->findChild<QPushButton*>(QStringLiteral("cmdReset"))->click(); });
    QTimer::singleShot(5000, &scope, [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QApplication::exec(), 0) << "the loop ends with the program";
    EXPECT_EQ(t.prompts.last().request.text, QStringLiteral("User cancelled!") + kTail);
    EXPECT_EQ(host.mainWindow(), nullptr);
    EXPECT_EQ(t.store->GetAllSettings().size(), 1) << "only the fallback game folder";
}

TEST_F(Wired, AnEndOutsideAnEventLoopLeavesNothingPendingForTheNextLoop)
{
    // A loaded configuration, then a reset that ends the program with no event loop
    // running to end.
    steward::testing::writeFile(t.gameFolder() + QStringLiteral("jk2ded"), "#!/bin/sh\n");
    const QString asc = t.root() + QStringLiteral("/saved.asc");
    steward::testing::writeFile(asc, "PathToJedi," + t.gameFolder().toLatin1() + "\r\nPathToServer,jk2ded\r\nRunOnce,1\r\n");
    t.prompts.chooseFile(asc);
    action(QStringLiteral("id_UtilitiesConfigurationLoad"))->trigger();
    window = host.mainWindow();
    ASSERT_NE(window, nullptr);
    t.prompts.answerNext(Answer::Yes);
    t.prompts.cancelNextDialog();
    window->findChild<QPushButton*>(QStringLiteral("cmdReset"))->click();
    ASSERT_EQ(host.mainWindow(), nullptr);

    // A later dialog runs its own loop until it is answered.
    QDialog dialog;
    QTimer::singleShot(0, &dialog, [&dialog] { dialog.accept(); });
    EXPECT_EQ(dialog.exec(), QDialog::Accepted);
}

TEST_F(Wired, ThePopUpsEntriesCanBeFoundByToolId)
{
    for (const char* id : {"ID_SetStartingMap", "ID_SortAscending", "ID_RemoveMap", "ID_ClearList", "ID_MapWizard",
                           "ID_AllStandardMPMaps", "ID_AllStandardCPMaps"}) {
        auto* entry = window->findChild<QAction*>(QString::fromLatin1(id));
        ASSERT_NE(entry, nullptr) << id;
    }
    auto* clear = window->findChild<QMenu*>(QStringLiteral("ID_Advanced"))->findChild<QAction*>(QStringLiteral("ID_ClearList"));
    ASSERT_NE(clear, nullptr);
    profile->field(F::lsvMapRotation).addRow({QStringLiteral("ffa_bespin")});
    clear->trigger();
    QApplication::processEvents(); // the chosen entry runs once the menu is done
    EXPECT_EQ(profile->field(F::lsvMapRotation).count(), 0);
}
