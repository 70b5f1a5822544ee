// The main window as a view of the profile: every field has its control, with the
// field's name, caption, Tag, tooltip and default, on its page and in its frame.
#include "model/Constants.h"
#include "commands/MainFormLoad.h"
#include "model/ServerProfile.h"
#include "testkit/TestApp.h"
#include "ui/frmMain.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTabWidget>
#include <gtest/gtest.h>

using namespace steward;

namespace {

class MainWindowFields : public ::testing::Test {
protected:
    void TearDown() override { delete window.data(); }

    QWidget* find(const QString& name) const { return window->findChild<QWidget*>(name); }
    QTabWidget* tabs(const QString& name) const { return window->findChild<QTabWidget*>(name); }

    steward::testing::TestApp t;
    QPointer<frmMain> window = new frmMain(*t.app);
};

QStringList range(const QString& name, int first, int last)
{
    QStringList keys;
    for (int i = first; i <= last; ++i)
        keys << QStringLiteral("%1(%2)").arg(name).arg(i);
    return keys;
}

} // namespace

TEST_F(MainWindowFields, EveryFieldHasAControlWithItsCaptionTagTooltipAndDefault)
{
    int checked = 0;
    for (const FieldDefinition& definition : profileFieldTable()) {
        const QString key = Field::makeKey(definition.name, definition.index);
        SCOPED_TRACE(key.toStdString());
        QWidget* control = find(key);
        if (definition.kind == FieldKind::State && key != QLatin1String("vsMainTab") && key != QLatin1String("picMap") &&
            key != QLatin1String("vsExtraGameFlags")) {
            continue;
        }
        ASSERT_NE(control, nullptr) << "no control named " << key.toStdString();
        ++checked;
        EXPECT_EQ(control->property("Tag").toString(), definition.tag);
        EXPECT_EQ(control->toolTip(), definition.tooltip);
        EXPECT_FALSE(control->isHidden());

        if (!definition.captionLabel.isEmpty()) {
            auto* label = window->findChild<QLabel*>(definition.captionLabel);
            ASSERT_NE(label, nullptr) << "no caption label " << definition.captionLabel.toStdString();
            EXPECT_EQ(label->text(), definition.caption);
            EXPECT_EQ(label->buddy(), control) << "the label's access key leads to its control";
            EXPECT_FALSE(label->isHidden());
        }

        switch (definition.kind) {
        case FieldKind::Text:
            ASSERT_NE(qobject_cast<QLineEdit*>(control), nullptr);
            EXPECT_EQ(qobject_cast<QLineEdit*>(control)->text(), definition.defaultText);
            break;
        case FieldKind::Check:
        case FieldKind::Option: {
            auto* button = qobject_cast<QAbstractButton*>(control);
            ASSERT_NE(button, nullptr);
            EXPECT_EQ(button->text(), definition.caption);
            EXPECT_EQ(button->isChecked(), definition.defaultText == QLatin1String("1"));
            break;
        }
        case FieldKind::Combo:
            ASSERT_NE(qobject_cast<QComboBox*>(control), nullptr);
            EXPECT_EQ(qobject_cast<QComboBox*>(control)->currentText(), definition.defaultText);
            break;
        case FieldKind::Label:
            ASSERT_NE(qobject_cast<QLabel*>(control), nullptr);
            EXPECT_EQ(qobject_cast<QLabel*>(control)->text(), definition.defaultText);
            break;
        default:
            break;
        }
    }
    EXPECT_GT(checked, 150);
}

