#include "commands/MapCycleCommands.h"
#include "generate/MapCycleWriter.h"
#include "maps/MapRotation.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "testkit/Printers.h"
#include "support/ErrorBox.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <QFileInfo>
#include <QUrl>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {

class MapCycleTest : public ::testing::Test {
protected:
    void rows(const QStringList& maps)
    {
        for (const QString& map : maps)
            profile.field(F::lsvMapRotation).addRow(rotationRow(map, QStringLiteral("Long"), QStringLiteral("ffa")));
    }
    static QStringList header()
    {
        const QString slashes(63, QLatin1Char('/'));
        return {QStringLiteral("// JK2 Map Cycle Configuration File"),
                slashes,
                QStringLiteral("// File Created by: Arena Steward JUNE 13 2002 beta 1.4  [arena.steward@example.org]"),
                QStringLiteral("// File Created On: Thursday, June 13, 2002 at 9:05 PM"),
                slashes,
                QString()};
    }
    QString cycleFile() const { return t.baseFolder() + QStringLiteral("/jediMaps.cfg"); }

    TestApp t;
    ServerProfile profile;
    bool clicksAttached = (attachClickRoutines(*t.app, profile), true);
};

struct CycleCase {
    const char* name;
    QStringList maps;
    QString start;
    QString gravity;
    QStringList lines;
};

} // namespace

TEST_F(MapCycleTest, WritesTheCycleByteForByte)
{
    const QString eof = QStringLiteral("// EOF");
    const CycleCase cases[] = {
        {"two rows, start in row 1",
         {QStringLiteral("ffa_yavin"), QStringLiteral("ffa_bespin")},
         QStringLiteral("ffa_bespin"),
         QStringLiteral("800"),
         {QStringLiteral("set m1 \"map ffa_bespin;set g_gravity \"800\";set nextmap vstr m2\""),
          QStringLiteral("set m2 \"map ffa_yavin;set g_gravity \"800\";set nextmap vstr m1\""), QString(),
          QStringLiteral("vstr m1"), eof}},
        {"three rows, start in row 1",
         {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")},
         QStringLiteral("b"),
         QStringLiteral("400"),
         {QStringLiteral("set m1 \"map b;set g_gravity \"400\";set nextmap vstr m2\""),
          QStringLiteral("set m2 \"map a;set g_gravity \"400\";set nextmap vstr m3\""),
          QStringLiteral("set m3 \"map c;set g_gravity \"400\";set nextmap vstr m1\""), QString(),
          QStringLiteral("vstr m1"), eof}},
        {"one row",
         {QStringLiteral("duel_pit")},
         QString(),
         QStringLiteral("350"),
         {QStringLiteral("Map duel_pit"), QStringLiteral("set g_gravity \"800\""),
          QStringLiteral("set nextmap map_restart"), QString(), eof}},
        {"a name twice",
         {QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("c"), QStringLiteral("a")},
         QStringLiteral("a"),
         QStringLiteral("800"),
         {QStringLiteral("set m1 \"map a;set g_gravity \"800\";set nextmap vstr m2\""),
          QStringLiteral("set m2 \"map b;set g_gravity \"800\";set nextmap vstr m3\""),
          QStringLiteral("set m3 \"map c;set g_gravity \"800\";set nextmap vstr m4\""),
          QStringLiteral("set m4 \"map a;set g_gravity \"800\";set nextmap vstr m1\""), QString(),
          QStringLiteral("vstr m1"), eof}},
        {"a starting map that matches nothing",
         {QStringLiteral("a"), QStringLiteral("b")},
         QStringLiteral("gone"),
         QStringLiteral("800"),
         {QStringLiteral("set m1 \"map ;set g_gravity \"\";set nextmap vstr m2\""),
          QStringLiteral("set m2 \"map a;set g_gravity \"800\";set nextmap vstr m1\""), QString(),
          QStringLiteral("vstr m1"), eof}},
        {"no rows", {}, QString(), QStringLiteral("800"), {QString(), QStringLiteral("vstr m1"), eof}},
    };
    for (const CycleCase& c : cases) {
        SCOPED_TRACE(c.name);
        TestApp app;
        ServerProfile p;
        for (const QString& map : c.maps)
            p.field(F::lsvMapRotation).addRow(rotationRow(map, {}, {}));
        p.setStartingMap(c.start);
        p.setText(F::txtSpeed(1), c.gravity);
        QString name = QStringLiteral("before");
        ASSERT_TRUE(MakeMapCycle(*app.app, p, name, false, false));
        EXPECT_EQ(name, QStringLiteral("jediMaps.cfg"));
        EXPECT_EQ(fileBytes(app.baseFolder() + QStringLiteral("/jediMaps.cfg")), crlfText(header() + c.lines));
    }
}

TEST_F(MapCycleTest, TheStartingMapMovesToTheFrontAndTheRestKeepsItsOrder)
{
    QStringList names{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("b")};
    QStringList gravities{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4")};
    MoveStartingMapFirst(names, gravities, 4, QStringLiteral("b"));
    EXPECT_EQ(names, (QStringList{QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("c"), QStringLiteral("b")}));
    EXPECT_EQ(gravities,
              (QStringList{QStringLiteral("2"), QStringLiteral("1"), QStringLiteral("3"), QStringLiteral("4")}));

    MoveStartingMapFirst(names, gravities, 4, QStringLiteral("B"));
    EXPECT_EQ(names, (QStringList{QString(), QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("c"),
                                  QStringLiteral("b")}));
}

TEST_F(MapCycleTest, TheSavedAndExportFormsAndAFailure)
{
    rows({QStringLiteral("a")});
    profile.setText(F::txtServerINI, QStringLiteral("/games/jk2/base/advanced.cfg"));
    QString name;
    ASSERT_TRUE(MakeMapCycle(*t.app, profile, name, false, true));
    EXPECT_EQ(name, QStringLiteral("advanced.cfg"));
    EXPECT_FALSE(QFileInfo::exists(cycleFile()));

    QString target = t.root() + QStringLiteral("/export/mine"); // no extension is added
    EXPECT_FALSE(MakeMapCycle(*t.app, profile, target, true, false));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(
        isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, QStringLiteral("Path not found"), Buttons::Ok}));

    target = t.root() + QStringLiteral("/mine");
    EXPECT_TRUE(MakeMapCycle(*t.app, profile, target, true, false));
    EXPECT_EQ(crlfLines(target).value(6), QStringLiteral("Map a"));
}

