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
    auto path = [&dir](const char* name) { return dir.path() + QLatin1Char('/') + QLatin1String(name); };
    const QString kept = path("kept.pk3"), changed = path("changed.pk3"), gone = path("gone.pk3"),
                  broken = path("broken.pk3");
    for (const QString& archive : {kept, changed, gone})
        ASSERT_TRUE(ZipBuilder().file(QStringLiteral("maps/a.bsp")).write(archive));
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
    EXPECT_EQ(paths(shelf.open(kept)), QStringList{QStringLiteral("maps/a.bsp")});
    pool.waitForDone(); // the others are read ahead by now
    ASSERT_TRUE(ZipBuilder().file(QStringLiteral("maps/b.bsp")).file(QStringLiteral("scripts/b.arena")).write(changed));
    ASSERT_TRUE(QFile::remove(gone));

    EXPECT_EQ(paths(shelf.open(changed)),
              (QStringList{QStringLiteral("maps/b.bsp"), QStringLiteral("scripts/b.arena")}));
    EXPECT_FALSE(openError(shelf, gone).isEmpty());
    EXPECT_EQ(openError(shelf, broken), brokenError);
    EXPECT_EQ(shelf.size(), 2);
}
