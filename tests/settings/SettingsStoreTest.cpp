// The settings file: plain strings in both directions, hand-edited files, the owner-only
// file mode and a write that fails.
#include "settings/PlainIniFormat.h"
#include "settings/SettingsStore.h"
#include "support/Errors.h"
#include "testkit/TestApp.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {
class StoreFile : public ::testing::Test {
protected:
    TestApp t;
};
QPair<QString, QString> pair(const char* key, const QString& value) { return {QString::fromUtf8(key), value}; }
} // namespace

TEST_F(StoreFile, EveryTextComesBackAsItWasSaved)
{
    const QString values[] = {
        QStringLiteral("a,b"),
        QStringLiteral(" "),
        QStringLiteral("Welcome% all"),
        QStringLiteral("  both ends  "),
        QString(),
        QStringLiteral("\"quoted\""),
        QStringLiteral("back\\slash"),
        QStringLiteral("1.2.3.4;;5.6.7.8;"),
        QStringLiteral("#hash"),
        QStringLiteral("=x=y"),
        QStringLiteral("tab\there"),
        QStringLiteral("two\r\nlines"),
        QStringLiteral("@Variant(x)"),
        QStringLiteral("C:\\Program Files\\Lucas Arts\\x"),
        QStringLiteral("\\x41 is not A"),
        QStringLiteral("ümlaut"),
        QStringLiteral("\""),
        QStringLiteral("\\"),
    };
    int i = 0;
    for (const QString& v : values)
        t.store->SaveSetting(QStringLiteral("K%1").arg(i++), v);

    IniSettingsStore reopened(t.storeFile());
    i = 0;
    for (const QString& v : values) {
        const QString key = QStringLiteral("K%1").arg(i++);
        EXPECT_EQ(reopened.GetSetting(key, QStringLiteral("absent")), v) << key.toStdString();
        EXPECT_TRUE(reopened.HasSetting(key));
    }
}

TEST_F(StoreFile, KeyNamesAreKeptAsTheyCame)
{
    // A configuration file read one field out of step turns values into key names.
    const QString keys[] = {QStringLiteral("b.log"),
                            QStringLiteral("^2This server is configured by ^1Arena Steward"),
                            QStringLiteral("C:\\Program Files\\x"),
                            QStringLiteral("a/b"),
                            QStringLiteral("100%"),
                            QStringLiteral("x=y"),
                            QStringLiteral("[section]")};
    for (const QString& k : keys)
        t.store->SaveSetting(k, k + QStringLiteral("!"));
    IniSettingsStore reopened(t.storeFile());
    const auto all = reopened.GetAllSettings();
    EXPECT_EQ(all.size(), std::size(keys));
    for (const QString& k : keys) {
        EXPECT_TRUE(all.contains(QPair<QString, QString>(k, k + QStringLiteral("!")))) << k.toStdString();
        EXPECT_EQ(reopened.GetSetting(k), k + QStringLiteral("!"));
    }
}

TEST_F(StoreFile, AnEmptyKeyNameIsRefused)
{
    EXPECT_THROW(t.store->SaveSetting(QString(), QStringLiteral("x")), RuntimeError);
    EXPECT_TRUE(t.store->GetAllSettings().isEmpty());
}

