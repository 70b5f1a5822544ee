// The game's install path from a Wine prefix's machine hive: which prefix, which key,
// the value's escapes and types, and the Windows path mapped onto the prefix's drive.
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

const QString kKeyLine =
    u"[Software\\\\LucasArts Entertainment Company LLC\\\\Star Wars JK II Jedi Outcast\\\\1.0] 1600000000"_s;

// A Wine prefix as Wine leaves it: a machine hive, drive_c and the dosdevices links.
struct WinePrefix {
    explicit WinePrefix(const QString& folder, const QString& keyLine = kKeyLine, const QString& values = {})
        : path(folder)
    {
        QDir().mkpath(path + u"/drive_c"_s);
        QDir().mkpath(path + u"/dosdevices"_s);
        QFile::link(u"../drive_c"_s, path + u"/dosdevices/c:"_s);
        writeFile(path + u"/system.reg"_s, (uR"(WINE REGISTRY Version 2
;; All keys relative to \\Machine

#arch=win32

[Software\\Classes] 1600000000
#time=1d6f0b0f0b0f0b0
"Install Path"="C:\\Wrong"

%1
#time=1d6f0b0f0b0f0b0
%2

[Software\\Other] 1600000000
"Install Path"="C:\\Other"
)"_s.arg(keyLine, values))
                                               .toUtf8());
    }
    QString drive() const { return QDir(path + u"/drive_c"_s).canonicalPath(); }
    QString path;
};

TEST(Registry, TheInstallPathComesFromTheWinePrefixMappedOntoItsDrive)
{
    TestApp t;
    WinePrefix prefix(t.root() + u"/wine"_s, kKeyLine,
                      uR"("Install Path"="C:\\PROGRAM FILES\\LucasArts\\Star Wars JK II Jedi Outcast\\GameData\\"
"Version"=dword:0000000a
"Blob"=hex:01,02,\
  03,04
"Quoted"="say \"hi\""
"Octal"="\1011"
"NoEquals" "x"
)"_s);
    QDir().mkpath(prefix.path + u"/drive_c/Program Files/LucasArts/Star Wars JK II Jedi Outcast"_s);
    const WineEnvironment env{prefix.path, t.root() + u"/nohome"_s};

    // The value ends in a backslash, so it comes back as folder, separator, NUL; the
    // scan command's single cut takes only the NUL.
    EXPECT_EQ(GetInstallPath(*t.app, env),
              prefix.drive() + u"/Program Files/LucasArts/Star Wars JK II Jedi Outcast/GameData/"_s + QChar(0));
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
    const QString home = t.root() + u"/home"_s;
    WinePrefix own(home + u"/.wine"_s, kKeyLine, uR"("Install Path"="C:\\Home")"_s);
    QDir().mkpath(own.path + u"/drive_c/Home"_s);
    // A 64-bit prefix keeps the 32-bit installer's key below Wow6432Node.
    WinePrefix chosen(
        t.root() + u"/chosen"_s,
        uR"([Software\\Wow6432Node\\LucasArts Entertainment Company LLC\\Star Wars JK II Jedi Outcast\\1.0] 1)"_s,
        uR"("Install Path"="c:\\jk2")"_s);
    // A prefix whose record names a drive it doesn't have falls through to the next.
    WinePrefix other(t.root() + u"/other"_s, kKeyLine, uR"("Install Path"="Q:\\Games")"_s);
    EXPECT_EQ(GetInstallPath(*t.app, {QString(), home}), own.drive() + u"/Home"_s + QChar(0));
    EXPECT_EQ(GetInstallPath(*t.app, {chosen.path, home}), chosen.drive() + u"/jk2"_s + QChar(0));
    EXPECT_EQ(GetInstallPath(*t.app, {other.path, home}), own.drive() + u"/Home"_s + QChar(0));
}

TEST(Registry, NoPrefixOrNoRecordGivesAnEmptyTextAndNoBox)
{
    TestApp t;
    EXPECT_EQ(GetInstallPath(*t.app, {t.root() + u"/none"_s, t.root() + u"/nohome"_s}), QString());
    WinePrefix bare(t.root() + u"/bare"_s, u"[Software\\\\Nothing] 1"_s);
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

} // namespace
