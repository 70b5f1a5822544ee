// Level shots read ahead of the extraction: each is taken as the extraction comes to
// it, and a shot that wasn't planned, was passed over, or whose archive changed is
// simply not there, so that the extraction reads it itself.
#include "maps/ArchiveShelf.h"
#include "maps/LevelShotConverter.h"
#include "maps/PackedShot.h"
#include "maps/ShotPrefetch.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

class ShotPrefetchTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (int n = 0; n < 30; ++n) {
            const QString path = dir.path() + u"/a%1.pk3"_s.arg(n);
            ASSERT_TRUE(ZipBuilder().file(u"maps/m.bsp"_s).file(u"levelshots/m.tga"_s, picture(n)).write(path));
            shelf.open(path).park();
            plan.push_back({path, 1});
        }
    }

    static QByteArray picture(int n) { return tgaPicture(4, 4, static_cast<quint8>(n), 7, 9); }
    static QByteArray bmpOf(int n)
    {
        QTemporaryDir out;
        const QString bmp = out.path() + u"/p.bmp"_s;
        convertTgaToBmpFile(picture(n), bmp);
        return fileBytes(bmp);
    }

    QTemporaryDir dir;
    ArchiveShelf shelf;
    std::vector<ShotPrefetch::Planned> plan;
    QThreadPool pool;
};

} // namespace

TEST_F(ShotPrefetchTest, ShotsTakenInTheirOrderAreTheirPictures)
{
    ShotPrefetch prefetch(pool);
    prefetch.setPlan(plan);
    for (int n = 0; n < 30; ++n) {
        const PreparedShot shot = prefetch.take(shelf, plan[n].archive, 1);
        ASSERT_TRUE(shot.verified) << n;
        EXPECT_EQ(shot.bmp, bmpOf(n)) << n;
    }
}

TEST_F(ShotPrefetchTest, UnplannedPassedOverOrChangedShotsAreNotThere)
{
    ShotPrefetch prefetch(pool);
    prefetch.setPlan(plan);
    EXPECT_FALSE(prefetch.take(shelf, plan[0].archive, 0).verified); // the bsp isn't planned
    EXPECT_TRUE(prefetch.take(shelf, plan[5].archive, 1).verified);  // 0 to 4 passed over
    EXPECT_FALSE(prefetch.take(shelf, plan[3].archive, 1).verified); // gone for good
    // An archive replaced before it is read ahead: its shot isn't taken from the new file.
    ASSERT_TRUE(QFile::remove(plan[25].archive));
    ASSERT_TRUE(ZipBuilder().file(u"x"_s, "y").file(u"levelshots/m.tga"_s, picture(99)).write(plan[25].archive));
    EXPECT_FALSE(prefetch.take(shelf, plan[25].archive, 1).verified);
    EXPECT_TRUE(prefetch.take(shelf, plan[26].archive, 1).verified);
}
