// The windows as start-up sees them: the host, the file dialog behind
// the prompts, the menus, the about box and the program's icon.
#include "commands/ToolTable.h"
#include "model/Constants.h"
#include "support/Errors.h"
#include "support/ProductText.h"
#include "ui/DesktopIdentity.h"
#include "ui/MenuBuilder.h"
#include "ui/QtPrompts.h"
#include "ui/WiredMainWindow.h"
#include "ui/frmAbout.h"

namespace {

/// Runs a file dialog of the real prompts and hands it to act once it is up; a dialog
/// still open after three seconds (a refused name leaves a warning box over it) is sent away.
bool runDialog(FileDialogState& state, bool open, const std::function<void(QFileDialog*)>& act)
{
    QtPrompts prompts;
    bool acted = false;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* dialog = qobject_cast<QFileDialog*>(w); dialog && dialog->isVisible() && !acted) {
                acted = true;
                act(dialog);
            }
    });
    poll.start(10);
    QTimer::singleShot(3000, &poll, [] {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* dialog = qobject_cast<QDialog*>(w); dialog && dialog->isVisible())
                dialog->reject();
    });
    const bool chosen = prompts.fileDialog(state, open);
    EXPECT_TRUE(acted) << "no dialog came up";
    return chosen;
}

class QtHost : public ::testing::Test {
protected:
    // The host routes nothing itself; here Close ends the forms, as the wired program's does.
    QtHost()
    {
        host.routes().onClick(u"cmdCancel"_s, [this](frmMain&) { host.closeAllForms(); });
    }
    void TearDown() override
    {
        host.closeAllForms();
        settle();
    }
    frmMain* load()
    {
        host.loadMainWindow();
        return host.mainWindow();
    }
    void click(const QString& button) { host.mainWindow()->findChild<QPushButton*>(button)->click(); }
    TestApp t;
    QtPrompts prompts;
    QtWindowHost host{*t.app, &prompts};
};

TEST_F(QtHost, TheWindowRefusesItsOwnCloseAndCloseUnloadsEveryFormAndAFreshWindowCanFollow)
{
    ServerProfile* profile = host.loadMainWindow();
    QPointer<frmMain> window = host.mainWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(profile, &window->profile());
    EXPECT_TRUE(closeMenuDisabled(window));
    EXPECT_EQ(prompts.owner(), window);
    EXPECT_FALSE(window->isVisible()) << "loading doesn't show it";
    host.showMainWindow();
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(window->close());
    window->windowHandle()->close();
    settle();
    ASSERT_FALSE(window.isNull());
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(host.mainWindow(), window.data());
    host.minimizeMainWindow();
    EXPECT_TRUE(window->isMinimized());
    bool gone = false;
    QObject scope; // the connection ends with the test
    QObject::connect(&host, &QtWindowHost::mainWindowDestroyed, &scope, [&gone] { gone = true; });
    profile->setText(F::txtServerConfig(1), u"Changed"_s);
    QPointer<QWidget> other = new QWidget;
    other->setObjectName(u"frmAbout"_s);
    DisableCloseMenu(*t.app, other);
    other->show();
    click(u"cmdCancel"_s);
    EXPECT_EQ(host.mainWindow(), nullptr) << "the window is on its way out at once";
    settle();
    EXPECT_TRUE(window.isNull());
    EXPECT_TRUE(other.isNull()) << "the other forms go too, close button or not";
    EXPECT_TRUE(gone);
    EXPECT_EQ(prompts.owner(), nullptr);
    EXPECT_EQ(host.loadMainWindow()->text(F::txtServerConfig(1)), u"Luke"_s);
}

TEST_F(QtHost, UnloadingTheMainWindowLeavesOtherForms)
{
    load();
    host.unloadScanner(); // none is there
    QPointer<QWidget> other = new QWidget;
    other->setObjectName(u"frmPicker"_s);
    other->show();
    settle();
    EXPECT_NE(host.mainWindow(), nullptr);
    host.unloadMainWindow();
    settle();
    EXPECT_EQ(host.mainWindow(), nullptr);
    EXPECT_FALSE(other.isNull());
    delete other.data();
}

