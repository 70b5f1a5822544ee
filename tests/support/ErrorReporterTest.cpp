// The error report: the log file's entries, the critical box, the arguments folded with
// the error object, raising to the caller, and an unwritable program folder.
#include "commands/CreateJediConfiguration.h"
#include "support/ErrorBox.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <QFileInfo>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

const QString kHyphens = QString(78, u'-');
const QString kStamp = u"---06/13/2002 21:05:33---"_s;

class ErrorLogTest : public ::testing::Test {
protected:
    QString defaultLog() const { return t.programFolder() + u"/arena-steward.log"_s; }
    QString own() const { return t.root() + u"/own.log"_s; }
    TestApp t;
};

TEST_F(ErrorLogTest, TwoErrorsGiveTwoEntriesInOneFileAndSystemModalBoxes)
{
    reportTagged(*t.app, RuntimeError(err::FileNotFound, {}, u"ReadCatalogue"_s),
                 u"::Code.gbln_LoadMapCycle(Function)"_s);
    t.clock.at = QDateTime(QDate(2002, 12, 1), QTime(20, 4, 9)); // a 24-hour clock
    reportTagged(*t.app, RuntimeError(err::PathFileAccess, u"Path/File access error\r\nsecond line"_s, u"Writer"_s),
                 u"::Code.CreateJediConfiguration(Function)"_s);

    EXPECT_EQ(crlfLines(defaultLog()),
              (QStringList{kHyphens, kStamp,
                           u"Error 53 in arena-steward::Code.gbln_LoadMapCycle(Function) (ReadCatalogue):"_s,
                           u"File not found"_s, kHyphens, u"---12/01/2002 20:04:09---"_s,
                           u"Error 75 in arena-steward::Code.CreateJediConfiguration(Function) (Writer):"_s,
                           u"Path/File access error"_s, u"second line"_s}));
    EXPECT_EQ(t.app->errorLog().lastFile(), defaultLog());
    ASSERT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(isBox(t.prompts.shown[0],
                      {u"arena-steward Error"_s, Icon::Critical,
                       u"Following error occurred in this application:\r\n\r\nFile not found\r\nNumber: 53\r\n"
                       "Source: arena-steward::Code.gbln_LoadMapCycle(Function) (ReadCatalogue)"_s,
                       Buttons::Ok}));
    EXPECT_TRUE(t.prompts.last().request.systemModal);
}

TEST_F(ErrorLogTest, TheErrorObjectIsFoldedIntoNonEmptyArguments)
{
    // Without an error object the arguments are used as they came.
    RaiseError(*t.app, u"Plain words"_s, u"Somewhere"_s, -7, true, false, true, nullptr);
    EXPECT_EQ(crlfLines(defaultLog()), (QStringList{kHyphens, kStamp, u"Error -7 in Somewhere:"_s, u"Plain words"_s}));
    EXPECT_TRUE(isBox(t.prompts.last(), errorBox(-7, u"Somewhere"_s, u"Plain words"_s)));

    // A number of its own is kept; the texts get the object's in brackets.
    const RuntimeError e(err::PathNotFound, {}, u"inner"_s);
    RaiseError(*t.app, u"Outer"_s, u"outer"_s, 1000, false, false, true, &e);
    EXPECT_EQ(crlfLines(defaultLog()).mid(4),
              (QStringList{kHyphens, kStamp, u"Error 1000 in outer (inner):"_s, u"Outer(Path not found)"_s}));
    // Empty arguments take the object's fields whole.
    RaiseError(*t.app, {}, {}, 0, false, false, true, &e);
    EXPECT_EQ(crlfLines(defaultLog()).mid(10), (QStringList{u"Error 76 in inner:"_s, u"Path not found"_s}));
    EXPECT_EQ(t.prompts.shown.size(), 1u);
}

TEST_F(ErrorLogTest, ShowOffAndRaiseOnLogsShowsNothingAndThrowsToTheCaller)
{
    try {
        reportTagged(*t.app, RuntimeError(err::FileNotFound, {}, u"unzip"_s),
                     u"::CMapScanner.ExtractLevelShots(Function)"_s, false, true);
        FAIL() << "the error did not reach the caller";
    } catch (const RuntimeError& passed) {
        EXPECT_EQ(passed.number(), 53);
        EXPECT_EQ(passed.source(), u"arena-steward::CMapScanner.ExtractLevelShots(Function) (unzip)"_s);
        EXPECT_EQ(passed.description(), u"File not found"_s);
    }
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_EQ(crlfLines(defaultLog()).value(2),
              u"Error 53 in arena-steward::CMapScanner.ExtractLevelShots(Function) (unzip):"_s);
}

TEST_F(ErrorLogTest, AnUnwritableProgramFolderCostsOnlyTheLogEntry)
{
    // A folder below a plain file can never be created, whoever runs the test.
    writeFile(t.root() + u"/blocked"_s, "not a folder");
    t.app->programFolder = t.root() + u"/blocked/program"_s;
    EXPECT_FALSE(WriteLog(*t.app, u"text"_s));
    EXPECT_NO_THROW(reportTagged(*t.app, RuntimeError(err::Overflow), u"::Code.SaveMainSettings(Sub)"_s));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      errorBox(err::Overflow, u"arena-steward::Code.SaveMainSettings(Sub) (arena-steward)"_s)));
    EXPECT_FALSE(QFileInfo::exists(t.root() + u"/blocked/program/arena-steward.log"_s));
    EXPECT_EQ(fileBytes(t.root() + u"/blocked"_s), QByteArray("not a folder"));
}

TEST_F(ErrorLogTest, AnEmptyLogFileTakesTheOneUsedLastAndOverwriteEmptiesItFirst)
{
    ASSERT_TRUE(WriteLog(*t.app, u"first"_s, own(), false, false, false));
    RaiseError(*t.app, u"d"_s, u"s"_s, 1, false, false, true, nullptr);
    EXPECT_FALSE(QFileInfo::exists(defaultLog()));
    EXPECT_EQ(crlfLines(own()), (QStringList{u"first"_s, kHyphens, kStamp, u"Error 1 in s:"_s, u"d"_s}));
    EXPECT_EQ(t.app->errorLog().lastFile(), own());

    ASSERT_TRUE(WriteLog(*t.app, u"fresh"_s, own(), true, false, true));
    EXPECT_EQ(fileBytes(own()), crlfText({kStamp, u"fresh"_s}));
}

TEST_F(ErrorLogTest, AnErrorWithoutASourceComesFromTheProgram)
{
    const RuntimeError overflow(err::Overflow);
    reportTagged(*t.app, overflow, u"::Code.CreateJediConfiguration(Function)"_s);
    EXPECT_EQ(crlfLines(defaultLog()).value(2),
              u"Error 6 in arena-steward::Code.CreateJediConfiguration(Function) (arena-steward):"_s);
    // The information box of an untagged routine takes the same source as its title.
    reportInformation(*t.app, overflow);
    EXPECT_TRUE(isBox(t.prompts.last(), {u"arena-steward"_s, Icon::Information, u"Overflow"_s, Buttons::Ok}));
}

} // namespace
