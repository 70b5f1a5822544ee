// The Map page on the real window with a scan of real archives, and the map wizard's
// pages on top of it.
#include "commands/Startup.h"
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
    /// The map of the first archive after a scan.
    QModelIndex scannedMap()
    {
        t.prompts.answerNext(Answer::Yes); // "Scan for new maps?"
        tool(u"id_UtilitiesMapsScanfornewmaps"_s);
        QAbstractItemModel* model = tree->model();
        return model->index(0, 0, model->index(0, 0, model->index(0, 0)));
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

} // namespace

TEST_F(MapPage, AScanFillsTheTreeAClickPreviewsADoubleClickAddsAndOkStartsTheServerOnIt)
{
    const QModelIndex map = scannedMap();
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
    profile->setConfigurationChanged(false);
    profile->setText(F::txtServerConfig(14), u"secret"_s); // messaging is on
    t.prompts.shown.clear();
    window->raiseEvent({u"cmdOk"_s, UiEventKind::Click, {}});
    ASSERT_EQ(t.launcher.started.size(), 1u) << t.prompts.texts().join(u'|').toStdString();
    EXPECT_EQ(t.launcher.started[0].workingFolder, t.app->gameFolder);
    EXPECT_TRUE(QFileInfo::exists(t.baseFolder() + u"/jediMaps.cfg"_s));
    EXPECT_TRUE(QFileInfo::exists(t.baseFolder() + u"/luke.cfg"_s));
}

TEST_F(MapPage, ThePopUpsEntriesGoThroughTheOneDispatcher)
{
    // The pop-up entries are tools of the same table as the menu bar's; a chosen entry
    // runs once the menu is done.
    const auto choose = [this](const char* id) {
        auto* entry = window->findChild<QAction*>(QString::fromLatin1(id));
        ASSERT_NE(entry, nullptr) << id;
        entry->trigger();
        QApplication::processEvents();
    };
    t.prompts.answerNext(Answer::Yes); // "Clear Map list?" (nothing to clear: may not be asked)
    choose("ID_AllStandardSWMaps");
    ASSERT_EQ(grid->topLevelItemCount(), 4);
    EXPECT_EQ(profile->value(F::optDefaultGameType(5)), 1) << "capture the flag is selected";
    profile->field(F::lsvMapRotation).setCurrent(3);
    choose("ID_SetStartingMap");
    EXPECT_EQ(profile->startingMap(), u"ctf_yavin"_s);
    choose("ID_ClearList");
    EXPECT_EQ(grid->topLevelItemCount(), 0);
}

