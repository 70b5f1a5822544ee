// The windows as start-up sees them, and the file dialog behind the prompts.
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "testkit/TestApp.h"
#include "ui/FormServices.h"
#include "ui/MainWindowHost.h"
#include "ui/QtPrompts.h"
#include "ui/frmMain.h"
#include "testkit/BoxExpect.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QTreeWidget>
#include <QWindow>
#include <gtest/gtest.h>
#include <optional>

using namespace steward;
using steward::testing::isBox;

namespace {

/// Runs the deletions that unloading left for the event loop.
void settle()
{
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
}

/// The file dialog on screen, if any.
QFileDialog* openDialog()
{
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* dialog = qobject_cast<QFileDialog*>(w); dialog && dialog->isVisible())
            return dialog;
    return nullptr;
}

class QtHost : public ::testing::Test {
protected:
    // The host routes nothing itself; here Close ends the forms, as the wired program's
    // Close does once it has asked about changes.
    QtHost()
    {
        host.routes().onClick(QStringLiteral("cmdCancel"), [this](frmMain&) { host.closeAllForms(); });
    }

    void TearDown() override
    {
        host.closeAllForms();
        settle();
    }

    void click(const QString& button)
    {
        auto* b = host.mainWindow()->findChild<QPushButton*>(button);
        ASSERT_NE(b, nullptr) << button.toStdString();
        b->click();
    }

    steward::testing::TestApp t;
    QtPrompts prompts;
    QtWindowHost host{*t.app, &prompts};
};

} // namespace

TEST_F(QtHost, LoadingGivesTheNewWindowsProfileAtItsSizeCentredAndOwningTheBoxesAndItMinimises)
{
    ServerProfile* profile = host.loadMainWindow();
    frmMain* window = host.mainWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(profile, &window->profile());
    EXPECT_EQ(window->objectName(), QStringLiteral("frmMain"));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Arena Steward"));
    EXPECT_EQ(window->size(), QSize(640, 499));
    const QRect screen = window->screen()->geometry();
    EXPECT_EQ(window->pos(),
              QPoint(screen.left() + (screen.width() - 640) / 2, screen.top() + (screen.height() - 499) / 2));
    EXPECT_TRUE(closeMenuDisabled(window));
    EXPECT_EQ(prompts.owner(), window);
    EXPECT_FALSE(window->isVisible()) << "loading doesn't show it";
    host.showMainWindow();
    EXPECT_TRUE(window->isVisible());
    host.minimizeMainWindow();
    EXPECT_TRUE(window->isMinimized());
}

TEST_F(QtHost, TheWindowsOwnCloseRequestsDoNothing)
{
    host.loadMainWindow();
    host.showMainWindow();
    QPointer<frmMain> window = host.mainWindow();
    EXPECT_FALSE(window->close());
    window->windowHandle()->close();
    settle();
    ASSERT_FALSE(window.isNull());
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(window->isMinimized());
    EXPECT_EQ(host.mainWindow(), window.data());
}

TEST_F(QtHost, CloseUnloadsEveryFormAndAFreshWindowCanFollow)
{
    bool gone = false;
    QObject::connect(&host, &QtWindowHost::mainWindowDestroyed, [&gone] { gone = true; });
    host.loadMainWindow();
    host.showMainWindow();
    QPointer<frmMain> first = host.mainWindow();
    first->profile().setText(F::txtServerConfig(1), QStringLiteral("Changed"));
    QPointer<QWidget> other = new QWidget;
    other->setObjectName(QStringLiteral("frmAbout"));
    DisableCloseMenu(*t.app, other);
    other->show();

    click(QStringLiteral("cmdCancel"));
    EXPECT_EQ(host.mainWindow(), nullptr) << "the window is on its way out at once";
    settle();
    EXPECT_TRUE(first.isNull());
    EXPECT_TRUE(other.isNull()) << "the other forms go too, close button or not";
    EXPECT_TRUE(gone);
    EXPECT_EQ(prompts.owner(), nullptr);

    ServerProfile* fresh = host.loadMainWindow();
    ASSERT_NE(host.mainWindow(), nullptr);
    EXPECT_EQ(fresh->text(F::txtServerConfig(1)), QStringLiteral("Luke"));
}

TEST_F(QtHost, UnloadingTheMainWindowLeavesOtherFormsAndTheScannerGoesOnlyWhenThere)
{
    host.loadMainWindow();
    host.unloadScanner();
    settle();
    EXPECT_NE(host.mainWindow(), nullptr);

    QPointer<QWidget> scanner = new QWidget;
    scanner->setObjectName(QStringLiteral("frmScanner"));
    scanner->show();
    QPointer<QWidget> other = new QWidget;
    other->setObjectName(QStringLiteral("frmPicker"));
    other->show();
    host.unloadScanner();
    settle();
    EXPECT_TRUE(scanner.isNull());
    EXPECT_NE(host.mainWindow(), nullptr);

    host.unloadMainWindow();
    settle();
    EXPECT_EQ(host.mainWindow(), nullptr);
    EXPECT_FALSE(other.isNull());
    delete other.data();
}

