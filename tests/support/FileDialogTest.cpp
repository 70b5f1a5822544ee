// The file dialog's wrapper (what reaches the dialog, what comes back, a name too long
// for its buffer), the trimming of NULs, and the mouse pointer that a routine sets and
// restores.
#include "support/FileDialog.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

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
    const FileDialogState& s = seen.state;
    EXPECT_FALSE(seen.open);
    EXPECT_EQ(QStringList({s.DefaultExt, s.DialogTitle, s.FileName, s.Filter, s.InitialDir}),
              QStringList({u"lst"_s, u"Save BOT list"_s, u"mine.lst"_s, u"BOT list (*.lst)|*.lst"_s, u"/srv/jk2/"_s}));
    EXPECT_EQ(QList<int>({s.FilterIndex, s.Flags, s.hWndParent, s.MaxFileSize}), QList<int>({1, 2, 5, 260}));
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
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {u"Show"_s, Icon::None, u"Error: 5. Invalid procedure call or argument"_s, Buttons::Ok}));
    EXPECT_EQ(dlg.FileName, u"1234567890123"_s);
}

TEST(FileDialog, TrimNullsCutsAtTheFirstPairAndBlanksSingleNuls)
{
    // '0' stands for a NUL.
    const std::pair<QString, QString> cases[] = {
        {u"abc00000"_s, u"abc"_s}, {u"/srv0a.lst0b.lst00"_s, u"/srv a.lst b.lst"_s},
        {u"a0b"_s, u"a0b"_s}, // without a pair the text comes back as it is, single NULs included
        {u"plain"_s, u"plain"_s},  {QString(), QString()},
        {u"00x"_s, QString()},     {u"a00b00"_s, u"a"_s},
    };
    for (auto [in, out] : cases) {
        in.replace(u'0', QChar(0));
        out.replace(u'0', QChar(0));
        EXPECT_EQ(TrimNulls(in), out) << in.toUtf8().toHex().toStdString();
    }
}

TEST(Cursor, SetAndRestoreAndOnlyAStoredPointerOtherThanTheDefaultIsRestoredAtTheEnd)
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

    prompts.pointer = pointer::Default;
    {
        CCursor atDefault(prompts);
        atDefault.SetCursor(pointer::Hourglass);
    }
    EXPECT_EQ(prompts.pointer, pointer::Hourglass) << "the default stored: nothing happens";
    prompts.pointerHistory.clear();
    {
        CCursor atHourglass(prompts); // stores the hourglass
        atHourglass.SetCursor(pointer::Default);
    }
    EXPECT_EQ(prompts.pointer, pointer::Hourglass);
    EXPECT_EQ(prompts.pointerHistory, (std::vector<int>{pointer::Default, pointer::Hourglass}));
}

} // namespace
