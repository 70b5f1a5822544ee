#include "support/FileDialog.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {
const QChar kNul(0);
}

TEST(FileDialog, ShowPassesEveryPropertyToTheDialog)
{
    TestApp t;
    CFileDialog dlg(*t.app);
    dlg.DefaultExt = u"lst"_s;
    dlg.DialogTitle = u"Save BOT list"_s;
    dlg.FileName = u"mine.lst"_s;
    dlg.Filter = u"BOT list (*.lst)|*.lst"_s;
    dlg.FilterIndex = 1;
    dlg.Flags = 2;
    dlg.hWndParent = 5;
    dlg.InitialDir = u"/srv/jk2/"_s;
    t.prompts.chooseFile(u"/srv/jk2/bots/new.lst"_s);

    EXPECT_TRUE(dlg.Show(false));

    ASSERT_EQ(t.prompts.dialogs.size(), 1u);
    const FakePrompts::Dialog& seen = t.prompts.dialogs.front();
    EXPECT_FALSE(seen.open);
    EXPECT_EQ(seen.state.DefaultExt, u"lst"_s);
    EXPECT_EQ(seen.state.DialogTitle, u"Save BOT list"_s);
    EXPECT_EQ(seen.state.FileName, u"mine.lst"_s);
    EXPECT_EQ(seen.state.Filter, u"BOT list (*.lst)|*.lst"_s);
    EXPECT_EQ(seen.state.FilterIndex, 1);
    EXPECT_EQ(seen.state.Flags, 2);
    EXPECT_EQ(seen.state.hWndParent, 5);
    EXPECT_EQ(seen.state.InitialDir, u"/srv/jk2/"_s);
    EXPECT_EQ(seen.state.MaxFileSize, 260);

    EXPECT_EQ(dlg.FileName, u"/srv/jk2/bots/new.lst"_s);
    EXPECT_EQ(dlg.FileTitle, u"new.lst"_s);
    EXPECT_EQ(dlg.DialogTitle, u"Save BOT list"_s);
}

TEST(FileDialog, CancelKeepsTheOldNames)
{
    TestApp t;
    CFileDialog kept(*t.app);
    kept.FileName = u"old.lst"_s;
    kept.FileTitle = u"old title"_s;
    t.prompts.cancelNextDialog();
    EXPECT_FALSE(kept.Show(true));
    EXPECT_TRUE(t.prompts.dialogs.front().open);
    EXPECT_EQ(kept.FileName, u"old.lst"_s);
    EXPECT_EQ(kept.FileTitle, u"old title"_s);

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
    dlg.FileName = u"123456789012"_s; // exactly fills the buffer
    t.prompts.chooseFile(u"/a/b.cfg"_s);
    EXPECT_TRUE(dlg.Show(true));
    EXPECT_TRUE(t.prompts.shown.empty());

    dlg.FileName = u"1234567890123"_s;
    EXPECT_FALSE(dlg.Show(true));
    EXPECT_EQ(t.prompts.dialogs.size(), 1u) << "no dialog after the failure";
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    const MessageBoxRequest& box = t.prompts.last().request;
    EXPECT_TRUE(isBox(box, {u"Show"_s, Icon::None, u"Error: 5. Invalid procedure call or argument"_s, Buttons::Ok}));
    EXPECT_EQ(dlg.FileName, u"1234567890123"_s);
}

TEST(FileDialog, TrimNullsCutsAtTheFirstPairAndBlanksSingleNuls)
{
    const struct {
        QString in;
        QString out;
    } cases[] = {
        {u"abc"_s + QString(5, kNul), u"abc"_s},
        {u"/srv"_s + kNul + u"a.lst"_s + kNul + u"b.lst"_s + kNul + kNul, u"/srv a.lst b.lst"_s},
        // Without a pair the text comes back as it is, single NULs included.
        {u"a"_s + kNul + u"b"_s, u"a"_s + kNul + u"b"_s},
        {u"plain"_s, u"plain"_s},
        {QString(), QString()},
        {kNul + (kNul + u"x"_s), QString()},
        {u"a"_s + kNul + kNul + u"b"_s + kNul + kNul, u"a"_s},
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
