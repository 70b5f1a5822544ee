#include "maps/MapRotation.h"
#include "model/FieldNames.h"
#include "model/ServerProfile.h"
#include "ui/FormServices.h"
#include "ui/WizardForms.h"
#include "ui/WiredMainWindow.h"
#include "testkit/BoxExpect.h"

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
using steward::testing::isBox;

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
    EXPECT_FALSE(saberOnly->isVisible());
    control<QRadioButton>(2, QStringLiteral("optDefaultGameType(3)"))->click();
    EXPECT_TRUE(saberOnly->isVisible());
    saberOnly->click();
    control<QRadioButton>(2, QStringLiteral("optDefaultGameType(0)"))->click();
    EXPECT_FALSE(saberOnly->isVisible());

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

TEST_F(WizardForms, PageThreeFiltersTheWarmup)
{
    clickRow(0);
    click(1, QStringLiteral("cmdNext"));
    click(2, QStringLiteral("cmdNext"));
    auto* warmup = control<QLineEdit>(3, QStringLiteral("txtWarmup(1)"));
    ASSERT_NE(warmup, nullptr);
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
    EXPECT_TRUE(
        isBox(t.prompts.last(), {QStringLiteral("Arena Steward"), Icon::Question,
                                 QStringLiteral("Do you want to cancel the wizard?         "), Buttons::YesNo}));
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

    EXPECT_TRUE(isBox(t.prompts.last(), {QStringLiteral("Advanced Map Cycle"), Icon::Information,
                                         QStringLiteral("File has been Saved         ")}));
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(t.prompts.dialogs.size(), 1u) << "the saved cycle's own dialog doesn't open";
    EXPECT_EQ(window->control<QLineEdit>(QStringLiteral("txtServerINI"))->text(), path);
    EXPECT_TRUE(window->control<QCheckBox>(QStringLiteral("chkUseINI"))->isChecked());
    EXPECT_EQ(profile->field(F::lsvMapRotation).count(), 0);
    EXPECT_TRUE(QFile::exists(t.baseFolder() + QStringLiteral("/1wizard.cfg")));
}
