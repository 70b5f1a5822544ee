// The BOT page and the picker frmBOT on the real windows, offscreen.
#include "bots/BotPicker.h"
#include "bots/BotRoster.h"
#include "generate/BotSkills.h"
#include "model/ServerProfile.h"
#include "testkit/ZipBuilder.h"
#include "ui/frmBOT.h"
#include "ui/WiredMainWindow.h"
#include "testkit/BoxExpect.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QStyle>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableWidget>
#include <gtest/gtest.h>

using namespace steward;
using steward::testing::isBox;
using steward::testing::ZipBuilder;

namespace {

class BotPage : public steward::testing::WiredMainWindow {
protected:
    void load()
    {
        openMainWindow();
        roster = window->control<QTableWidget>(QStringLiteral("grdBOTList"));
        ASSERT_NE(roster, nullptr);
    }
    void press(const QString& button) { window->control<QPushButton>(button)->click(); }
    QWidget* control(const char* key) const { return window->control(QString::fromLatin1(key)); }
    bool shown(const char* key) const { return !control(key)->isHidden(); }

    frmBOT* openPicker()
    {
        press(QStringLiteral("cmdBOTs(3)"));
        auto* picker = window->findChild<frmBOT*>(QStringLiteral("frmBOT"));
        EXPECT_NE(picker, nullptr);
        return picker;
    }
    template <typename T>
    static T* in(frmBOT* picker, const char* name)
    {
        T* w = picker->findChild<T*>(QString::fromLatin1(name));
        EXPECT_NE(w, nullptr) << name;
        return w;
    }
    static void key(QWidget* w, int code, const QString& text = {})
    {
        QKeyEvent down(QEvent::KeyPress, code, Qt::NoModifier, text);
        QCoreApplication::sendEvent(w, &down);
        QKeyEvent up(QEvent::KeyRelease, code, Qt::NoModifier, text);
        QCoreApplication::sendEvent(w, &up);
    }
    static bool gone(QPointer<frmBOT> picker)
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return picker.isNull();
    }

    QTableWidget* roster = nullptr;
};

TEST_F(BotPage, TheUserDefinedBoxSwitchesBetweenTheTwoLayouts)
{
    load();
    const char* rosterKeys[] = {"grdBOTList", "cmdBOTs(0)", "cmdBOTs(1)", "cmdBOTs(2)", "cmdBOTs(3)", "cmdBOTs(4)"};
    const char* skill[] = {"cboBOT", "lblServerConfig(42)", "txtBOTThinkTime", "lblServerConfig(43)",
                           "updBOTThinkTime"};
    auto* box = window->control<QCheckBox>(QStringLiteral("chkBOTs(5)"));
    ASSERT_NE(box, nullptr);
    for (bool on : {false, true, false}) {
        SCOPED_TRACE(on);
        if (box->isChecked() != on)
            box->click();
        for (const char* key : rosterKeys)
            EXPECT_EQ(shown(key), on) << key;
        for (const char* key : skill)
            EXPECT_EQ(shown(key), !on) << key;
        EXPECT_EQ(control("grdBOTList")->property("Left").toInt(), on ? 2850 : 270);
        EXPECT_EQ(control("grdBOTList")->property("Top").toInt(), on ? 450 : 2790);
    }
}

TEST_F(BotPage, TheStoredBoxSetsTheLayoutAtStart)
{
    t.store->SaveSetting(QStringLiteral("BOTs5"), QStringLiteral("1"));
    load();
    ASSERT_EQ(profile->value(F::chkBOTs(5)), 1);
    EXPECT_TRUE(shown("grdBOTList"));
    EXPECT_FALSE(shown("cboBOT"));
}

