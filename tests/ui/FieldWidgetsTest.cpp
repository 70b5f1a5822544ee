// The bound controls keep their field and themselves in step both ways (a change from code
// shows at once, a user's edit reaches the field, neither runs round in a loop), the
// keyboard rules work on real line edits, and the main window carries a control for
// every field.
#include "ui/FieldWidgets.h"
#include "ui/KeyFilters.h"
#include "ui/WiredMainWindow.h"

namespace {

/// Types text into a control as the keyboard would.
void type(QWidget* target, const QString& text)
{
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(target, &press);
    }
}

class Bindings : public ::testing::Test {
protected:
    Field& field(FieldId name) { return profile.field(name); }
    ServerProfile profile;
    QWidget parent;
};

TEST_F(Bindings, TextBoxesFollowTheirFieldTheFieldFollowsTypingAndPasswordsShowStars)
{
    Field& port = field(F::txtServerConfig(12));
    BoundLineEdit box(port, &parent);
    EXPECT_EQ(box.displayText(), u"28070"_s);
    port.setText(u"29070"_s);
    EXPECT_EQ(box.text(), u"29070"_s);
    int changes = 0;
    QObject::connect(&port, &Field::textChanged, [&changes] { ++changes; });
    box.selectAll();
    type(&box, u"12"_s);
    EXPECT_EQ(port.text(), u"12"_s);
    EXPECT_EQ(changes, 2) << "one change of the field for each keystroke, none echoed back";
    sendKey(&box, Qt::Key_Backspace);
    EXPECT_EQ(port.text(), u"1"_s);
    for (int index : {13, 14, 15}) {
        BoundLineEdit secret(field(F::txtServerConfig(index)), &parent);
        field(F::txtServerConfig(index)).setText(u"s3cret"_s);
        EXPECT_EQ(secret.displayText(), u"******"_s) << index;
    }
}

TEST_F(Bindings, CheckAndOptionButtonsFollowTheirFieldAndAClickNeverClearsAnOption)
{
    Field& voting = field(F::chkQuake3Specific(0));
    BoundCheckBox check(voting, &parent);
    check.click();
    EXPECT_EQ(voting.value(), 1);
    int changes = 0;
    QObject::connect(&voting, &Field::valueChanged, [&changes] { ++changes; });
    voting.setValue(0);
    EXPECT_FALSE(check.isChecked());
    EXPECT_EQ(changes, 1);
    std::vector<std::unique_ptr<BoundRadioButton>> types;
    for (int i = 0; i <= 6; ++i)
        types.push_back(std::make_unique<BoundRadioButton>(field(F::optDefaultGameType(i)), &parent));
    EXPECT_TRUE(types[0]->isChecked());
    types[3]->click();
    types[3]->click();
    EXPECT_TRUE(types[3]->isChecked()) << "clicking the selected option leaves it selected";
    EXPECT_EQ(field(F::optDefaultGameType(3)).value(), 1);
    EXPECT_EQ(field(F::optDefaultGameType(0)).value(), 0);
    EXPECT_FALSE(types[0]->isChecked());
    field(F::optDefaultGameType(3)).setValue(0); // code may clear the whole group
    for (const auto& button : types)
        EXPECT_FALSE(button->isChecked());
}

TEST_F(Bindings, ComboKeepsItsTextWhenItsListChanges)
{
    Field& config = field(F::cboConfig(0));
    BoundComboBox combo(config, &parent);
    config.setText(u"server.cfg"_s);
    config.setItems({u"autoexec.cfg"_s, u"server.cfg"_s});
    EXPECT_EQ(combo.count(), 2);
    EXPECT_EQ(config.text(), u"server.cfg"_s) << "filling the list doesn't change the text";
    combo.setCurrentIndex(0);
    EXPECT_EQ(config.text(), u"autoexec.cfg"_s);
    parent.show();
    QApplication::setActiveWindow(&parent);
    combo.setFocus();
    combo.lineEdit()->selectAll();
    type(combo.lineEdit(), u"a"_s);
    EXPECT_EQ(config.text(), u"a"_s) << "typing isn't completed from the list";
    config.setText(u"other.cfg"_s);
    config.setItems({});
    EXPECT_EQ(combo.count(), 0);
    EXPECT_EQ(combo.currentText(), u"other.cfg"_s);
}