TEST_F(StoreFile, AHandEditedFileIsReadAsItStands)
{
    writeFile(t.storeFile(), "; written by hand\r\n"
                             "[Other]\r\nLogName=elsewhere\r\n"
                             "[_Steward]\r\n"
                             "LogName=a,b.log\r\n"
                             "Msg1=Hello, all\r\n"
                             "BannedIPs=1.2.3.4;;5.6.7.8;\r\n"
                             "Quoted=\"a,b\"\r\n"
                             "Half=\"a\",b\r\n"
                             "Stray=x\"y\r\n"
                             "PathToJedi=C:\\Program Files\\Lucas Arts\\x\r\n"
                             "  Padded  =  value with blanks inside  \r\n"
                             "# a comment\r\n"
                             "Empty=\r\n"
                             "Blank=\" \"\r\n"
                             "no equals sign here\r\n"
                             "Latin=caf\xe9\r\n");
    const SettingsStore& s = *t.store;
    EXPECT_EQ(s.GetSetting(QStringLiteral("LogName")), QStringLiteral("a,b.log"));
    EXPECT_EQ(s.GetSetting(QStringLiteral("Msg1")), QStringLiteral("Hello, all"));
    EXPECT_EQ(s.GetSetting(QStringLiteral("BannedIPs")), QStringLiteral("1.2.3.4;;5.6.7.8;"));
    EXPECT_EQ(s.GetSetting(QStringLiteral("Quoted")), QStringLiteral("a,b"));
    EXPECT_EQ(s.GetSetting(QStringLiteral("Half")), QStringLiteral("\"a\",b"));
    EXPECT_EQ(s.GetSetting(QStringLiteral("Stray")), QStringLiteral("x\"y"));
    EXPECT_EQ(s.GetSetting(QStringLiteral("PathToJedi")), QStringLiteral("C:\\Program Files\\Lucas Arts\\x"));
    EXPECT_EQ(s.GetSetting(QStringLiteral("Padded")), QStringLiteral("value with blanks inside"));
    EXPECT_TRUE(s.HasSetting(QStringLiteral("Empty")));
    EXPECT_EQ(s.GetSetting(QStringLiteral("Empty"), QStringLiteral("default")), QString());
    EXPECT_EQ(s.GetSetting(QStringLiteral("Blank")), QStringLiteral(" "));
    EXPECT_EQ(s.GetSetting(QStringLiteral("Latin")), QStringLiteral("caf\u00e9"));
    EXPECT_EQ(s.GetAllSettings().size(), 11);

    // A save keeps the hand-edited values and the other section.
    t.store->SaveSetting(QStringLiteral("MsgTime"), QStringLiteral("5"));
    IniSettingsStore reopened(t.storeFile());
    EXPECT_EQ(reopened.GetSetting(QStringLiteral("LogName")), QStringLiteral("a,b.log"));
    EXPECT_EQ(reopened.GetSetting(QStringLiteral("Half")), QStringLiteral("\"a\",b"));
    EXPECT_TRUE(fileBytes(t.storeFile()).contains("[Other]\nLogName=\"elsewhere\"\n"));
}

TEST_F(StoreFile, TheFileIsReadableByItsOwnerOnly)
{
    t.store->SaveSetting(QStringLiteral("rconPassword"), QStringLiteral("secret"));
    const auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    const auto others = QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ReadOther |
                        QFileDevice::WriteOther | QFileDevice::ExeOwner;
    QFile file(t.storeFile());
    EXPECT_EQ(file.permissions() & (ownerOnly | others), ownerOnly);

    // A file that a user made readable for all is closed again by the next save.
    file.setPermissions(ownerOnly | QFileDevice::ReadGroup | QFileDevice::ReadOther);
    t.store->SaveSetting(QStringLiteral("MsgTime"), QStringLiteral("5"));
    EXPECT_EQ(QFile(t.storeFile()).permissions() & (ownerOnly | others), ownerOnly);
}

TEST_F(StoreFile, AWriteThatFailsThrowsAndTheNextOneWorks)
{
    t.store->SaveSetting(QStringLiteral("A"), QStringLiteral("1"));
    QFile::remove(t.storeFile());
    QDir().mkpath(t.storeFile()); // a folder where the file should be
    try {
        t.store->SaveSetting(QStringLiteral("B"), QStringLiteral("2"));
        ADD_FAILURE() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::PathFileAccess);
        EXPECT_TRUE(e.description().contains(QStringLiteral("'B'")));
    }
    EXPECT_THROW(t.store->DeleteSetting(QStringLiteral("A")), RuntimeError);
    QDir().rmdir(t.storeFile());
    t.store->SaveSetting(QStringLiteral("C"), QStringLiteral("3"));
    IniSettingsStore reopened(t.storeFile());
    EXPECT_EQ(reopened.GetSetting(QStringLiteral("C")), QStringLiteral("3"));
    EXPECT_FALSE(reopened.HasSetting(QStringLiteral("B"))) << "a failed change is dropped, not kept for later";
}

TEST_F(StoreFile, TwoInstancesKeepEachOthersKeys)
{
    IniSettingsStore other(t.storeFile());
    t.store->SaveSetting(QStringLiteral("A"), QStringLiteral("1"));
    other.SaveSetting(QStringLiteral("B"), QStringLiteral("2"));
    {
        SettingsBatch batch(*t.store);
        t.store->SaveSetting(QStringLiteral("C"), QStringLiteral("3"));
        other.DeleteSetting(QStringLiteral("A"));
        batch.commit();
    }
    EXPECT_EQ(t.store->GetAllSettings(),
              (QList<QPair<QString, QString>>{pair("B", QStringLiteral("2")), pair("C", QStringLiteral("3"))}));
}

