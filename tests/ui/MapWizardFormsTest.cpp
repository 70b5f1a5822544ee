// The map wizard on its real pages: "Map Wizard..." hides the main window and shows
// frmWizard_1; the page rules are driven through the controls' object names.
#include "maps/MapRotation.h"
#include "model/FieldNames.h"
#include "model/ServerProfile.h"
#include "support/LocalAddress.h"
#include "testkit/NoAddressLookup.h"
#include "testkit/TestApp.h"
#include "ui/CommandWiring.h"
#include "ui/FormServices.h"
#include "ui/MainWindowHost.h"
#include "ui/WizardForms.h"
#include "ui/frmMain.h"
#include "ui/WiredMainWindow.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <gtest/gtest.h>

using namespace steward;

namespace {

class WizardForms : public steward::testing::WiredMainWindow {
protected:
    void SetUp() override
    {
        openMainWindow();
        for (const char* map : {"ffa_bespin", "duel_bay"})
            profile->field(F::lsvMapRotation)
                .addRow(rotationRow(QString::fromLatin1(map), QStringLiteral("Long"), QStringLiteral("ffa")));
        wiring.dispatcher().SSActiveToolBars1_ToolClick(QStringLiteral("ID_MapWizard"));
    }
    /// A loaded page, or null.
    static QWidget* form(int page)
    {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->objectName() == QStringLiteral("frmWizard_%1").arg(page) && !isUnloading(w))
                return w;
        return nullptr;
    }
    static bool shown(int page) { return form(page) && form(page)->isVisible(); }
    template <typename T>
    static T* control(int page, const QString& name)
    {
        QWidget* f = form(page);
        return f ? f->findChild<T*>(name) : nullptr;
    }
    void click(int page, const QString& button)
    {
        auto* b = control<QPushButton>(page, button);
        ASSERT_NE(b, nullptr) << button.toStdString();
        b->click();
    }
    void clickRow(int row)
    {
        auto* grid = control<QTreeWidget>(1, QStringLiteral("grdMapList"));
        ASSERT_NE(grid, nullptr);
        grid->setCurrentItem(grid->topLevelItem(row));
        emit grid->itemClicked(grid->topLevelItem(row), 0);
    }
    const WizardState& state() { return wiring.mapWizard().wizard().state(); }

};

} // namespace

TEST_F(WizardForms, NextWaitsForAClickOnARow)
{
    EXPECT_FALSE(window->isVisible()) << "the main window hides";
    ASSERT_TRUE(shown(1));
    auto* grid = control<QTreeWidget>(1, QStringLiteral("grdMapList"));
    ASSERT_NE(grid, nullptr);
    ASSERT_EQ(grid->topLevelItemCount(), 2);
    EXPECT_EQ(grid->topLevelItem(1)->text(0), QStringLiteral("duel_bay"));
    auto* next = control<QPushButton>(1, QStringLiteral("cmdNext"));
    ASSERT_NE(next, nullptr);
    EXPECT_EQ(next->text(), QStringLiteral("Next >"));
    EXPECT_FALSE(next->isEnabled());

    clickRow(1);
    EXPECT_TRUE(next->isEnabled());
    next->click();
    EXPECT_FALSE(shown(1));
    EXPECT_TRUE(shown(2));
    EXPECT_TRUE(state().records[1].Configured);
}

TEST_F(WizardForms, SaberOnlyShowsForDuelAndBackKeepsConfigured)
{
    clickRow(0);
    click(1, QStringLiteral("cmdNext"));
    auto* saberOnly = control<QCheckBox>(2, QStringLiteral("chkWizardDuelNoWeapons"));
    ASSERT_NE(saberOnly, nullptr);
    EXPECT_EQ(saberOnly->text(), QStringLiteral("Saber Only"));
    EXPECT_FALSE(saberOnly->isVisible());
    control<QRadioButton>(2, QStringLiteral("optDefaultGameType(3)"))->click();
    EXPECT_TRUE(saberOnly->isVisible());
    saberOnly->click();
    control<QRadioButton>(2, QStringLiteral("optDefaultGameType(0)"))->click();
    EXPECT_FALSE(saberOnly->isVisible());
    EXPECT_EQ(control<QCheckBox>(2, QStringLiteral("chkDMFlags(1)"))->property("Tag").toString(), QStringLiteral("16"));

    click(2, QStringLiteral("cmdBack"));
    EXPECT_TRUE(shown(1));
    EXPECT_FALSE(shown(2));
    EXPECT_TRUE(state().records[0].Configured) << "Back keeps Configured";

    click(1, QStringLiteral("cmdNext"));
    click(2, QStringLiteral("cmdNext"));
    EXPECT_TRUE(shown(3));
    EXPECT_TRUE(state().records[0].DuelNoWeapons) << "read whether shown or not";
    EXPECT_EQ(state().records[0].GameType, QStringLiteral("g_gametype 0"));
}