TEST_F(Bindings, ListsTablesAndTreesShowTheirRowsAndShareTheirSelection)
{
    Field& banned = field(F::lstBannedIPs);
    BoundListWidget list(banned, &parent);
    banned.setItems({u"10.0.0.1"_s, u"10.0.0.2"_s, u"10.0.0.3"_s});
    ASSERT_EQ(list.count(), 3);
    list.item(1)->setSelected(true);
    EXPECT_EQ(banned.selection(), QList<int>{1});
    banned.setSelection({0, 2});
    EXPECT_EQ(QList<bool>({list.item(0)->isSelected(), list.item(1)->isSelected(), list.item(2)->isSelected()}),
              QList<bool>({true, false, true}));
    banned.removeItem(0);
    ASSERT_EQ(list.count(), 2);
    EXPECT_EQ(list.item(0)->text(), u"10.0.0.2"_s);
    EXPECT_TRUE(list.item(1)->isSelected()) << "the selection moves with its item";
    Field& roster = field(F::grdBOTList);
    BoundTable table(roster, 5, true, &parent);
    roster.setRows({{u"NAME"_s, u"SKILL"_s, u"TEAM"_s, u"MODEL"_s, u"PING"_s}});
    EXPECT_EQ(table.rowCount(), 0);
    EXPECT_EQ(table.horizontalHeaderItem(3)->text(), u"MODEL"_s) << "the heading is row zero";
    roster.addRow({u"Gnubee"_s, u"Hardcore"_s, u"RED"_s, u"Desann"_s, u"25"_s});
    ASSERT_EQ(table.rowCount(), 1);
    EXPECT_EQ(table.item(0, 4)->text(), u"25"_s);
    table.selectRow(0);
    EXPECT_EQ(roster.selection(), QList<int>{1}) << "grid rows count from the heading";
    Field& rotation = field(F::lsvMapRotation);
    BoundTree grid(rotation, 4, &parent);
    rotation.addRow({u"ffa_bespin"_s, u"Bespin"_s, u"ffa"_s});
    rotation.addRow({u"ctf_yavin"_s, u"Yavin"_s, u"ctf"_s});
    rotation.removeRow(0);
    ASSERT_EQ(grid.topLevelItemCount(), 1);
    EXPECT_EQ(grid.topLevelItem(0)->text(0), u"ctf_yavin"_s);
    EXPECT_EQ(grid.topLevelItem(0)->text(2), u"ctf"_s);
    Field& maps = field(F::tvwAvailMaps);
    BoundTree tree(maps, 1, &parent);
    maps.setItems({u"Jedi"_s, u"assets0.pk3"_s});
    ASSERT_EQ(tree.topLevelItemCount(), 2);
    tree.setCurrentItem(tree.topLevelItem(1));
    EXPECT_EQ(maps.current(), 1);
}

TEST_F(Bindings, LabelsHideWithTheirCompanionsPicturesShowTheirFileAndTheSpinnerStepsTheLeadingNumber)
{
    Field& note = field(F::lblSaberModeDuel);
    BoundLabel label(note, &parent);
    QLabel caption(u"caption"_s, &parent);
    FieldPresence::of(&label)->addCompanion(&caption);
    parent.show();
    EXPECT_EQ(label.text(), u"Saber only mode is encouraged in duel"_s);
    note.setVisible(false);
    EXPECT_TRUE(caption.isHidden());
    note.setVisible(true);
    note.setEnabled(false);
    EXPECT_TRUE(caption.isVisible());
    EXPECT_FALSE(caption.isEnabled());
    note.setText(u"2 Selected Maps"_s);
    EXPECT_EQ(label.text(), u"2 Selected Maps"_s);
    QTemporaryDir dir;
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(Qt::blue);
    ASSERT_TRUE(image.save(dir.filePath(u"shot.png"_s)));
    Field& picture = field(F::picMap);
    BoundPicture box(picture, &parent);
    box.resize(176, 132);
    picture.setText(dir.filePath(u"shot.png"_s));
    EXPECT_FALSE(box.pixmap().isNull());
    EXPECT_LE(box.pixmap().width(), 176);
    picture.setText(dir.filePath(u"missing.jpg"_s));
    EXPECT_TRUE(box.pixmap().isNull()) << "a path without a picture shows nothing";
    Field& think = field(F::txtBOTThinkTime);
    UpDown spinner(think, &parent);
    const std::tuple<const char*, int, const char*> steps[] = {
        {"100", 1, "101"}, {"101", -2, "99"}, {"12ms", 1, "13"}, {"0", -1, "0"}};
    for (const auto& [before, step, after] : steps) {
        think.setText(QString::fromLatin1(before));
        spinner.stepBy(step);
        EXPECT_EQ(think.text(), QString::fromLatin1(after)) << before << " by " << step;
    }
}

TEST(MainWindowState, PagesAndPointerFollowTheirFields)
{
    TestApp t;
    frmMain window(*t.app);
    ServerProfile& p = window.profile();
    p.setValue(F::vsMainTab, 2);
    EXPECT_EQ(window.mainTab()->currentIndex(), 2);
    window.mainTab()->setCurrentIndex(4);
    EXPECT_EQ(p.value(F::vsMainTab), 4);
    p.setValue(F::vsExtraGameFlags, 3);
    EXPECT_EQ(window.control<QTabWidget>(u"vsExtraGameFlags"_s)->currentIndex(), 3);
    p.setFormPointer(11);
    EXPECT_EQ(window.cursor().shape(), Qt::WaitCursor);
    p.setFormPointer(0);
    EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
}

