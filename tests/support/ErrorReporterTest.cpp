#include "commands/CreateJediConfiguration.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/ErrorBox.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

#include <QFileInfo>

using namespace steward;
using namespace steward::testing;

namespace {

const QString kHyphens = QString(78, QLatin1Char('-'));
const QString kStamp = QStringLiteral("---06/13/2002 21:05:33---");

class ErrorLogTest : public ::testing::Test {
protected:
    QString defaultLog() const { return t.programFolder() + QStringLiteral("/arena-steward.log"); }
    TestApp t;
};

} // namespace

TEST_F(ErrorLogTest, TwoErrorsGiveTwoEntriesInOneFile)
{
    const RuntimeError first(err::FileNotFound, {}, QStringLiteral("ReadCatalogue"));
    reportTagged(*t.app, first, QStringLiteral("::Code.gbln_LoadMapCycle(Function)"));
    t.clock.at = QDateTime(QDate(2002, 12, 1), QTime(20, 4, 9)); // a 24-hour clock
    const RuntimeError second(err::PathFileAccess, QStringLiteral("Path/File access error\r\nsecond line"),
                              QStringLiteral("Writer"));
    reportTagged(*t.app, second, QStringLiteral("::Code.CreateJediConfiguration(Function)"));

    EXPECT_EQ(crlfLines(defaultLog()),
              (QStringList{
                  kHyphens,
                  kStamp,
                  QStringLiteral("Error 53 in arena-steward::Code.gbln_LoadMapCycle(Function) (ReadCatalogue):"),
                  QStringLiteral("File not found"),
                  kHyphens,
                  QStringLiteral("---12/01/2002 20:04:09---"),
                  QStringLiteral("Error 75 in arena-steward::Code.CreateJediConfiguration(Function) (Writer):"),
                  QStringLiteral("Path/File access error"),
                  QStringLiteral("second line"),
              }));
    EXPECT_EQ(t.app->errorLog().lastFile(), defaultLog());
    EXPECT_EQ(t.prompts.shown.size(), 2u);
}

TEST_F(ErrorLogTest, TheCriticalBoxNamesTheErrorAndIsSystemModal)
{
    const RuntimeError e(err::TypeMismatch, {}, QStringLiteral("frmMain"));
    reportTagged(*t.app, e, QStringLiteral("::frmMain.cmdOk_Click(Sub)"));

    ASSERT_EQ(t.prompts.shown.size(), 1u);
    const MessageBoxRequest& box = t.prompts.last().request;
    EXPECT_TRUE(isBox(box, {QStringLiteral("arena-steward Error"), Icon::Critical,
                            QStringLiteral("Following error occurred in this application:\r\n"
                                           "\r\n"
                                           "Type mismatch\r\n"
                                           "Number: 13\r\n"
                                           "Source: arena-steward::frmMain.cmdOk_Click(Sub) (frmMain)"),
                            Buttons::Ok}));
    EXPECT_TRUE(box.systemModal);
}

TEST_F(ErrorLogTest, WithoutAnErrorObjectTheArgumentsAreUsedAsTheyCame)
{
    RaiseError(*t.app, QStringLiteral("Plain words"), QStringLiteral("Somewhere"), -7, true, false, true, nullptr);

    EXPECT_EQ(crlfLines(defaultLog()),
              (QStringList{kHyphens, kStamp, QStringLiteral("Error -7 in Somewhere:"), QStringLiteral("Plain words")}));
    EXPECT_TRUE(isBox(t.prompts.last(), {QStringLiteral("arena-steward Error"), Icon::Critical,
                                         QStringLiteral("Following error occurred in this application:\r\n\r\n"
                                                        "Plain words\r\nNumber: -7\r\nSource: Somewhere"),
                                         Buttons::Ok}));
}

