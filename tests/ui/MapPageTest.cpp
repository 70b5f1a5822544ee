// The Map page on the real window, with a scan of real archives.
#include "maps/MapTreeModel.h"
#include "model/ServerProfile.h"
#include "commands/Startup.h"
#include "testkit/ZipBuilder.h"
#include "ui/WiredMainWindow.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QFileInfo>
#include <QMouseEvent>
#include <QTreeView>
#include <QTreeWidget>
#include <gtest/gtest.h>

using namespace steward;
using steward::testing::ZipBuilder;

namespace {

class MapPage : public steward::testing::WiredMainWindow {
protected:
    void SetUp() override
    {
        ZipBuilder()
            .file(QStringLiteral("maps/mp_canyon.bsp"))
            .file(QStringLiteral("scripts/canyon.arena"),
                  steward::testing::arenaScript(QStringLiteral("mp_canyon"), QStringLiteral("Red Canyon"),
                                                QStringLiteral("ffa duel")))
            .file(QStringLiteral("levelshots/mp_canyon.tga"), steward::testing::tgaPicture(16, 16, 200, 40, 40))
            .write(t.baseFolder() + QStringLiteral("/canyon.pk3"));
        openMainWindow();
        tree = window->findChild<QTreeView*>(QStringLiteral("tvwAvailMaps"));
        grid = window->findChild<QTreeWidget*>(QStringLiteral("lsvMapRotation"));
        ASSERT_NE(tree, nullptr);
        ASSERT_NE(grid, nullptr);
    }
    void menu(const QString& id) { wiring.dispatcher().SSActiveToolBars1_ToolClick(id); }
    QModelIndex mapNode()
    {
        QAbstractItemModel* model = tree->model();
        const QModelIndex root = model->index(0, 0);
        const QModelIndex archive = model->index(0, 0, root);
        return model->index(0, 0, archive);
    }
    void doubleClick(const QModelIndex& index)
    {
        tree->setCurrentIndex(index);
        emit tree->clicked(index);
        const QPoint at = tree->visualRect(index).center();
        QMouseEvent dbl(QEvent::MouseButtonDblClick, at, tree->viewport()->mapToGlobal(at), Qt::LeftButton,
                        Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(tree->viewport(), &dbl);
    }

    QTreeView* tree = nullptr;
    QTreeWidget* grid = nullptr;
};

} // namespace

TEST_F(MapPage, AScanFillsTheTreeAndAClickPreviewsTheMap)
{
    t.prompts.answerNext(Answer::Yes); // "Scan for new maps?"
    menu(QStringLiteral("id_UtilitiesMapsScanfornewmaps"));
    const QModelIndex map = mapNode();
    ASSERT_TRUE(map.isValid()) << "the archive and its map are in the tree";
    EXPECT_EQ(map.data().toString(), QStringLiteral("mp_canyon"));
    EXPECT_EQ(map.parent().data().toString().toLower(), QStringLiteral("canyon.pk3"));

    emit tree->clicked(map);
    EXPECT_EQ(profile->text(F::lblLongMapName), QStringLiteral("Red Canyon"));
    EXPECT_TRUE(QFileInfo(profile->text(F::picMap)).fileName().startsWith(QStringLiteral("mp_canyon")))
        << profile->text(F::picMap).toStdString();
}

TEST_F(MapPage, ADoubleClickBuildsTheRotationAndOkStartsTheServerOnIt)
{
    t.prompts.answerNext(Answer::Yes);
    menu(QStringLiteral("id_UtilitiesMapsScanfornewmaps"));
    doubleClick(mapNode());
    ASSERT_EQ(grid->topLevelItemCount(), 1);
    EXPECT_EQ(grid->topLevelItem(0)->text(0), QStringLiteral("mp_canyon"));
    EXPECT_EQ(profile->text(F::lblMapsSelected), QStringLiteral("1 Selected Maps"));
    EXPECT_TRUE(profile->configurationChanged());

    grid->setCurrentItem(grid->topLevelItem(0));
    menu(QStringLiteral("ID_SetStartingMap"));
    EXPECT_EQ(profile->startingMap(), QStringLiteral("mp_canyon"));
    EXPECT_FALSE(grid->topLevelItem(0)->icon(0).isNull()) << "the starting map carries its mark";

    profile->setConfigurationChanged(false);
    profile->setText(F::txtServerConfig(14), QStringLiteral("secret")); // messaging is on
    t.prompts.shown.clear();
    window->raiseEvent({QStringLiteral("cmdOk"), UiEventKind::Click, {}});
    ASSERT_EQ(t.launcher.started.size(), 1u) << t.prompts.texts().join(QLatin1Char('|')).toStdString();
    EXPECT_EQ(t.launcher.started[0].workingFolder, t.app->gameFolder);
    EXPECT_TRUE(QFileInfo::exists(t.baseFolder() + QStringLiteral("/jediMaps.cfg")));
    EXPECT_TRUE(QFileInfo::exists(t.baseFolder() + QStringLiteral("/luke.cfg")));
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
    EXPECT_EQ(profile->startingMap(), QStringLiteral("ctf_yavin"));
    choose("ID_ClearList");
    EXPECT_EQ(grid->topLevelItemCount(), 0);
}

TEST_F(MapPage, TheMapCheckBoxesRunTheirClicksWhenTheUserTicksThem)
{
    const FieldId controls[] = {F::tvwAvailMaps, F::picMap, F::lsvMapRotation, F::lblMapsSelected};
    auto* savedCycle = window->findChild<QCheckBox*>(QStringLiteral("chkUseINI"));
    auto* autoCycle = window->findChild<QCheckBox*>(QStringLiteral("chkMapAutoCycle"));
    QWidget* startingMap = window->control(QStringLiteral("cboStartingMap"));
    QWidget* caption = window->control(QStringLiteral("lblServerConfig(34)"));
    ASSERT_TRUE(savedCycle && autoCycle && startingMap && caption);
    EXPECT_TRUE(startingMap->isHidden());
    EXPECT_TRUE(caption->isHidden());
    profile->field(F::lsvMapRotation).addRow({QStringLiteral("ffa_bespin")});

    const QString saved = t.baseFolder() + QStringLiteral("/advanced.cfg");
    t.prompts.chooseFile(saved);
    savedCycle->click();
    EXPECT_EQ(profile->text(F::txtServerINI), saved);
    EXPECT_EQ(grid->topLevelItemCount(), 0);
    for (FieldId name : controls)
        EXPECT_FALSE(profile->field(name).isVisible()) << name.name;

    // Ticking auto cycle shows the starting map and clears the saved cycle through its
    // click, which empties the file and shows the map controls again behind auto
    // cycle's back.
    autoCycle->click();
    EXPECT_FALSE(startingMap->isHidden());
    EXPECT_FALSE(caption->isHidden());
    EXPECT_FALSE(savedCycle->isChecked());
    EXPECT_EQ(profile->text(F::txtServerINI), QString());
    for (FieldId name : controls)
        EXPECT_TRUE(profile->field(name).isVisible()) << name.name;
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
        QMouseEvent press(QEvent::MouseButtonPress, at, grid->viewport()->mapToGlobal(at), Qt::RightButton,
                          Qt::RightButton, Qt::NoModifier);
        QApplication::sendEvent(grid->viewport(), &press);
        QMouseEvent release(QEvent::MouseButtonRelease, at, grid->viewport()->mapToGlobal(at), Qt::RightButton,
                            Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(grid->viewport(), &release);
    };

    rightClick(1);
    menu(QStringLiteral("ID_SetStartingMap"));
    EXPECT_EQ(profile->startingMap(), QStringLiteral("ffa_yavin"));

    rightClick(2);
    t.prompts.answerNext(Answer::Yes); // "Remove Selected Map?"
    menu(QStringLiteral("ID_RemoveMap"));
    ASSERT_EQ(grid->topLevelItemCount(), 2);
    EXPECT_EQ(grid->topLevelItem(0)->text(0), QStringLiteral("ffa_bespin"));
    EXPECT_EQ(grid->topLevelItem(1)->text(0), QStringLiteral("ffa_yavin"));
    EXPECT_EQ(profile->text(F::lblMapsSelected), QStringLiteral("2 Maps Selected"));
}

using MapPageFirstRun = steward::testing::WiredMainWindow;

TEST_F(MapPageFirstRun, TheFirstRunScanFillsTheTreeOfTheWindowItOpens)
{
    ZipBuilder().file(QStringLiteral("maps/duel_pit.bsp")).write(t.baseFolder() + QStringLiteral("/assets0.pk3"));
    steward::testing::writeFile(t.gameFolder() + QStringLiteral("jk2mvded"), "#!/bin/sh\n");
    t.store->SaveSetting(kKeyPathToJedi, t.gameFolder());
    t.store->SaveSetting(kKeyPathToServer, QStringLiteral("jk2mvded"));
    t.store->SaveSetting(kKeyRunOnce, QStringLiteral("0"));

    ASSERT_EQ(runStartup(*t.app, host, QString()), StartupOutcome::MainWindowOpen)
        << t.prompts.texts().join(QLatin1Char('|')).toStdString();
    auto* tree = host.mainWindow()->findChild<QTreeView*>(QStringLiteral("tvwAvailMaps"));
    ASSERT_NE(tree, nullptr);
    QAbstractItemModel* model = tree->model();
    const QModelIndex archive = model->index(0, 0, model->index(0, 0));
    EXPECT_EQ(archive.data().toString(), QStringLiteral("assets0.pk3"));
    EXPECT_EQ(model->index(0, 0, archive).data().toString(), QStringLiteral("duel_pit"));
    EXPECT_EQ(host.mainWindow()->profile().text(F::lblNumberOfMapsAvailable), QStringLiteral("1 Maps available"));
}