TEST_F(BotPage, TheRosterComesBackFromLastBotsInItsTeamsColours)
{
    steward::testing::writeFile(t.programFolder() + QStringLiteral("/lastbots.csv"),
                                "Gnubee,Hardcore,RED,Desann,25\r\nLuke,Nightmare,BLUE,Luke,0\r\nOdd,,blue,Jan,1\r\n");
    load();
    ASSERT_EQ(roster->rowCount(), 3);
    const QColor expected[] = {Qt::red, Qt::blue, Qt::red};
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 5; ++c) {
            EXPECT_EQ(roster->item(r, c)->background().color(), expected[r]) << r << "," << c;
            EXPECT_EQ(roster->item(r, c)->foreground().color(), QColor(Qt::white));
        }
    EXPECT_EQ(window->control<QComboBox>(QStringLiteral("cboBOT"))->currentText(), QStringLiteral("Hurt Me Plenty "));
}

TEST_F(BotPage, SkillAndTeamColumnsShowTheirLongestWordWhole)
{
    load();
    const std::pair<int, QStringList> columns[] = {{1, botSkillNames()}, {2, botTeams()}};
    // In the platform's font and in a larger one set on the window later.
    for (const int points : {0, 24}) {
        SCOPED_TRACE(points);
        if (points > 0) {
            QFont font = window->font();
            font.setPointSize(points);
            window->setFont(font);
            QApplication::processEvents();
        }
        const QFontMetrics metrics(roster->font());
        // An item draws its text inside the focus frame's margin on either side.
        const int margins = 2 * (roster->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, roster) + 1);
        for (const auto& [column, words] : columns)
            for (const QString& word : words)
                EXPECT_GE(roster->horizontalHeader()->sectionSize(column), metrics.horizontalAdvance(word) + margins)
                    << word.toStdString();
    }
}

TEST_F(BotPage, CloseKeepsTheRosterForTheNextStart)
{
    load();
    appendRosterBot(*profile, {QStringLiteral("Boss, The"), QStringLiteral("Hardcore"), QStringLiteral("RED"),
                               QStringLiteral("Desann"), QStringLiteral("25")});
    press(QStringLiteral("cmdCancel"));
    EXPECT_EQ(steward::testing::fileBytes(t.programFolder() + QStringLiteral("/lastbots.csv")),
              QByteArray("\"Boss, The\",Hardcore,RED,Desann,25\r\n"));
}