TEST_F(QtHost, CommandsReachTheirRoutesAcrossARestart)
{
    QStringList heard;
    host.routes().onClick(QStringLiteral("cmdBOTs(3)"), [&heard](frmMain&) { heard << QStringLiteral("add bot"); });
    host.routes().on(QStringLiteral("cmdOk"), UiEventKind::Click,
                     [&heard](frmMain& w, const UiEvent& e) { heard << e.control + w.objectName(); });
    host.loadMainWindow();
    click(QStringLiteral("cmdBOTs(3)"));
    click(QStringLiteral("cmdTrayIt"));
    EXPECT_EQ(heard, QStringList{QStringLiteral("add bot")}) << "Send to Tray does nothing";
    EXPECT_TRUE(t.prompts.shown.empty());

    host.closeAllForms();
    settle();
    host.loadMainWindow();
    click(QStringLiteral("cmdOk"));
    EXPECT_EQ(heard.last(), QStringLiteral("cmdOkfrmMain"));
}

TEST_F(QtHost, AnErrorThatEscapesARouteIsReportedAndTheWindowStays)
{
    host.routes().onClick(QStringLiteral("cmdIP"), [](frmMain&) {
        raiseError(err::AddressInUse, QStringLiteral("Address in use"), QStringLiteral("arena-steward"));
    });
    host.loadMainWindow();
    click(QStringLiteral("cmdIP"));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {QStringLiteral("arena-steward"), Icon::Information, QStringLiteral("Address in use")}));
    EXPECT_NE(host.mainWindow(), nullptr);
}

TEST_F(QtHost, DoubleAndRightClicksOfFieldsGoOut)
{
    host.loadMainWindow();
    frmMain* window = host.mainWindow();
    window->show();
    std::vector<UiEvent> events;
    QObject::connect(window, &frmMain::uiEvent, [&events](const UiEvent& e) { events.push_back(e); });
    bool menuShown = false;
    host.routes().on(QStringLiteral("lsvMapRotation"), UiEventKind::ContextMenu,
                     [&menuShown](frmMain&, const UiEvent&) { menuShown = true; });

    QWidget* file = window->control(QStringLiteral("txtServerINI"));
    QMouseEvent twice(QEvent::MouseButtonDblClick, QPointF(5, 5), file->mapToGlobal(QPointF(5, 5)), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(file, &twice);

    auto* rotation = window->control<QTreeWidget>(QStringLiteral("lsvMapRotation"));
    QContextMenuEvent right(QContextMenuEvent::Mouse, QPoint(3, 3), QPoint(100, 200));
    QApplication::sendEvent(rotation->viewport(), &right);

    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].control, QStringLiteral("txtServerINI"));
    EXPECT_EQ(events[0].kind, UiEventKind::DblClick);
    EXPECT_EQ(events[1].control, QStringLiteral("lsvMapRotation"));
    EXPECT_EQ(events[1].kind, UiEventKind::ContextMenu);
    EXPECT_EQ(events[1].globalPos, QPoint(100, 200));
    EXPECT_TRUE(menuShown);
}

TEST_F(QtHost, RotationColumnsTakeTheirWidthsInTwips)
{
    host.loadMainWindow();
    frmMain* window = host.mainWindow();
    window->setRotationColumns({2205, 50, 0, 0});
    auto* rotation = window->control<QTreeWidget>(QStringLiteral("lsvMapRotation"));
    ASSERT_EQ(rotation->columnCount(), 4);
    EXPECT_EQ(rotation->columnWidth(0), 147);
    EXPECT_EQ(rotation->columnWidth(1), 3);
    EXPECT_EQ(rotation->columnWidth(2), 0);
    EXPECT_EQ(rotation->columnWidth(3), 0);
}

