#include "commands/ToolTable.h"
#include "model/Constants.h"
#include "testkit/TestApp.h"
#include "ui/frmAbout.h"
#include "ui/MenuBuilder.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QTimer>
#include <gtest/gtest.h>

using namespace steward;

namespace {
void collect(const Tool& tool, std::vector<const Tool*>& out)
{
    for (const Tool& child : tool.children) {
        if (child.isMenu())
            collect(child, out);
        else if (!child.isSeparator())
            out.push_back(&child);
    }
}
} // namespace

TEST(MenuBar, EveryEntryIsAnActionNamedAfterItsToolIdAndDispatchesIt)
{
    QMainWindow window;
    QStringList clicked;
    buildMenuBar(window.menuBar(), [&clicked](const QString& id) { clicked << id; });

    std::vector<const Tool*> entries;
    for (const Tool& top : menuBarTools())
        collect(top, entries);
    ASSERT_FALSE(entries.empty());
    for (const Tool* tool : entries) {
        SCOPED_TRACE(tool->id.toStdString());
        auto* action = window.menuBar()->findChild<QAction*>(tool->id);
        ASSERT_NE(action, nullptr);
        EXPECT_EQ(action->text(), tool->caption);
        action->trigger();
        EXPECT_EQ(clicked.last(), tool->id);
    }
    auto* exportMenu = window.menuBar()->findChild<QMenu*>(QStringLiteral("id_UtilitiesExport"));
    ASSERT_NE(exportMenu, nullptr);
    EXPECT_EQ(exportMenu->title(), QStringLiteral("&Export"));
}

TEST(MenuBar, ThePopUpsEntriesCarryTheirIdsAndDispatchThem)
{
    QWidget owner;
    QStringList clicked;
    QMenu* advanced = buildPopup(advancedPopup(), &owner, [&clicked](const QString& id) { clicked << id; });
    EXPECT_EQ(advanced->objectName(), QStringLiteral("ID_Advanced"));
    for (const Tool& tool : advancedPopup().children) {
        if (tool.isSeparator() || tool.isMenu())
            continue;
        SCOPED_TRACE(tool.id.toStdString());
        auto* action = advanced->findChild<QAction*>(tool.id);
        ASSERT_NE(action, nullptr);
        action->trigger();
        EXPECT_EQ(clicked.last(), tool.id);
    }
}

TEST(frmAbout, ShowsTheVersionAndClosesOnAKeyAndItsFlagFollowsIt)
{
    steward::testing::TestApp t;
    {
        frmAbout about(*t.app);
        EXPECT_TRUE(frmAbout::isLoaded());
        EXPECT_EQ(about.objectName(), QStringLiteral("frmAbout"));
        EXPECT_EQ(about.windowTitle(), QStringLiteral("About Arena Steward"));
        auto* marquee = about.findChild<QLabel*>(QStringLiteral("lblMarquee"));
        ASSERT_NE(marquee, nullptr);
        EXPECT_EQ(marquee->text(), QStringLiteral("Arena Steward, a server tool for Jedi Knight II administrators\n"
                                                  "You are using version JUNE 13 2002 beta 1.4\n\n"
                                                  "Please submit all requests, bugs etc., to me \nat ") +
                                       kContactAddress + QStringLiteral("\n\nThanks and Enjoy!"));

        QTimer::singleShot(0, &about, [&about] {
            QKeyEvent key(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
            QApplication::sendEvent(&about, &key);
        });
        EXPECT_EQ(about.exec(), QDialog::Accepted);
    }
    EXPECT_FALSE(frmAbout::isLoaded());
}

TEST(frmAbout, TheMailLabelMailsAndEveryOtherClickCloses)
{
    steward::testing::TestApp t;
    auto click = [](QWidget* target) {
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(2, 2), target->mapToGlobal(QPointF(2, 2)), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &press);
    };
    frmAbout about(*t.app);
    click(about.findChild<QLabel*>(QStringLiteral("lblMailMe")));
    ASSERT_EQ(t.opener.opened.size(), 1u);
    EXPECT_EQ(t.opener.opened[0].scheme(), QStringLiteral("mailto"));
    EXPECT_NE(about.result(), QDialog::Accepted) << "the mail label leaves the window open";

    for (const char* name : {"lblMarquee", "Picture1"}) {
        frmAbout other(*t.app);
        click(other.findChild<QLabel*>(QString::fromLatin1(name)));
        EXPECT_EQ(other.result(), QDialog::Accepted) << name;
    }
    EXPECT_EQ(t.opener.opened.size(), 1u);
}
