// The Map page on the real window with a scan of real archives, and the map wizard's
// pages on top of it.
#include "maps/MapRotation.h"
#include "maps/MapTreeModel.h"
#include "model/FieldNames.h"
#include "ui/WiredMainWindow.h"
#include "ui/WizardForms.h"

namespace {

class MapPage : public WiredMainWindow {
protected:
    void SetUp() override
    {
        ZipBuilder()
            .file(u"maps/mp_canyon.bsp"_s)
            .file(u"scripts/canyon.arena"_s, arenaScript(u"mp_canyon"_s, u"Red Canyon"_s, u"ffa duel"_s))
            .file(u"levelshots/mp_canyon.tga"_s, tgaPicture(16, 16, 200, 40, 40))
            .write(t.baseFolder() + u"/canyon.pk3"_s);
        openMainWindow();
        tree = window->findChild<QTreeView*>(u"tvwAvailMaps"_s);
        grid = window->findChild<QTreeWidget*>(u"lsvMapRotation"_s);
        ASSERT_NE(tree, nullptr);
        ASSERT_NE(grid, nullptr);
    }
    QStringList rotation() const
    {
        QStringList maps;
        for (int i = 0; i < grid->topLevelItemCount(); ++i)
            maps << grid->topLevelItem(i)->text(0);
        return maps;
    }
    QTreeView* tree = nullptr;
    QTreeWidget* grid = nullptr;
};

TEST_F(MapPage, AScanFillsTheTreeAClickPreviewsADoubleClickAddsAndTheStartingMapIsMarked)
{
    t.prompts.answerNext(Answer::Yes); // "Scan for new maps?"
    tool(u"id_UtilitiesMapsScanfornewmaps"_s);
    const QModelIndex map = tree->model()->index(0, 0, tree->model()->index(0, 0, tree->model()->index(0, 0)));
    ASSERT_TRUE(map.isValid()) << "the archive and its map are in the tree";
    EXPECT_EQ(map.data().toString(), u"mp_canyon"_s);
    EXPECT_EQ(map.parent().data().toString().toLower(), u"canyon.pk3"_s);
    emit tree->clicked(map);
    EXPECT_EQ(profile->text(F::lblLongMapName), u"Red Canyon"_s);
    EXPECT_TRUE(QFileInfo(profile->text(F::picMap)).fileName().startsWith(u"mp_canyon"_s))
        << profile->text(F::picMap).toStdString();
    tree->setCurrentIndex(map);
    sendMouse(tree->viewport(), QEvent::MouseButtonDblClick, tree->visualRect(map).center());
    EXPECT_EQ(rotation(), QStringList{u"mp_canyon"_s});
    EXPECT_EQ(profile->text(F::lblMapsSelected), u"1 Selected Maps"_s);
    EXPECT_TRUE(profile->configurationChanged());
    grid->setCurrentItem(grid->topLevelItem(0));
    tool(u"ID_SetStartingMap"_s);
    EXPECT_EQ(profile->startingMap(), u"mp_canyon"_s);
    EXPECT_FALSE(grid->topLevelItem(0)->icon(0).isNull()) << "the starting map carries its mark";
}

TEST_F(MapPage, TheMapCheckBoxesRunTheirClicksWhenTheUserTicksThem)
{
    const auto mapControlsShown = [this](bool shown) {
        for (FieldId name : {F::tvwAvailMaps, F::picMap, F::lsvMapRotation, F::lblMapsSelected})
            EXPECT_EQ(profile->field(name).isVisible(), shown) << name.name;
    };
    auto* savedCycle = window->control<QCheckBox>(u"chkUseINI"_s);
    auto* autoCycle = window->control<QCheckBox>(u"chkMapAutoCycle"_s);
    QWidget *startingMap = window->control(u"cboStartingMap"_s), *caption = window->control(u"lblServerConfig(34)"_s);
    ASSERT_TRUE(savedCycle && autoCycle && startingMap && caption);
    EXPECT_TRUE(startingMap->isHidden() && caption->isHidden());
    profile->field(F::lsvMapRotation).addRow({u"ffa_bespin"_s});
    t.prompts.chooseFile(t.baseFolder() + u"/advanced.cfg"_s);
    savedCycle->click();
    EXPECT_EQ(profile->text(F::txtServerINI), t.baseFolder() + u"/advanced.cfg"_s);
    EXPECT_EQ(grid->topLevelItemCount(), 0);
    mapControlsShown(false);
    // Auto cycle shows the starting map and clears the saved cycle through its click,
    // which empties the file and shows the map controls again.
    autoCycle->click();
    EXPECT_FALSE(startingMap->isHidden() || caption->isHidden());
    EXPECT_FALSE(savedCycle->isChecked());
    EXPECT_EQ(profile->text(F::txtServerINI), QString());
    mapControlsShown(true);
    autoCycle->click();
    EXPECT_TRUE(startingMap->isHidden() && caption->isHidden());
    EXPECT_FALSE(profile->configurationChanged()) << "mouse clicks";
}

TEST_F(MapPage, TheRowUnderTheRightClickIsTheOneTheRotationCommandsTake)
{
    for (const char* map : {"ffa_bespin", "ffa_yavin", "duel_pit"})
        profile->field(F::lsvMapRotation).addRow({QString::fromLatin1(map)});
    profile->setValue(F::vsMainTab, 2);
    auto rightClick = [this](int row) {
        QApplication::processEvents(); // the grid lays out its rows again
        const QPoint at = grid->visualItemRect(grid->topLevelItem(row)).center();
        sendMouse(grid->viewport(), QEvent::MouseButtonPress, at, Qt::RightButton);
        sendMouse(grid->viewport(), QEvent::MouseButtonRelease, at, Qt::RightButton);
    };
    rightClick(1);
    tool(u"ID_SetStartingMap"_s);
    EXPECT_EQ(profile->startingMap(), u"ffa_yavin"_s);
    rightClick(2);
    t.prompts.answerNext(Answer::Yes); // "Remove Selected Map?"
    tool(u"ID_RemoveMap"_s);
    EXPECT_EQ(rotation(), (QStringList{u"ffa_bespin"_s, u"ffa_yavin"_s}));
    EXPECT_EQ(profile->text(F::lblMapsSelected), u"2 Maps Selected"_s);
}

// The wizard's pages as windows over the main window; the walk itself is the wizard's
// own tests' subject.
using MapWizardPages = WiredMainWindow;

TEST_F(MapWizardPages, WalkFromTheRotationToTheSavedCycle)
{
    openMainWindow();
    for (const char* map : {"ffa_bespin", "duel_bay"})
        profile->field(F::lsvMapRotation).addRow(rotationRow(QString::fromLatin1(map), u"Long"_s, u"ffa"_s));
    tool(u"ID_MapWizard"_s);
    const auto page = [](int n) { return form(u"frmWizard_%1"_s.arg(n)); };
    const auto shown = [&page](int n) { return page(n) && page(n)->isVisible(); };
    const auto next = [&page](int n) { child(page(n), n == 3 ? u"cmdNextMap"_s : u"cmdNext"_s)->click(); };
    const WizardState& state = wiring.mapWizard().wizard().state();
    EXPECT_FALSE(window->isVisible()) << "the main window hides";
    ASSERT_TRUE(shown(1));
    auto* grid = child<QTreeWidget>(page(1), u"grdMapList"_s);
    ASSERT_EQ(grid->topLevelItemCount(), 2);
    grid->setCurrentItem(grid->topLevelItem(1)); // the pop-up names the current row
    child<QMenu>(page(1), u"ID_Wizard"_s)->findChild<QAction*>(u"ID_SetStartingMap"_s)->trigger();
    QApplication::processEvents();
    EXPECT_EQ(state.startingMap, u"duel_bay"_s);
    EXPECT_FALSE(child(page(1), u"cmdNext"_s)->isEnabled());
    emit grid->itemClicked(grid->topLevelItem(1), 0);
    next(1);
    EXPECT_FALSE(shown(1));
    EXPECT_TRUE(shown(2));
    EXPECT_TRUE(state.records[1].Configured);
    child(page(2), u"cmdBack"_s)->click();
    EXPECT_TRUE(shown(1) && !shown(2));
    next(1);
    next(2);
    auto* warmup = child<QLineEdit>(page(3), u"txtWarmup(1)"_s);
    warmup->setText(u"6"_s);
    warmup->setCursorPosition(1);
    sendKey(warmup, Qt::Key_A, u"a"_s);
    sendKey(warmup, Qt::Key_5, u"5"_s);
    EXPECT_EQ(warmup->text(), u"65"_s);
    EXPECT_EQ(t.beeper.beeps, 2) << "a letter is refused by both filters";
    next(3);
    EXPECT_TRUE(shown(1));
    EXPECT_EQ(state.records[1].Warmup, u"g_warmup 65"_s);
    emit grid->itemClicked(grid->topLevelItem(0), 0);
    next(1);
    next(2);
    const QString path = t.baseFolder() + u"/wizard.cfg"_s;
    t.prompts.chooseFile(path);
    child(page(3), u"cmdFinish"_s)->click();
    settle();
    EXPECT_TRUE(
        isBox(t.prompts.last(), {u"Advanced Map Cycle"_s, Icon::Information, u"File has been Saved         "_s}));
    EXPECT_EQ(page(1), nullptr);
    EXPECT_EQ(page(3), nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(t.prompts.dialogs.size(), 1u) << "the saved cycle's own dialog doesn't open";
    EXPECT_EQ(window->control<QLineEdit>(u"txtServerINI"_s)->text(), path);
    EXPECT_TRUE(window->control<QCheckBox>(u"chkUseINI"_s)->isChecked());
    EXPECT_TRUE(QFile::exists(t.baseFolder() + u"/1wizard.cfg"_s));
}

} // namespace
