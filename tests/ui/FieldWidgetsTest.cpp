// The bound controls keep their field and themselves in step both ways: a change from
// code shows at once, a user's edit reaches the field, and neither runs round in a loop.
#include "model/ServerProfile.h"
#include "testkit/TestApp.h"
#include "ui/FieldWidgets.h"
#include "ui/frmMain.h"

#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QTabWidget>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace steward;

namespace {

/// Types text into a control as the keyboard would.
void type(QWidget* target, const QString& text)
{
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(target, &press);
    }
}

void pressKey(QWidget* target, Qt::Key key)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(target, &press);
}

class Bindings : public ::testing::Test {
protected:
    Field& field(FieldId name) { return profile.field(name); }
    ServerProfile profile;
    QWidget parent;
};

} // namespace

TEST_F(Bindings, TextBoxFollowsItsFieldAndTheFieldFollowsTyping)
{
    Field& port = field(F::txtServerConfig(12));
    BoundLineEdit box(port, &parent);
    EXPECT_EQ(box.text(), QStringLiteral("28070"));

    port.setText(QStringLiteral("29070"));
    EXPECT_EQ(box.text(), QStringLiteral("29070"));

    int changes = 0;
    QObject::connect(&port, &Field::textChanged, [&changes] { ++changes; });
    box.selectAll();
    type(&box, QStringLiteral("1"));
    EXPECT_EQ(port.text(), QStringLiteral("1"));
    type(&box, QStringLiteral("2"));
    EXPECT_EQ(port.text(), QStringLiteral("12"));
    EXPECT_EQ(changes, 2) << "one change of the field for each keystroke, none echoed back";

    pressKey(&box, Qt::Key_Backspace);
    EXPECT_EQ(port.text(), QStringLiteral("1"));
}

TEST_F(Bindings, PasswordBoxesShowAStarForEachCharacter)
{
    for (int index : {13, 14, 15}) {
        Field& password = field(F::txtServerConfig(index));
        BoundLineEdit box(password, &parent);
        password.setText(QStringLiteral("s3cret"));
        EXPECT_EQ(box.echoMode(), QLineEdit::Password) << index;
        EXPECT_EQ(box.displayText(), QStringLiteral("******")) << index;
        EXPECT_EQ(box.text(), QStringLiteral("s3cret"));
    }
    BoundLineEdit plain(field(F::txtServerConfig(12)), &parent);
    EXPECT_EQ(plain.displayText(), QStringLiteral("28070"));
}

TEST_F(Bindings, CheckBoxAndFieldValueStayTogether)
{
    Field& voting = field(F::chkQuake3Specific(0));
    BoundCheckBox box(voting, &parent);
    EXPECT_FALSE(box.isChecked());
    box.click();
    EXPECT_EQ(voting.value(), 1);
    voting.setValue(0);
    EXPECT_FALSE(box.isChecked());

    int changes = 0;
    QObject::connect(&voting, &Field::valueChanged, [&changes] { ++changes; });
    voting.setValue(1);
    EXPECT_TRUE(box.isChecked());
    EXPECT_EQ(changes, 1);
}

TEST_F(Bindings, OptionButtonsFollowTheirGroupAndAClickNeverClearsThem)
{
    std::vector<std::unique_ptr<BoundRadioButton>> types;
    for (int i = 0; i <= 6; ++i)
        types.push_back(std::make_unique<BoundRadioButton>(field(F::optDefaultGameType(i)), &parent));
    EXPECT_TRUE(types[0]->isChecked());

    types[3]->click();
    EXPECT_EQ(field(F::optDefaultGameType(3)).value(), 1);
    EXPECT_EQ(field(F::optDefaultGameType(0)).value(), 0);
    EXPECT_FALSE(types[0]->isChecked());

    types[3]->click();
    EXPECT_TRUE(types[3]->isChecked()) << "clicking the selected option leaves it selected";
    EXPECT_EQ(field(F::optDefaultGameType(3)).value(), 1);

    // Code may clear the whole group, which the buttons show.
    field(F::optDefaultGameType(3)).setValue(0);
    for (const auto& button : types)
        EXPECT_FALSE(button->isChecked());

    // The two logging groups sit in one array and don't touch each other.
    BoundRadioButton buffered(field(F::optLogging(1)), &parent);
    BoundRadioButton stats(field(F::optLogging(5)), &parent);
    buffered.click();
    EXPECT_TRUE(stats.isChecked());
}