TEST_F(MainWindowFields, TabCaptionsAreTheLiteralListsWithTheirBlanks)
{
    QTabWidget* main = tabs(QStringLiteral("vsMainTab"));
    ASSERT_NE(main, nullptr);
    const QStringList captions = {QStringLiteral("Server     "), QStringLiteral("Game       "),
                                  QStringLiteral("Map        "), QStringLiteral("BOT        "),
                                  QStringLiteral("Misc.      "), QStringLiteral("Information")};
    ASSERT_EQ(main->count(), captions.size());
    for (int i = 0; i < main->count(); ++i)
        EXPECT_EQ(main->tabText(i), captions.at(i)) << i;

    QTabWidget* game = tabs(QStringLiteral("vsExtraGameFlags"));
    ASSERT_NE(game, nullptr);
    EXPECT_TRUE(main->widget(1)->isAncestorOf(game));
    const QStringList sub = {QStringLiteral("Game"), QStringLiteral("Weapon Flags"), QStringLiteral("Force Flags"),
                             QStringLiteral("DM Flags"), QStringLiteral("Advanced Saber")};
    ASSERT_EQ(game->count(), sub.size());
    for (int i = 0; i < game->count(); ++i)
        EXPECT_EQ(game->tabText(i), sub.at(i)) << i;
}

TEST_F(MainWindowFields, FieldsSitInTheirFrames)
{
    struct Frame {
        const char* name;
        const char* caption;
        QStringList members;
    };
    const Frame frames[] = {
        {"fraGameType(4)", "Server Type", range(QStringLiteral("chkServerType"), 0, 2)},
        {"fraGameType(2)", "Jedi Knight 2 Options",
         QStringList{QStringLiteral("txtWeaponEnhancer"), QStringLiteral("txtKnockBack"), QStringLiteral("txtWeapRespawn"),
                     QStringLiteral("txtMaxForceRank"), QStringLiteral("txtMaxHolocronCarry"),
                     QStringLiteral("txtForceReGen(0)"), QStringLiteral("txtMapTimeOut")} +
             range(QStringLiteral("txtSpeed"), 0, 3) + range(QStringLiteral("chkQuake3Specific"), 0, 18)},
        {"fraGameType(1)", "Game Limits", range(QStringLiteral("txtGameLimits"), 0, 3)},
        {"fraGameType(0)", "Game Type", range(QStringLiteral("optDefaultGameType"), 0, 6)},
        {"fraWeaponFlags(0)", "Weapons (check to disable)",
         range(QStringLiteral("chkWeaponFlags"), 0, 15) << QStringLiteral("txtWeaponFlags")},
        {"fraWeaponFlags(2)", "Duel Weapons (check to disable)",
         range(QStringLiteral("chkWeaponFlags"), 16, 31) << QStringLiteral("txtDuelWeaponFlags")},
        {"fraWeaponFlags(1)", "Force Power (check to disable)",
         range(QStringLiteral("chkPowerUpFlags"), 0, 17) << QStringLiteral("txtForceFlags")},
        {"fraDMFlags", "DM Flags", range(QStringLiteral("chkDMFlags"), 0, 2) << QStringLiteral("txtDMFlags")},
        {"Frame1", "Options", range(QStringLiteral("txtAdvancedSaber"), 0, 3) + range(QStringLiteral("chkAdvancedSaber"), 0, 2)},
        {"fraBOTs", "Options",
         range(QStringLiteral("chkBOTs"), 0, 5) << QStringLiteral("cboBOT") << QStringLiteral("txtBOTThinkTime")
                                                 << QStringLiteral("updBOTThinkTime")},
        {"fraAdditionalCfg", "Additional configs to execute", range(QStringLiteral("cboConfig"), 0, 3)},
        {"Frame7(1)", "Stats Logging", range(QStringLiteral("optLogging"), 4, 5) << QStringLiteral("txtStatsLogName")},
        {"Frame7(0)", "Game Logging", range(QStringLiteral("optLogging"), 0, 3) << QStringLiteral("txtLogFileName")},
        {"fraGameType(5)", "IP Banning",
         QStringList{QStringLiteral("txtServerIP"), QStringLiteral("lstBannedIPs")} +
             range(QStringLiteral("cmdThreeWave"), 2, 4)},
        {"fraPurge", "On Startup", {QStringLiteral("optStartMinimize"), QStringLiteral("optStartClose")}},
        {"fraMsg", "Messaging",
         range(QStringLiteral("txtMsg"), 0, 1) << QStringLiteral("chkSendMessage") << QStringLiteral("txtMsgTimer")
                                               << QStringLiteral("Label6(1)")},
        {"Frame3", "Additional Master Servers",
         {QStringLiteral("txtMaster1"), QStringLiteral("txtMaster2"), QStringLiteral("txtMaster3"),
          QStringLiteral("txtMaster4"), QStringLiteral("txtMaster5")}},
    };
    for (const Frame& frame : frames) {
        SCOPED_TRACE(frame.name);
        auto* box = window->findChild<QGroupBox*>(QString::fromLatin1(frame.name));
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->title(), QString::fromLatin1(frame.caption));
        for (const QString& member : frame.members) {
            QWidget* control = find(member);
            ASSERT_NE(control, nullptr) << member.toStdString();
            EXPECT_TRUE(box->isAncestorOf(control)) << member.toStdString();
        }
    }
}

