#include "maps/MapRotation.h"
#include "model/FieldNames.h"
#include "model/ServerProfile.h"
#include "support/ProductText.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"
#include "wizard/MapWizard.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {

class RecordingWizardWindows : public WizardWindows {
public:
    void hideMainWindow() override { calls << QStringLiteral("hideMain"); }
    void showMainWindow() override { calls << QStringLiteral("showMain"); }
    void showPage(int page) override { calls << QStringLiteral("show%1").arg(page); }
    void hidePage(int page) override { calls << QStringLiteral("hide%1").arg(page); }
    void unloadPage(int page) override { calls << QStringLiteral("unload%1").arg(page); }
    QStringList calls;
};

class MapWizardFlow : public ::testing::Test {
protected:
    MapWizardFlow() : wizard(*t.app, windows)
    {
        for (const char* map : {"ffa_bespin", "duel_bay", "ffa_yavin"})
            profile.field(F::lsvMapRotation)
                .addRow(rotationRow(QString::fromLatin1(map), QStringLiteral("Long"), QStringLiteral("ffa")));
        profile.setValue(F::optDefaultGameType(4), 1);
    }
    Field& page(const QString& name, int index = -1) { return wizard.fields().field(name, index); }
    const WizardMapRecord& record(int i) const { return wizard.state().records.at(i); }
    /// Pages 1 to 3 for the row, with page 2's and page 3's values as they stand.
    void configure(int row)
    {
        wizard.grdMapList_Click(row);
        wizard.cmdNext_Click(1);
        wizard.cmdNext_Click(2);
    }
    QString cycle() const { return t.baseFolder() + QStringLiteral("/cycle.cfg"); }

    TestApp t;
    ServerProfile profile;
    RecordingWizardWindows windows;
    MapWizard wizard;
};

} // namespace

TEST_F(MapWizardFlow, StartHidesTheMainWindowAndFillsPageOne)
{
    profile.setText(F::txtServerConfig(0), QStringLiteral("Welcome"));
    wizard.ID_MapWizard(profile);
    EXPECT_EQ(windows.calls, (QStringList{QStringLiteral("hideMain"), QStringLiteral("show1")}));
    EXPECT_TRUE(wizard.pageLoaded(1));
    EXPECT_EQ(page(QStringLiteral("txtMOTD")).text(), QStringLiteral("Welcome"));
    const Field& grid = page(QStringLiteral("grdMapList"));
    ASSERT_EQ(grid.count(), 3);
    EXPECT_EQ(grid.rows()[1], (QStringList{QStringLiteral("duel_bay"), QStringLiteral("1"), QString(), QString(),
                                           QStringLiteral("imgMapNotSelected")}));
    EXPECT_TRUE(grid.tag().isEmpty());
    EXPECT_FALSE(page(QStringLiteral("cmdNext")).isEnabled()) << "Next waits for a click on a row";
    EXPECT_EQ(record(2).GameType, QStringLiteral("g_gametype 5"));
}

TEST_F(MapWizardFlow, AnEmptyRotationShowsNothingButTheMessage)
{
    profile.field(F::lsvMapRotation).setRows({});
    wizard.ID_MapWizard(profile);
    EXPECT_TRUE(windows.calls.isEmpty());
    EXPECT_EQ(t.prompts.texts(),
              QStringList{QStringLiteral("There are no maps in the list, please select at least one map         ")});
}

