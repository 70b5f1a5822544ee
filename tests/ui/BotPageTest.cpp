// The BOT page and the picker frmBOT on the real windows, offscreen: what reaches the
// roster, the picker's tabs and keys, its scan, and the roster's colours.
#include "bots/BotPicker.h"
#include "bots/BotRoster.h"
#include "ui/WiredMainWindow.h"
#include "ui/frmBOT.h"

namespace {

class BotPage : public WiredMainWindow {
protected:
    void load()
    {
        openMainWindow();
        roster = window->control<QTableWidget>(u"grdBOTList"_s);
        ASSERT_NE(roster, nullptr);
    }
    bool shown(const QString& key) const { return !window->control(key)->isHidden(); }
    void openPicker()
    {
        if (!window)
            load();
        window->control<QPushButton>(u"cmdBOTs(3)"_s)->click();
        picker = window->findChild<frmBOT*>(u"frmBOT"_s);
        ASSERT_NE(picker, nullptr);
    }
    template <typename T = QPushButton>
    T* in(const char* name)
    {
        return child<T>(picker, QString::fromLatin1(name));
    }
    bool gone()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return picker.isNull();
    }
    QStringList firstBot() const { return rosterBots(*profile).value(0); }
    QTableWidget* roster = nullptr;
    QPointer<frmBOT> picker;
};

TEST_F(BotPage, TheStoredLayoutAndLastBotsComeBackInTheTeamsColoursTheBoxSwitchesAndCloseKeepsThem)
{
    t.store->SaveSetting(u"BOTs5"_s, u"1"_s);
    writeFile(t.programFolder() + u"/lastbots.csv"_s,
              "Gnubee,Hardcore,RED,Desann,25\r\nLuke,Nightmare,BLUE,Luke,0\r\nOdd,,blue,Jan,1\r\n");
    load();
    ASSERT_EQ(roster->rowCount(), 3);
    const QColor expected[] = {Qt::red, Qt::blue, Qt::red};
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 5; ++c) {
            EXPECT_EQ(roster->item(r, c)->background().color(), expected[r]) << r << "," << c;
            EXPECT_EQ(roster->item(r, c)->foreground().color(), QColor(Qt::white));
        }
    EXPECT_EQ(window->control<QComboBox>(u"cboBOT"_s)->currentText(), u"Hurt Me Plenty "_s);
    for (const bool on : {true, false, true}) {
        if (profile->value(F::chkBOTs(5)) != on)
            window->control<QCheckBox>(u"chkBOTs(5)"_s)->click();
        for (const QString& key : {u"grdBOTList"_s, u"cmdBOTs(0)"_s, u"cmdBOTs(4)"_s})
            EXPECT_EQ(shown(key), on) << key.toStdString();
        for (const QString& key : {u"cboBOT"_s, u"lblServerConfig(42)"_s, u"updBOTThinkTime"_s})
            EXPECT_EQ(shown(key), !on) << key.toStdString();
    }
    replaceRosterBots(*profile, {{u"Boss, The"_s, u"Hardcore"_s, u"RED"_s, u"Desann"_s, u"25"_s}});
    click(u"cmdCancel"_s);
    EXPECT_EQ(fileBytes(t.programFolder() + u"/lastbots.csv"_s),
              QByteArray("\"Boss, The\",Hardcore,RED,Desann,25\r\n"));
}

