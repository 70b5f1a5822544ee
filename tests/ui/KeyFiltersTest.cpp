// The keyboard rules on real line edits, driven by real key and focus events.
#include "model/ServerProfile.h"
#include "testkit/Fakes.h"
#include "ui/KeyFilters.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSpinBox>
#include <QWidget>
#include <gtest/gtest.h>
#include <memory>

using namespace steward;
using namespace steward::testing;

namespace {

class Keys : public ::testing::Test {
protected:
    Keys()
    {
        for (const char* name : {"txtKnockBack", "txtSpeed(2)", "txtServerConfigSpin_3", "txtServerConfig(12)",
                                 "txtMsgTimer", "txtAdvancedSaber(0)", "txtStatsLogName"}) {
            auto* edit = new QLineEdit(&root);
            edit->setObjectName(QString::fromLatin1(name));
        }
        box("txtKnockBack")->setText(QStringLiteral("1000"));
        auto* check = new QCheckBox(&root);
        check->setObjectName(QStringLiteral("chkSendMessage"));
        filters = std::make_unique<KeyFilters>(&beeper);
        filters->install(&root, &profile);
    }

    QLineEdit* box(const char* name) const { return root.findChild<QLineEdit*>(QString::fromLatin1(name)); }

    static void press(QWidget* w, int key, const QString& text, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
        QCoreApplication::sendEvent(w, &down);
        QKeyEvent up(QEvent::KeyRelease, key, modifiers, text);
        QCoreApplication::sendEvent(w, &up);
    }

    static void focus(QWidget* w)
    {
        QFocusEvent in(QEvent::FocusIn, Qt::OtherFocusReason);
        QCoreApplication::sendEvent(w, &in);
    }

    QWidget root;
    CountingBeeper beeper;
    ServerProfile profile;
    std::unique_ptr<KeyFilters> filters;
};

} // namespace

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
        {Qt::Key_ParenLeft, "(", Qt::ShiftModifier, 1, "1000("},
        {Qt::Key_Period, ".", Qt::NoModifier, 1, "1000."},
        {Qt::Key_5, "5", Qt::KeypadModifier, 1, "10005"},     // the keypad's digit
        {Qt::Key_A, "a", Qt::NoModifier, 2, "1000"},          // refused twice
        {Qt::Key_Apostrophe, "'", Qt::NoModifier, 2, "1000"}, // code 39, just below the range
        {Qt::Key_Colon, ":", Qt::ShiftModifier, 2, "1000"},   // code 58, just above it
        {Qt::Key_Space, " ", Qt::NoModifier, 2, "1000"},
        {Qt::Key_Backspace, "\b", Qt::NoModifier, 0, "100"},
        {Qt::Key_Left, "", Qt::NoModifier, 1, "1000"},
        {Qt::Key_Delete, "\x7f", Qt::NoModifier, 1, "1000"},
        {Qt::Key_Tab, "\t", Qt::NoModifier, 0, "1000"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.key);
        QLineEdit* edit = box("txtKnockBack");
        edit->setText(QStringLiteral("1000"));
        beeper.beeps = 0;
        press(edit, c.key, QString::fromLatin1(c.text), c.modifiers);
        EXPECT_EQ(beeper.beeps, c.beeps);
        EXPECT_EQ(edit->text(), QString::fromLatin1(c.after));
    }
}

TEST_F(Keys, ARefusedCursorKeyDoesNotMoveTheCaret)
{
    QLineEdit* edit = box("txtKnockBack");
    edit->setCursorPosition(2);
    press(edit, Qt::Key_Left, QString());
    press(edit, Qt::Key_Home, QString());
    EXPECT_EQ(edit->cursorPosition(), 2);
    EXPECT_EQ(beeper.beeps, 2);
}

TEST_F(Keys, ALetterIsRefusedOnlyByTheNumericBoxesFoundByEitherFormOfTheirName)
{
    const std::pair<const char*, bool> cases[] = {{"txtSpeed(2)", true},          {"txtServerConfigSpin_3", true},
                                                  {"txtServerConfig(12)", false}, {"txtMsgTimer", false},
                                                  {"txtAdvancedSaber(0)", false}, {"txtStatsLogName", false}};
    for (const auto& [name, numeric] : cases) {
        SCOPED_TRACE(name);
        beeper.beeps = 0;
        box(name)->clear();
        press(box(name), Qt::Key_A, QStringLiteral("a"));
        EXPECT_EQ(box(name)->text(), numeric ? QString() : QStringLiteral("a"));
        EXPECT_EQ(beeper.beeps, numeric ? 2 : 0);
    }
}