TEST_F(Bindings, ComboKeepsItsTextWhenItsListChanges)
{
    Field& config = field(F::cboConfig(0));
    BoundComboBox combo(config, &parent);
    config.setText(QStringLiteral("server.cfg"));
    config.setItems({QStringLiteral("autoexec.cfg"), QStringLiteral("server.cfg")});
    EXPECT_EQ(combo.count(), 2);
    EXPECT_EQ(combo.currentText(), QStringLiteral("server.cfg"));
    EXPECT_EQ(config.text(), QStringLiteral("server.cfg")) << "filling the list doesn't change the text";

    combo.setCurrentIndex(0);
    EXPECT_EQ(config.text(), QStringLiteral("autoexec.cfg"));

    parent.show();
    QApplication::setActiveWindow(&parent);
    combo.setFocus();
    combo.lineEdit()->selectAll();
    type(combo.lineEdit(), QStringLiteral("a"));
    EXPECT_EQ(config.text(), QStringLiteral("a")) << "typing isn't completed from the list";
    combo.lineEdit()->selectAll();
    type(combo.lineEdit(), QStringLiteral("mine.cfg"));
    EXPECT_EQ(config.text(), QStringLiteral("mine.cfg"));

    config.setText(QStringLiteral("other.cfg"));
    EXPECT_EQ(combo.currentText(), QStringLiteral("other.cfg"));
    config.setItems({});
    EXPECT_EQ(combo.count(), 0);
    EXPECT_EQ(combo.currentText(), QStringLiteral("other.cfg"));
}

TEST_F(Bindings, ListShowsItsItemsAndSharesItsSelection)
{
    Field& banned = field(F::lstBannedIPs);
    BoundListWidget list(banned, &parent);
    banned.setItems({QStringLiteral("10.0.0.1"), QStringLiteral("10.0.0.2"), QStringLiteral("10.0.0.3")});
    ASSERT_EQ(list.count(), 3);
    EXPECT_EQ(list.item(2)->text(), QStringLiteral("10.0.0.3"));

    list.item(1)->setSelected(true);
    EXPECT_EQ(banned.selection(), QList<int>{1});

    banned.setSelection({0, 2});
    EXPECT_TRUE(list.item(0)->isSelected());
    EXPECT_FALSE(list.item(1)->isSelected());
    EXPECT_TRUE(list.item(2)->isSelected());

    banned.removeItem(0);
    ASSERT_EQ(list.count(), 2);
    EXPECT_EQ(list.item(0)->text(), QStringLiteral("10.0.0.2"));
    EXPECT_TRUE(list.item(1)->isSelected()) << "the selection moves with its item";
}

TEST_F(Bindings, TableTakesItsHeadingFromRowZero)
{
    Field& roster = field(F::grdBOTList);
    BoundTable table(roster, 5, true, &parent);
    roster.setRows({{QStringLiteral("NAME"), QStringLiteral("SKILL"), QStringLiteral("TEAM"), QStringLiteral("MODEL"),
                     QStringLiteral("PING")}});
    EXPECT_EQ(table.rowCount(), 0);
    EXPECT_EQ(table.horizontalHeaderItem(3)->text(), QStringLiteral("MODEL"));

    roster.addRow({QStringLiteral("Gnubee"), QStringLiteral("Hardcore"), QStringLiteral("RED"),
                   QStringLiteral("Desann"), QStringLiteral("25")});
    ASSERT_EQ(table.rowCount(), 1);
    EXPECT_EQ(table.item(0, 4)->text(), QStringLiteral("25"));

    table.selectRow(0);
    EXPECT_EQ(roster.selection(), QList<int>{1}) << "grid rows count from the heading";
}

TEST_F(Bindings, TreeShowsRowsOrItems)
{
    Field& rotation = field(F::lsvMapRotation);
    BoundTree grid(rotation, 4, &parent);
    rotation.addRow({QStringLiteral("ffa_bespin"), QStringLiteral("Bespin"), QStringLiteral("ffa")});
    rotation.addRow({QStringLiteral("ctf_yavin"), QStringLiteral("Yavin"), QStringLiteral("ctf")});
    ASSERT_EQ(grid.topLevelItemCount(), 2);
    EXPECT_EQ(grid.topLevelItem(1)->text(0), QStringLiteral("ctf_yavin"));
    EXPECT_EQ(grid.topLevelItem(1)->text(2), QStringLiteral("ctf"));
    rotation.removeRow(0);
    ASSERT_EQ(grid.topLevelItemCount(), 1);
    EXPECT_EQ(grid.topLevelItem(0)->text(0), QStringLiteral("ctf_yavin"));

    Field& maps = field(F::tvwAvailMaps);
    BoundTree tree(maps, 1, &parent);
    maps.setItems({QStringLiteral("Jedi"), QStringLiteral("assets0.pk3")});
    ASSERT_EQ(tree.topLevelItemCount(), 2);
    tree.setCurrentItem(tree.topLevelItem(1));
    EXPECT_EQ(maps.current(), 1);
}