TEST_F(QtHost, CommandsReachTheirRoutesAndAnEscapedErrorIsReported)
{
    QStringList heard;
    host.routes().on(u"cmdOk"_s, UiEventKind::Click,
                     [&heard](frmMain& w, const UiEvent& e) { heard << e.control + w.objectName(); });
    host.routes().onClick(u"cmdIP"_s,
                          [](frmMain&) { raiseError(err::AddressInUse, u"Address in use"_s, u"arena-steward"_s); });
    load();
    click(u"cmdTrayIt"_s);
    click(u"cmdOk"_s);
    EXPECT_EQ(heard, QStringList{u"cmdOkfrmMain"_s}) << "Send to Tray does nothing";
    EXPECT_TRUE(t.prompts.shown.empty());
    click(u"cmdIP"_s);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {u"arena-steward"_s, Icon::Information, u"Address in use"_s}));
    EXPECT_NE(host.mainWindow(), nullptr);
}

TEST_F(QtHost, TheProgramEndsWhenTheLastWindowGoesButNotOnARestart)
{
    quitWhenMainWindowGone(host);
    // A restart as the program does it: close all, let events run, a new main window.
    int restarts = 0;
    host.routes().onClick(u"cmdReset"_s, [this, &restarts](frmMain&) {
        ++restarts;
        host.closeAllForms();
        QApplication::processEvents();
        host.loadMainWindow();
        host.showMainWindow();
        QApplication::processEvents();
    });
    load();
    host.showMainWindow();
    QObject scope; // the timers end with the test, whatever happens
    QTimer::singleShot(0, &scope, [this] { click(u"cmdReset"_s); });
    QTimer::singleShot(50, &scope, [this] {
        ASSERT_NE(host.mainWindow(), nullptr) << "still running on the new window";
        click(u"cmdCancel"_s);
    });
    QTimer::singleShot(5000, &scope, [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_EQ(restarts, 1);
    EXPECT_EQ(host.mainWindow(), nullptr);
    QApplication::setQuitOnLastWindowClosed(true);
}

TEST(FileDialogs, OnlyFlagTwoAsksBeforeReplacingAnExistingFile)
{
    for (const int flags : {0, 2, 12292}) {
        FileDialogState state;
        state.Flags = flags;
        bool confirms = false;
        EXPECT_FALSE(runDialog(state, false, [&confirms](QFileDialog* dialog) {
            confirms = !dialog->testOption(QFileDialog::DontConfirmOverwrite);
            dialog->reject();
        }));
        EXPECT_EQ(confirms, (flags & 2) != 0) << flags;
    }
}

TEST(FileDialogs, ATypedProgramNameIsTakenAsItStandsWhenItExistsLosingOnlyAnExtensionTheDialogMadeUp)
{
    TestApp t;
    const QString folder = t.gameFolder(), binary = folder + u"jk2mvded"_s, exe = u"exe"_s;
    writeFile(binary, "#!/bin/sh\n");
    writeFile(folder + u"jk2.exe"_s, "MZ");
    EXPECT_EQ(openedFile(binary + u".exe"_s, exe), binary);
    EXPECT_EQ(openedFile(binary, exe), binary);
    EXPECT_EQ(openedFile(folder + u"jk2.exe"_s, exe), folder + u"jk2.exe"_s);
    EXPECT_EQ(openedFile(folder + u"missing.exe"_s, exe), folder + u"missing.exe"_s);
    EXPECT_EQ(openedFile(binary + u".exe"_s, QString()), binary + u".exe"_s);
    for (const auto& [typed, chosen] : {std::pair{u"jk2mvded"_s, u"jk2mvded"_s}, {u"jk2"_s, u"jk2.exe"_s}}) {
        FileDialogState state;
        state.DefaultExt = exe;
        state.Filter = u"Jedi Knight 2 Executable (*.exe)|*.exe|All files (*)|*"_s;
        state.InitialDir = folder;
        ASSERT_TRUE(runDialog(state, true, [typed](QFileDialog* dialog) {
            if (auto* name = dialog->findChild<QLineEdit*>(u"fileNameEdit"_s))
                name->setText(typed);
            QMetaObject::invokeMethod(dialog, "accept");
        }));
        EXPECT_EQ(state.FileName, folder + chosen);
        EXPECT_EQ(state.FileTitle, chosen);
    }
}

TEST(MenuBar, EveryEntryOfTheBarAndThePopUpIsAnActionNamedAfterItsToolIdAndDispatchesIt)
{
    QMainWindow window;
    QWidget owner;
    QStringList clicked;
    const auto heard = [&clicked](const QString& id) { clicked << id; };
    buildMenuBar(window.menuBar(), heard);
    QMenu* advanced = buildPopup(advancedPopup(), &owner, heard);
    std::vector<std::pair<QWidget*, const Tool*>> entries;
    std::function<void(QWidget*, const Tool&)> collect = [&](QWidget* in, const Tool& tool) {
        for (const Tool& child : tool.children)
            if (child.isMenu())
                collect(in, child);
            else if (!child.isSeparator())
                entries.emplace_back(in, &child);
    };
    for (const Tool& top : menuBarTools())
        collect(window.menuBar(), top);
    collect(advanced, advancedPopup());
    ASSERT_GT(entries.size(), 10u);
    for (const auto& [in, tool] : entries) {
        SCOPED_TRACE(tool->id.toStdString());
        auto* action = in->findChild<QAction*>(tool->id);
        ASSERT_NE(action, nullptr);
        EXPECT_EQ(action->text(), tool->caption);
        action->trigger();
        EXPECT_EQ(clicked.last(), tool->id);
    }
    EXPECT_EQ(child<QMenu>(window.menuBar(), u"id_UtilitiesExport"_s)->title(), u"&Export"_s);
}

TEST(frmAbout, ShowsItsTextClosesOnAKeyOrAClickAndTheMailLabelMails)
{
    TestApp t;
    {
        frmAbout about(*t.app);
        EXPECT_TRUE(frmAbout::isLoaded());
        EXPECT_EQ(about.windowTitle(), u"About Arena Steward"_s);
        EXPECT_EQ(child<QLabel>(&about, u"lblMarquee"_s)->text(),
                  u"Arena Steward, a server tool for Jedi Knight II administrators\nYou are using version JUNE 13 2002 "
                  "beta 1.4\n\nPlease submit all requests, bugs etc., to me \nat "_s +
                      kContactAddress + u"\n\nThanks and Enjoy!"_s);
        QTimer::singleShot(0, &about, [&about] { sendKey(&about, Qt::Key_Space, u" "_s); });
        EXPECT_EQ(about.exec(), QDialog::Accepted);
    }
    EXPECT_FALSE(frmAbout::isLoaded());
    const auto clickOn = [&t](const QString& label) {
        frmAbout about(*t.app);
        sendMouse(about.findChild<QLabel*>(label), QEvent::MouseButtonPress, QPointF(2, 2));
        return about.result() == QDialog::Accepted;
    };
    EXPECT_FALSE(clickOn(u"lblMailMe"_s)) << "the mail label leaves the window open";
    ASSERT_EQ(t.opener.opened.size(), 1u);
    EXPECT_EQ(t.opener.opened[0].scheme(), u"mailto"_s);
}

TEST(DesktopIdentity, EveryWindowGetsTheIconAndTheAppNamesItsDesktopEntry)
{
    const QIcon oldIcon = QApplication::windowIcon();
    const QString oldName = QApplication::desktopFileName();
    applyDesktopIdentity();
    EXPECT_EQ(QApplication::desktopFileName(), u"io.github.arena_steward.ArenaSteward"_s);
    EXPECT_EQ(desktopId(), QApplication::desktopFileName());
    EXPECT_EQ(QWidget().windowIcon().availableSizes().size(), 3) << "48, 128 and 256 pixels";
    QApplication::setWindowIcon(oldIcon);
    QApplication::setDesktopFileName(oldName);
}

} // namespace