TEST_F(ErrorLogTest, TheErrorObjectIsFoldedIntoNonEmptyArguments)
{
    const RuntimeError e(err::PathNotFound, {}, QStringLiteral("inner"));
    // A number of its own is kept; the texts get the object's in brackets.
    RaiseError(*t.app, QStringLiteral("Outer"), QStringLiteral("outer"), 1000, false, false, true, &e);
    EXPECT_EQ(crlfLines(defaultLog()).mid(2),
              (QStringList{QStringLiteral("Error 1000 in outer (inner):"), QStringLiteral("Outer(Path not found)")}));

    // Empty arguments take the object's fields whole.
    RaiseError(*t.app, {}, {}, 0, false, false, true, &e);
    EXPECT_EQ(crlfLines(defaultLog()).mid(6),
              (QStringList{QStringLiteral("Error 76 in inner:"), QStringLiteral("Path not found")}));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(ErrorLogTest, ShowOffAndRaiseOnLogsShowsNothingAndThrowsToTheCaller)
{
    const RuntimeError e(err::FileNotFound, {}, QStringLiteral("unzip"));
    try {
        reportTagged(*t.app, e, QStringLiteral("::CMapScanner.ExtractLevelShots(Function)"), false, true);
        FAIL() << "the error did not reach the caller";
    } catch (const RuntimeError& passed) {
        EXPECT_EQ(passed.number(), 53);
        EXPECT_EQ(passed.source(), QStringLiteral("arena-steward::CMapScanner.ExtractLevelShots(Function) (unzip)"));
        EXPECT_EQ(passed.description(), QStringLiteral("File not found"));
    }
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_EQ(crlfLines(defaultLog()).value(2),
              QStringLiteral("Error 53 in arena-steward::CMapScanner.ExtractLevelShots(Function) (unzip):"));
}

TEST_F(ErrorLogTest, AnUnwritableProgramFolderCostsOnlyTheLogEntry)
{
    // A folder below a plain file can never be created, whoever runs the test.
    writeFile(t.root() + QStringLiteral("/blocked"), "not a folder");
    t.app->programFolder = t.root() + QStringLiteral("/blocked/program");

    EXPECT_FALSE(WriteLog(*t.app, QStringLiteral("text")));
    const RuntimeError e(err::Overflow);
    EXPECT_NO_THROW(reportTagged(*t.app, e, QStringLiteral("::Code.SaveMainSettings(Sub)")));

    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(
        isBox(t.prompts.last(),
              errorBox(err::Overflow, QStringLiteral("arena-steward::Code.SaveMainSettings(Sub) (arena-steward)"))));
    EXPECT_FALSE(QFileInfo::exists(t.root() + QStringLiteral("/blocked/program/arena-steward.log")));
    EXPECT_EQ(fileBytes(t.root() + QStringLiteral("/blocked")), QByteArray("not a folder"));
}

TEST_F(ErrorLogTest, AnEmptyLogFileTakesTheOneUsedLast)
{
    const QString own = t.root() + QStringLiteral("/own.log");
    ASSERT_TRUE(WriteLog(*t.app, QStringLiteral("first"), own, false, false, false));
    RaiseError(*t.app, QStringLiteral("d"), QStringLiteral("s"), 1, false, false, true, nullptr);

    EXPECT_FALSE(QFileInfo::exists(defaultLog()));
    EXPECT_EQ(crlfLines(own), (QStringList{QStringLiteral("first"), kHyphens, kStamp, QStringLiteral("Error 1 in s:"),
                                           QStringLiteral("d")}));
    EXPECT_EQ(t.app->errorLog().lastFile(), own);
}

TEST_F(ErrorLogTest, OverwriteEmptiesTheFileFirst)
{
    const QString own = t.root() + QStringLiteral("/own.log");
    writeFile(own, "old entry\r\n");
    ASSERT_TRUE(WriteLog(*t.app, QStringLiteral("fresh"), own, true, false, true));
    EXPECT_EQ(fileBytes(own), crlfText({kStamp, QStringLiteral("fresh")}));
}

TEST_F(ErrorLogTest, AnErrorWithoutASourceComesFromTheProgram)
{
    const RuntimeError overflow(err::Overflow);
    reportTagged(*t.app, overflow, QStringLiteral("::Code.CreateJediConfiguration(Function)"));
    EXPECT_EQ(crlfLines(defaultLog()).value(2),
              QStringLiteral("Error 6 in arena-steward::Code.CreateJediConfiguration(Function) (arena-steward):"));

    // The information box of an untagged routine takes the same source as its title.
    reportInformation(*t.app, overflow);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {QStringLiteral("arena-steward"), Icon::Information, QStringLiteral("Overflow"), Buttons::Ok}));
}
