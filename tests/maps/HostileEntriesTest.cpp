// Level shots and scripts from strangers' archives: pictures that would swell to
// hundreds of megabytes, headers that claim more than their data, and names that
// can't be file names of the program's folder.
#include "maps/EntryChecks.h"
#include "maps/MapScanner.h"
#include "maps/TgaPicture.h"
#include "support/AppContext.h"
#include "testkit/Printers.h"
#include "testkit/RecordingScanProgress.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

// A run-length true-colour picture of one colour: full runs of 128 pixels.
QByteArray runLengthPicture(int width, int height)
{
    QByteArray data = tgaHeader(10, width, height, 24);
    qint64 left = static_cast<qint64>(width) * height;
    while (left > 0) {
        const int run = static_cast<int>(std::min<qint64>(left, 128));
        data.append(static_cast<char>(0x80 | (run - 1)));
        data.append("\x10\x20\x30", 3);
        left -= run;
    }
    return data;
}

class HostileEntries : public ::testing::Test {
protected:
    void SetUp() override { t.app->services.scanProgress = &progress; }

    void pk3(const QString& name, const ZipBuilder& zip) { ASSERT_TRUE(zip.write(t.baseFolder() + u"/"_s + name)); }
    QString shots() const { return t.programFolder() + u"/levelshots"_s; }
    QString log() const { return QString::fromUtf8(fileBytes(t.programFolder() + u"/arena-steward.log"_s)); }
    bool pictures() { return ExtractLevelShots(*t.app, u"Base"_s, t.gameFolder()) && ConvertTgaToBmp(*t.app); }
    // Every file below the program's folder, relative to it.
    QStringList programFiles() const
    {
        QStringList files;
        QDirIterator walk(t.programFolder(), QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        while (walk.hasNext())
            files << QDir(t.programFolder()).relativeFilePath(walk.next());
        files.sort();
        return files;
    }

    TestApp t;
    RecordingScanProgress progress;
};

} // namespace

TEST(TgaLimits, PicturesLargerThanTheLargestLevelShotAreRefusedBeforeTheirDataIsRead)
{
    struct Case {
        int width, height;
        TgaFault fault;
    };
    for (const Case& c : {Case{2048, 2048, TgaFault::None}, Case{2049, 1, TgaFault::TooLarge},
                          Case{1, 2049, TgaFault::TooLarge}, Case{4096, 2048, TgaFault::TooLarge}}) {
        SCOPED_TRACE(::testing::Message() << c.width << "x" << c.height);
        TgaFault fault = TgaFault::Damaged;
        const QImage picture = readTgaPicture(runLengthPicture(c.width, c.height), &fault);
        EXPECT_EQ(fault, c.fault);
        EXPECT_EQ(picture.isNull(), c.fault != TgaFault::None);
    }
    // 65535 by 1024 with nothing behind the header: refused on the header alone.
    TgaFault fault = TgaFault::None;
    EXPECT_TRUE(readTgaPicture(tgaHeader(2, 65535, 1024, 32), &fault).isNull());
    EXPECT_EQ(fault, TgaFault::TooLarge);
}

TEST(TgaLimits, AHeaderThatClaimsMoreThanItsDataCanFillIsDamaged)
{
    struct Case {
        const char* what;
        QByteArray bytes;
    };
    const QByteArray fullRuns = runLengthPicture(2048, 2048);
    for (const Case& c : {
             Case{"run-length, a few packets for 2048 by 2048",
                  tgaHeader(10, 2048, 2048, 32) + QByteArray(1000, '\xff')},
             Case{"run-length, one packet short", fullRuns.left(fullRuns.size() - 4)},
             Case{"grey runs, nothing at all", tgaHeader(11, 2048, 2048, 8)},
             Case{"uncompressed, one byte short", tgaHeader(2, 64, 64, 24) + QByteArray(64 * 64 * 3 - 1, '\0')},
             Case{"an id field longer than the file",
                  [] {
                      QByteArray b = tgaHeader(2, 1, 1, 24) + QByteArray(3, '\0');
                      b[0] = '\xff';
                      return b;
                  }()},
         }) {
        SCOPED_TRACE(c.what);
        TgaFault fault = TgaFault::None;
        EXPECT_TRUE(readTgaPicture(c.bytes, &fault).isNull());
        EXPECT_EQ(fault, TgaFault::Damaged);
    }
}