TEST_F(Bindings, LabelShowsItsTextAndHidesWithItsCompanions)
{
    Field& note = field(F::lblSaberModeDuel);
    BoundLabel label(note, &parent);
    QLabel caption(QStringLiteral("caption"), &parent);
    FieldPresence::of(&label)->addCompanion(&caption);
    parent.show();
    EXPECT_EQ(label.text(), QStringLiteral("Saber only mode is encouraged in duel"));

    note.setVisible(false);
    EXPECT_TRUE(label.isHidden());
    EXPECT_TRUE(caption.isHidden());
    note.setVisible(true);
    EXPECT_TRUE(label.isVisible());
    EXPECT_TRUE(caption.isVisible());

    note.setEnabled(false);
    EXPECT_FALSE(label.isEnabled());
    EXPECT_FALSE(caption.isEnabled());

    note.setText(QStringLiteral("2 Selected Maps"));
    EXPECT_EQ(label.text(), QStringLiteral("2 Selected Maps"));
}

TEST_F(Bindings, PictureShowsTheFileItsFieldNames)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("shot.png"));
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(Qt::blue);
    ASSERT_TRUE(image.save(file));

    Field& picture = field(F::picMap);
    BoundPicture box(picture, &parent);
    box.resize(176, 132);
    picture.setText(file);
    EXPECT_FALSE(box.pixmap().isNull());
    EXPECT_LE(box.pixmap().width(), 176);

    picture.setText(dir.filePath(QStringLiteral("missing.jpg")));
    EXPECT_TRUE(box.pixmap().isNull()) << "a path without a picture shows nothing";
}

TEST_F(Bindings, SpinnerStepsTheLeadingNumberOfItsBuddy)
{
    Field& think = field(F::txtBOTThinkTime);
    UpDown spinner(think, &parent);
    spinner.stepBy(1);
    EXPECT_EQ(think.text(), QStringLiteral("101"));
    spinner.stepBy(-2);
    EXPECT_EQ(think.text(), QStringLiteral("99"));

    think.setText(QStringLiteral("12ms"));
    spinner.stepBy(1);
    EXPECT_EQ(think.text(), QStringLiteral("13"));

    think.setText(QStringLiteral("0"));
    spinner.stepBy(-1);
    EXPECT_EQ(think.text(), QStringLiteral("0")) << "no step below the lowest value";
}

TEST(MainWindowState, PagePointerAndPresenceFollowTheirFields)
{
    steward::testing::TestApp t;
    frmMain window(*t.app);
    ServerProfile& p = window.profile();
    QTabWidget* tabs = window.mainTab();

    p.setValue(F::vsMainTab, 2);
    EXPECT_EQ(tabs->currentIndex(), 2);
    tabs->setCurrentIndex(4);
    EXPECT_EQ(p.value(F::vsMainTab), 4);

    auto* game = window.control<QTabWidget>(QStringLiteral("vsExtraGameFlags"));
    p.setValue(F::vsExtraGameFlags, 3);
    EXPECT_EQ(game->currentIndex(), 3);

    p.setFormPointer(11);
    EXPECT_EQ(window.cursor().shape(), Qt::WaitCursor);
    p.setFormPointer(0);
    EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);

    // Hiding a field hides its caption and its spinner.
    window.show();
    p.field(F::txtBOTThinkTime).setVisible(false);
    EXPECT_TRUE(window.control(QStringLiteral("txtBOTThinkTime"))->isHidden());
    EXPECT_TRUE(window.control(QStringLiteral("lblServerConfig(43)"))->isHidden());
    EXPECT_TRUE(window.control(QStringLiteral("updBOTThinkTime"))->isHidden());
    p.field(F::txtBOTThinkTime).setVisible(true);
    EXPECT_FALSE(window.control(QStringLiteral("updBOTThinkTime"))->isHidden());
}