TEST_F(MapCycleTest, TheStartingMapOfASavedCycleIsItsLastLine)
{
    const QString file = t.root() + QStringLiteral("/advanced.cfg");
    writeFile(file,
              crlfText({QStringLiteral("set m1 \"map x\""), QStringLiteral("// ***    DO NOT DELETE MAP NAME ***"),
                        QStringLiteral("//"), QStringLiteral("//ffa_yavin")}));
    EXPECT_EQ(gbln_LoadMapCycle(*t.app, profile, file), QStringLiteral("ffa_yavin"));

    writeFile(file, crlfText({QStringLiteral("vstr m1"), QStringLiteral("// EOF")}));
    EXPECT_EQ(gbln_LoadMapCycle(*t.app, profile, file), QStringLiteral(" EOF"));
    EXPECT_TRUE(t.prompts.shown.empty());

    writeFile(file, "//" + QByteArray(1200, 'm') + "\r\n");
    EXPECT_EQ(gbln_LoadMapCycle(*t.app, profile, file).size(), 999);

    writeFile(file, crlfText({QStringLiteral("//ffa_yavin"), QString()}));
    EXPECT_EQ(gbln_LoadMapCycle(*t.app, profile, file), QString());
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(
        t.prompts.last(),
        {kProductTitle, Icon::Exclamation,
         QStringLiteral("Arena Steward was unable to set a starting map from the selected configuration file") + kTail +
             QStringLiteral("\r\nthis is probably because an older configuration file has been selected.") + kTail +
             QStringLiteral("\r\nPlease re-create a new map configuration file with Arena Steward and run again."),
         Buttons::Ok}));

    EXPECT_EQ(gbln_LoadMapCycle(*t.app, profile, t.root() + QStringLiteral("/missing.cfg")), QString());
    EXPECT_TRUE(isBox(
        t.prompts.last(),
        errorBox(err::FileNotFound,
                 QStringLiteral("arena-steward::Code.gbln_LoadMapCycle(Function) (%1/missing.cfg)").arg(t.root()))));
}

