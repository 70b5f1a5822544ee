#include "support/Registry.h"
#include "testkit/Printers.h"
#include "testkit/TestApp.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {

// A Wine prefix as Wine leaves it: a machine hive, drive_c and the dosdevices links.
class WinePrefix {
public:
    explicit WinePrefix(const QString& folder) : path(folder)
    {
        QDir().mkpath(path + QStringLiteral("/drive_c"));
        QDir().mkpath(path + QStringLiteral("/dosdevices"));
        QFile::link(QStringLiteral("../drive_c"), path + QStringLiteral("/dosdevices/c:"));
    }
    void hive(const QString& keyLine, const QStringList& values) const
    {
        QStringList lines = {QStringLiteral("WINE REGISTRY Version 2"),
                             QStringLiteral(";; All keys relative to \\\\Machine"),
                             QString(),
                             QStringLiteral("#arch=win32"),
                             QString(),
                             QStringLiteral("[Software\\\\Classes] 1600000000"),
                             QStringLiteral("#time=1d6f0b0f0b0f0b0"),
                             QStringLiteral("\"Install Path\"=\"C:\\\\Wrong\""),
                             QString(),
                             keyLine,
                             QStringLiteral("#time=1d6f0b0f0b0f0b0")};
        lines += values;
        lines << QString() << QStringLiteral("[Software\\\\Other] 1600000000")
              << QStringLiteral("\"Install Path\"=\"C:\\\\Other\"");
        writeFile(path + QStringLiteral("/system.reg"), lines.join(QLatin1Char('\n')).toUtf8() + "\n");
    }
    QString drive() const { return QDir(path + QStringLiteral("/drive_c")).canonicalPath(); }

    QString path;
};

const QString kKeyLine = QStringLiteral(
    "[Software\\\\LucasArts Entertainment Company LLC\\\\Star Wars JK II Jedi Outcast\\\\1.0] 1600000000");

} // namespace

TEST(Registry, TheInstallPathComesFromTheWinePrefixMappedOntoItsDrive)
{
    TestApp t;
    WinePrefix prefix(t.root() + QStringLiteral("/wine"));
    QDir().mkpath(prefix.path + QStringLiteral("/drive_c/Program Files/LucasArts/Star Wars JK II Jedi Outcast"));
    prefix.hive(kKeyLine, {QStringLiteral("\"Install Path\"=\"C:\\\\PROGRAM FILES\\\\LucasArts\\\\Star Wars JK II Jedi "
                                          "Outcast\\\\GameData\\\\\""),
                           QStringLiteral("\"Version\"=dword:0000000a"), QStringLiteral("\"Blob\"=hex:01,02,\\"),
                           QStringLiteral("  03,04"), QStringLiteral("\"Quoted\"=\"say \\\"hi\\\"\""),
                           QStringLiteral("\"Octal\"=\"\\1011\""), QStringLiteral("\"NoEquals\" \"x\"")});
    const WineEnvironment env{prefix.path, t.root() + QStringLiteral("/nohome")};

    // The value ends in a backslash, so it comes back as folder, separator, NUL; the
    // scan command's single cut takes only the NUL.
    const QString found = GetInstallPath(*t.app, env);
    EXPECT_EQ(found, prefix.drive() +
                         QStringLiteral("/Program Files/LucasArts/Star Wars JK II Jedi Outcast/GameData/") + QChar(0));
    EXPECT_TRUE(t.prompts.shown.empty());

    const RegistryKey key = RegistryKey::open(RegistryRoot::LocalMachine, kInstallKey.toLower(), env);
    ASSERT_TRUE(key.isOpen());
    QString value = QStringLiteral("before");
    EXPECT_EQ(QueryValueEx(key, QStringLiteral("version"), value), 0);
    EXPECT_EQ(value, QStringLiteral("10"));
    EXPECT_EQ(QueryValueEx(key, QStringLiteral("Blob"), value), -1);
    EXPECT_EQ(value, QStringLiteral("10")); // an unknown type leaves the value alone
    EXPECT_EQ(QueryValueEx(key, QStringLiteral("Quoted"), value), 0);
    EXPECT_EQ(value, QStringLiteral("say \"hi\"") + QChar(0));
    EXPECT_EQ(QueryValueEx(key, QStringLiteral("Octal"), value), 0);
    EXPECT_EQ(value, QStringLiteral("A1") + QChar(0)) << "an escape takes at most three octal digits";
    EXPECT_NE(QueryValueEx(key, QStringLiteral("NoEquals"), value), 0) << "a line without '=' is no value";
    EXPECT_NE(QueryValueEx(key, QStringLiteral("Missing"), value), 0);
    EXPECT_EQ(value, QString());
}