TEST_F(MapPage, TheMapCheckBoxesRunTheirClicksWhenTheUserTicksThem)
{
    const FieldId controls[] = {F::tvwAvailMaps, F::picMap, F::lsvMapRotation, F::lblMapsSelected};
    const auto mapControlsShown = [&](bool shown) {
        for (FieldId name : controls)
            EXPECT_EQ(profile->field(name).isVisible(), shown) << name.name;
    };
    auto* savedCycle = window->findChild<QCheckBox*>(u"chkUseINI"_s);
    auto* autoCycle = window->findChild<QCheckBox*>(u"chkMapAutoCycle"_s);
    QWidget* startingMap = window->control(u"cboStartingMap"_s);
    QWidget* caption = window->control(u"lblServerConfig(34)"_s);
    ASSERT_TRUE(savedCycle && autoCycle && startingMap && caption);
    EXPECT_TRUE(startingMap->isHidden());
    EXPECT_TRUE(caption->isHidden());
    profile->field(F::lsvMapRotation).addRow({u"ffa_bespin"_s});
    const QString saved = t.baseFolder() + u"/advanced.cfg"_s;
    t.prompts.chooseFile(saved);
    savedCycle->click();
    EXPECT_EQ(profile->text(F::txtServerINI), saved);
    EXPECT_EQ(grid->topLevelItemCount(), 0);
    mapControlsShown(false);
    // Ticking auto cycle shows the starting map and clears the saved cycle through its
    // click, which empties the file and shows the map controls again behind auto
    // cycle's back.
    autoCycle->click();
    EXPECT_FALSE(startingMap->isHidden());
    EXPECT_FALSE(caption->isHidden());
    EXPECT_FALSE(savedCycle->isChecked());
    EXPECT_EQ(profile->text(F::txtServerINI), QString());
    mapControlsShown(true);
    EXPECT_TRUE(profile->field(F::cboStartingMap).isVisible());
    autoCycle->click();
    EXPECT_TRUE(startingMap->isHidden());
    EXPECT_TRUE(caption->isHidden());
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

using MapPageFirstRun = WiredMainWindow;

TEST_F(MapPageFirstRun, TheFirstRunScanFillsTheTreeOfTheWindowItOpens)
{
    ZipBuilder().file(u"maps/duel_pit.bsp"_s).write(t.baseFolder() + u"/assets0.pk3"_s);
    writeFile(t.gameFolder() + u"jk2mvded"_s, "#!/bin/sh\n");
    t.store->SaveSetting(kKeyPathToJedi, t.gameFolder());
    t.store->SaveSetting(kKeyPathToServer, u"jk2mvded"_s);
    t.store->SaveSetting(kKeyRunOnce, u"0"_s);
    ASSERT_EQ(runStartup(*t.app, host, QString()), StartupOutcome::MainWindowOpen)
        << t.prompts.texts().join(u'|').toStdString();
    auto* tree = host.mainWindow()->findChild<QTreeView*>(u"tvwAvailMaps"_s);
    ASSERT_NE(tree, nullptr);
    QAbstractItemModel* model = tree->model();
    const QModelIndex archive = model->index(0, 0, model->index(0, 0));
    EXPECT_EQ(archive.data().toString(), u"assets0.pk3"_s);
    EXPECT_EQ(model->index(0, 0, archive).data().toString(), u"duel_pit"_s);
    EXPECT_EQ(host.mainWindow()->profile().text(F::lblNumberOfMapsAvailable), u"1 Maps available"_s);
}

namespace {

class WizardForms : public WiredMainWindow {
protected:
    void SetUp() override
    {
        openMainWindow();
        for (const char* map : {"ffa_bespin", "duel_bay"})
            profile->field(F::lsvMapRotation).addRow(rotationRow(QString::fromLatin1(map), u"Long"_s, u"ffa"_s));
        tool(u"ID_MapWizard"_s);
    }
    static QWidget* page(int n) { return form(u"frmWizard_%1"_s.arg(n)); }
    static bool shown(int n) { return page(n) && page(n)->isVisible(); }
    template <typename T = QPushButton>
    static T* control(int n, const QString& name)
    {
        return child<T>(page(n), name);
    }
    QTreeWidget* clickRow(int row)
    {
        auto* grid = control<QTreeWidget>(1, u"grdMapList"_s);
        grid->setCurrentItem(grid->topLevelItem(row));
        emit grid->itemClicked(grid->topLevelItem(row), 0);
        return grid;
    }
    const WizardState& state() { return wiring.mapWizard().wizard().state(); }
};

} // namespace

TEST_F(WizardForms, NextWaitsForARowSaberOnlyShowsForDuelBackKeepsConfiguredAndPageThreeFiltersTheWarmup)
{
    EXPECT_FALSE(window->isVisible()) << "the main window hides";
    ASSERT_TRUE(shown(1));
    auto* grid = control<QTreeWidget>(1, u"grdMapList"_s);
    ASSERT_EQ(grid->topLevelItemCount(), 2);
    EXPECT_EQ(grid->topLevelItem(1)->text(0), u"duel_bay"_s);
    auto* next = control(1, u"cmdNext"_s);
    EXPECT_FALSE(next->isEnabled());
    clickRow(1);
    EXPECT_TRUE(next->isEnabled());
    next->click();
    EXPECT_FALSE(shown(1));
    EXPECT_TRUE(shown(2));
    EXPECT_TRUE(state().records[1].Configured);
    auto* saberOnly = control<QCheckBox>(2, u"chkWizardDuelNoWeapons"_s);
    EXPECT_FALSE(saberOnly->isVisible());
    control<QRadioButton>(2, u"optDefaultGameType(3)"_s)->click();
    EXPECT_TRUE(saberOnly->isVisible());
    saberOnly->click();
    control<QRadioButton>(2, u"optDefaultGameType(0)"_s)->click();
    EXPECT_FALSE(saberOnly->isVisible());
    control(2, u"cmdBack"_s)->click();
    EXPECT_TRUE(shown(1));
    EXPECT_FALSE(shown(2));
    EXPECT_TRUE(state().records[1].Configured) << "Back keeps Configured";
    control(1, u"cmdNext"_s)->click();
    control(2, u"cmdNext"_s)->click();
    EXPECT_TRUE(shown(3));
    auto* warmup = control<QLineEdit>(3, u"txtWarmup(1)"_s);
    warmup->setText(u"6"_s);
    warmup->setCursorPosition(1);
    sendKey(warmup, Qt::Key_A, u"a"_s);
    sendKey(warmup, Qt::Key_5, u"5"_s);
    EXPECT_EQ(warmup->text(), u"65"_s);
    EXPECT_EQ(t.beeper.beeps, 2) << "a letter is refused by both filters";
    control(3, u"cmdNextMap"_s)->click();
    EXPECT_TRUE(shown(1));
    EXPECT_TRUE(state().records[1].DuelNoWeapons) << "read whether shown or not";
    EXPECT_EQ(state().records[1].GameType, u"g_gametype 0"_s);
    EXPECT_EQ(state().records[1].Warmup, u"g_warmup 65"_s);
}

TEST_F(WizardForms, CancelAsksAndNoKeepsThePages)
{
    clickRow(0);
    control(1, u"cmdNext"_s)->click();
    t.prompts.answerNext(Answer::No);
    control(2, u"cmdCancel"_s)->click();
    EXPECT_TRUE(isBox(t.prompts.last(), {u"Arena Steward"_s, Icon::Question,
                                         u"Do you want to cancel the wizard?         "_s, Buttons::YesNo}));
    EXPECT_TRUE(shown(2));
    EXPECT_FALSE(window->isVisible());
    t.prompts.answerNext(Answer::Yes);
    control(2, u"cmdCancel"_s)->click();
    settle();
    EXPECT_EQ(page(1), nullptr);
    EXPECT_EQ(page(2), nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(profile->field(F::lsvMapRotation).count(), 2) << "the rotation is untouched";
}

TEST_F(WizardForms, ThePopUpSetsTheStartingMapAndFinishSelectsTheSavedCycle)
{
    auto* popup = page(1)->findChild<QMenu*>(u"ID_Wizard"_s);
    ASSERT_NE(popup, nullptr);
    auto* grid = control<QTreeWidget>(1, u"grdMapList"_s);
    grid->setCurrentItem(grid->topLevelItem(1));
    popup->findChild<QAction*>(u"ID_SetStartingMap"_s)->trigger();
    QApplication::processEvents();
    EXPECT_EQ(state().startingMap, u"duel_bay"_s);
    clickRow(1);
    control(1, u"cmdNext"_s)->click();
    control(2, u"cmdNext"_s)->click();
    const QString path = t.baseFolder() + u"/wizard.cfg"_s;
    t.prompts.chooseFile(path);
    control(3, u"cmdFinish"_s)->click();
    QApplication::processEvents();
    EXPECT_TRUE(
        isBox(t.prompts.last(), {u"Advanced Map Cycle"_s, Icon::Information, u"File has been Saved         "_s}));
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(t.prompts.dialogs.size(), 1u) << "the saved cycle's own dialog doesn't open";
    EXPECT_EQ(window->control<QLineEdit>(u"txtServerINI"_s)->text(), path);
    EXPECT_TRUE(window->control<QCheckBox>(u"chkUseINI"_s)->isChecked());
    EXPECT_EQ(profile->field(F::lsvMapRotation).count(), 0);
    EXPECT_TRUE(QFile::exists(t.baseFolder() + u"/1wizard.cfg"_s));
}
