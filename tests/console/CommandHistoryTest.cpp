// The command history: browsing, the cap, the file across runs, and no password in it.
#include "console/CommandHistory.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace steward;

TEST(CommandHistory, UpAndDownBrowseFromTheNewest)
{
    CommandHistory h;
    EXPECT_EQ(h.older(), QString());
    for (const char* c : {"status", "map oa_dm1", "status"})
        h.add(QString::fromLatin1(c), QStringLiteral("pw"));
    EXPECT_EQ(h.older(), QStringLiteral("status"));
    EXPECT_EQ(h.older(), QStringLiteral("map oa_dm1"));
    EXPECT_EQ(h.older(), QStringLiteral("status"));
    EXPECT_EQ(h.older(), QStringLiteral("status")) << "the oldest stays";
    EXPECT_EQ(h.newer(), QStringLiteral("map oa_dm1"));
    EXPECT_EQ(h.newer(), QStringLiteral("status"));
    EXPECT_EQ(h.newer(), QString()) << "past the newest is an empty line";
    EXPECT_EQ(h.newer(), QString());
    h.add(QStringLiteral("status"), {});
    EXPECT_EQ(h.entries().size(), 3) << "a repeat of the newest is not kept again";
}

TEST(CommandHistory, KeepsTheNewest200AndNeverThePassword)
{
    CommandHistory h;
    for (int i = 0; i < 250; ++i)
        h.add(QStringLiteral("say %1").arg(i), QStringLiteral("s3cret"));
    ASSERT_EQ(h.entries().size(), 200);
    EXPECT_EQ(h.entries().first(), QStringLiteral("say 50"));
    EXPECT_EQ(h.entries().last(), QStringLiteral("say 249"));

    for (const char* c :
         {"say my s3cret", "rconpassword other", "set rconPassword other", "seta rcon_password x", "", "   "})
        h.add(QString::fromLatin1(c), QStringLiteral("s3cret"));
    EXPECT_EQ(h.entries().last(), QStringLiteral("say 249"));
}

TEST(CommandHistory, SurvivesARunInItsFile)
{
    QTemporaryDir dir;
    const QString file = CommandHistory::fileIn(dir.path());
    EXPECT_TRUE(file.startsWith(dir.path()));
    CommandHistory first;
    first.load(file);
    EXPECT_TRUE(first.entries().isEmpty());
    first.add(QStringLiteral("status"), QStringLiteral("pw"));
    first.add(QStringLiteral("say caf\u00e9 \u20ac"), QStringLiteral("pw"));
    ASSERT_TRUE(first.save(file));
    EXPECT_EQ(QFile::permissions(file) & (QFileDevice::ReadOther | QFileDevice::ReadGroup), QFileDevice::Permissions());

    CommandHistory second;
    second.load(file);
    EXPECT_EQ(second.entries(), first.entries());
    EXPECT_EQ(second.older(), QStringLiteral("say caf\u00e9 \u20ac"));

    // A hand-made file of 500 lines keeps its newest 200; an unwritable place is a false.
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    for (int i = 0; i < 500; ++i)
        f.write(QByteArray::number(i) + "\n");
    f.close();
    second.load(file);
    EXPECT_EQ(second.entries().size(), 200);
    EXPECT_EQ(second.entries().first(), QStringLiteral("300"));
    EXPECT_FALSE(second.save(dir.path() + QStringLiteral("/missing/folder/h.txt")));
}