TEST_F(MapCycleTest, ExportChecksTheRotationAsksForAFileAndShowsIt)
{
    mnuExportMapCycle_Click(*t.app, profile);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation,
                                         QStringLiteral("No Maps have been selected") + kTail, Buttons::Ok}));
    EXPECT_EQ(profile.value(F::vsMainTab), 2);

    profile.setValue(F::vsMainTab, 0);
    rows({QStringLiteral("a"), QStringLiteral("b")});
    mnuExportMapCycle_Click(*t.app, profile);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation,
                                         QStringLiteral("No Starting Map has been selected") + kTail, Buttons::Ok}));
    EXPECT_EQ(profile.value(F::vsMainTab), 2);
    EXPECT_TRUE(t.prompts.dialogs.empty());

    profile.setStartingMap(QStringLiteral("b"));
    t.prompts.cancelNextDialog();
    mnuExportMapCycle_Click(*t.app, profile);
    ASSERT_EQ(t.prompts.dialogs.size(), 1u);
    EXPECT_EQ(t.prompts.dialogs.back().state.DialogTitle, QStringLiteral("Save Arena Steward Map Cycle"));
    EXPECT_EQ(t.prompts.dialogs.back().state.InitialDir, t.baseFolder());
    EXPECT_TRUE(t.opener.opened.empty());

    const QString target = t.root() + QStringLiteral("/exported.cfg");
    t.prompts.chooseFile(target);
    mnuExportMapCycle_Click(*t.app, profile);
    EXPECT_EQ(crlfLines(target).value(6), QStringLiteral("set m1 \"map b;set g_gravity \"800\";set nextmap vstr m2\""));
    ASSERT_EQ(t.opener.opened.size(), 1u);
    EXPECT_EQ(t.opener.opened.front(), QUrl::fromLocalFile(target));
}

TEST_F(MapCycleTest, UseSavedCycleChoosesAFileOrFallsBack)
{
    const FieldId controls[] = {
        F::tvwAvailMaps, F::picMap,        F::lsvMapRotation, F::lblMapsSelected, F::lblNumberOfMapsAvailable,
        F::lblMapType,   F::lblLongMapName};
    auto visible = [&](bool expected) {
        for (FieldId name : controls)
            EXPECT_EQ(profile.field(name).isVisible(), expected) << name.name;
    };
    rows({QStringLiteral("a")});

    // While the window loads, setting the box does nothing more.
    profile.setLoading(true);
    setCheckFromCode(profile, F::chkUseINI, 1);
    EXPECT_TRUE(t.prompts.dialogs.empty());
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 1);
    profile.setLoading(false);
    profile.setValue(F::chkUseINI, 0);

    profile.setValue(F::chkMapAutoCycle, 1);
    t.prompts.chooseFile(t.baseFolder() + QStringLiteral("/advanced.cfg"));
    setCheckFromCode(profile, F::chkUseINI, 1);
    ASSERT_EQ(t.prompts.dialogs.size(), 1u);
    EXPECT_EQ(t.prompts.dialogs.back().state.DialogTitle, QStringLiteral("Select Advanced Map Cycle"));
    EXPECT_EQ(t.prompts.dialogs.back().state.InitialDir, t.baseFolder());
    EXPECT_EQ(profile.value(F::chkMapAutoCycle), 0);
    EXPECT_EQ(profile.value(F::chkUseINI), 1);
    EXPECT_EQ(profile.text(F::txtServerINI), t.baseFolder() + QStringLiteral("/advanced.cfg"));
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 0);
    visible(false);

    setCheckFromCode(profile, F::chkUseINI, 0);
    EXPECT_EQ(profile.text(F::txtServerINI), QString());
    visible(true);

    t.prompts.cancelNextDialog();
    setCheckFromCode(profile, F::chkUseINI, 1);
    EXPECT_EQ(profile.value(F::chkUseINI), 0);
    EXPECT_EQ(profile.text(F::txtServerINI), QString());
    visible(true);
}

TEST_F(MapCycleTest, ADoubleClickOnTheSavedCycleOpensIt)
{
    profile.setText(F::txtServerINI, QStringLiteral("   "));
    txtServerINI_DblClick(*t.app, profile);
    EXPECT_TRUE(t.opener.opened.empty());
    profile.setText(F::txtServerINI, QStringLiteral("  /games/base/advanced.cfg "));
    txtServerINI_DblClick(*t.app, profile);
    ASSERT_EQ(t.opener.opened.size(), 1u);
    EXPECT_EQ(t.opener.opened.front(), QUrl::fromLocalFile(QStringLiteral("/games/base/advanced.cfg")));
}
