// The support layer: error report and log, file dialog, mouse pointer, the computer's
// address, the install path from a Wine prefix's hive, and the text and path helpers.
#include "commands/AddressCommand.h"
#include "commands/CreateJediConfiguration.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ErrorBox.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/FileDialog.h"
#include "support/LocalAddress.h"
#include "support/Registry.h"
#include "support/Strings.h"
#include "testkit/BoxExpect.h"
#include "testkit/Printers.h"
#include "testkit/TestApp.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHostAddress>
#include <QtEndian>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <tuple>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

const QString kHyphens = QString(78, u'-');
const QString kStamp = u"---06/13/2002 21:05:33---"_s;

class ErrorLogTest : public ::testing::Test {
protected:
    QString defaultLog() const { return t.programFolder() + u"/arena-steward.log"_s; }
    QString own() const { return t.root() + u"/own.log"_s; }
    TestApp t;
};

TEST_F(ErrorLogTest, TwoErrorsGiveTwoEntriesInOneFileAndSystemModalBoxes)
{
    reportTagged(*t.app, RuntimeError(err::FileNotFound, {}, u"ReadCatalogue"_s),
                 u"::Code.gbln_LoadMapCycle(Function)"_s);
    t.clock.at = QDateTime(QDate(2002, 12, 1), QTime(20, 4, 9)); // a 24-hour clock
    reportTagged(*t.app, RuntimeError(err::PathFileAccess, u"Path/File access error\r\nsecond line"_s, u"Writer"_s),
                 u"::Code.CreateJediConfiguration(Function)"_s);
    EXPECT_EQ(crlfLines(defaultLog()),
              (QStringList{kHyphens, kStamp,
                           u"Error 53 in arena-steward::Code.gbln_LoadMapCycle(Function) (ReadCatalogue):"_s,
                           u"File not found"_s, kHyphens, u"---12/01/2002 20:04:09---"_s,
                           u"Error 75 in arena-steward::Code.CreateJediConfiguration(Function) (Writer):"_s,
                           u"Path/File access error"_s, u"second line"_s}));
    EXPECT_EQ(t.app->errorLog().lastFile(), defaultLog());
    ASSERT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(isBox(t.prompts.shown[0],
                      {u"arena-steward Error"_s, Icon::Critical,
                       u"Following error occurred in this application:\r\n\r\nFile not found\r\nNumber: 53\r\n"
                       "Source: arena-steward::Code.gbln_LoadMapCycle(Function) (ReadCatalogue)"_s,
                       Buttons::Ok}));
    EXPECT_TRUE(t.prompts.last().request.systemModal);
}

TEST_F(ErrorLogTest, TheErrorObjectIsFoldedIntoNonEmptyArguments)
{
    // Without an error object the arguments are used as they came.
    RaiseError(*t.app, u"Plain words"_s, u"Somewhere"_s, -7, true, false, true, nullptr);
    EXPECT_EQ(crlfLines(defaultLog()), (QStringList{kHyphens, kStamp, u"Error -7 in Somewhere:"_s, u"Plain words"_s}));
    EXPECT_TRUE(isBox(t.prompts.last(), errorBox(-7, u"Somewhere"_s, u"Plain words"_s)));
    // A number of its own is kept; the texts get the object's in brackets.
    const RuntimeError e(err::PathNotFound, {}, u"inner"_s);
    RaiseError(*t.app, u"Outer"_s, u"outer"_s, 1000, false, false, true, &e);
    EXPECT_EQ(crlfLines(defaultLog()).mid(4),
              (QStringList{kHyphens, kStamp, u"Error 1000 in outer (inner):"_s, u"Outer(Path not found)"_s}));
    // Empty arguments take the object's fields whole.
    RaiseError(*t.app, {}, {}, 0, false, false, true, &e);
    EXPECT_EQ(crlfLines(defaultLog()).mid(10), (QStringList{u"Error 76 in inner:"_s, u"Path not found"_s}));
    EXPECT_EQ(t.prompts.shown.size(), 1u);
}