TEST_F(StoreFile, TheStockIniReaderReadsTheFileTheSame)
{
    const QString values[] = {QStringLiteral("a,b"),
                              QStringLiteral(" "),
                              QStringLiteral("1.2.3.4;;"),
                              QStringLiteral("back\\slash \"q\""),
                              QString(),
                              QStringLiteral("#x")};
    int i = 0;
    for (const QString& v : values)
        t.store->SaveSetting(QStringLiteral("K%1").arg(i++), v);
    t.store->SaveSetting(QStringLiteral("Key with blanks"), QStringLiteral("x"));
    QSettings stock(t.storeFile(), QSettings::IniFormat);
    stock.beginGroup(QStringLiteral("_Steward"));
    i = 0;
    for (const QString& v : values)
        EXPECT_EQ(stock.value(QStringLiteral("K%1").arg(i++)).toString(), v);
    EXPECT_EQ(stock.value(QStringLiteral("Key with blanks")).toString(), QStringLiteral("x"));
}

TEST_F(StoreFile, DeleteRemovesOneKey)
{
    t.store->SaveSetting(QStringLiteral("A"), QStringLiteral("1"));
    t.store->SaveSetting(QStringLiteral("B"), QStringLiteral("2"));
    t.store->DeleteSetting(QStringLiteral("A"));
    t.store->DeleteSetting(QStringLiteral("never there"));
    EXPECT_EQ(t.store->GetAllSettings(), (QList<QPair<QString, QString>>{pair("B", QStringLiteral("2"))}));
}

TEST(PlainIniValue, QuotedStringsAndTheTextAsItStands)
{
    const std::pair<const char*, const char*> cases[] = {
        {"\"a\\\\b\"", "a\\b"}, {"\"\\\"\"", "\""},
        {"\"\\x41\"", "A"},     {"\"\\x4\"", "\\x4"},
        {"\"\\q\"", "\\q"},     {"\"a\\\"", "\"a\\\""},
        {"\"", "\""},           {"\"\"", ""},
        {"a\\nb", "a\\nb"},     {"\"a\" \"b\"", "\"a\" \"b\""},
    };
    for (const auto& [raw, expected] : cases)
        EXPECT_EQ(unquotePlainIniValue(QString::fromUtf8(raw)), QString::fromUtf8(expected)) << raw;
    EXPECT_EQ(quotePlainIniValue(QStringLiteral("a\x01\"\\")), QStringLiteral("\"a\\x01\\\"\\\\\""));
}

TEST_F(StoreFile, ABatchWritesOnceAtItsEnd)
{
    t.store->SaveSetting(QStringLiteral("Old"), QStringLiteral("1"));
    {
        SettingsBatch batch(*t.store);
        for (int i = 0; i < 300; ++i)
            t.store->SaveSetting(QStringLiteral("K%1").arg(i), QString::number(i));
        t.store->DeleteSetting(QStringLiteral("Old"));
        EXPECT_EQ(t.store->GetSetting(QStringLiteral("K7")), QStringLiteral("7")) << "the batch reads its own changes";
        EXPECT_FALSE(fileBytes(t.storeFile()).contains("K7")) << "nothing written yet";
        batch.commit();
    }
    IniSettingsStore reopened(t.storeFile());
    EXPECT_EQ(reopened.GetAllSettings().size(), 300);
    EXPECT_FALSE(reopened.HasSetting(QStringLiteral("Old")));
}

TEST_F(StoreFile, ABatchLeftByAnErrorKeepsWhatWasDone)
{
    try {
        SettingsBatch batch(*t.store);
        t.store->SaveSetting(QStringLiteral("A"), QStringLiteral("1"));
        t.store->SaveSetting(QString(), QStringLiteral("refused"));
        batch.commit();
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::InvalidProcedureCall);
    }
    EXPECT_EQ(IniSettingsStore(t.storeFile()).GetSetting(QStringLiteral("A")), QStringLiteral("1"));
}

TEST_F(StoreFile, ABatchThatCannotBeWrittenThrowsAtItsCommit)
{
    SettingsBatch batch(*t.store);
    t.store->SaveSetting(QStringLiteral("A"), QStringLiteral("1"));
    QFile::remove(t.storeFile());
    QDir().mkpath(t.storeFile());
    EXPECT_THROW(batch.commit(), RuntimeError);
}
