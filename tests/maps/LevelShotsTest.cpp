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

namespace {

class LevelShotsTest : public ::testing::Test {
protected:
    void SetUp() override { t.app->services.scanProgress = &progress; }

    void pk3(const QString& name, const ZipBuilder& zip)
    {
        ASSERT_TRUE(zip.write(t.baseFolder() + QStringLiteral("/") + name));
    }
    bool extract() { return ExtractLevelShots(*t.app, QStringLiteral("Base"), t.gameFolder()); }
    QString shots() const { return t.programFolder() + QStringLiteral("/levelshots"); }
    QStringList pictures() const { return QDir(shots()).entryList(QDir::Files, QDir::Name); }
    QString log() const
    {
        return QString::fromLatin1(fileBytes(t.programFolder() + QStringLiteral("/arena-steward.log")));
    }

    TestApp t;
    RecordingScanProgress progress;
};

} // namespace

TEST_F(LevelShotsTest, CopiesThePicturesOfEveryArchiveAndConvertsTheTgaFiles)
{
    pk3(QStringLiteral("assets0.pk3"), ZipBuilder()
                                           .file(QStringLiteral("levelshots/ffa_bespin.jpg"), "from assets0")
                                           .file(QStringLiteral("maps/ffa_bespin.bsp")));
    pk3(QStringLiteral("assets1.pk3"),
        ZipBuilder()
            .file(QStringLiteral("levelshots/ffa_bespin.jpg"), "from assets1")
            .file(QStringLiteral("levelshots/duel_pit.tga"), tgaPicture(4, 2, 200, 10, 20)));
    pk3(QStringLiteral("nopictures.pk3"),
        ZipBuilder().file(QStringLiteral("maps/x.bsp")).file(QStringLiteral("x.jpg")));
    pk3(QStringLiteral("zmap.pk3"), ZipBuilder()
                                        .file(QStringLiteral("LevelShots/zmap.tga"), tgaPicture(2, 2, 0, 0, 255))
                                        .file(QStringLiteral("levelshots/zmap.jpg"), "a jpg stays a jpg")
                                        .file(QStringLiteral("levelshots/zmap.png"), "not selected"));

    EXPECT_TRUE(extract());
    EXPECT_EQ(pictures(), (QStringList{QStringLiteral("duel_pit.tga"), QStringLiteral("ffa_bespin.jpg"),
                                       QStringLiteral("unknown.bmp"), QStringLiteral("unknown.jpg"),
                                       QStringLiteral("zmap.jpg"), QStringLiteral("zmap.tga")}));
    EXPECT_EQ(fileBytes(shots() + QStringLiteral("/ffa_bespin.jpg")), QByteArray("from assets1"));
    EXPECT_EQ(progress.activities.first(), QStringLiteral("Copying images from assets0.pk3...."));
    EXPECT_EQ(progress.activity, QStringLiteral("Done"));
    EXPECT_EQ(progress.value, 0);
    EXPECT_EQ(progress.maximum, 4);
    std::vector<int> counted; // the bar moves one step for each archive
    std::copy_if(progress.values.begin(), progress.values.end(), std::back_inserter(counted), [](int v) { return v; });
    EXPECT_EQ(counted, (std::vector<int>{1, 2, 3, 4}));

    EXPECT_TRUE(ConvertTgaToBmp(*t.app));
    EXPECT_EQ(pictures(), (QStringList{QStringLiteral("duel_pit.bmp"), QStringLiteral("ffa_bespin.jpg"),
                                       QStringLiteral("unknown.bmp"), QStringLiteral("unknown.jpg"),
                                       QStringLiteral("zmap.bmp"), QStringLiteral("zmap.jpg")}));
    const QImage converted(shots() + QStringLiteral("/duel_pit.bmp"), "BMP");
    ASSERT_FALSE(converted.isNull());
    EXPECT_EQ(converted.size(), QSize(4, 2));
    EXPECT_EQ(converted.pixelColor(1, 1), QColor(200, 10, 20));
    EXPECT_EQ(fileBytes(shots() + QStringLiteral("/zmap.jpg")), QByteArray("a jpg stays a jpg"));
    EXPECT_TRUE(progress.activityVisible);
    EXPECT_TRUE(progress.activities.contains(QStringLiteral("Verifying images....")));
    EXPECT_TRUE(progress.activities.contains(QStringLiteral("Converting duel_pit.tga....")));
    EXPECT_FALSE(progress.overshoot);
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(LevelShotsTest, ABrokenArchiveIsLoggedEndsThePhaseAndTheResultStaysTrue)
{
    pk3(QStringLiteral("a.pk3"), ZipBuilder().file(QStringLiteral("levelshots/a.jpg"), "a"));
    writeFile(t.baseFolder() + QStringLiteral("/b.pk3"), "no zip here");
    pk3(QStringLiteral("c.pk3"), ZipBuilder().file(QStringLiteral("levelshots/c.jpg"), "c"));
    EXPECT_TRUE(extract());
    EXPECT_TRUE(QFileInfo::exists(shots() + QStringLiteral("/a.jpg")));
    EXPECT_FALSE(QFileInfo::exists(shots() + QStringLiteral("/c.jpg")));
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_TRUE(
        log().contains(QStringLiteral("arena-steward::CMapScanner.ExtractLevelShots(Function) (ArchiveReader)")))
        << log().toStdString();
    EXPECT_EQ(progress.value, 0);
    EXPECT_EQ(progress.activity, QStringLiteral("Done"));
}

TEST_F(LevelShotsTest, ConversionWithoutAPictureFolderIsLoggedAndStaysTrue)
{
    EXPECT_TRUE(ConvertTgaToBmp(*t.app));
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_TRUE(log().contains(QStringLiteral("::CMapScanner.ConvertTgaToBmp(Function)")));
}

TEST_F(LevelShotsTest, AReadOnlyOrUnreadableTgaIsDeletedAnyway)
{
    QDir().mkpath(shots());
    writeFile(shots() + QStringLiteral("/ro.tga"), tgaPicture(2, 2, 1, 2, 3));
    QFile::setPermissions(shots() + QStringLiteral("/ro.tga"), QFile::ReadOwner);
    writeFile(shots() + QStringLiteral("/broken.TGA"), "not a picture");
    EXPECT_TRUE(ConvertTgaToBmp(*t.app));
    EXPECT_EQ(pictures(), QStringList{QStringLiteral("ro.bmp")});
    EXPECT_EQ(progress.maximum, 2);
}

TEST_F(LevelShotsTest, TheFallbackPicturesAreWrittenOnlyWhereMissing)
{
    QDir().mkpath(shots());
    writeFile(shots() + QStringLiteral("/unknown.jpg"), "the user's own");
    EXPECT_TRUE(EnsureFallbackPictures(*t.app));
    EXPECT_EQ(fileBytes(shots() + QStringLiteral("/unknown.jpg")), QByteArray("the user's own"));
    const QImage bmp(shots() + QStringLiteral("/unknown.bmp"));
    EXPECT_FALSE(bmp.isNull());

    QFile::remove(shots() + QStringLiteral("/unknown.jpg"));
    EXPECT_TRUE(EnsureFallbackPictures(*t.app));
    EXPECT_FALSE(QImage(shots() + QStringLiteral("/unknown.jpg")).isNull());
}