TEST_F(ErrorLogTest, ShowOffAndRaiseOnLogsShowsNothingAndThrowsToTheCaller)
{
    try {
        reportTagged(*t.app, RuntimeError(err::FileNotFound, {}, u"unzip"_s),
                     u"::CMapScanner.ExtractLevelShots(Function)"_s, false, true);
        FAIL() << "the error did not reach the caller";
    } catch (const RuntimeError& passed) {
        EXPECT_EQ(QStringList({QString::number(passed.number()), passed.source(), passed.description()}),
                  QStringList({u"53"_s, u"arena-steward::CMapScanner.ExtractLevelShots(Function) (unzip)"_s,
                               u"File not found"_s}));
    }
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_EQ(crlfLines(defaultLog()).value(2),
              u"Error 53 in arena-steward::CMapScanner.ExtractLevelShots(Function) (unzip):"_s);
}

TEST_F(ErrorLogTest, AnUnwritableProgramFolderCostsOnlyTheLogEntry)
{
    // A folder below a plain file can never be created, whoever runs the test.
    writeFile(t.root() + u"/blocked"_s, "not a folder");
    t.app->programFolder = t.root() + u"/blocked/program"_s;
    EXPECT_FALSE(WriteLog(*t.app, u"text"_s));
    EXPECT_NO_THROW(reportTagged(*t.app, RuntimeError(err::Overflow), u"::Code.SaveMainSettings(Sub)"_s));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      errorBox(err::Overflow, u"arena-steward::Code.SaveMainSettings(Sub) (arena-steward)"_s)));
    EXPECT_FALSE(QFileInfo::exists(t.root() + u"/blocked/program/arena-steward.log"_s));
    EXPECT_EQ(fileBytes(t.root() + u"/blocked"_s), QByteArray("not a folder"));
}

TEST_F(ErrorLogTest, AnEmptyLogFileTakesTheOneUsedLastAndOverwriteEmptiesIt)
{
    ASSERT_TRUE(WriteLog(*t.app, u"first"_s, own(), false, false, false));
    RaiseError(*t.app, u"d"_s, u"s"_s, 1, false, false, true, nullptr);
    EXPECT_FALSE(QFileInfo::exists(defaultLog()));
    EXPECT_EQ(crlfLines(own()), (QStringList{u"first"_s, kHyphens, kStamp, u"Error 1 in s:"_s, u"d"_s}));
    EXPECT_EQ(t.app->errorLog().lastFile(), own());
    ASSERT_TRUE(WriteLog(*t.app, u"fresh"_s, own(), true, false, true));
    EXPECT_EQ(fileBytes(own()), crlfText({kStamp, u"fresh"_s}));
    // An error without a source comes from the program.
    const RuntimeError overflow(err::Overflow);
    reportTagged(*t.app, overflow, u"::Code.CreateJediConfiguration(Function)"_s);
    EXPECT_EQ(crlfLines(own()).value(4),
              u"Error 6 in arena-steward::Code.CreateJediConfiguration(Function) (arena-steward):"_s);
    // The information box of an untagged routine takes the same source as its title.
    reportInformation(*t.app, overflow);
    EXPECT_TRUE(isBox(t.prompts.last(), {u"arena-steward"_s, Icon::Information, u"Overflow"_s, Buttons::Ok}));
}