TEST_F(MainWindowFields, ControlsSitOnTheirPages)
{
    QTabWidget* main = tabs(QStringLiteral("vsMainTab"));
    QTabWidget* game = tabs(QStringLiteral("vsExtraGameFlags"));
    const std::pair<QWidget*, QStringList> pages[] = {
        {main->widget(0), range(QStringLiteral("txtServerConfig"), 0, 16) + range(QStringLiteral("txtServerConfigSpin"), 0, 17) +
                              range(QStringLiteral("chkServerType"), 0, 2) + QStringList{QStringLiteral("cmdIP")}},
        {game->widget(1), {QStringLiteral("lblSaberModeDuel")}},
        {main->widget(2),
         {QStringLiteral("tvwAvailMaps"), QStringLiteral("lsvMapRotation"), QStringLiteral("cboStartingMap"),
          QStringLiteral("chkMapAutoCycle"), QStringLiteral("chkUseINI"), QStringLiteral("txtServerINI"),
          QStringLiteral("picMap"), QStringLiteral("lblLongMapName"), QStringLiteral("lblNumberOfMapsAvailable"),
          QStringLiteral("lblMapsSelected"), QStringLiteral("lblMapType"), QStringLiteral("lblServerConfig(32)"),
          QStringLiteral("lblSelectedMaps"), QStringLiteral("lblServerConfig(34)")}},
        {main->widget(3), range(QStringLiteral("cmdBOTs"), 0, 4) + QStringList{QStringLiteral("grdBOTList"),
                                                                               QStringLiteral("lblCTFMapNote(2)"),
                                                                               QStringLiteral("Label1")}},
        {main->widget(5), range(QStringLiteral("lblInfo"), 0, 12) << QStringLiteral("lblLink")},
    };
    for (const auto& [page, members] : pages)
        for (const QString& member : members) {
            QWidget* control = find(member);
            ASSERT_NE(control, nullptr) << member.toStdString();
            EXPECT_TRUE(page->isAncestorOf(control)) << member.toStdString();
        }
}

