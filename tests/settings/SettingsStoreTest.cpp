// The settings file: plain strings in both directions, hand-edited files, the owner-only
// file mode, batches and a write that fails; where a profile's file lies, and a start's own
// copy of the exact texts of its boxes.
#include "model/FieldIndexes.h"
#include "model/ServerProfile.h"
#include "settings/MemorySettingsStore.h"
#include "settings/PlainIniFormat.h"
#include "settings/Profiles.h"
#include "settings/SettingsStore.h"
#include "settings/StartKeys.h"
#include "support/Errors.h"
#include "testkit/Printers.h"
#include "testkit/TestApp.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

using Rows = QList<QPair<QString, QString>>;

class StoreFile : public ::testing::Test {
protected:
    void save(const Rows& rows)
    {
        for (const auto& [key, value] : rows)
            t.store->SaveSetting(key, value);
    }
    /// A folder where the file should be: no write can replace it.
    void blockTheFile()
    {
        QFile::remove(t.storeFile());
        QDir().mkpath(t.storeFile());
    }
    TestApp t;
};

TEST_F(StoreFile, EveryTextAndKeyNameComesBackAsItWasSaved)
{
    // Split at '|'; the last two are a lone quote and a lone backslash.
    const QStringList values = u"a,b| |Welcome% all|  both ends  ||\"quoted\"|back\\slash|1.2.3.4;;5.6.7.8;|#hash|=x=y|"
                               "tab\there|two\r\nlines|@Variant(x)|C:\\Program Files\\Lucas Arts\\x|\\x41 is not A|"
                               "\u00fcmlaut|\"|\\"_s.split(u'|');
    // A configuration file read one field out of step turns values into key names.
    const QStringList keys = u"b.log|^2This server is configured by ^1Arena Steward|C:\\Program Files\\x|a/b|100%|x=y|"
                             "[section]"_s.split(u'|');
    for (qsizetype i = 0; i < values.size(); ++i)
        t.store->SaveSetting(u"K%1"_s.arg(i), values[i]);
    for (const QString& k : keys)
        t.store->SaveSetting(k, k + u"!"_s);
    IniSettingsStore reopened(t.storeFile());
    for (qsizetype i = 0; i < values.size(); ++i) {
        EXPECT_EQ(reopened.GetSetting(u"K%1"_s.arg(i), u"absent"_s), values[i]) << i;
        EXPECT_TRUE(reopened.HasSetting(u"K%1"_s.arg(i)));
    }
    const Rows all = reopened.GetAllSettings();
    EXPECT_EQ(all.size(), values.size() + keys.size());
    for (const QString& k : keys) {
        EXPECT_TRUE(all.contains({k, k + u"!"_s})) << k.toStdString();
        EXPECT_EQ(reopened.GetSetting(k), k + u"!"_s);
    }
}

TEST_F(StoreFile, AHandEditedFileIsReadAsItStands)
{
    writeFile(t.storeFile(), "; written by hand\r\n[Other]\r\nLogName=elsewhere\r\n[_Steward]\r\nLogName=a,b.log\r\n"
                             "Msg1=Hello, all\r\nBannedIPs=1.2.3.4;;5.6.7.8;\r\nQuoted=\"a,b\"\r\nHalf=\"a\",b\r\n"
                             "Stray=x\"y\r\nPathToJedi=C:\\Program Files\\Lucas Arts\\x\r\n"
                             "  Padded  =  value with blanks inside  \r\n# a comment\r\nEmpty=\r\nBlank=\" \"\r\n"
                             "no equals sign here\r\nLatin=caf\xe9\r\n");
    // Keys and their values, in turn.
    const QStringList expected =
        u"LogName|a,b.log|Msg1|Hello, all|BannedIPs|1.2.3.4;;5.6.7.8;|Quoted|a,b|Half|\"a\",b|"
        "Stray|x\"y|PathToJedi|C:\\Program Files\\Lucas Arts\\x|Padded|value with blanks inside|"
        "Empty||Blank| |Latin|caf\u00e9"_s.split(u'|');
    for (qsizetype i = 0; i < expected.size(); i += 2)
        EXPECT_EQ(t.store->GetSetting(expected[i], u"absent"_s), expected[i + 1]) << expected[i].toStdString();
    EXPECT_EQ(t.store->GetAllSettings().size(), expected.size() / 2);
    // A save keeps the hand-edited values and the other section.
    t.store->SaveSetting(u"MsgTime"_s, u"5"_s);
    IniSettingsStore reopened(t.storeFile());
    EXPECT_EQ(reopened.GetSetting(u"LogName"_s), u"a,b.log"_s);
    EXPECT_EQ(reopened.GetSetting(u"Half"_s), u"\"a\",b"_s);
    EXPECT_TRUE(fileBytes(t.storeFile()).contains("[Other]\nLogName=\"elsewhere\"\n"));
}