TEST(FileDialog, ShowPassesEveryPropertyAndCancelKeepsTheOldNames)
{
    TestApp t;
    CFileDialog dlg(*t.app);
    std::tie(dlg.DefaultExt, dlg.DialogTitle, dlg.FileName, dlg.Filter, dlg.InitialDir) =
        std::tuple(u"lst"_s, u"Save BOT list"_s, u"mine.lst"_s, u"BOT list (*.lst)|*.lst"_s, u"/srv/jk2/"_s);
    std::tie(dlg.FilterIndex, dlg.Flags, dlg.hWndParent) = std::tuple(1, 2, 5);
    t.prompts.chooseFile(u"/srv/jk2/bots/new.lst"_s);
    EXPECT_TRUE(dlg.Show(false));
    const FileDialogState& s = t.prompts.dialogs.at(0).state;
    EXPECT_FALSE(t.prompts.dialogs[0].open);
    EXPECT_EQ(QStringList({s.DefaultExt, s.DialogTitle, s.FileName, s.Filter, s.InitialDir}),
              QStringList({u"lst"_s, u"Save BOT list"_s, u"mine.lst"_s, u"BOT list (*.lst)|*.lst"_s, u"/srv/jk2/"_s}));
    EXPECT_EQ(QList<int>({s.FilterIndex, s.Flags, s.hWndParent, s.MaxFileSize}), QList<int>({1, 2, 5, 260}));
    EXPECT_EQ(QStringList({dlg.FileName, dlg.FileTitle}), QStringList({u"/srv/jk2/bots/new.lst"_s, u"new.lst"_s}));
    t.prompts.cancelNextDialog();
    EXPECT_FALSE(dlg.Show(true));
    EXPECT_TRUE(t.prompts.dialogs[1].open);
    EXPECT_EQ(QStringList({dlg.FileName, dlg.FileTitle}), QStringList({u"/srv/jk2/bots/new.lst"_s, u"new.lst"_s}));
    CFileDialog empty(*t.app); // a caller that starts empty and tests FileName sees no file
    t.prompts.cancelNextDialog();
    EXPECT_FALSE(empty.Show(false));
    EXPECT_TRUE(empty.FileName.isEmpty());
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST(FileDialog, ANameTooLongForTheBufferFailsBeforeTheDialog)
{
    TestApp t;
    CFileDialog dlg(*t.app);
    dlg.MaxFileSize = 12;
    dlg.FileName = u"123456789012"_s; // exactly fills the buffer
    t.prompts.chooseFile(u"/a/b.cfg"_s);
    EXPECT_TRUE(dlg.Show(true));
    EXPECT_TRUE(t.prompts.shown.empty());
    dlg.FileName = u"1234567890123"_s;
    EXPECT_FALSE(dlg.Show(true));
    EXPECT_EQ(t.prompts.dialogs.size(), 1u) << "no dialog after the failure";
    EXPECT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {u"Show"_s, Icon::None, u"Error: 5. Invalid procedure call or argument"_s, Buttons::Ok}));
    EXPECT_EQ(dlg.FileName, u"1234567890123"_s);
    // TrimNulls cuts at the first pair of NULs ('0' below) and keeps single ones.
    for (auto [in, out] : {std::pair{u"/srv0a.lst0b.lst00"_s, u"/srv a.lst b.lst"_s},
                           {u"a0b"_s, u"a0b"_s},
                           {QString(), QString()},
                           {u"00x"_s, QString()},
                           {u"a00b00"_s, u"a"_s}}) {
        in.replace(u'0', QChar(0));
        EXPECT_EQ(TrimNulls(in), out.replace(u'0', QChar(0))) << in.toUtf8().toHex().toStdString();
    }
}

TEST(Cursor, RestoreGivesTheStoredPointerAndOnlyOneOtherThanTheDefaultComesBackAtTheEnd)
{
    FakePrompts prompts;
    for (const auto& [stored, history] :
         {std::pair{3, std::vector<int>{pointer::Hourglass, 3, pointer::Default, 3}},
          {pointer::Default, {pointer::Hourglass, pointer::Default, pointer::Default}}}) {
        prompts.pointer = stored;
        prompts.pointerHistory.clear();
        {
            CCursor cursor(prompts);
            cursor.SetCursor(pointer::Hourglass);
            cursor.RestoreCursor();
            cursor.SetCursor();
        }
        EXPECT_EQ(prompts.pointerHistory, history) << stored;
    }
}

/// An address as the lookup gives it: four bytes.
QList<QByteArray> ips(std::initializer_list<const char*> dotted)
{
    QList<QByteArray> found;
    for (const char* d : dotted) {
        const quint32 a = qToBigEndian(QHostAddress(QString::fromLatin1(d)).toIPv4Address());
        found.append(QByteArray(reinterpret_cast<const char*>(&a), 4));
    }
    return found;
}

/// A host whose name and addresses the test decides.
class ScriptedLookup : public AddressLookup {
public:
    bool hostName(QString& name, int& error) override
    {
        nameError ? void(error = *nameError) : void(name = u"  gamebox \t"_s);
        return !nameError;
    }
    QList<QByteArray> addresses(const QString& name) override { return askedFor = name, found; }
    QList<QByteArray> interfaceAddresses() override { return cards; }
    std::optional<int> nameError;
    QList<QByteArray> found, cards;
    QString askedFor;
};