class Keys : public ::testing::Test {
protected:
    Keys()
    {
        for (const char* name : {"txtKnockBack", "txtSpeed(2)", "txtServerConfigSpin_3", "txtServerConfig(12)",
                                 "txtMaster1", "txtAdvancedSaber(0)", "txtStatsLogName"})
            (new QLineEdit(&root))->setObjectName(QString::fromLatin1(name));
        filters.install(&root, &profile);
    }
    QLineEdit* box(const char* name) const { return root.findChild<QLineEdit*>(QString::fromLatin1(name)); }
    static void focus(QWidget* w)
    {
        QFocusEvent in(QEvent::FocusIn, Qt::OtherFocusReason);
        QCoreApplication::sendEvent(w, &in);
    }
    QWidget root;
    CountingBeeper beeper;
    ServerProfile profile;
    KeyFilters filters{&beeper};
};

TEST_F(Keys, NumericBoxesTakeDigitsAndTheCharactersFrom40To57)
{
    struct Case {
        int key;
        const char* text;
        Qt::KeyboardModifiers modifiers;
        int beeps;
        const char* after; // the text of a box that held "1000" with the caret at its end
    };
    const Case cases[] = {
        {Qt::Key_5, "5", Qt::NoModifier, 0, "10005"},
        {Qt::Key_Minus, "-", Qt::NoModifier, 1, "1000-"}, // beeps on the way down, arrives all the same
        {Qt::Key_5, "5", Qt::KeypadModifier, 1, "10005"}, // the keypad's digit
        {Qt::Key_A, "a", Qt::NoModifier, 2, "1000"},      // refused twice
        {Qt::Key_Backspace, "\b", Qt::NoModifier, 0, "100"},
        {Qt::Key_Left, "", Qt::NoModifier, 1, "1000"},
        {Qt::Key_Tab, "\t", Qt::NoModifier, 0, "1000"},
    };
    QLineEdit* edit = box("txtKnockBack");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.key);
        edit->setText(u"1000"_s);
        beeper.beeps = 0;
        sendKey(edit, c.key, QString::fromLatin1(c.text), c.modifiers);
        EXPECT_EQ(beeper.beeps, c.beeps);
        EXPECT_EQ(edit->text(), QString::fromLatin1(c.after));
    }
    edit->setCursorPosition(2); // a refused cursor key doesn't move the caret
    sendKey(edit, Qt::Key_Left);
    sendKey(edit, Qt::Key_Home);
    EXPECT_EQ(edit->cursorPosition(), 2);
}

TEST_F(Keys, LettersAreRefusedAndFocusSelectsByTheBoxesNameInEitherForm)
{
    const std::tuple<const char*, bool, bool> cases[] = {
        {"txtKnockBack", true, true},         {"txtSpeed(2)", true, true}, {"txtServerConfigSpin_3", true, true},
        {"txtServerConfig(12)", false, true}, {"txtMaster1", false, true}, {"txtAdvancedSaber(0)", false, false},
        {"txtStatsLogName", false, false}};
    for (const auto& [name, numeric, selects] : cases) {
        SCOPED_TRACE(name);
        QLineEdit* edit = box(name);
        beeper.beeps = 0;
        sendKey(edit, Qt::Key_A, u"a"_s);
        EXPECT_EQ(edit->text(), numeric ? QString() : u"a"_s);
        EXPECT_EQ(beeper.beeps, numeric ? 2 : 0);
        edit->blockSignals(true); // no change rule while setting up
        edit->setText(u"12345"_s);
        edit->blockSignals(false);
        edit->deselect();
        focus(edit);
        EXPECT_EQ(edit->selectedText(), selects ? u"12345"_s : QString());
    }
}

TEST_F(Keys, TheSaberBoxesSelectTheirTextAfterEveryChange)
{
    QLineEdit* edit = box("txtAdvancedSaber(0)");
    edit->setText(u"2"_s);
    EXPECT_EQ(edit->selectedText(), u"2"_s);
    edit->setCursorPosition(1);
    sendKey(edit, Qt::Key_5, u"5"_s);
    EXPECT_EQ(edit->selectedText(), u"25"_s);
    sendKey(edit, Qt::Key_Minus, u"-"_s);
    EXPECT_EQ(edit->text(), u"-"_s) << "the next character replaces the whole text";
    EXPECT_EQ(beeper.beeps, 0);
}