TEST_F(WizardForms, PageThreeFiltersTheWarmupAndShowsItsDefaults)
{
    clickRow(0);
    click(1, QStringLiteral("cmdNext"));
    click(2, QStringLiteral("cmdNext"));
    const struct {
        const char* name;
        const char* tag;
        const char* text;
    } boxes[] = {{"txtGameLimits(0)", "fraglimit", "0"},   {"txtGameLimits(1)", "timelimit", "20"},
                 {"txtGameLimits(2)", "duel_fraglimit", "0"}, {"txtGameLimits(3)", "capturelimit", "0"},
                 {"txtSpeed(0)", "g_speed", "250"},         {"txtSpeed(1)", "g_gravity", "800"},
                 {"txtWarmup(1)", "g_doWarmup", "60"}};
    for (const auto& b : boxes) {
        auto* box = control<QLineEdit>(3, QString::fromLatin1(b.name));
        ASSERT_NE(box, nullptr) << b.name;
        EXPECT_EQ(box->text(), QString::fromLatin1(b.text)) << b.name;
        EXPECT_EQ(box->property("Tag").toString(), QString::fromLatin1(b.tag)) << b.name;
    }
    for (int index : {0, 5, 11, 15, 16})
        EXPECT_NE(control<QCheckBox>(3, QStringLiteral("chkQuake3Specific(%1)").arg(index)), nullptr) << index;
    for (const char* name : {"cmdBack", "cmdNextMap", "cmdFinish", "cmdCancel"})
        EXPECT_NE(control<QPushButton>(3, QString::fromLatin1(name)), nullptr) << name;
    EXPECT_EQ(control<QPushButton>(3, QStringLiteral("cmdNextMap"))->text(), QStringLiteral("Next Map >>"));

    auto* warmup = control<QLineEdit>(3, QStringLiteral("txtWarmup(1)"));
    warmup->setText(QStringLiteral("6"));
    warmup->setCursorPosition(1);
    for (auto [key, text] : {std::pair{Qt::Key_A, "a"}, std::pair{Qt::Key_5, "5"}}) {
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, QString::fromLatin1(text));
        QCoreApplication::sendEvent(warmup, &down);
    }
    EXPECT_EQ(warmup->text(), QStringLiteral("65"));
    EXPECT_EQ(t.beeper.beeps, 2) << "a letter is refused by both filters";

    click(3, QStringLiteral("cmdNextMap"));
    EXPECT_TRUE(shown(1));
    EXPECT_EQ(state().records[0].Warmup, QStringLiteral("g_warmup 65"));
}

TEST_F(WizardForms, CancelAsksAndNoKeepsThePages)
{
    clickRow(0);
    click(1, QStringLiteral("cmdNext"));
    t.prompts.answerNext(Answer::No);
    click(2, QStringLiteral("cmdCancel"));
    EXPECT_EQ(t.prompts.last().request.text, QStringLiteral("Do you want to cancel the wizard?         "));
    EXPECT_TRUE(shown(2));
    EXPECT_FALSE(window->isVisible());

    t.prompts.answerNext(Answer::Yes);
    click(2, QStringLiteral("cmdCancel"));
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(form(1), nullptr);
    EXPECT_EQ(form(2), nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(profile->field(F::lsvMapRotation).count(), 2) << "the rotation is untouched";
}

TEST_F(WizardForms, ThePopUpSetsTheStartingMapAndFinishSelectsTheSavedCycle)
{
    auto* popup = form(1)->findChild<QMenu*>(QStringLiteral("ID_Wizard"));
    ASSERT_NE(popup, nullptr);
    auto* grid = control<QTreeWidget>(1, QStringLiteral("grdMapList"));
    grid->setCurrentItem(grid->topLevelItem(1));
    popup->findChild<QAction*>(QStringLiteral("ID_SetStartingMap"))->trigger();
    QApplication::processEvents();
    EXPECT_EQ(state().startingMap, QStringLiteral("duel_bay"));

    clickRow(1);
    click(1, QStringLiteral("cmdNext"));
    click(2, QStringLiteral("cmdNext"));
    const QString path = t.baseFolder() + QStringLiteral("/wizard.cfg");
    t.prompts.chooseFile(path);
    click(3, QStringLiteral("cmdFinish"));
    QApplication::processEvents();

    EXPECT_EQ(t.prompts.last().request.title, QStringLiteral("Advanced Map Cycle"));
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(t.prompts.dialogs.size(), 1u) << "the saved cycle's own dialog doesn't open";
    EXPECT_EQ(window->control<QLineEdit>(QStringLiteral("txtServerINI"))->text(), path);
    EXPECT_TRUE(window->control<QCheckBox>(QStringLiteral("chkUseINI"))->isChecked());
    EXPECT_EQ(profile->field(F::lsvMapRotation).count(), 0);
    EXPECT_TRUE(QFile::exists(t.baseFolder() + QStringLiteral("/1wizard.cfg")));
}
