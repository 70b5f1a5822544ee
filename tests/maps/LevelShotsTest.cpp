// The level shots of the scan: copied from every archive, converted from tga to bmp,
// with the fallback pictures; strangers' entries (bombs, odd names) are left out with a
// log entry; and shots read ahead are taken only as the extraction comes to them.
#include "maps/ArchiveShelf.h"
#include "maps/EntryChecks.h"
#include "maps/LevelShotConverter.h"
#include "maps/LevelShots.h"
#include "maps/PackedShot.h"
#include "maps/ShotPrefetch.h"
#include "MapsKit.h"

#include <QImage>
#include <QTemporaryDir>
#include <QThreadPool>
#include <algorithm>

using namespace steward;
using namespace steward::testing;

namespace {

class LevelShotsTest : public ScanTest {
protected:
    bool extractAndConvert() { return extract() && ConvertTgaToBmp(*t.app); }
    QStringList programFiles() const { return filesUnder(t.programFolder()); }
};

} // namespace

TEST_F(LevelShotsTest, CopiesThePicturesOfEveryArchiveAndConvertsTheTgaFiles)
{
    pk3(u"assets0.pk3"_s, {entry("levelshots/ffa_bespin.jpg", "from assets0"), "maps/ffa_bespin.bsp"});
    pk3(u"assets1.pk3"_s, {entry("levelshots/ffa_bespin.jpg", "from assets1"),
                           entry("levelshots/duel_pit.tga", tgaPicture(4, 2, 200, 10, 20))});
    pk3(u"nopictures.pk3"_s, {"maps/x.bsp", "x.jpg"});
    pk3(u"zmap.pk3"_s,
        {entry("LevelShots/zmap.tga", tgaPicture(2, 2, 0, 0, 255)), entry("levelshots/zmap.jpg", "a jpg stays a jpg"),
         entry("levelshots/zmap.png", "not selected")});
    EXPECT_TRUE(extract());
    EXPECT_EQ(pictures(), (QStringList{u"duel_pit.tga"_s, u"ffa_bespin.jpg"_s, u"unknown.bmp"_s, u"unknown.jpg"_s,
                                       u"zmap.jpg"_s, u"zmap.tga"_s}));
    EXPECT_EQ(fileBytes(shots() + u"/ffa_bespin.jpg"_s), QByteArray("from assets1"));
    EXPECT_EQ(progress.activities.first(), u"Copying images from assets0.pk3...."_s);
    EXPECT_EQ(progress.activity, u"Done"_s);
    EXPECT_EQ(progress.value, 0);
    EXPECT_EQ(progress.maximum, 4);
    std::vector<int> counted; // the bar moves one step for each archive
    std::copy_if(progress.values.begin(), progress.values.end(), std::back_inserter(counted), [](int v) { return v; });
    EXPECT_EQ(counted, (std::vector<int>{1, 2, 3, 4}));

    EXPECT_TRUE(ConvertTgaToBmp(*t.app));
    EXPECT_EQ(pictures(), (QStringList{u"duel_pit.bmp"_s, u"ffa_bespin.jpg"_s, u"unknown.bmp"_s, u"unknown.jpg"_s,
                                       u"zmap.bmp"_s, u"zmap.jpg"_s}));
    const QImage converted(shots() + u"/duel_pit.bmp"_s, "BMP");
    EXPECT_EQ(converted.size(), QSize(4, 2));
    EXPECT_EQ(converted.pixelColor(1, 1), QColor(200, 10, 20));
    EXPECT_EQ(fileBytes(shots() + u"/zmap.jpg"_s), QByteArray("a jpg stays a jpg"));
    EXPECT_TRUE(progress.activityVisible);
    EXPECT_TRUE(progress.activities.contains(u"Verifying images...."_s));
    EXPECT_TRUE(progress.activities.contains(u"Converting duel_pit.tga...."_s));
    EXPECT_FALSE(progress.overshoot);
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(LevelShotsTest, ConversionWithoutAPictureFolderIsLoggedAndStaysTrue)
{
    EXPECT_TRUE(ConvertTgaToBmp(*t.app));
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_TRUE(log().contains(u"::CMapScanner.ConvertTgaToBmp(Function)"_s));
}

TEST_F(LevelShotsTest, AReadOnlyOrUnreadableTgaIsDeletedAnyway)
{
    writeFile(shots() + u"/ro.tga"_s, tgaPicture(2, 2, 1, 2, 3));
    QFile::setPermissions(shots() + u"/ro.tga"_s, QFile::ReadOwner);
    writeFile(shots() + u"/broken.TGA"_s, "not a picture");
    EXPECT_TRUE(ConvertTgaToBmp(*t.app));
    EXPECT_EQ(pictures(), QStringList{u"ro.bmp"_s});
    EXPECT_EQ(progress.maximum, 2);
}

TEST_F(LevelShotsTest, TheFallbackPicturesAreWrittenOnlyWhereMissing)
{
    writeFile(shots() + u"/unknown.jpg"_s, "the user's own");
    EXPECT_TRUE(EnsureFallbackPictures(*t.app));
    EXPECT_EQ(fileBytes(shots() + u"/unknown.jpg"_s), QByteArray("the user's own"));
    EXPECT_FALSE(QImage(shots() + u"/unknown.bmp"_s).isNull());
    QFile::remove(shots() + u"/unknown.jpg"_s);
    EXPECT_TRUE(EnsureFallbackPictures(*t.app));
    EXPECT_FALSE(QImage(shots() + u"/unknown.jpg"_s).isNull());
}

TEST_F(LevelShotsTest, ARunLengthBombBecomesNoBitmapButALogEntryAndTheMapKeepsTheFallback)
{
    // 4096 by 2048 pixels of one colour: 260 KB of runs, a few KB in the archive, and
    // a 32 MB bmp if it were converted.
    pk3(u"bomb.pk3"_s, {"maps/bomb.bsp", entry("levelshots/bomb.tga", runLengthPicture(4096, 2048)),
                        entry("levelshots/fine.tga", runLengthPicture(512, 512))});
    EXPECT_TRUE(extractAndConvert());
    EXPECT_EQ(pictures(), (QStringList{u"fine.bmp"_s, u"unknown.bmp"_s, u"unknown.jpg"_s}));
    EXPECT_TRUE(log().contains(u"The level shot bomb.tga was not converted: it is larger than 2048 by 2048"_s))
        << log().toStdString();
    EXPECT_TRUE(log().contains(u"::CMapScanner.ConvertTgaToBmp(Function)"_s));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(LevelShotsTest, LevelShotsWithControlCharactersOrOverlongNamesAreLeftOutWithALogEntry)
{
    const QString overlong = QString(252, u'a') + u".jpg"_s; // 256 bytes
    const QString longest = QString(251, u'b') + u".jpg"_s;  // 255 bytes
    pk3(u"names.pk3"_s, {entry("levelshots/new\nline.tga", tgaPicture(2, 2, 1, 2, 3)), "levelshots/tab\tbed.jpg",
                         u"levelshots/"_s + overlong, u"levelshots/"_s + longest,
                         entry("levelshots/plain.tga", tgaPicture(2, 2, 1, 2, 3))});
    EXPECT_TRUE(extractAndConvert());
    EXPECT_EQ(programFiles(),
              (QStringList{u"Jedi.aml"_s, u"arena-steward.log"_s, u"levelshots/"_s + longest, u"levelshots/plain.bmp"_s,
                           u"levelshots/unknown.bmp"_s, u"levelshots/unknown.jpg"_s}));
    EXPECT_TRUE(log().contains(u"The level shot levelshots/new\\x0aline.tga of names.pk3 was left out: its "
                               "name holds a control character"_s))
        << log().toStdString();
    EXPECT_TRUE(log().contains(u"levelshots/tab\\x09bed.jpg"_s));
    EXPECT_TRUE(log().contains(u"longer than 255 bytes"_s));
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

// Level shots read ahead of the extraction: each is taken as the extraction comes to
// it, and a shot that wasn't planned, was passed over, or whose archive changed is
// simply not there, so that the extraction reads it itself.
TEST(ShotPrefetch, ShotsAreTakenInTheirOrderOnlyAsPlanned)
{
    QTemporaryDir dir;
    ArchiveShelf shelf;
    std::vector<ShotPrefetch::Planned> plan;
    auto picture = [](int n) { return tgaPicture(4, 4, static_cast<quint8>(n), 7, 9); };
    for (int n = 0; n < 30; ++n) {
        const QString path = dir.path() + u"/a%1.pk3"_s.arg(n);
        ASSERT_TRUE(zipOf({"maps/m.bsp", entry("levelshots/m.tga", picture(n))}).write(path));
        shelf.open(path).park();
        plan.push_back({path, 1});
    }
    QThreadPool pool;
    ShotPrefetch inOrder(pool);
    inOrder.setPlan(plan);
    for (int n = 0; n < 30; ++n) {
        const PreparedShot shot = inOrder.take(shelf, plan[n].archive, 1);
        ASSERT_TRUE(shot.verified) << n;
        ASSERT_EQ(convertTgaToBmpFile(picture(n), dir.path() + u"/p.bmp"_s), TgaFault::None);
        EXPECT_EQ(shot.bmp, fileBytes(dir.path() + u"/p.bmp"_s)) << n;
    }

    ShotPrefetch prefetch(pool);
    prefetch.setPlan(plan);
    EXPECT_FALSE(prefetch.take(shelf, plan[0].archive, 0).verified); // the bsp isn't planned
    EXPECT_TRUE(prefetch.take(shelf, plan[5].archive, 1).verified);  // 0 to 4 passed over
    EXPECT_FALSE(prefetch.take(shelf, plan[3].archive, 1).verified); // gone for good
    // An archive replaced before it is read ahead: its shot isn't taken from the new file.
    ASSERT_TRUE(QFile::remove(plan[25].archive));
    ASSERT_TRUE(zipOf({entry("x", "y"), entry("levelshots/m.tga", picture(99))}).write(plan[25].archive));
    EXPECT_FALSE(prefetch.take(shelf, plan[25].archive, 1).verified);
    EXPECT_TRUE(prefetch.take(shelf, plan[26].archive, 1).verified);
}