class MainWindowFields : public ::testing::Test {
protected:
    void TearDown() override { delete window.data(); }
    TestApp t;
    QPointer<frmMain> window = new frmMain(*t.app);
};

TEST_F(MainWindowFields, EveryFieldHasAControlWithItsCaptionTagTooltipAndDefault)
{
    // Each kind is its own kind of control and shows its default.
    const std::map<FieldKind, std::pair<const char*, const char*>> shows = {
        {FieldKind::Text, {"QLineEdit", "text"}},
        {FieldKind::Check, {"QAbstractButton", "checked"}},
        {FieldKind::Option, {"QAbstractButton", "checked"}},
        {FieldKind::Combo, {"QComboBox", "currentText"}},
        {FieldKind::Label, {"QLabel", "text"}}};
    int checked = 0;
    for (const FieldDefinition& definition : profileFieldTable()) {
        const QString key = Field::makeKey(definition.name, definition.index);
        SCOPED_TRACE(key.toStdString());
        if (definition.kind == FieldKind::State && key != u"vsMainTab"_s && key != u"picMap"_s &&
            key != u"vsExtraGameFlags"_s)
            continue;
        QWidget* control = window->findChild<QWidget*>(key);
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
        if (const auto it = shows.find(definition.kind); it != shows.end()) {
            const auto [type, property] = it->second;
            ASSERT_TRUE(control->inherits(type)) << type;
            const QVariant shown = control->property(property);
            if (shown.typeId() == QMetaType::Bool) {
                EXPECT_EQ(shown.toBool(), definition.defaultText == u"1"_s);
                EXPECT_EQ(control->property("text").toString(), definition.caption);
            } else {
                EXPECT_EQ(shown.toString(), definition.defaultText);
            }
        }
    }
    EXPECT_GT(checked, 150);
}

// What a user reads before any field: the page captions with the blanks that belong to them,
// and the buttons under the pages with their access keys and tooltips.
TEST_F(MainWindowFields, PagesAndButtonsShowTheirCaptions)
{
    const auto captions = [&](const char* name) {
        QStringList shown;
        auto* tabs = window->findChild<QTabWidget*>(QString::fromLatin1(name));
        for (int i = 0; tabs && i < tabs->count(); ++i)
            shown << tabs->tabText(i);
        return shown.join(u'|');
    };
    EXPECT_EQ(captions("vsMainTab"), u"Server     |Game       |Map        |BOT        |Misc.      |Information"_s);
    EXPECT_EQ(captions("vsExtraGameFlags"), u"Game|Weapon Flags|Force Flags|DM Flags|Advanced Saber"_s);
    const std::tuple<const char*, QString, QString> buttons[] = {
        {"cmdOk", u"&OK"_s, {}},
        {"cmdCancel", u"&Close"_s, {}},
        {"cmdDefault", u"&Defaults"_s, u"Set current settings as default settings"_s},
        {"cmdReset", u"&Reset"_s, u"Reset Arena Steward"_s},
        {"cmdTrayIt", u"Send to Tray"_s, {}}};
    for (const auto& [name, caption, tooltip] : buttons) {
        auto* button = window->findChild<QAbstractButton*>(QString::fromLatin1(name));
        ASSERT_NE(button, nullptr) << name;
        EXPECT_EQ(std::pair(button->text(), button->toolTip()), std::pair(caption, tooltip)) << name;
    }
}

// At the window's designed size every page shows each control whole and inside the window.
TEST_F(MainWindowFields, AtItsDesignedSizeEveryPageFitsWithNothingSqueezed)
{
    MainFormLoad(*t.app, window->profile(), *window);
    EXPECT_LE(window->minimumSizeHint().height() + 30, window->height()) << "room for a menu bar above the tabs";
    window->show();
    auto *main = window->findChild<QTabWidget*>(u"vsMainTab"_s),
         *game = window->findChild<QTabWidget*>(u"vsExtraGameFlags"_s);
    for (int page = 0; page < main->count(); ++page) {
        for (int sub = 0; sub < (page == 1 ? game->count() : 1); ++sub) {
            main->setCurrentIndex(page);
            game->setCurrentIndex(sub);
            QApplication::processEvents();
            for (QWidget* w : main->currentWidget()->findChildren<QWidget*>()) {
                if (!w->isVisible() || w->objectName().isEmpty() || qobject_cast<QTabWidget*>(w))
                    continue;
                SCOPED_TRACE(w->objectName().toStdString());
                EXPECT_GE(w->width(), w->minimumSizeHint().width());
                EXPECT_GE(w->height(), w->minimumSizeHint().height());
                EXPECT_TRUE(window->rect().contains(QRect(w->mapTo(window.data(), QPoint(0, 0)), w->size())));
            }
        }
    }
}

} // namespace