class LocalAddress : public ::testing::Test {
protected:
    QString address() { return GetIPAddress(*t.app, lookup); }
    TestApp t;
    ScriptedLookup lookup;
};

TEST_F(LocalAddress, TheFirstAddressOfTheTrimmedNameAndACardForALoopbackOne)
{
    lookup.found = ips({"192.168.0.7", "10.0.0.1"});
    EXPECT_EQ(address(), u"192.168.0.7"_s);
    EXPECT_EQ(lookup.askedFor, u"gamebox"_s);
    lookup.found = ips({"255.0.10.200"});
    EXPECT_EQ(address(), u"255.0.10.200"_s) << "no leading zeros, no sign";
    // A name that gives loopback addresses only takes the first card that is up.
    lookup.found = ips({"127.0.1.1", "127.0.0.1"});
    lookup.cards = ips({"192.168.4.20", "10.0.0.3"});
    EXPECT_EQ(address(), u"192.168.4.20"_s);
    lookup.cards.clear();
    EXPECT_EQ(address(), u"127.0.1.1"_s) << "no card up: the loopback address stays";
    lookup.found = ips({"127.0.1.1", "172.16.0.9"});
    lookup.cards = ips({"192.168.4.20"});
    EXPECT_EQ(address(), u"127.0.1.1"_s) << "a name that also gives an outside address keeps the lookup's first";
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(LocalAddress, FailuresArePlainBoxesTitledWithTheProgramsName)
{
    const std::pair<std::optional<int>, QString> cases[] = {
        {10093, u"Windows Sockets error  10093 has occurred. Unable to successfully get Host Name."_s},
        {-3, u"Windows Sockets error -3 has occurred. Unable to successfully get Host Name."_s},
        {std::nullopt, u"Windows Sockets are not responding. Unable to successfully get Host Name."_s}};
    for (const auto& [nameError, text] : cases) {
        lookup.nameError = nameError;
        t.prompts.shown.clear();
        EXPECT_EQ(address(), QString());
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(), {u"arena-steward"_s, Icon::None, text + kTail, Buttons::Ok}));
    }
}

TEST_F(LocalAddress, TheButtonFillsTheFieldUnderTheHourglassAndHandsItTheFocus)
{
    ServerProfile p;
    lookup.found = ips({"127.0.1.1"});
    Field& focus = cmdIP_Click(*t.app, p, lookup);
    EXPECT_EQ(&focus, &p.field(F::txtServerConfig(16)));
    EXPECT_EQ(focus.text(), u"127.0.1.1"_s);
    EXPECT_EQ(t.prompts.pointerHistory, std::vector<int>({pointer::Hourglass, pointer::Default}));
    // A failed lookup empties the field.
    lookup.found.clear();
    EXPECT_EQ(cmdIP_Click(*t.app, p, lookup).text(), QString());
    EXPECT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_EQ(t.prompts.pointer, pointer::Default);
}

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

TEST(Registry, TheInstallPathComesFromTheChosenOrHomePrefixMappedOntoItsDrive)
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
    // An unknown type leaves the value alone, an escape takes at most three octal digits, and a line without '='
    // is no value.
    QString value = u"before"_s;
    QStringList got;
    for (const char* name : {"version", "Blob", "Quoted", "Octal", "NoEquals", "Missing"})
        got << QString::number(QueryValueEx(key, QString::fromLatin1(name), value) == 0) + u' ' + value;
    const QString nul(QChar(0));
    EXPECT_EQ(got, QStringList({u"1 10"_s, u"0 10"_s, u"1 say \"hi\""_s + nul, u"1 A1"_s + nul, u"0 "_s, u"0 "_s}));
    // The prefix of the environment comes before the home folders.
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