TEST(Registry, ThePrefixOfTheEnvironmentComesBeforeTheHomeFolders)
{
    TestApp t;
    WinePrefix own(t.root() + QStringLiteral("/home/.wine"));
    own.hive(kKeyLine, {QStringLiteral("\"Install Path\"=\"C:\\\\Home\"")});
    QDir().mkpath(own.path + QStringLiteral("/drive_c/Home"));
    WinePrefix chosen(t.root() + QStringLiteral("/chosen"));
    chosen.hive(
        QStringLiteral("[Software\\\\Wow6432Node\\\\LucasArts Entertainment Company LLC\\\\Star Wars JK II Jedi "
                       "Outcast\\\\1.0] 1600000000"),
        {QStringLiteral("\"Install Path\"=\"c:\\\\jk2\"")});

    const QString home = t.root() + QStringLiteral("/home");
    EXPECT_EQ(GetInstallPath(*t.app, {QString(), home}), own.drive() + QStringLiteral("/Home") + QChar(0));
    // A 64-bit prefix keeps the 32-bit installer's key below Wow6432Node.
    EXPECT_EQ(GetInstallPath(*t.app, {chosen.path, home}), chosen.drive() + QStringLiteral("/jk2") + QChar(0));
    // A prefix whose record names a drive it doesn't have falls through to the next.
    WinePrefix other(t.root() + QStringLiteral("/other"));
    other.hive(kKeyLine, {QStringLiteral("\"Install Path\"=\"Q:\\\\Games\"")});
    EXPECT_EQ(GetInstallPath(*t.app, {other.path, home}), own.drive() + QStringLiteral("/Home") + QChar(0));
}

TEST(Registry, NoPrefixOrNoRecordGivesAnEmptyTextAndNoBox)
{
    TestApp t;
    EXPECT_EQ(GetInstallPath(*t.app, {t.root() + QStringLiteral("/none"), t.root() + QStringLiteral("/nohome")}),
              QString());
    WinePrefix bare(t.root() + QStringLiteral("/bare"));
    bare.hive(QStringLiteral("[Software\\\\Nothing] 1"), {});
    EXPECT_EQ(GetInstallPath(*t.app, {bare.path, QString()}), QString());
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_EQ(mapWindowsPath(QStringLiteral("\\\\server\\share"), bare.path), QString());
    EXPECT_EQ(mapWindowsPath(QStringLiteral("C:"), bare.path), bare.drive()) << "a drive alone is its root";
}

TEST(Registry, AKeyLineEndingInABackslashKeepsItInTheKeysName)
{
    TestApp t;
    const QString hive = t.root() + QStringLiteral("/system.reg");
    writeFile(hive,
              "[Software\\\\Odd\\\n\"Install Path\"=\"C:\\\\x\\\\\"\n\n[Software\\\\Odd] 1\n\"Install Path\"=\"no\"\n");
    const RegistryKey key = RegistryKey::openInHive(hive, QStringLiteral("Software\\Odd\\"));
    ASSERT_TRUE(key.isOpen());
    QString value;
    EXPECT_EQ(QueryValueEx(key, QStringLiteral("Install Path"), value), 0);
    EXPECT_EQ(value, QStringLiteral("C:\\x\\") + QChar(0));
}
