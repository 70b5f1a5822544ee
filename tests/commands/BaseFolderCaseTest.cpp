// Every dialog, writer and reader that works in the game's base folder finds it however
// its name is spelled on disk, and nothing lands beside it in the game folder.
#include "commands/BanListCommands.h"
#include "commands/BotConfigWriter.h"
#include "commands/CreateJediConfiguration.h"
#include "commands/MainFormLoad.h"
#include "commands/MapCycleCommands.h"
#include "commands/ProfileLoad.h"
#include "commands/ServerLaunch.h"
#include "maps/MapRotation.h"
#include "maps/MapScanner.h"
#include "model/ServerProfile.h"
#include "testkit/FakeWindows.h"
#include "testkit/TestApp.h"
#include "wizard/MapWizard.h"

#include <QDir>
#include <QFileInfo>
#include <functional>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

using Road = std::function<QString(TestApp&, ServerProfile&)>;

/// The folder the last dialog opened on.
QString dialogFolder(TestApp& t)
{
    return t.prompts.dialogs.empty() ? QString() : t.prompts.dialogs.back().state.InitialDir;
}

/// Where each road went: the folder its dialog opened on, or the file it wrote or found.
const std::pair<const char*, Road> kRoads[] = {
    {"the wizard's save dialog",
     [](TestApp& t, ServerProfile& profile) {
         QuietWizardWindows windows;
         MapWizard wizard(*t.app, windows);
         wizard.ID_MapWizard(profile);
         wizard.grdMapList_Click(0);
         wizard.cmdNext_Click(1);
         wizard.cmdNext_Click(2);
         t.prompts.cancelNextDialog();
         wizard.cmdFinish_Click();
         return dialogFolder(t);
     }},
    {"the map cycle export's dialog",
     [](TestApp& t, ServerProfile& profile) {
         t.prompts.cancelNextDialog();
         mnuExportMapCycle_Click(*t.app, profile);
         return dialogFolder(t);
     }},
    {"the saved-cycle picker",
     [](TestApp& t, ServerProfile& profile) {
         t.prompts.cancelNextDialog();
         profile.setValue(F::chkUseINI, 1);
         chkUseINI_Click(*t.app, profile);
         return dialogFolder(t);
     }},
    {"the map cycle",
     [](TestApp& t, ServerProfile& profile) {
         QString name;
         MakeMapCycle(*t.app, profile, name, false, false);
         return t.baseFolder() + u'/' + name;
     }},
    {"the bot file",
     [](TestApp& t, ServerProfile& profile) {
         gbln_MakeBOTConfig(*t.app, profile);
         return t.baseFolder() + u"/BOTFile.cfg"_s;
     }},
    {"the ban file",
     [](TestApp& t, ServerProfile& profile) {
         gbln_MakeBANList(*t.app, profile, 1);
         return t.baseFolder() + u"/BAN.cfg"_s;
     }},
    {"the session file",
     [](TestApp& t, ServerProfile& profile) {
         QString session = u"arena.cfg"_s;
         CreateJediConfiguration(*t.app, profile, true, false, session);
         return t.baseFolder() + u"/arena.cfg"_s;
     }},
    {"the empty Default.cfg",
     [](TestApp& t, ServerProfile&) {
         EnsureDefaultCfg(*t.app);
         return t.baseFolder() + u"/Default.cfg"_s;
     }},
    {"the list of configs to execute",
     [](TestApp& t, ServerProfile&) {
         writeFile(t.baseFolder() + u"/extra.cfg"_s, "set a 1\r\n");
         return baseFolderConfigs(*t.app).contains(u"extra.cfg"_s) ? t.baseFolder() + u"/extra.cfg"_s : QString();
     }},
    {"the archives that the map and bot scans read",
     [](TestApp& t, ServerProfile&) {
         writeFile(t.baseFolder() + u"/maps.pk3"_s, "PK");
         QString folder;
         const QStringList files = baseFolderFiles(*t.app, t.gameFolder(), u"Base"_s, &folder);
         return files.contains(u"maps.pk3"_s) ? QDir(folder).filePath(u"maps.pk3"_s) : QString();
     }},
};

} // namespace

TEST(BaseFolderCase, EveryRoadFindsTheBaseFolderHoweverItIsSpelled)
{
    for (const char* spelling : {"base", "Base", "BASE"}) {
        for (const auto& [name, road] : kRoads) {
            SCOPED_TRACE(std::string(spelling) + ": " + name);
            TestApp t{QString::fromLatin1(spelling)};
            // A profile with a rotation of two maps, a starting map and a banned address.
            ServerProfile profile;
            for (const QString& map : {u"ffa_bespin"_s, u"duel_bay"_s})
                profile.field(F::lsvMapRotation).addRow(rotationRow(map, u"Long"_s, u"ffa"_s));
            profile.setStartingMap(u"ffa_bespin"_s);
            profile.setValue(F::optDefaultGameType(4), 1);
            profile.setValue(F::chkMapAutoCycle, 1);
            profile.field(F::lstBannedIPs).addItem(u"10.0.0.7"_s);
            const QString where = QDir::cleanPath(road(t, profile));
            const QString base = QDir::cleanPath(t.baseFolder());
            EXPECT_TRUE(where == base || QFileInfo(where).absolutePath() == base) << where.toStdString();
            EXPECT_TRUE(where == base || QFileInfo(where).isFile()) << where.toStdString();
            EXPECT_EQ(QDir(t.gameFolder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
                      QStringList{QString::fromLatin1(spelling)})
                << "nothing beside the base folder";
        }
    }
}