TEST(Registry, NoPrefixOrNoRecordGivesAnEmptyTextAndNoBoxAndOddKeyNames)
{
    TestApp t;
    EXPECT_EQ(GetInstallPath(*t.app, {t.root() + u"/none"_s, t.root() + u"/nohome"_s}), QString());
    WinePrefix bare(t.root() + u"/bare"_s, u"[Software\\\\Nothing] 1"_s);
    EXPECT_EQ(GetInstallPath(*t.app, {bare.path, QString()}), QString());
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_EQ(mapWindowsPath(u"\\\\server\\share"_s, bare.path), QString());
    EXPECT_EQ(mapWindowsPath(u"C:"_s, bare.path), bare.drive()) << "a drive alone is its root";
    // A key line ending in a backslash keeps it in the key's name.
    const QString hive = t.root() + u"/system.reg"_s;
    writeFile(hive,
              "[Software\\\\Odd\\\n\"Install Path\"=\"C:\\\\x\\\\\"\n\n[Software\\\\Odd] 1\n\"Install Path\"=\"no\"\n");
    const RegistryKey key = RegistryKey::openInHive(hive, u"Software\\Odd\\"_s);
    ASSERT_TRUE(key.isOpen());
    QString value;
    EXPECT_EQ(QueryValueEx(key, u"Install Path"_s, value), 0);
    EXPECT_EQ(value, u"C:\\x\\"_s + QChar(0));
}

int errorOf(const std::function<void()>& body)
{
    try {
        body();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

TEST(Strings, PathPartsAndNumbersFromTexts)
{
    QString folder = u"/games/jk2"_s, empty;
    EXPECT_EQ(AddSlash(folder), u"/games/jk2/"_s);
    EXPECT_EQ(AddSlash(folder), u"/games/jk2/"_s) << "the caller's own text gets the slash, only one";
    EXPECT_EQ(AddSlash(empty), u"/"_s);
    EXPECT_EQ(QStringList({GetNamePart(u"/a/b/luke.cfg"_s), GetNamePart(u"luke.cfg"_s), GetNamePart(u"/a/b/"_s),
                           GetPathPart(u"/a/b/luke.cfg"_s), GetPathPart(u"luke.cfg"_s)}),
              QStringList({u"luke.cfg"_s, u"luke.cfg"_s, QString(), u"/a/b/"_s, QString()}));
    EXPECT_EQ(IsClean(QString(), u","_s, u"%"_s), QString());
    EXPECT_EQ(IsClean(u"a,b,,c"_s, u","_s, u"%"_s), u"a%b%%c"_s);
    const std::pair<const char*, double> numbers[] = {
        {"", 0},     {"abc", 0},    {"12abc", 12}, {" 3.5x", 3.5}, {"1 2", 12}, {"-7", -7},
        {".5", 0.5}, {"1e3", 1000}, {"2e", 2},     {"4-2", 4},     {"0x10", 0},
    };
    for (const auto& [text, value] : numbers)
        EXPECT_EQ(leadingNumber(QString::fromLatin1(text)), value) << text;
    // Whole numbers round half to even and overflow outside their range.
    EXPECT_EQ(QList<int>({toInt16(2.5), toInt16(3.5), toInt16(-3.5), toInt16(32767), toInt16(-32768),
                          textToInt32(u" 28070 "_s)}),
              QList<int>({2, 4, -4, 32767, -32768, 28070}));
    const std::pair<std::function<void()>, int> errors[] = {
        {[] { toInt16(32767.5); }, err::Overflow},           {[] { toInt16(-32769); }, err::Overflow},
        {[] { toInt32(2147483648.0); }, err::Overflow},      {[] { textToInt32(u"28070abc"_s); }, err::TypeMismatch},
        {[] { textToInt32(QString()); }, err::TypeMismatch}, {[] { textToInt32(u"99999999999"_s); }, err::Overflow}};
    for (const auto& [body, number] : errors)
        EXPECT_EQ(errorOf(body), number);
}

TEST(Strings, FileExistsSeesOnlyVisibleFiles)
{
    TestApp t;
    const QString folder = t.root() + u"/files/"_s;
    writeFile(folder + u"jk2ded"_s, "x");
    writeFile(folder + u".hidden"_s, "x");
    ASSERT_TRUE(QDir().mkpath(folder + u"base"_s));
    for (const char* there : {"jk2ded", "jk2*", "jk?ded"})
        EXPECT_TRUE(FileExists(folder + QLatin1String(there))) << there;
    for (const char* absent : {"", "base", "ba*", ".hidden", "*.exe", "../nowhere/jk2ded"})
        EXPECT_FALSE(FileExists(folder + QLatin1String(absent))) << absent;
    EXPECT_FALSE(FileExists(QString()));
}

} // namespace
