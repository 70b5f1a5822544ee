#include "commands/MainFormLoad.h"
#include "model/ServerProfile.h"
#include "testkit/TestApp.h"
#include "ui/frmMain.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTabWidget>
#include <gtest/gtest.h>
#include <tuple>

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

} // namespace

TEST_F(MainWindowFields, EveryFieldHasAControlWithItsCaptionTagTooltipAndDefault)
{
    int checked = 0;
    for (const FieldDefinition& definition : profileFieldTable()) {
        const QString key = Field::makeKey(definition.name, definition.index);
        SCOPED_TRACE(key.toStdString());
        QWidget* control = find(key);
        if (definition.kind == FieldKind::State && key != QLatin1String("vsMainTab") &&
            key != QLatin1String("picMap") && key != QLatin1String("vsExtraGameFlags")) {
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

// What a user reads before any field: the page captions with the blanks that belong to
// them, and the buttons under the pages with their access keys and tooltips.
TEST_F(MainWindowFields, PagesAndButtonsShowTheirCaptions)
{
    const std::pair<const char*, QStringList> pages[] = {
        {"vsMainTab",
         {QStringLiteral("Server     "), QStringLiteral("Game       "), QStringLiteral("Map        "),
          QStringLiteral("BOT        "), QStringLiteral("Misc.      "), QStringLiteral("Information")}},
        {"vsExtraGameFlags",
         {QStringLiteral("Game"), QStringLiteral("Weapon Flags"), QStringLiteral("Force Flags"),
          QStringLiteral("DM Flags"), QStringLiteral("Advanced Saber")}},
    };
    for (const auto& [name, captions] : pages) {
        QTabWidget* control = tabs(QString::fromLatin1(name));
        ASSERT_NE(control, nullptr) << name;
        QStringList shown;
        for (int i = 0; i < control->count(); ++i)
            shown << control->tabText(i);
        EXPECT_EQ(shown, captions) << name;
    }
    const std::tuple<const char*, QString, QString> buttons[] = {
        {"cmdOk", QStringLiteral("&OK"), {}},
        {"cmdCancel", QStringLiteral("&Close"), {}},
        {"cmdDefault", QStringLiteral("&Defaults"), QStringLiteral("Set current settings as default settings")},
        {"cmdReset", QStringLiteral("&Reset"), QStringLiteral("Reset Arena Steward")},
        {"cmdTrayIt", QStringLiteral("Send to Tray"), {}},
    };
    for (const auto& [name, caption, tooltip] : buttons) {
        auto* button = window->findChild<QAbstractButton*>(QString::fromLatin1(name));
        ASSERT_NE(button, nullptr) << name;
        EXPECT_EQ(button->text(), caption) << name;
        EXPECT_EQ(button->toolTip(), tooltip) << name;
    }
}
