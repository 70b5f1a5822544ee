// Profile names: what a name may hold, and where a profile's settings lie.
#include "settings/Profiles.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "testkit/TestApp.h"

using namespace steward;

TEST(ProfileNames, LettersDigitsDashAndUnderscoreUpTo32AndNotDefault)
{
    const struct {
        QString name;
        bool valid;
    } cases[] = {
        {QStringLiteral("azAZ09-_"), true},
        {QStringLiteral("z"), true},
        {QStringLiteral("Z"), true},
        {QStringLiteral("9"), true},
        {QString(32, QLatin1Char('x')), true},
        {QString(33, QLatin1Char('x')), false},
        {QString(), false},
        {QStringLiteral("a b"), false},
        {QStringLiteral("a.b"), false},
        {QStringLiteral("a/b"), false},
        {QStringLiteral("é"), false},
        {QStringLiteral("default"), false},
        {QStringLiteral("Default"), false},
        {QStringLiteral("defaults"), true},
        {QStringLiteral("a@b"), false},
        {QStringLiteral("a[b"), false},
        {QStringLiteral("a`b"), false},
        {QStringLiteral("a{b"), false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(validProfileName(c.name), c.valid) << c.name.toStdString();
}

TEST(ProfileNames, ANamedProfileLiesInProfilesBesideTheDefaultFile)
{
    QTemporaryDir dir;
    EXPECT_EQ(profileSettingsFile(dir.path(), QString()), dir.filePath(QStringLiteral("ArenaSteward.conf")));
    EXPECT_EQ(profileSettingsFile(dir.path(), QStringLiteral("default")),
              dir.filePath(QStringLiteral("ArenaSteward.conf")));
    EXPECT_EQ(profileSettingsFile(dir.path(), QStringLiteral("ctf")),
              dir.filePath(QStringLiteral("profiles/ctf.conf")));
    for (const char* name : {"ctf", "duel", "bad name", "default"})
        steward::testing::writeFile(dir.filePath(QStringLiteral("profiles/%1.conf").arg(QLatin1String(name))), "");
    steward::testing::writeFile(dir.filePath(QStringLiteral("profiles/notes.txt")), "");
    EXPECT_EQ(namedProfiles(dir.path()), QStringList({QStringLiteral("ctf"), QStringLiteral("duel")}));
}