TEST_F(BotPage, ThePickerOpensWithItsDefaults)
{
    load();
    frmBOT* picker = openPicker();
    ASSERT_NE(picker, nullptr);
    EXPECT_TRUE(picker->isVisible());
    EXPECT_FALSE(picker->isModal());
    EXPECT_TRUE(picker->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(in<QLineEdit>(picker, "txtBOTName")->text(), QStringLiteral("Desann"));
    EXPECT_TRUE(in<QRadioButton>(picker, "chkBOT(0)")->isChecked());
    EXPECT_EQ(in<QComboBox>(picker, "cboSkill")->currentText(), QStringLiteral("Hurt Me Plenty "));
    EXPECT_EQ(in<QComboBox>(picker, "cboTeam")->currentText(), QStringLiteral("RED"));
    EXPECT_EQ(in<QLineEdit>(picker, "txtBOTPing")->text(), QStringLiteral("0"));
    EXPECT_EQ(in<QTableWidget>(picker, "grdBOTs")->rowCount(), 0) << "no BOT.txt: the heading alone";
    EXPECT_FALSE(in<QLabel>(picker, "lblTheSelectedBOT")->isVisibleTo(picker));
    EXPECT_FALSE(in<QWidget>(picker, "pctCurrentProg")->isVisibleTo(picker));

    // Add again shows the same form.
    EXPECT_EQ(openPicker(), picker);
}

TEST_F(BotPage, OkAddsAStockBotUnderItsOwnNameAndCloses)
{
    load();
    QPointer<frmBOT> picker = openPicker();
    in<QRadioButton>(picker, "chkBOT(21)")->click();
    auto* name = in<QLineEdit>(picker, "txtBOTName");
    EXPECT_EQ(name->text(), QStringLiteral("Kyle"));
    name->setText(QStringLiteral("Big Boss"));
    in<QComboBox>(picker, "cboTeam")->setCurrentIndex(1);
    in<QLineEdit>(picker, "txtBOTPing")->setText(QStringLiteral("40"));
    in<QPushButton>(picker, "cmdOk(0)")->click();

    EXPECT_EQ(rosterBots(*profile),
              (QList<QStringList>{{QStringLiteral("Big_Boss"), QStringLiteral("Hurt Me Plenty "),
                                   QStringLiteral("BLUE"), QStringLiteral("Kyle"), QStringLiteral("40")}}));
    ASSERT_EQ(roster->rowCount(), 1);
    EXPECT_EQ(roster->item(0, 0)->background().color(), QColor(Qt::blue));
    EXPECT_TRUE(gone(picker));
}

TEST_F(BotPage, OkWithABlankNameDoesNothing)
{
    load();
    QPointer<frmBOT> picker = openPicker();
    in<QLineEdit>(picker, "txtBOTName")->setText(QStringLiteral("   "));
    in<QPushButton>(picker, "cmdOk(0)")->click();
    EXPECT_EQ(rosterBotCount(*profile), 0);
    EXPECT_FALSE(gone(picker));
    EXPECT_TRUE(t.prompts.shown.empty());

    in<QPushButton>(picker, "cmdOk(1)")->click();
    EXPECT_TRUE(gone(picker)) << "Cancel unloads";
    EXPECT_EQ(rosterBotCount(*profile), 0);
}

TEST_F(BotPage, TheCustomTabPicksAnInstalledModel)
{
    steward::testing::writeFile(t.programFolder() + QStringLiteral("/BOT.txt"), "Kyle2,kyle2.pk3\r\n,empty.pk3\r\n");
    load();
    QPointer<frmBOT> picker = openPicker();
    auto* tabs = in<QTabWidget>(picker, "tabBOTs");
    auto* grid = in<QTableWidget>(picker, "grdBOTs");
    auto* name = in<QLineEdit>(picker, "txtBOTName");
    auto* selected = in<QLabel>(picker, "lblTheSelectedBOT");
    ASSERT_EQ(grid->rowCount(), 2);

    tabs->setCurrentIndex(1);
    EXPECT_TRUE(picker->customTab());
    EXPECT_EQ(name->text(), QString());
    emit grid->cellClicked(0, 1);
    EXPECT_EQ(name->text(), QStringLiteral("Kyle2"));
    EXPECT_EQ(selected->text(), QStringLiteral("Kyle2"));
    EXPECT_TRUE(selected->isVisibleTo(picker));
    EXPECT_TRUE(in<QLabel>(picker, "lblSelectedBOT")->isVisibleTo(picker));
    // An empty cell takes the pick back.
    emit grid->cellClicked(1, 0);
    EXPECT_EQ(name->text(), QString());
    EXPECT_FALSE(selected->isVisibleTo(picker));
    emit grid->cellClicked(0, 0);

    name->setText(QStringLiteral("Kyle Two"));
    in<QPushButton>(picker, "cmdOk(0)")->click();
    EXPECT_EQ(rosterBots(*profile).value(0).value(0), QStringLiteral("Kyle_Two"));
    EXPECT_EQ(rosterBots(*profile).value(0).value(3), QStringLiteral("Kyle2"));
    EXPECT_TRUE(gone(picker));
}

TEST_F(BotPage, ChangingTheTabEmptiesTheNameAndTheCustomTabWithoutAPickAddsNoModel)
{
    load();
    frmBOT* picker = openPicker();
    auto* tabs = in<QTabWidget>(picker, "tabBOTs");
    in<QRadioButton>(picker, "chkBOT(3)")->click();
    tabs->setCurrentIndex(1);
    tabs->setCurrentIndex(0);
    EXPECT_FALSE(picker->customTab());
    EXPECT_EQ(in<QLineEdit>(picker, "txtBOTName")->text(), QString());
    EXPECT_TRUE(in<QRadioButton>(picker, "chkBOT(3)")->isChecked());

    tabs->setCurrentIndex(1);
    in<QLineEdit>(picker, "txtBOTName")->setText(QStringLiteral("Typed"));
    in<QPushButton>(picker, "cmdOk(0)")->click();
    EXPECT_EQ(rosterBots(*profile).value(0).value(0), QStringLiteral("Typed"));
    EXPECT_EQ(rosterBots(*profile).value(0).value(3), QString());
}

TEST_F(BotPage, ThePickersKeys)
{
    load();
    frmBOT* picker = openPicker();
    auto* skill = in<QComboBox>(picker, "cboSkill");
    key(skill, Qt::Key_Down);
    key(skill, Qt::Key_H, QStringLiteral("h"));
    EXPECT_EQ(skill->currentText(), QStringLiteral("Hurt Me Plenty ")) << "the lists take no keys";

    auto* ping = in<QLineEdit>(picker, "txtBOTPing");
    ping->clear();
    key(ping, Qt::Key_4, QStringLiteral("4"));
    key(ping, Qt::Key_A, QStringLiteral("a"));
    key(ping, Qt::Key_Period, QStringLiteral("."));
    key(ping, Qt::Key_2, QStringLiteral("2"));
    // A letter is refused on both filters; "." is refused on the way down but its
    // character lies in the range 40 to 57 that the character filter lets through.
    EXPECT_EQ(ping->text(), QStringLiteral("4.2"));
    EXPECT_EQ(t.beeper.beeps, 3);

    // Enter moves on as Tab does.
    auto* name = in<QLineEdit>(picker, "txtBOTName");
    picker->activateWindow();
    name->setFocus();
    QApplication::processEvents();
    if (QApplication::focusWidget() != name)
        GTEST_SKIP() << "the offscreen platform gave no focus";
    key(name, Qt::Key_Return);
    EXPECT_NE(QApplication::focusWidget(), name);
    EXPECT_EQ(rosterBotCount(*profile), 0) << "Enter presses no button";
}

TEST_F(BotPage, TheScanFillsTheInstalledModels)
{
    ASSERT_TRUE(ZipBuilder()
                    .file(QStringLiteral("models/players/Kyle2/model.glm"))
                    .write(t.baseFolder() + QStringLiteral("/kyle2.pk3")));
    load();
    frmBOT* picker = openPicker();
    t.prompts.answerNext(Answer::Yes);
    in<QPushButton>(picker, "cmdOk(2)")->click();
    auto* grid = in<QTableWidget>(picker, "grdBOTs");
    ASSERT_EQ(grid->rowCount(), 1);
    EXPECT_EQ(grid->item(0, 0)->text(), QStringLiteral("Kyle2"));
    EXPECT_EQ(grid->item(0, 1)->text(), QStringLiteral("kyle2.pk3"));
    EXPECT_EQ(t.prompts.texts(), (QStringList{QStringLiteral("Run a new BOT scan?         "),
                                              QStringLiteral("BOT scan complete. 1 have been found         ")}));
    EXPECT_FALSE(in<QWidget>(picker, "pctCurrentProg")->isVisibleTo(picker));
}

TEST_F(BotPage, AFailedScanClosesThePickerAndSaysWhy)
{
    load();
    t.app->gameFolder = t.root() + QStringLiteral("/nowhere");
    QPointer<frmBOT> picker = openPicker();
    t.prompts.answerNext(Answer::Yes);
    in<QPushButton>(picker, "cmdOk(2)")->click();
    EXPECT_TRUE(gone(picker));
    ASSERT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {QStringLiteral("arena-steward::CMapScanner.ExtractLevelShots(Function) (arena-steward)"),
                       Icon::Information, QStringLiteral("Path not found")}));
}

TEST_F(BotPage, ViewOpensTheBotFile)
{
    load();
    profile->setValue(F::chkBOTs(0), 1);
    profile->setValue(F::chkBOTs(5), 1);
    appendRosterBot(*profile, {QStringLiteral("Gnubee"), QStringLiteral("Hardcore"), QStringLiteral("RED"),
                               QStringLiteral("Desann"), QStringLiteral("25")});
    press(QStringLiteral("cmdBOTs(4)"));
    ASSERT_EQ(t.opener.opened.size(), 1u);
    EXPECT_TRUE(t.opener.opened.front().toLocalFile().endsWith(QStringLiteral("/BOTFile.cfg")));
}

} // namespace