TEST(FormServices, KeepForms)
{
    steward::testing::TestApp t;
    QWidget form;
    form.show();
    const QRect before = form.geometry();
    FormOnTop(*t.app, &form, true);
    EXPECT_TRUE(form.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(form.geometry(), before);
    FormOnTop(*t.app, &form, false);
    EXPECT_FALSE(form.windowFlags().testFlag(Qt::WindowStaysOnTopHint));

    DisableCloseMenu(*t.app, &form);
    EXPECT_FALSE(form.close());
    EXPECT_TRUE(form.isVisible());
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST(FormServices, AMissingFormIsReportedInThePlainBoxOfTheRoutine)
{
    steward::testing::TestApp t;
    CenterForm(*t.app, nullptr);
    DisableCloseMenu(*t.app, nullptr);
    FormOnTop(*t.app, nullptr, true);
    ASSERT_EQ(t.prompts.shown.size(), 3u);
    const char* const routines[] = {"CenterForm", "DisableCloseMenu", "FormOnTop"};
    for (size_t i = 0; i < 3; ++i) {
        const MessageBoxRequest& box = t.prompts.shown[i].request;
        EXPECT_TRUE(box.text.startsWith(QStringLiteral("Error: 91. "))) << box.text.toStdString();
        EXPECT_TRUE(isBox(box, {QString::fromLatin1(routines[i]), Icon::None, box.text}));
    }
}

TEST(FileDialogs, AnOpenedFileLosesOnlyAnExtensionThatTheDialogMadeUp)
{
    steward::testing::TestApp t;
    const QString binary = t.gameFolder() + QStringLiteral("jk2ded");
    const QString windows = t.gameFolder() + QStringLiteral("jk2mp.exe");
    steward::testing::writeFile(binary, "#!/bin/sh\n");
    steward::testing::writeFile(windows, "MZ");
    const QString exe = QStringLiteral("exe");
    EXPECT_EQ(openedFile(binary + QStringLiteral(".exe"), exe), binary);
    EXPECT_EQ(openedFile(binary, exe), binary);
    EXPECT_EQ(openedFile(windows, exe), windows);
    EXPECT_EQ(openedFile(t.gameFolder() + QStringLiteral("missing.exe"), exe),
              t.gameFolder() + QStringLiteral("missing.exe"));
    EXPECT_EQ(openedFile(binary + QStringLiteral(".exe"), QString()), binary + QStringLiteral(".exe"));
}

TEST_F(QtHost, TheProgramEndsWhenTheLastWindowGoesButNotOnARestart)
{
    quitWhenMainWindowGone(host);
    // A restart as the program does it: close all, let events run, a new main window.
    int restarts = 0;
    host.routes().onClick(QStringLiteral("cmdReset"), [this, &restarts](frmMain&) {
        ++restarts;
        host.closeAllForms();
        QApplication::processEvents();
        host.loadMainWindow();
        host.showMainWindow();
        QApplication::processEvents();
    });
    host.loadMainWindow();
    host.showMainWindow();

    // The timers end with the test, whatever happens.
    QObject scope;
    QTimer::singleShot(0, &scope, [this] { click(QStringLiteral("cmdReset")); });
    QTimer::singleShot(50, &scope, [this] {
        // Still running on the new window.
        ASSERT_NE(host.mainWindow(), nullptr);
        click(QStringLiteral("cmdCancel"));
    });
    QTimer::singleShot(5000, &scope, [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_EQ(restarts, 1);
    EXPECT_EQ(host.mainWindow(), nullptr);
    QApplication::setQuitOnLastWindowClosed(true);
}

TEST(QtFileDialog, OnlyFlagTwoAsksBeforeReplacingAnExistingFile)
{
    QtPrompts prompts;
    for (const int flags : {0, 2, 12292}) {
        SCOPED_TRACE(flags);
        FileDialogState state;
        state.Flags = flags;
        std::optional<bool> confirms;
        // Looks for the dialog until it is up, notes its setting and cancels it.
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            if (QFileDialog* dialog = openDialog()) {
                confirms = !dialog->testOption(QFileDialog::DontConfirmOverwrite);
                dialog->reject();
            }
        });
        poll.start(10);
        EXPECT_FALSE(prompts.fileDialog(state, false));
        ASSERT_TRUE(confirms.has_value());
        EXPECT_EQ(*confirms, (flags & 2) != 0);
    }
}

TEST(QtPromptsFileDialog, ATypedProgramNameIsTakenAsItStandsWhenItExists)
{
    steward::testing::TestApp t;
    const QString folder = t.gameFolder();
    steward::testing::writeFile(folder + QStringLiteral("jk2mvded"), "#!/bin/sh\n");
    steward::testing::writeFile(folder + QStringLiteral("jk2.exe"), "MZ");
    QtPrompts prompts;
    struct Case {
        const char* typed;
        const char* chosen;
    };
    for (const Case& c : {Case{"jk2mvded", "jk2mvded"}, Case{"jk2", "jk2.exe"}, Case{"jk2.exe", "jk2.exe"}}) {
        SCOPED_TRACE(c.typed);
        FileDialogState state;
        state.DialogTitle = QStringLiteral("Select Star Wars JK II Jedi Outcast");
        state.DefaultExt = QStringLiteral("exe");
        state.Filter = QStringLiteral("Jedi Knight 2 Executable (*.exe)|*.exe|All files (*)|*");
        state.InitialDir = folder;
        QObject scope;
        QTimer::singleShot(0, &scope, [&] {
            if (QFileDialog* dialog = openDialog()) {
                if (auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
                    name->setText(QString::fromLatin1(c.typed));
                QMetaObject::invokeMethod(dialog, "accept");
            }
        });
        // A refused name leaves the dialog open behind a warning box: both are sent away.
        QTimer::singleShot(3000, &scope, [] {
            for (QWidget* w : QApplication::topLevelWidgets())
                if (auto* dialog = qobject_cast<QDialog*>(w); dialog && dialog->isVisible())
                    dialog->reject();
        });
        ASSERT_TRUE(prompts.fileDialog(state, true));
        EXPECT_EQ(state.FileName, folder + QString::fromLatin1(c.chosen));
        EXPECT_EQ(state.FileTitle, QString::fromLatin1(c.chosen));
    }
}