TEST_F(HostileEntries, ARunLengthBombBecomesNoBitmapButALogEntryAndTheMapKeepsTheFallback)
{
    // 4096 by 2048 pixels of one colour: 260 KB of runs, a few KB in the archive, and
    // a 32 MB bmp if it were converted.
    pk3(u"bomb.pk3"_s, ZipBuilder()
                           .file(u"maps/bomb.bsp"_s)
                           .file(u"levelshots/bomb.tga"_s, runLengthPicture(4096, 2048))
                           .file(u"levelshots/fine.tga"_s, runLengthPicture(512, 512)));
    EXPECT_TRUE(pictures());
    EXPECT_EQ(QDir(shots()).entryList(QDir::Files, QDir::Name),
              (QStringList{u"fine.bmp"_s, u"unknown.bmp"_s, u"unknown.jpg"_s}));
    EXPECT_TRUE(log().contains(u"The level shot bomb.tga was not converted: it is larger than 2048 by 2048"_s))
        << log().toStdString();
    EXPECT_TRUE(log().contains(u"::CMapScanner.ConvertTgaToBmp(Function)"_s));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(HostileEntries, LevelShotsWithControlCharactersOrOverlongNamesAreLeftOutWithALogEntry)
{
    const QString overlong = QString(252, u'a') + u".jpg"_s; // 256 bytes
    const QString longest = QString(251, u'b') + u".jpg"_s;  // 255 bytes
    pk3(u"names.pk3"_s, ZipBuilder()
                            .file(u"levelshots/new\nline.tga"_s, tgaPicture(2, 2, 1, 2, 3))
                            .file(u"levelshots/tab\tbed.jpg"_s, "jpg")
                            .file(u"levelshots/"_s + overlong, "jpg")
                            .file(u"levelshots/"_s + longest, "jpg")
                            .file(u"levelshots/plain.tga"_s, tgaPicture(2, 2, 1, 2, 3)));
    EXPECT_TRUE(pictures());
    EXPECT_EQ(programFiles(),
              (QStringList{u"Jedi.aml"_s, u"arena-steward.log"_s, u"levelshots/"_s + longest, u"levelshots/plain.bmp"_s,
                           u"levelshots/unknown.bmp"_s, u"levelshots/unknown.jpg"_s}));
    const QString text = log();
    EXPECT_TRUE(
        text.contains(QStringLiteral("The level shot levelshots/new\\x0aline.tga of names.pk3 was left out: its "
                                     "name holds a control character")))
        << text.toStdString();
    EXPECT_TRUE(text.contains(u"levelshots/tab\\x09bed.jpg"_s));
    EXPECT_TRUE(text.contains(u"longer than 255 bytes"_s));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(HostileEntries, AScriptWithAControlCharacterInItsNameIsLeftOutAndTheMapIsUnknown)
{
    pk3(u"a.pk3"_s,
        ZipBuilder().file(u"maps/a.bsp"_s).file(u"scripts/a\nb.arena"_s, arenaScript(u"a"_s, u"Never"_s, u"ffa"_s)));
    pk3(u"b.pk3"_s, ZipBuilder()
                        .file(u"maps/b.bsp"_s)
                        .file(QString::fromLatin1("scripts/b\x7f.arena"), "{\r\n}\r\n")
                        .file(u"scripts/b.arena"_s, arenaScript(u"b"_s, u"Bee"_s, u"ffa"_s)));
    ASSERT_TRUE(ScanForMaps(*t.app, u"Base"_s, u"Jedi"_s, t.gameFolder()));
    EXPECT_EQ(crlfLines(t.programFolder() + u"/Jedi.aml"_s),
              (QStringList{u"a.pk3,a,a,a,unknown"_s, u"b.pk3,b,b,Bee,FFA"_s}));
    EXPECT_EQ(programFiles(), QStringList{u"Jedi.aml"_s} << u"arena-steward.log"_s);
    EXPECT_TRUE(log().contains(u"The script a\\x0ab.arena of a.pk3 was left out"_s));
    EXPECT_TRUE(log().contains(u"The script b\\x7f.arena of b.pk3 was left out"_s));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST(EntryNames, OnlyPlainNamesOfAtMost255BytesPass)
{
    EXPECT_TRUE(entryNameProblem(u"ffa_yavin.jpg"_s).isEmpty());
    EXPECT_TRUE(entryNameProblem(u"with blanks, commas & äccents.tga"_s).isEmpty());
    EXPECT_TRUE(entryNameProblem(QString(127, QChar(0xe4))).isEmpty()); // 254 bytes of UTF-8
    EXPECT_FALSE(entryNameProblem(QString(128, QChar(0xe4))).isEmpty());
    for (const char* bad : {"a\nb", "a\rb", "\x7f", "a\x1b[2J", "a/b", "a\\b"})
        EXPECT_FALSE(entryNameProblem(QString::fromLatin1(bad)).isEmpty()) << bad;
    EXPECT_FALSE(entryNameProblem(QString(QChar(0x85))).isEmpty()) << "a C1 control character";
}