TEST_F(MapWizardFlow, AClickMarksOneRowAndEnablesNextForGood)
{
    wizard.ID_MapWizard(profile);
    Field& grid = page(QStringLiteral("grdMapList"));
    wizard.grdMapList_Click(0);
    wizard.grdMapList_Click(2);
    EXPECT_EQ(rotationMark(grid, 0), QStringLiteral("imgMapNotSelected"));
    EXPECT_EQ(rotationMark(grid, 2), QStringLiteral("imgSelectedMap"));
    EXPECT_EQ(grid.tag(), QStringLiteral("2"));
    EXPECT_TRUE(page(QStringLiteral("cmdNext")).isEnabled());

    configure(2);
    wizard.cmdNextMap_Click();
    EXPECT_TRUE(grid.tag().isEmpty());
    EXPECT_EQ(rotationMark(grid, 2), QStringLiteral("imgMapNotSelected")) << "every row loses its mark";
    EXPECT_TRUE(page(QStringLiteral("cmdNext")).isEnabled()) << "and Next stays enabled";
}

TEST_F(MapWizardFlow, PageTwoShowsSaberOnlyForDuelAndSumsTheFlags)
{
    wizard.ID_MapWizard(profile);
    wizard.grdMapList_Click(1);
    wizard.cmdNext_Click(1);
    EXPECT_EQ(windows.calls.mid(2), (QStringList{QStringLiteral("hide1"), QStringLiteral("show2")}));
    EXPECT_TRUE(record(1).Configured);
    Field& saberOnly = page(QStringLiteral("chkWizardDuelNoWeapons"));
    EXPECT_FALSE(saberOnly.isVisible());
    for (int index = 0; index <= 6; ++index) {
        page(QStringLiteral("optDefaultGameType"), index).setValue(1);
        wizard.optDefaultGameType_Click(index);
        EXPECT_EQ(saberOnly.isVisible(), index == 3) << index;
    }
    page(QStringLiteral("optDefaultGameType"), 3).setValue(1);
    wizard.optDefaultGameType_Click(3);
    saberOnly.setValue(1);
    page(QStringLiteral("chkDMFlags"), 0).setValue(1);
    page(QStringLiteral("chkDMFlags"), 2).setValue(1);
    wizard.cmdNext_Click(2);
    EXPECT_EQ(record(1).GameType, QStringLiteral("g_gametype 3"));
    EXPECT_TRUE(record(1).DuelNoWeapons);
    EXPECT_EQ(record(1).DmFlags, QStringLiteral("dmflags 40"));
    EXPECT_EQ(record(0).GameType, QStringLiteral("g_gametype 5")) << "a map left out keeps the start's game type";
}

TEST_F(MapWizardFlow, PageThreeStoresItsFieldsAsTheRecordForms)
{
    wizard.ID_MapWizard(profile);
    configure(0);
    page(QStringLiteral("txtSpeed"), 1).setText(QStringLiteral("300"));
    page(QStringLiteral("txtGameLimits"), 1).setText(QStringLiteral("15"));
    page(QStringLiteral("txtWarmup"), 1).setText(QStringLiteral("5"));
    page(QStringLiteral("chkQuake3Specific"), 11).setValue(1);
    page(QStringLiteral("chkQuake3Specific"), 0).setValue(1);
    wizard.cmdNextMap_Click();
    const WizardMapRecord& r = record(0);
    EXPECT_EQ(r.TimeLimit, QStringLiteral("timelimit 15"));
    EXPECT_EQ(r.Warmup, QStringLiteral("g_warmup 5"));
    EXPECT_EQ(r.Gravity, QStringLiteral("g_gravity 300"));
    EXPECT_EQ(r.FriendlyFire, QStringLiteral("g_friendlyfire 0"));
    EXPECT_TRUE(r.ForceDisabled);
    EXPECT_TRUE(r.Spare.isEmpty());
    EXPECT_EQ(r.GameType, QStringLiteral("g_gametype 0")) << "page 2 starts on Free For All";

    configure(1);
    wizard.cmdNextMap_Click();
    EXPECT_EQ(record(1).Gravity, QStringLiteral("g_gravity 300")) << "the next map starts with the last one's values";
}

