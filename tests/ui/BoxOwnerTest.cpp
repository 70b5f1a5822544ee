// Boxes and file dialogs open above the window that asked for them, not behind it: the
// real prompts on the real windows, each box noted by the window it belongs to and
// dismissed.
#include "../console/FakeServer.h"
#include "maps/MapRotation.h"
#include "model/ServerProfile.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "testkit/Printers.h"
#include "ui/FormServices.h"
#include "ui/QtPrompts.h"
#include "ui/frmScanner.h"
#include "ui/frmServerConsole.h"
#include "ui/WiredMainWindow.h"
#include "ui/frmBOT.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <QTreeWidget>
#include <functional>
#include <gtest/gtest.h>

using namespace steward;
using steward::testing::waitUntil;

namespace {

QByteArray oob(const QByteArray& rest) { return QByteArray(4, '\xff') + rest; }

class BoxOwner : public steward::testing::WiredMainWindow {
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
                owners << (w->parentWidget() ? w->parentWidget()->window()->objectName() : QStringLiteral("(none)"));
                if (dialog)
                    dialog->reject();
                else if (QAbstractButton* no = box->button(QMessageBox::No))
                    no->click();
                else
                    box->button(QMessageBox::Ok)->click();
            }
        });
        poll.start(10);
        action();
        poll.stop();
        return owners;
    }
    static QWidget* form(const QString& name)
    {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->objectName() == name && w->isVisible() && !isUnloading(w))
                return w;
        return nullptr;
    }
    static void click(const QString& formName, const QString& button)
    {
        QWidget* f = form(formName);
        ASSERT_NE(f, nullptr) << formName.toStdString();
        auto* b = f->findChild<QPushButton*>(button);
        ASSERT_NE(b, nullptr) << button.toStdString();
        b->click();
    }

    QtPrompts prompts;
};

} // namespace

TEST_F(BoxOwner, TheBotPickersScanQuestionOpensAboveThePicker)
{
    window->control<QPushButton>(QStringLiteral("cmdBOTs(3)"))->click();
    ASSERT_NE(form(QStringLiteral("frmBOT")), nullptr);
    EXPECT_EQ(ownersDuring([] { click(QStringLiteral("frmBOT"), QStringLiteral("cmdOk(2)")); }),
              QStringList{QStringLiteral("frmBOT")});
}

TEST_F(BoxOwner, TheWizardsBoxesAndSaveDialogOpenAboveItsPages)
{
    for (const char* map : {"ffa_bespin", "duel_bay"})
        profile->field(F::lsvMapRotation)
            .addRow(rotationRow(QString::fromLatin1(map), QStringLiteral("Long"), QStringLiteral("ffa")));
    wiring.dispatcher().SSActiveToolBars1_ToolClick(QStringLiteral("ID_MapWizard"));
    ASSERT_NE(form(QStringLiteral("frmWizard_1")), nullptr);
    EXPECT_EQ(ownersDuring([] { click(QStringLiteral("frmWizard_1"), QStringLiteral("cmdCancel")); }),
              QStringList{QStringLiteral("frmWizard_1")});

    auto* grid = form(QStringLiteral("frmWizard_1"))->findChild<QTreeWidget*>(QStringLiteral("grdMapList"));
    grid->setCurrentItem(grid->topLevelItem(0));
    emit grid->itemClicked(grid->topLevelItem(0), 0);
    click(QStringLiteral("frmWizard_1"), QStringLiteral("cmdNext"));
    click(QStringLiteral("frmWizard_2"), QStringLiteral("cmdNext"));
    EXPECT_EQ(ownersDuring([] { click(QStringLiteral("frmWizard_3"), QStringLiteral("cmdFinish")); }),
              QStringList{QStringLiteral("frmWizard_3")});
}

TEST_F(BoxOwner, TheServerConsolesQuestionsOpenAboveTheConsole)
{
    steward::testing::FakeServer server;
    server.answer = [](const QByteArray& request) -> QList<QByteArray> {
        if (request == oob("getstatus"))
            return {
                oob("statusResponse\n\\sv_hostname\\Arena\\mapname\\ffa_bespin\\sv_maxclients\\8\n3 40 \"Luke\"\n")};
        return {};
    };
    profile->setText(F::txtServerConfig(16), QStringLiteral("127.0.0.1"));
    profile->setText(F::txtServerConfig(12), QString::number(server.port()));
    frmServerConsole* console = showServerConsole(*t.app, *profile, window);
    auto* players = console->findChild<QTableWidget*>(QStringLiteral("grdPlayers"));
    ASSERT_TRUE(waitUntil([&] { return players->rowCount() == 1; }));
    players->selectRow(0);
    for (const char* button :
         {"cmdServerKick", "cmdServerNextMap", "cmdServerRestartMap", "cmdServerStop", "cmdServerRestart"}) {
        SCOPED_TRACE(button);
        EXPECT_EQ(ownersDuring([&] { click(QStringLiteral("frmServerConsole"), QString::fromLatin1(button)); }),
                  QStringList{QStringLiteral("frmServerConsole")});
    }
}

TEST_F(BoxOwner, WhileTheScannerShowsTheScansBoxesOpenAboveIt)
{
    frmScannerProgress scanner(window);
    scanner.show();
    EXPECT_EQ(
        ownersDuring([&] { t.app->prompts().message(QStringLiteral("Cannot read maps.pk3"), {}, Icon::Exclamation); }),
        QStringList{QStringLiteral("frmScanner")});
    scanner.unload();
    EXPECT_EQ(
        ownersDuring([&] { t.app->prompts().message(QStringLiteral("Map scan complete"), {}, Icon::Information); }),
        QStringList{QStringLiteral("frmMain")})
        << "once it has gone, the main window owns them again";
}
