#include "support/Registry.h"
#include "testkit/Printers.h"
#include "testkit/TestApp.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

// A Wine prefix as Wine leaves it: a machine hive, drive_c and the dosdevices links.
class WinePrefix {
public:
    explicit WinePrefix(const QString& folder) : path(folder)
    {
        QDir().mkpath(path + u"/drive_c"_s);
        QDir().mkpath(path + u"/dosdevices"_s);
        QFile::link(u"../drive_c"_s, path + u"/dosdevices/c:"_s);
    }
    void hive(const QString& keyLine, const QStringList& values) const
    {
        QStringList lines = {u"WINE REGISTRY Version 2"_s,
                             u";; All keys relative to \\\\Machine"_s,
                             QString(),
                             u"#arch=win32"_s,
                             QString(),
                             u"[Software\\\\Classes] 1600000000"_s,
                             u"#time=1d6f0b0f0b0f0b0"_s,
                             u"\"Install Path\"=\"C:\\\\Wrong\""_s,
                             QString(),
                             keyLine,
                             u"#time=1d6f0b0f0b0f0b0"_s};
        lines += values;
        lines << QString() << u"[Software\\\\Other] 1600000000"_s << u"\"Install Path\"=\"C:\\\\Other\""_s;
        writeFile(path + u"/system.reg"_s, lines.join(u'\n').toUtf8() + "\n");
    }
    QString drive() const { return QDir(path + u"/drive_c"_s).canonicalPath(); }

    QString path;
};

const QString kKeyLine =
    u"[Software\\\\LucasArts Entertainment Company LLC\\\\Star Wars JK II Jedi Outcast\\\\1.0] 1600000000"_s;

} // namespace

TEST(Registry, TheInstallPathComesFromTheWinePrefixMappedOntoItsDrive)
{
    TestApp t;
    WinePrefix prefix(t.root() + u"/wine"_s);
    QDir().mkpath(prefix.path + u"/drive_c/Program Files/LucasArts/Star Wars JK II Jedi Outcast"_s);
    prefix.hive(kKeyLine, {u"\"Install Path\"=\"C:\\\\PROGRAM FILES\\\\LucasArts\\\\Star Wars JK II Jedi "
                           "Outcast\\\\GameData\\\\\""_s,
                           u"\"Version\"=dword:0000000a"_s, u"\"Blob\"=hex:01,02,\\"_s, u"  03,04"_s,
                           u"\"Quoted\"=\"say \\\"hi\\\"\""_s, u"\"Octal\"=\"\\1011\""_s, u"\"NoEquals\" \"x\""_s});
    const WineEnvironment env{prefix.path, t.root() + u"/nohome"_s};

    // The value ends in a backslash, so it comes back as folder, separator, NUL; the
    // scan command's single cut takes only the NUL.
    const QString found = GetInstallPath(*t.app, env);
    EXPECT_EQ(found, prefix.drive() + u"/Program Files/LucasArts/Star Wars JK II Jedi Outcast/GameData/"_s + QChar(0));
    EXPECT_TRUE(t.prompts.shown.empty());

    const RegistryKey key = RegistryKey::open(RegistryRoot::LocalMachine, kInstallKey.toLower(), env);
    ASSERT_TRUE(key.isOpen());
    QString value = u"before"_s;
    EXPECT_EQ(QueryValueEx(key, u"version"_s, value), 0);
    EXPECT_EQ(value, u"10"_s);
    EXPECT_EQ(QueryValueEx(key, u"Blob"_s, value), -1);
    EXPECT_EQ(value, u"10"_s); // an unknown type leaves the value alone
    EXPECT_EQ(QueryValueEx(key, u"Quoted"_s, value), 0);
    EXPECT_EQ(value, u"say \"hi\""_s + QChar(0));
    EXPECT_EQ(QueryValueEx(key, u"Octal"_s, value), 0);
    EXPECT_EQ(value, u"A1"_s + QChar(0)) << "an escape takes at most three octal digits";
    EXPECT_NE(QueryValueEx(key, u"NoEquals"_s, value), 0) << "a line without '=' is no value";
    EXPECT_NE(QueryValueEx(key, u"Missing"_s, value), 0);
    EXPECT_EQ(value, QString());
}

TEST(Registry, ThePrefixOfTheEnvironmentComesBeforeTheHomeFolders)
{
    TestApp t;
    WinePrefix own(t.root() + u"/home/.wine"_s);
    own.hive(kKeyLine, {u"\"Install Path\"=\"C:\\\\Home\""_s});
    QDir().mkpath(own.path + u"/drive_c/Home"_s);
    WinePrefix chosen(t.root() + u"/chosen"_s);
    chosen.hive(u"[Software\\\\Wow6432Node\\\\LucasArts Entertainment Company LLC\\\\Star Wars JK II Jedi "
                "Outcast\\\\1.0] 1600000000"_s,
                {u"\"Install Path\"=\"c:\\\\jk2\""_s});

    const QString home = t.root() + u"/home"_s;
    EXPECT_EQ(GetInstallPath(*t.app, {QString(), home}), own.drive() + u"/Home"_s + QChar(0));
    // A 64-bit prefix keeps the 32-bit installer's key below Wow6432Node.
    EXPECT_EQ(GetInstallPath(*t.app, {chosen.path, home}), chosen.drive() + u"/jk2"_s + QChar(0));
    // A prefix whose record names a drive it doesn't have falls through to the next.
    WinePrefix other(t.root() + u"/other"_s);
    other.hive(kKeyLine, {u"\"Install Path\"=\"Q:\\\\Games\""_s});
    EXPECT_EQ(GetInstallPath(*t.app, {other.path, home}), own.drive() + u"/Home"_s + QChar(0));
}

TEST(Registry, NoPrefixOrNoRecordGivesAnEmptyTextAndNoBox)
{
    TestApp t;
    EXPECT_EQ(GetInstallPath(*t.app, {t.root() + u"/none"_s, t.root() + u"/nohome"_s}), QString());
    WinePrefix bare(t.root() + u"/bare"_s);
    bare.hive(u"[Software\\\\Nothing] 1"_s, {});
    EXPECT_EQ(GetInstallPath(*t.app, {bare.path, QString()}), QString());
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_EQ(mapWindowsPath(u"\\\\server\\share"_s, bare.path), QString());
    EXPECT_EQ(mapWindowsPath(u"C:"_s, bare.path), bare.drive()) << "a drive alone is its root";
}

TEST(Registry, AKeyLineEndingInABackslashKeepsItInTheKeysName)
{
    TestApp t;
    const QString hive = t.root() + u"/system.reg"_s;
    writeFile(hive,
              "[Software\\\\Odd\\\n\"Install Path\"=\"C:\\\\x\\\\\"\n\n[Software\\\\Odd] 1\n\"Install Path\"=\"no\"\n");
    const RegistryKey key = RegistryKey::openInHive(hive, u"Software\\Odd\\"_s);
    ASSERT_TRUE(key.isOpen());
    QString value;
    EXPECT_EQ(QueryValueEx(key, u"Install Path"_s, value), 0);
    EXPECT_EQ(value, u"C:\\x\\"_s + QChar(0));
}
