// The text and path helpers that every writer and reader leans on.
#include "support/Errors.h"
#include "support/Strings.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

#include <QDir>
#include <functional>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

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
    QString folder = u"/games/jk2"_s;
    EXPECT_EQ(AddSlash(folder), u"/games/jk2/"_s);
    EXPECT_EQ(folder, u"/games/jk2/"_s) << "the caller's own text gets the slash";
    EXPECT_EQ(AddSlash(folder), u"/games/jk2/"_s) << "only one";
    QString empty;
    EXPECT_EQ(AddSlash(empty), u"/"_s);

    EXPECT_EQ(GetNamePart(u"/a/b/luke.cfg"_s), u"luke.cfg"_s);
    EXPECT_EQ(GetNamePart(u"luke.cfg"_s), u"luke.cfg"_s);
    EXPECT_EQ(GetNamePart(u"/a/b/"_s), QString());
    EXPECT_EQ(GetPathPart(u"/a/b/luke.cfg"_s), u"/a/b/"_s);
    EXPECT_EQ(GetPathPart(u"luke.cfg"_s), QString());

    EXPECT_EQ(IsClean(QString(), u","_s, u"%"_s), QString());
    EXPECT_EQ(IsClean(u"a,b,,c"_s, u","_s, u"%"_s), u"a%b%%c"_s);
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

    EXPECT_EQ(textToInt32(u" 28070 "_s), 28070);
    EXPECT_EQ(errorOf([] { textToInt32(u"28070abc"_s); }), err::TypeMismatch);
    EXPECT_EQ(errorOf([] { textToInt32(QString()); }), err::TypeMismatch);
    EXPECT_EQ(errorOf([] { textToInt32(u"99999999999"_s); }), err::Overflow);
}

TEST(Strings, FileExistsSeesOnlyVisibleFiles)
{
    TestApp t;
    const QString folder = t.root() + u"/files/"_s;
    writeFile(folder + u"jk2ded"_s, "x");
    writeFile(folder + u".hidden"_s, "x");
    ASSERT_TRUE(QDir().mkpath(folder + u"base"_s));
    for (const char* there : {"jk2ded", "jk2*", "jk?ded"})
        EXPECT_TRUE(FileExists(folder + QLatin1String(there))) << there;
    for (const char* absent : {"", "base", "ba*", ".hidden", "*.exe", "../nowhere/jk2ded"})
        EXPECT_FALSE(FileExists(folder + QLatin1String(absent))) << absent;
    EXPECT_FALSE(FileExists(QString()));
}