TEST_F(MapWizardFlow, AConfiguredMapAsksBeforeItIsOpenedAgain)
{
    wizard.ID_MapWizard(profile);
    configure(0);
    page(QStringLiteral("txtSpeed"), 1).setText(QStringLiteral("100"));
    wizard.cmdNextMap_Click();
    windows.calls.clear();

    wizard.grdMapList_Click(0);
    t.prompts.answerNext(Answer::No);
    wizard.cmdNext_Click(1);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Question,
                                         QStringLiteral("This map has already been selected, continue?         \r\n"
                                                        "WARNING - All previous settings will be removed         "),
                                         Buttons::YesNo}));
    EXPECT_TRUE(windows.calls.isEmpty()) << "No stays on page 1";
    EXPECT_EQ(rotationMark(page(QStringLiteral("grdMapList")), 0), QStringLiteral("imgMapNotSelected"));
    EXPECT_EQ(record(0).Gravity, QStringLiteral("g_gravity 100")) << "its settings stay in force";

    t.prompts.answerNext(Answer::Yes);
    wizard.cmdNext_Click(1);
    EXPECT_EQ(windows.calls, (QStringList{QStringLiteral("hide1"), QStringLiteral("show2")}));
}

TEST_F(MapWizardFlow, BackKeepsConfiguredAndASortedGridFindsItsRecord)
{
    wizard.ID_MapWizard(profile);
    wizard.grdMapList_Click(0);
    wizard.cmdNext_Click(1);
    wizard.cmdBack_Click(2);
    EXPECT_TRUE(record(0).Configured) << "Back doesn't undo Configured";
    EXPECT_TRUE(record(0).Gravity.isEmpty());

    wizard.runPopupTool(QStringLiteral("ID_SortDescending"));
    const Field& grid = page(QStringLiteral("grdMapList"));
    EXPECT_EQ(grid.cell(0, 0), QStringLiteral("ffa_yavin"));
    wizard.grdMapList_Click(0);
    wizard.cmdNext_Click(1);
    EXPECT_EQ(wizard.state().current, 2) << "the row's number leads to ffa_yavin's record";
}

TEST_F(MapWizardFlow, SetStartingMapNamesTheCurrentRowAndMarksNothing)
{
    profile.setStartingMap(QStringLiteral("ffa_yavin"));
    wizard.ID_MapWizard(profile);
    EXPECT_TRUE(wizard.state().startingMap.isEmpty());
    Field& grid = page(QStringLiteral("grdMapList"));
    grid.setCurrent(1);
    wizard.runPopupTool(QStringLiteral("ID_SetStartingMap"));
    EXPECT_EQ(wizard.state().startingMap, QStringLiteral("duel_bay"));
    EXPECT_TRUE(
        isBox(t.prompts.last(), {kProductTitle, Icon::Information,
                                 QStringLiteral("duel_bay has been set as the starting map         "), Buttons::Ok}));
    EXPECT_EQ(rotationMark(grid, 1), QStringLiteral("imgMapNotSelected"));
    EXPECT_TRUE(wizard.popupOpens());
}

TEST_F(MapWizardFlow, FinishSavesAndHandsTheCycleToTheMainWindow)
{
    wizard.ID_MapWizard(profile);
    page(QStringLiteral("grdMapList")).setCurrent(1);
    wizard.runPopupTool(QStringLiteral("ID_SetStartingMap"));
    configure(1);
    t.prompts.chooseFile(cycle());
    wizard.cmdFinish_Click();

    ASSERT_EQ(t.prompts.dialogs.size(), 1u) << "only the save dialog: the saved cycle's click stands aside";
    EXPECT_EQ(t.prompts.dialogs[0].state.DialogTitle, QStringLiteral("Save Advanced Map Cycle"));
    EXPECT_EQ(t.prompts.dialogs[0].state.InitialDir, t.gameFolder() + QStringLiteral("base"));
    EXPECT_TRUE(isBox(t.prompts.last(), {QStringLiteral("Advanced Map Cycle"), Icon::Information,
                                         QStringLiteral("File has been Saved         "), Buttons::Ok}));
    EXPECT_EQ(profile.text(F::txtServerINI), cycle());
    EXPECT_EQ(profile.value(F::chkUseINI), 1);
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 0);
    EXPECT_EQ(windows.calls.mid(windows.calls.size() - 4),
              (QStringList{QStringLiteral("unload1"), QStringLiteral("unload2"), QStringLiteral("unload3"),
                           QStringLiteral("showMain")}));
    EXPECT_TRUE(QFile::exists(t.baseFolder() + QStringLiteral("/1cycle.cfg")));
    EXPECT_FALSE(wizard.pageLoaded(1));
}