TEST_F(StoreFile, TheFileIsReadableByItsOwnerOnly)
{
    const auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    const auto all = ownerOnly | QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ReadOther |
                     QFileDevice::WriteOther | QFileDevice::ExeOwner;
    t.store->SaveSetting(u"rconPassword"_s, u"secret"_s);
    EXPECT_EQ(QFile(t.storeFile()).permissions() & all, ownerOnly);
    // A file that a user made readable for all is closed again by the next save.
    QFile(t.storeFile()).setPermissions(ownerOnly | QFileDevice::ReadGroup | QFileDevice::ReadOther);
    t.store->SaveSetting(u"MsgTime"_s, u"5"_s);
    EXPECT_EQ(QFile(t.storeFile()).permissions() & all, ownerOnly);
}

TEST_F(StoreFile, AWriteThatFailsThrowsAndTheNextOneWorks)
{
    t.store->SaveSetting(u"A"_s, u"1"_s);
    blockTheFile();
    try {
        t.store->SaveSetting(u"B"_s, u"2"_s);
        ADD_FAILURE() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::PathFileAccess);
        EXPECT_TRUE(e.description().contains(u"'B'"_s));
    }
    EXPECT_THROW(t.store->DeleteSetting(u"A"_s), RuntimeError);
    QDir().rmdir(t.storeFile());
    t.store->SaveSetting(u"C"_s, u"3"_s);
    IniSettingsStore reopened(t.storeFile());
    EXPECT_EQ(reopened.GetSetting(u"C"_s), u"3"_s);
    EXPECT_FALSE(reopened.HasSetting(u"B"_s)) << "a failed change is dropped, not kept for later";
}

TEST_F(StoreFile, TwoInstancesKeepEachOthersKeysAndDeleteRemovesOne)
{
    IniSettingsStore other(t.storeFile());
    t.store->SaveSetting(u"A"_s, u"1"_s);
    other.SaveSetting(u"B"_s, u"2"_s);
    {
        SettingsBatch batch(*t.store);
        t.store->SaveSetting(u"C"_s, u"3"_s);
        other.DeleteSetting(u"A"_s);
        batch.commit();
    }
    EXPECT_EQ(t.store->GetAllSettings(), (Rows{{"B", "2"}, {"C", "3"}}));
    t.store->DeleteSetting(u"C"_s);
    t.store->DeleteSetting(u"never there"_s);
    EXPECT_EQ(t.store->GetAllSettings(), (Rows{{"B", "2"}}));
}

TEST(PlainIniValue, QuotedStringsAndTheTextAsItStands)
{
    // Raw texts and what they are read as, in turn.
    const QStringList cases = u"\"a\\\\b\"|a\\b|\"\\\"\"|\"|\"\\x41\"|A|\"\\x4\"|\\x4|\"\\q\"|\\q|\"a\\\"|\"a\\\"|"
                              "\"|\"|\"\"||a\\nb|a\\nb|\"a\" \"b\"|\"a\" \"b\""_s.split(u'|');
    for (qsizetype i = 0; i < cases.size(); i += 2)
        EXPECT_EQ(unquotePlainIniValue(cases[i]), cases[i + 1]) << cases[i].toStdString();
    EXPECT_EQ(quotePlainIniValue(u"a\x01\"\\"_s), u"\"a\\x01\\\"\\\\\""_s);
}