TEST_F(BotPage, ThePickerOpensOnceWithItsDefaultsOkAddsAStockBotAndViewOpensTheBotFile)
{
    openPicker();
    EXPECT_FALSE(picker->isModal());
    EXPECT_TRUE(picker->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(in<QLineEdit>("txtBOTName")->text(), u"Desann"_s);
    EXPECT_TRUE(in<QRadioButton>("chkBOT(0)")->isChecked());
    EXPECT_EQ(in<QComboBox>("cboSkill")->currentText(), u"Hurt Me Plenty "_s);
    EXPECT_EQ(in<QComboBox>("cboTeam")->currentText(), u"RED"_s);
    EXPECT_EQ(in<QLineEdit>("txtBOTPing")->text(), u"0"_s);
    EXPECT_EQ(in<QTableWidget>("grdBOTs")->rowCount(), 0) << "no BOT.txt: the heading alone";
    EXPECT_FALSE(in<QWidget>("pctCurrentProg")->isVisibleTo(picker));
    window->control<QPushButton>(u"cmdBOTs(3)"_s)->click();
    EXPECT_EQ(window->findChildren<frmBOT*>(), QList<frmBOT*>{picker}) << "Add again shows the same form";
    in<QRadioButton>("chkBOT(21)")->click();
    EXPECT_EQ(in<QLineEdit>("txtBOTName")->text(), u"Kyle"_s);
    in<QLineEdit>("txtBOTName")->setText(u"Big Boss"_s);
    in<QComboBox>("cboTeam")->setCurrentIndex(1);
    in<QLineEdit>("txtBOTPing")->setText(u"40"_s);
    in("cmdOk(0)")->click();
    EXPECT_EQ(rosterBots(*profile),
              (QList<QStringList>{{u"Big_Boss"_s, u"Hurt Me Plenty "_s, u"BLUE"_s, u"Kyle"_s, u"40"_s}}));
    EXPECT_EQ(roster->item(0, 0)->background().color(), QColor(Qt::blue));
    EXPECT_TRUE(gone());
    openPicker();
    in("cmdOk(1)")->click();
    EXPECT_TRUE(gone()) << "Cancel unloads";
    EXPECT_EQ(rosterBotCount(*profile), 1);
    profile->setValue(F::chkBOTs(0), 1);
    profile->setValue(F::chkBOTs(5), 1);
    click(u"cmdBOTs(4)"_s);
    ASSERT_EQ(t.opener.opened.size(), 1u);
    EXPECT_TRUE(t.opener.opened.front().toLocalFile().endsWith(u"/BOTFile.cfg"_s));
}

TEST_F(BotPage, TheCustomTabPicksAnInstalledModelAndAChangeOfTabEmptiesTheName)
{
    writeFile(t.programFolder() + u"/BOT.txt"_s, "Kyle2,kyle2.pk3\r\n,empty.pk3\r\n");
    openPicker();
    auto* grid = in<QTableWidget>("grdBOTs");
    auto* name = in<QLineEdit>("txtBOTName");
    auto* selected = in<QLabel>("lblTheSelectedBOT");
    auto* tabs = in<QTabWidget>("tabBOTs");
    ASSERT_EQ(grid->rowCount(), 2);
    in<QRadioButton>("chkBOT(3)")->click();
    tabs->setCurrentIndex(1);
    EXPECT_TRUE(picker->customTab());
    EXPECT_EQ(name->text(), QString());
    EXPECT_FALSE(selected->isVisibleTo(picker));
    emit grid->cellClicked(0, 1);
    EXPECT_EQ(name->text(), u"Kyle2"_s);
    EXPECT_EQ(selected->text(), u"Kyle2"_s);
    EXPECT_TRUE(selected->isVisibleTo(picker));
    EXPECT_TRUE(in<QLabel>("lblSelectedBOT")->isVisibleTo(picker));
    emit grid->cellClicked(1, 0); // an empty cell takes the pick back
    EXPECT_EQ(name->text(), QString());
    EXPECT_FALSE(selected->isVisibleTo(picker));
    emit grid->cellClicked(0, 0);
    name->setText(u"Kyle Two"_s);
    in("cmdOk(0)")->click();
    EXPECT_EQ(firstBot().value(0), u"Kyle_Two"_s);
    EXPECT_EQ(firstBot().value(3), u"Kyle2"_s);
    EXPECT_TRUE(gone());
}

TEST_F(BotPage, ThePickersKeys)
{
    openPicker();
    auto* skill = in<QComboBox>("cboSkill");
    sendKey(skill, Qt::Key_Down);
    sendKey(skill, Qt::Key_H, u"h"_s);
    EXPECT_EQ(skill->currentText(), u"Hurt Me Plenty "_s) << "the lists take no keys";
    auto* ping = in<QLineEdit>("txtBOTPing");
    ping->clear();
    for (const auto& [key, text] :
         {std::pair{Qt::Key_4, "4"}, {Qt::Key_A, "a"}, {Qt::Key_Period, "."}, {Qt::Key_2, "2"}})
        sendKey(ping, key, QString::fromLatin1(text));
    EXPECT_EQ(ping->text(), u"4.2"_s) << "the numeric filters are on";
    EXPECT_EQ(t.beeper.beeps, 3);
    auto* name = in<QLineEdit>("txtBOTName"); // Enter moves on as Tab does
    picker->activateWindow();
    name->setFocus();
    QApplication::processEvents();
    if (QApplication::focusWidget() != name)
        GTEST_SKIP() << "the offscreen platform gave no focus";
    sendKey(name, Qt::Key_Return);
    EXPECT_NE(QApplication::focusWidget(), name);
    EXPECT_EQ(rosterBotCount(*profile), 0) << "Enter presses no button";
}

TEST_F(BotPage, AFailedScanClosesThePickerAndSaysWhyAndAScanFillsTheInstalledModels)
{
    ASSERT_TRUE(ZipBuilder().file(u"models/players/Kyle2/model.glm"_s).write(t.baseFolder() + u"/kyle2.pk3"_s));
    const QString gameFolder = t.app->gameFolder;
    t.app->gameFolder = t.root() + u"/nowhere"_s;
    openPicker();
    t.prompts.answerNext(Answer::Yes);
    in("cmdOk(2)")->click();
    EXPECT_TRUE(gone());
    ASSERT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(isBox(t.prompts.last(), {u"arena-steward::CMapScanner.ExtractLevelShots(Function) (arena-steward)"_s,
                                         Icon::Information, u"Path not found"_s}));
    t.app->gameFolder = gameFolder;
    t.prompts.shown.clear();
    openPicker();
    t.prompts.answerNext(Answer::Yes);
    in("cmdOk(2)")->click();
    auto* grid = in<QTableWidget>("grdBOTs");
    ASSERT_EQ(grid->rowCount(), 1);
    EXPECT_EQ(grid->item(0, 0)->text(), u"Kyle2"_s);
    EXPECT_EQ(grid->item(0, 1)->text(), u"kyle2.pk3"_s);
    EXPECT_EQ(t.prompts.texts(),
              (QStringList{u"Run a new BOT scan?         "_s, u"BOT scan complete. 1 have been found         "_s}));
    EXPECT_FALSE(in<QWidget>("pctCurrentProg")->isVisibleTo(picker));
}

} // namespace
