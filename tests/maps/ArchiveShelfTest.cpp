// Archives read ahead on worker threads: what open takes is what opening the archive
// at that moment gives, whatever happened to its file after it was read ahead.
#include "maps/ArchiveShelf.h"
#include "support/Errors.h"
#include "testkit/ZipBuilder.h"

#include <QFile>
#include <QTemporaryDir>
#include <QThreadPool>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

QStringList paths(const ArchiveReader& reader)
{
    QStringList names;
    for (int i = 0; i < reader.entryCount(); ++i)
        names << reader.entry(i).path;
    return names;
}

QString openError(ArchiveShelf& shelf, const QString& path)
{
    try {
        shelf.open(path);
    } catch (const RuntimeError& e) {
        return e.description();
    }
    return {};
}

} // namespace

TEST(ArchiveShelf, AnArchiveReadAheadIsTakenAsItsFileIsWhenOpened)
{
    QTemporaryDir dir;
    auto path = [&dir](const char* name) { return dir.path() + u'/' + QLatin1String(name); };
    const QString kept = path("kept.pk3"), changed = path("changed.pk3"), gone = path("gone.pk3"),
                  broken = path("broken.pk3");
    for (const QString& archive : {kept, changed, gone})
        ASSERT_TRUE(ZipBuilder().file(u"maps/a.bsp"_s).write(archive));
    QFile bad(broken);
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly) && bad.write("not an archive") > 0);
    bad.close();
    QString brokenError;
    try {
        ArchiveReader reader(broken);
    } catch (const RuntimeError& e) {
        brokenError = e.description();
    }
    ASSERT_FALSE(brokenError.isEmpty());

    QThreadPool pool;
    ArchiveShelf shelf;
    shelf.readAhead(pool, {kept, changed, gone, broken});
    EXPECT_EQ(paths(shelf.open(kept)), QStringList{u"maps/a.bsp"_s});
    pool.waitForDone(); // the others are read ahead by now
    ASSERT_TRUE(ZipBuilder().file(u"maps/b.bsp"_s).file(u"scripts/b.arena"_s).write(changed));
    ASSERT_TRUE(QFile::remove(gone));

    EXPECT_EQ(paths(shelf.open(changed)), (QStringList{u"maps/b.bsp"_s, u"scripts/b.arena"_s}));
    EXPECT_FALSE(openError(shelf, gone).isEmpty());
    EXPECT_EQ(openError(shelf, broken), brokenError);
    EXPECT_EQ(shelf.size(), 2);
}