TEST_F(Keys, FocusSelectsTheWholeTextOfTheBoxesThatAskForIt)
{
    const std::pair<const char*, bool> cases[] = {{"txtKnockBack", true},         {"txtSpeed(2)", true},
                                                  {"txtServerConfig(12)", true},  {"txtMsgTimer", true},
                                                  {"txtAdvancedSaber(0)", false}, {"txtStatsLogName", false}};
    for (const auto& [name, selects] : cases) {
        QLineEdit* edit = box(name);
        edit->blockSignals(true); // no change rule while setting up
        edit->setText(QStringLiteral("12345"));
        edit->blockSignals(false);
        edit->deselect();
        focus(edit);
        EXPECT_EQ(edit->selectedText(), selects ? QStringLiteral("12345") : QString()) << name;
    }
}

TEST_F(Keys, TheSaberBoxesSelectTheirTextAfterEveryChange)
{
    QLineEdit* edit = box("txtAdvancedSaber(0)");
    edit->setText(QStringLiteral("2"));
    EXPECT_EQ(edit->selectedText(), QStringLiteral("2"));
    edit->setCursorPosition(1);
    press(edit, Qt::Key_5, QStringLiteral("5"));
    EXPECT_EQ(edit->text(), QStringLiteral("25"));
    EXPECT_EQ(edit->selectedText(), QStringLiteral("25"));
    press(edit, Qt::Key_0, QStringLiteral("0"));
    EXPECT_EQ(edit->text(), QStringLiteral("0")) << "the next character replaces the whole text";
    press(edit, Qt::Key_Minus, QStringLiteral("-"));
    EXPECT_EQ(edit->text(), QStringLiteral("-"));
    EXPECT_EQ(beeper.beeps, 0);
}

TEST_F(Keys, EveryCharacterKeyOfTheWindowSetsTheChangeMark)
{
    QCheckBox* check = root.findChild<QCheckBox*>(QStringLiteral("chkSendMessage"));
    press(check, Qt::Key_Left, QString());
    press(box("txtStatsLogName"), Qt::Key_F5, QString());
    EXPECT_FALSE(profile.configurationChanged()) << "keys without a character";

    press(check, Qt::Key_Space, QStringLiteral(" "));
    EXPECT_TRUE(profile.configurationChanged());

    profile.setConfigurationChanged(false);
    press(box("txtKnockBack"), Qt::Key_A, QStringLiteral("a"));
    EXPECT_EQ(box("txtKnockBack")->text(), QStringLiteral("1000"));
    EXPECT_TRUE(profile.configurationChanged()) << "a refused key counts as well";

    profile.setConfigurationChanged(false);
    press(box("txtStatsLogName"), Qt::Key_X, QStringLiteral("x"));
    EXPECT_TRUE(profile.configurationChanged());
}

TEST_F(Keys, ASpinBoxGetsTheSameRules)
{
    auto* spin = new QSpinBox(&root);
    spin->setObjectName(QStringLiteral("txtServerConfigSpin(0)"));
    spin->setRange(0, 999);
    spin->setValue(12);
    KeyFilters own(&beeper);
    own.install(spin);
    focus(spin);
    EXPECT_EQ(spin->findChild<QLineEdit*>()->selectedText(), QStringLiteral("12"));
    press(spin, Qt::Key_Up, QString());
    EXPECT_EQ(spin->value(), 12) << "a refused cursor key";
    EXPECT_EQ(beeper.beeps, 1);
}

TEST(KeyFilterNames, AreTheFieldNames)
{
    const std::pair<const char*, const char*> cases[] = {{"txtSpeed(2)", "txtSpeed"},
                                                         {"txtServerConfigSpin_17", "txtServerConfigSpin"},
                                                         {"txtMaster1", "txtMaster1"},
                                                         {"txtKnockBack", "txtKnockBack"}};
    for (const auto& [control, field] : cases)
        EXPECT_EQ(KeyFilters::fieldName(QString::fromLatin1(control)), QString::fromLatin1(field)) << control;
}