TEST_F(StoreFile, ABatchWritesOnceAtItsEndAndKeepsWhatWasDoneBeforeAnError)
{
    t.store->SaveSetting(u"Old"_s, u"1"_s);
    {
        SettingsBatch batch(*t.store);
        for (int i = 0; i < 3; ++i)
            t.store->SaveSetting(u"K%1"_s.arg(i), QString::number(i));
        t.store->DeleteSetting(u"Old"_s);
        EXPECT_EQ(t.store->GetSetting(u"K2"_s), u"2"_s) << "the batch reads its own changes";
        batch.commit();
    }
    EXPECT_EQ(IniSettingsStore(t.storeFile()).GetAllSettings(), (Rows{{"K0", "0"}, {"K1", "1"}, {"K2", "2"}}));
    try { // an empty key name is refused; the batch left by the error keeps what was done
        SettingsBatch batch(*t.store);
        t.store->SaveSetting(u"A"_s, u"1"_s);
        t.store->SaveSetting(QString(), u"refused"_s);
        ADD_FAILURE() << "an empty key name was taken";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::InvalidProcedureCall);
    }
    EXPECT_EQ(IniSettingsStore(t.storeFile()).GetAllSettings().size(), 4);
    EXPECT_EQ(IniSettingsStore(t.storeFile()).GetSetting(u"A"_s), u"1"_s);
    SettingsBatch batch(*t.store);
    t.store->SaveSetting(u"B"_s, u"1"_s);
    blockTheFile();
    EXPECT_THROW(batch.commit(), RuntimeError) << "a batch that cannot be written throws at its commit";
}

TEST(ProfileNames, LettersDigitsDashAndUnderscoreUpTo32AndNotDefaultInProfilesBesideTheDefaultFile)
{
    for (const QString& name : {u"azAZ09-_"_s, u"z"_s, u"Z"_s, u"9"_s, QString(32, u'x'), u"defaults"_s})
        EXPECT_TRUE(validProfileName(name)) << name.toStdString();
    for (const QString& name : {QString(33, u'x'), QString(), u"a b"_s, u"a.b"_s, u"a/b"_s, u"\u00e9"_s, u"default"_s,
                                u"Default"_s, u"a@b"_s, u"a[b"_s, u"a`b"_s, u"a{b"_s})
        EXPECT_FALSE(validProfileName(name)) << name.toStdString();
    // A named profile lies in "profiles" beside the default file.
    QTemporaryDir dir;
    EXPECT_EQ(profileSettingsFile(dir.path(), QString()), dir.filePath(u"ArenaSteward.conf"_s));
    EXPECT_EQ(profileSettingsFile(dir.path(), u"default"_s), dir.filePath(u"ArenaSteward.conf"_s));
    EXPECT_EQ(profileSettingsFile(dir.path(), u"ctf"_s), dir.filePath(u"profiles/ctf.conf"_s));
    for (const char* name : {"ctf.conf", "duel.conf", "bad name.conf", "default.conf", "notes.txt"})
        writeFile(dir.filePath(u"profiles/"_s + QLatin1String(name)), "");
    EXPECT_EQ(namedProfiles(dir.path()), QStringList({"ctf", "duel"}));
}

// The store's own keys change the texts of the boxes (an empty box into a blank, a comma
// into "%"); a start's own copy gives them back exactly.
TEST(ExactTexts, TextAndComboBoxesComeBackAsTheyStood)
{
    ServerProfile started;
    started.setText(F::txtServerConfig(ServerBox::Address), QString());
    started.setText(F::txtServerConfig(ServerBox::HostName), u"Luke's, 100% \"fair\""_s);
    started.setText(F::cboConfig(0), u"my server.cfg"_s);
    MemorySettingsStore store;
    saveExactTexts(store, started);
    store.SaveSetting(u"Exact txtNoSuchBox(3)"_s, u"x"_s); // names no field: left alone
    ServerProfile restored;
    restored.setText(F::txtServerConfig(ServerBox::Address), u" "_s);
    restored.setText(F::cboConfig(0), u"other.cfg"_s);
    restoreExactTexts(store, restored);
    for (FieldId id :
         {F::txtServerConfig(ServerBox::Address), F::txtServerConfig(ServerBox::HostName), F::cboConfig(0)})
        EXPECT_EQ(restored.text(id), started.text(id)) << id.key().toStdString();
}

} // namespace