TEST_F(MainWindowFields, StaticControlsCarryTheirCaptionsAndTooltips)
{
    struct Control {
        const char* name;
        QString text;
        QString tooltip;
    };
    const Control controls[] = {
        {"cmdOk", QStringLiteral("&OK"), {}},
        {"cmdCancel", QStringLiteral("&Close"), {}},
        {"cmdDefault", QStringLiteral("&Defaults"), QStringLiteral("Set current settings as default settings")},
        {"cmdReset", QStringLiteral("&Reset"), QStringLiteral("Reset Arena Steward")},
        {"cmdTrayIt", QStringLiteral("Send to Tray"), {}},
        {"cmdIP", QStringLiteral("Get Local I.P"), {}},
        {"cmdBOTs(0)", QStringLiteral("Save"), {}},
        {"cmdBOTs(1)", QStringLiteral("Load"), {}},
        {"cmdBOTs(2)", QStringLiteral("Clear"), {}},
        {"cmdBOTs(3)", QStringLiteral("Add"), {}},
        {"cmdBOTs(4)", QStringLiteral("View"), {}},
        {"cmdThreeWave(2)", QStringLiteral("Add IP"), {}},
        {"cmdThreeWave(3)", QStringLiteral("Delete selected ip"), {}},
        {"cmdThreeWave(4)", QStringLiteral("Clear list"), {}},
    };
    for (const Control& c : controls) {
        auto* button = window->findChild<QAbstractButton*>(QString::fromLatin1(c.name));
        ASSERT_NE(button, nullptr) << c.name;
        EXPECT_EQ(button->text(), c.text) << c.name;
        EXPECT_EQ(button->toolTip(), c.tooltip) << c.name;
    }
    const std::pair<const char*, QString> labels[] = {
        {"lblCTFMapNote(2)",
         QStringLiteral("Make sure the selected map(s) support BOT's otherwise you will get various errors displayed in "
                        "the console when trying to load the custom map.")},
        {"Label6(1)", QStringLiteral("minutes")},
        {"lblInfo(1)", QStringLiteral("Other server utilities available")},
        {"lblInfo(11)", QStringLiteral("All our programs are free, however, you are more than welcome to make a "
                                       "donation so that we can continue to offer free server utilites to the gaming "
                                       "community.")},
        {"lblInfo(12)", QStringLiteral("more to follow....")},
        {"lblLink", QStringLiteral("Arena Steward Forums")},
    };
    for (const auto& [name, text] : labels) {
        auto* label = window->findChild<QLabel*>(QString::fromLatin1(name));
        ASSERT_NE(label, nullptr) << name;
        EXPECT_EQ(label->text(), text) << name;
        EXPECT_FALSE(label->isHidden()) << name;
    }
    auto* thanks = window->findChild<QLabel*>(QStringLiteral("lblInfo(0)"));
    ASSERT_NE(thanks, nullptr);
    EXPECT_TRUE(thanks->text().contains(kContactAddress));
    EXPECT_TRUE(find(QStringLiteral("Label1"))->isHidden()) << "the leftover label is never shown";
}

TEST_F(MainWindowFields, AtItsDesignedSizeEveryPageFitsWithNothingSqueezed)
{
    MainFormLoad(*t.app, window->profile(), *window);
    EXPECT_EQ(window->size(), QSize(640, 499));
    // Room for a menu bar above the tabs.
    const QSize needed = window->minimumSizeHint();
    EXPECT_LE(needed.width(), 640);
    EXPECT_LE(needed.height() + 30, 499);

    window->show();
    QTabWidget* main = tabs(QStringLiteral("vsMainTab"));
    QTabWidget* game = tabs(QStringLiteral("vsExtraGameFlags"));
    for (int page = 0; page < main->count(); ++page) {
        main->setCurrentIndex(page);
        for (int sub = 0; sub < (page == 1 ? game->count() : 1); ++sub) {
            if (page == 1)
                game->setCurrentIndex(sub);
            QApplication::processEvents();
            for (QWidget* w : main->currentWidget()->findChildren<QWidget*>()) {
                if (!w->isVisible() || w->objectName().isEmpty() || qobject_cast<QTabWidget*>(w))
                    continue;
                const QSize least = w->minimumSizeHint();
                EXPECT_GE(w->width(), least.width()) << w->objectName().toStdString();
                EXPECT_GE(w->height(), least.height()) << w->objectName().toStdString();
                EXPECT_TRUE(window->rect().contains(QRect(w->mapTo(window.data(), QPoint(0, 0)), w->size())))
                    << w->objectName().toStdString() << " runs out of the window";
            }
        }
    }
}
