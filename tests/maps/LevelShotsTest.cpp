#include "maps/LevelShots.h"
#include "maps/MapScanner.h"
#include "support/AppContext.h"
#include "testkit/Printers.h"
#include "testkit/RecordingScanProgress.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <algorithm>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

class LevelShotsTest : public ::testing::Test {
protected:
    void SetUp() override { t.app->services.scanProgress = &progress; }

    void pk3(const QString& name, const ZipBuilder& zip) { ASSERT_TRUE(zip.write(t.baseFolder() + u"/"_s + name)); }
    bool extract() { return ExtractLevelShots(*t.app, u"Base"_s, t.gameFolder()); }
    QString shots() const { return t.programFolder() + u"/levelshots"_s; }
    QStringList pictures() const { return QDir(shots()).entryList(QDir::Files, QDir::Name); }
    QString log() const { return QString::fromLatin1(fileBytes(t.programFolder() + u"/arena-steward.log"_s)); }

    TestApp t;
    RecordingScanProgress progress;
};

} // namespace

TEST_F(LevelShotsTest, CopiesThePicturesOfEveryArchiveAndConvertsTheTgaFiles)
{
    pk3(u"assets0.pk3"_s,
        ZipBuilder().file(u"levelshots/ffa_bespin.jpg"_s, "from assets0").file(u"maps/ffa_bespin.bsp"_s));
    pk3(u"assets1.pk3"_s, ZipBuilder()
                              .file(u"levelshots/ffa_bespin.jpg"_s, "from assets1")
                              .file(u"levelshots/duel_pit.tga"_s, tgaPicture(4, 2, 200, 10, 20)));
    pk3(u"nopictures.pk3"_s, ZipBuilder().file(u"maps/x.bsp"_s).file(u"x.jpg"_s));
    pk3(u"zmap.pk3"_s, ZipBuilder()
                           .file(u"LevelShots/zmap.tga"_s, tgaPicture(2, 2, 0, 0, 255))
                           .file(u"levelshots/zmap.jpg"_s, "a jpg stays a jpg")
                           .file(u"levelshots/zmap.png"_s, "not selected"));

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
    ASSERT_FALSE(converted.isNull());
    EXPECT_EQ(converted.size(), QSize(4, 2));
    EXPECT_EQ(converted.pixelColor(1, 1), QColor(200, 10, 20));
    EXPECT_EQ(fileBytes(shots() + u"/zmap.jpg"_s), QByteArray("a jpg stays a jpg"));
    EXPECT_TRUE(progress.activityVisible);
    EXPECT_TRUE(progress.activities.contains(u"Verifying images...."_s));
    EXPECT_TRUE(progress.activities.contains(u"Converting duel_pit.tga...."_s));
    EXPECT_FALSE(progress.overshoot);
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(LevelShotsTest, ABrokenArchiveIsLoggedEndsThePhaseAndTheResultStaysTrue)
{
    pk3(u"a.pk3"_s, ZipBuilder().file(u"levelshots/a.jpg"_s, "a"));
    writeFile(t.baseFolder() + u"/b.pk3"_s, "no zip here");
    pk3(u"c.pk3"_s, ZipBuilder().file(u"levelshots/c.jpg"_s, "c"));
    EXPECT_TRUE(extract());
    EXPECT_TRUE(QFileInfo::exists(shots() + u"/a.jpg"_s));
    EXPECT_FALSE(QFileInfo::exists(shots() + u"/c.jpg"_s));
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_TRUE(log().contains(u"arena-steward::CMapScanner.ExtractLevelShots(Function) (ArchiveReader)"_s))
        << log().toStdString();
    EXPECT_EQ(progress.value, 0);
    EXPECT_EQ(progress.activity, u"Done"_s);
}

TEST_F(LevelShotsTest, ConversionWithoutAPictureFolderIsLoggedAndStaysTrue)
{
    EXPECT_TRUE(ConvertTgaToBmp(*t.app));
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_TRUE(log().contains(u"::CMapScanner.ConvertTgaToBmp(Function)"_s));
}

TEST_F(LevelShotsTest, AReadOnlyOrUnreadableTgaIsDeletedAnyway)
{
    QDir().mkpath(shots());
    writeFile(shots() + u"/ro.tga"_s, tgaPicture(2, 2, 1, 2, 3));
    QFile::setPermissions(shots() + u"/ro.tga"_s, QFile::ReadOwner);
    writeFile(shots() + u"/broken.TGA"_s, "not a picture");
    EXPECT_TRUE(ConvertTgaToBmp(*t.app));
    EXPECT_EQ(pictures(), QStringList{u"ro.bmp"_s});
    EXPECT_EQ(progress.maximum, 2);
}

TEST_F(LevelShotsTest, TheFallbackPicturesAreWrittenOnlyWhereMissing)
{
    QDir().mkpath(shots());
    writeFile(shots() + u"/unknown.jpg"_s, "the user's own");
    EXPECT_TRUE(EnsureFallbackPictures(*t.app));
    EXPECT_EQ(fileBytes(shots() + u"/unknown.jpg"_s), QByteArray("the user's own"));
    const QImage bmp(shots() + u"/unknown.bmp"_s);
    EXPECT_FALSE(bmp.isNull());

    QFile::remove(shots() + u"/unknown.jpg"_s);
    EXPECT_TRUE(EnsureFallbackPictures(*t.app));
    EXPECT_FALSE(QImage(shots() + u"/unknown.jpg"_s).isNull());
}
