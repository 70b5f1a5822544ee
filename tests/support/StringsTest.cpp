// The text and path helpers that every writer and reader leans on.
#include "support/Errors.h"
#include "support/Strings.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

#include <QDir>
#include <functional>

using namespace steward;
using namespace steward::testing;

namespace {

int errorOf(const std::function<void()>& body)
{
    try {
        body();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

} // namespace

TEST(Strings, PathPartsSplitAtTheLastSlash)
{
    QString folder = QStringLiteral("/games/jk2");
    EXPECT_EQ(AddSlash(folder), QStringLiteral("/games/jk2/"));
    EXPECT_EQ(folder, QStringLiteral("/games/jk2/")) << "the caller's own text gets the slash";
    EXPECT_EQ(AddSlash(folder), QStringLiteral("/games/jk2/")) << "only one";
    QString empty;
    EXPECT_EQ(AddSlash(empty), QStringLiteral("/"));

    EXPECT_EQ(GetNamePart(QStringLiteral("/a/b/luke.cfg")), QStringLiteral("luke.cfg"));
    EXPECT_EQ(GetNamePart(QStringLiteral("luke.cfg")), QStringLiteral("luke.cfg"));
    EXPECT_EQ(GetNamePart(QStringLiteral("/a/b/")), QString());
    EXPECT_EQ(GetPathPart(QStringLiteral("/a/b/luke.cfg")), QStringLiteral("/a/b/"));
    EXPECT_EQ(GetPathPart(QStringLiteral("luke.cfg")), QString());

    EXPECT_EQ(IsClean(QString(), QStringLiteral(","), QStringLiteral("%")), QString());
    EXPECT_EQ(IsClean(QStringLiteral("a,b,,c"), QStringLiteral(","), QStringLiteral("%")), QStringLiteral("a%b%%c"));
}

TEST(Strings, TheLeadingNumberIsTheLongestNumericBeginning)
{
    const std::pair<const char*, double> cases[] = {
        {"", 0},     {"abc", 0},    {"12abc", 12}, {" 3.5x", 3.5}, {"1 2", 12}, {"-7", -7},
        {".5", 0.5}, {"1e3", 1000}, {"2e", 2},     {"+4", 4},      {"4-2", 4},  {"0x10", 0},
    };
    for (const auto& [text, value] : cases)
        EXPECT_EQ(leadingNumber(QString::fromLatin1(text)), value) << text;
}

TEST(Strings, WholeNumbersRoundHalfToEvenAndOverflowOutsideTheirRange)
{
    EXPECT_EQ(toInt16(2.5), 2);
    EXPECT_EQ(toInt16(3.5), 4);
    EXPECT_EQ(toInt16(-3.5), -4);
    EXPECT_EQ(toInt16(32767), 32767);
    EXPECT_EQ(toInt16(-32768), -32768);
    EXPECT_EQ(errorOf([] { toInt16(32767.5); }), err::Overflow);
    EXPECT_EQ(errorOf([] { toInt16(-32769); }), err::Overflow);
    EXPECT_EQ(errorOf([] { toInt32(2147483648.0); }), err::Overflow);

    EXPECT_EQ(textToInt32(QStringLiteral(" 28070 ")), 28070);
    EXPECT_EQ(errorOf([] { textToInt32(QStringLiteral("28070abc")); }), err::TypeMismatch);
    EXPECT_EQ(errorOf([] { textToInt32(QString()); }), err::TypeMismatch);
    EXPECT_EQ(errorOf([] { textToInt32(QStringLiteral("99999999999")); }), err::Overflow);
}

TEST(Strings, FileExistsSeesOnlyVisibleFiles)
{
    TestApp t;
    const QString folder = t.root() + QStringLiteral("/files/");
    writeFile(folder + QStringLiteral("jk2ded"), "x");
    writeFile(folder + QStringLiteral(".hidden"), "x");
    ASSERT_TRUE(QDir().mkpath(folder + QStringLiteral("base")));

    EXPECT_TRUE(FileExists(folder + QStringLiteral("jk2ded")));
    EXPECT_TRUE(FileExists(folder + QStringLiteral("jk2*")));
    EXPECT_TRUE(FileExists(folder + QStringLiteral("jk?ded")));
    EXPECT_FALSE(FileExists(QString()));
    EXPECT_FALSE(FileExists(folder));
    EXPECT_FALSE(FileExists(folder + QStringLiteral("base")));
    EXPECT_FALSE(FileExists(folder + QStringLiteral("ba*")));
    EXPECT_FALSE(FileExists(folder + QStringLiteral(".hidden")));
    EXPECT_FALSE(FileExists(folder + QStringLiteral("*.exe")));
    EXPECT_FALSE(FileExists(t.root() + QStringLiteral("/nowhere/jk2ded")));
}
