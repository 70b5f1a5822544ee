#include "support/FileDialog.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {
const QChar kNul(0);
}

TEST(FileDialog, ShowPassesEveryPropertyToTheDialog)
{
    TestApp t;
    CFileDialog dlg(*t.app);
    dlg.DefaultExt = QStringLiteral("lst");
    dlg.DialogTitle = QStringLiteral("Save BOT list");
    dlg.FileName = QStringLiteral("mine.lst");
    dlg.Filter = QStringLiteral("BOT list (*.lst)|*.lst");
    dlg.FilterIndex = 1;
    dlg.Flags = 2;
    dlg.hWndParent = 5;
    dlg.InitialDir = QStringLiteral("/srv/jk2/");
    t.prompts.chooseFile(QStringLiteral("/srv/jk2/bots/new.lst"));

    EXPECT_TRUE(dlg.Show(false));

    ASSERT_EQ(t.prompts.dialogs.size(), 1u);
    const FakePrompts::Dialog& seen = t.prompts.dialogs.front();
    EXPECT_FALSE(seen.open);
    EXPECT_EQ(seen.state.DefaultExt, QStringLiteral("lst"));
    EXPECT_EQ(seen.state.DialogTitle, QStringLiteral("Save BOT list"));
    EXPECT_EQ(seen.state.FileName, QStringLiteral("mine.lst"));
    EXPECT_EQ(seen.state.Filter, QStringLiteral("BOT list (*.lst)|*.lst"));
    EXPECT_EQ(seen.state.FilterIndex, 1);
    EXPECT_EQ(seen.state.Flags, 2);
    EXPECT_EQ(seen.state.hWndParent, 5);
    EXPECT_EQ(seen.state.InitialDir, QStringLiteral("/srv/jk2/"));
    EXPECT_EQ(seen.state.MaxFileSize, 260);

    EXPECT_EQ(dlg.FileName, QStringLiteral("/srv/jk2/bots/new.lst"));
    EXPECT_EQ(dlg.FileTitle, QStringLiteral("new.lst"));
    EXPECT_EQ(dlg.DialogTitle, QStringLiteral("Save BOT list"));
}

TEST(FileDialog, CancelKeepsTheOldNames)
{
    TestApp t;
    CFileDialog kept(*t.app);
    kept.FileName = QStringLiteral("old.lst");
    kept.FileTitle = QStringLiteral("old title");
    t.prompts.cancelNextDialog();
    EXPECT_FALSE(kept.Show(true));
    EXPECT_TRUE(t.prompts.dialogs.front().open);
    EXPECT_EQ(kept.FileName, QStringLiteral("old.lst"));
    EXPECT_EQ(kept.FileTitle, QStringLiteral("old title"));

    // A caller that starts empty and tests FileName sees no file.
    CFileDialog empty(*t.app);
    t.prompts.cancelNextDialog();
    EXPECT_FALSE(empty.Show(false));
    EXPECT_TRUE(empty.FileName.isEmpty());
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST(FileDialog, ANameLongerThanTheBufferReachesThePlainBox)
{
    TestApp t;
    CFileDialog dlg(*t.app);
    dlg.MaxFileSize = 12;
    dlg.FileName = QStringLiteral("123456789012"); // exactly fills the buffer
    t.prompts.chooseFile(QStringLiteral("/a/b.cfg"));
    EXPECT_TRUE(dlg.Show(true));
    EXPECT_TRUE(t.prompts.shown.empty());

    dlg.FileName = QStringLiteral("1234567890123");
    EXPECT_FALSE(dlg.Show(true));
    EXPECT_EQ(t.prompts.dialogs.size(), 1u) << "no dialog after the failure";
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    const MessageBoxRequest& box = t.prompts.last().request;
    EXPECT_TRUE(isBox(box, {QStringLiteral("Show"), Icon::None,
                            QStringLiteral("Error: 5. Invalid procedure call or argument"), Buttons::Ok}));
    EXPECT_EQ(dlg.FileName, QStringLiteral("1234567890123"));
}

TEST(FileDialog, TrimNullsCutsAtTheFirstPairAndBlanksSingleNuls)
{
    const struct {
        QString in;
        QString out;
    } cases[] = {
        {QStringLiteral("abc") + QString(5, kNul), QStringLiteral("abc")},
        {QStringLiteral("/srv") + kNul + QStringLiteral("a.lst") + kNul + QStringLiteral("b.lst") + kNul + kNul,
         QStringLiteral("/srv a.lst b.lst")},
        // Without a pair the text comes back as it is, single NULs included.
        {QStringLiteral("a") + kNul + QStringLiteral("b"), QStringLiteral("a") + kNul + QStringLiteral("b")},
        {QStringLiteral("plain"), QStringLiteral("plain")},
        {QString(), QString()},
        {kNul + (kNul + QStringLiteral("x")), QString()},
        {QStringLiteral("a") + kNul + kNul + QStringLiteral("b") + kNul + kNul, QStringLiteral("a")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.in.toUtf8().toHex().toStdString());
        EXPECT_EQ(TrimNulls(c.in), c.out);
    }
}

TEST(Cursor, SetAndRestore)
{
    FakePrompts prompts;
    prompts.pointer = 3;
    CCursor cursor(prompts);
    EXPECT_EQ(cursor.stored(), 3);
    cursor.SetCursor(pointer::Hourglass);
    EXPECT_EQ(prompts.pointer, pointer::Hourglass);
    cursor.RestoreCursor();
    EXPECT_EQ(prompts.pointer, 3);
    cursor.SetCursor();
    EXPECT_EQ(prompts.pointer, pointer::Default);
}

TEST(Cursor, OnlyAStoredPointerOtherThanTheDefaultIsRestoredAtTheEnd)
{
    FakePrompts prompts;
    {
        CCursor cursor(prompts);
        cursor.SetCursor(pointer::Hourglass);
    }
    EXPECT_EQ(prompts.pointer, pointer::Hourglass) << "the default stored: nothing happens";

    prompts.pointerHistory.clear();
    {
        CCursor cursor(prompts); // stores the hourglass
        cursor.SetCursor(pointer::Default);
    }
    EXPECT_EQ(prompts.pointer, pointer::Hourglass);
    EXPECT_EQ(prompts.pointerHistory, (std::vector<int>{pointer::Default, pointer::Hourglass}));
}