TEST_F(MapWizardFlow, FinishWithoutANameStaysOnPageThree)
{
    wizard.ID_MapWizard(profile);
    configure(0);
    windows.calls.clear();
    t.prompts.cancelNextDialog();
    wizard.cmdFinish_Click();
    EXPECT_TRUE(windows.calls.isEmpty());
    EXPECT_TRUE(wizard.pageLoaded(3));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(MapWizardFlow, AnUnwritableFolderLosesNothing)
{
    const QList<QStringList> rows = profile.field(F::lsvMapRotation).rows();
    profile.setText(F::txtServerINI, QString());
    wizard.ID_MapWizard(profile);
    configure(0);
    // A folder below a plain file can never be written, whoever runs the test.
    const QString blocked = t.root() + QStringLiteral("/blocked");
    writeFile(blocked, "not a folder");
    t.prompts.chooseFile(blocked + QStringLiteral("/cycle.cfg"));
    wizard.cmdFinish_Click();

    ASSERT_EQ(t.prompts.shown.size(), 1u) << t.prompts.texts().join(QLatin1Char('|')).toStdString();
    EXPECT_TRUE(isBox(t.prompts.last(), {QStringLiteral("Error saving file"), Icon::Exclamation,
                                         blocked + QStringLiteral("/cycle.cfg"), Buttons::Ok}));
    EXPECT_TRUE(profile.text(F::txtServerINI).isEmpty());
    EXPECT_EQ(profile.value(F::chkUseINI), 0);
    EXPECT_EQ(profile.field(F::lsvMapRotation).rows(), rows) << "the rotation is as it was";
    EXPECT_EQ(windows.calls.last(), QStringLiteral("showMain")) << "the wizard closes all the same";
    EXPECT_EQ(fileBytes(blocked), QByteArray("not a folder"));
}

TEST_F(MapWizardFlow, CancelAsksAndOnNoKeepsThePages)
{
    const QList<QStringList> rows = profile.field(F::lsvMapRotation).rows();
    wizard.ID_MapWizard(profile);
    wizard.grdMapList_Click(0);
    wizard.cmdNext_Click(1);
    windows.calls.clear();

    t.prompts.answerNext(Answer::No);
    wizard.cmdCancel_Click();
    EXPECT_TRUE(
        isBox(t.prompts.last(), {kProductTitle, Icon::Question,
                                 QStringLiteral("Do you want to cancel the wizard?         "), Buttons::YesNo}));
    EXPECT_TRUE(windows.calls.isEmpty());
    EXPECT_TRUE(wizard.pageLoaded(2));

    t.prompts.answerNext(Answer::Yes);
    wizard.cmdCancel_Click();
    EXPECT_EQ(windows.calls,
              (QStringList{QStringLiteral("unload1"), QStringLiteral("unload2"), QStringLiteral("showMain")}));
    EXPECT_EQ(profile.field(F::lsvMapRotation).rows(), rows);
    EXPECT_TRUE(record(0).Configured) << "the lists stay until the next start";

    wizard.ID_MapWizard(profile);
    EXPECT_FALSE(record(0).Configured);
    EXPECT_FALSE(page(QStringLiteral("cmdNext")).isEnabled()) << "a page loads again with its defaults";
}
