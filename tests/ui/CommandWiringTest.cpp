// The real main window with its commands wired: buttons, menus, pop-ups and keys reach
// the program's routines, which answer through the scripted prompts.
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ProductText.h"
#include "testkit/BoxExpect.h"
#include "ui/WiredMainWindow.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QTimer>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QPointer>
#include <gtest/gtest.h>

using namespace steward;
using steward::testing::isBox;

namespace {

class Wired : public steward::testing::WiredMainWindow {
protected:
    void SetUp() override
    {
        // A host named "box" at 10.0.0.7.
        lookup.name = QStringLiteral("box");
        lookup.found = {QByteArray("\x0a\x00\x00\x07", 4)};
        openMainWindow();
    }
    /// Loads a configuration of the game's place and a host name; the window opens again.
    void loadConfiguration()
    {
        steward::testing::writeFile(t.gameFolder() + QStringLiteral("jk2ded"), "#!/bin/sh\n");
        const QString asc = t.root() + QStringLiteral("/saved.asc");
        steward::testing::writeFile(asc, "PathToJedi," + t.gameFolder().toLatin1() +
                                             "\r\nPathToServer,jk2ded\r\nRunOnce,1\r\nServerInfo10,Loaded% here\r\n");
        t.prompts.chooseFile(asc);
        action(QStringLiteral("id_UtilitiesConfigurationLoad"))->trigger();
        window = host.mainWindow();
        ASSERT_NE(window, nullptr);
    }
};

} // namespace

TEST_F(Wired, OkWithAnEmptyRotationTurnsToTheMapPage)
{
    click(QStringLiteral("cmdOk"));
    ASSERT_FALSE(t.prompts.shown.empty());
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {kProductTitle, Icon::Exclamation, QStringLiteral("No maps have been selected") + kTail}));
    EXPECT_EQ(window->mainTab()->currentIndex(), 2);
}

TEST_F(Wired, DefaultsSavesTheWindowToTheStore)
{
    window->findChild<QLineEdit*>(QStringLiteral("txtServerConfig(0)"))->setText(QStringLiteral("a,b"));
    click(QStringLiteral("cmdDefault"));
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {kProductTitle, Icon::Information, QStringLiteral("Settings have been saved") + kTail}));
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

TEST_F(Wired, LoadingAConfigurationRestartsIntoANewWindowAndAResetCanEndTheProgram)
{
    QPointer<frmMain> old = window;
    loadConfiguration();
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
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, QStringLiteral("User cancelled!") + kTail}));
    EXPECT_EQ(host.mainWindow(), nullptr);
    EXPECT_EQ(t.store->GetAllSettings().size(), 1) << "only the fallback game folder";
}

TEST_F(Wired, AnEndOutsideAnEventLoopLeavesNothingPendingForTheNextLoop)
{
    // A loaded configuration, then a reset that ends the program with no event loop
    // running to end.
    loadConfiguration();
    t.prompts.answerNext(Answer::Yes);
    t.prompts.cancelNextDialog();
    window->findChild<QPushButton*>(QStringLiteral("cmdReset"))->click();
    ASSERT_EQ(host.mainWindow(), nullptr);

    // A later dialog runs its own loop until it is answered.
    QDialog dialog;
    QTimer::singleShot(0, &dialog, [&dialog] { dialog.accept(); });
    EXPECT_EQ(dialog.exec(), QDialog::Accepted);
}
