// The Map page on the real window: a scan of real archives fills the tree, a click
// previews, a double click adds to the rotation, the pop-ups run the rotation's
// commands, and OK starts the server on that rotation.
#include "maps/MapTreeModel.h"
#include "shell/ServerProfile.h"
#include "support/LocalAddress.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"
#include "ui/CommandWiring.h"
#include "ui/MainWindowHost.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QMenuBar>
#include <QMouseEvent>
#include <QTreeView>
#include <QTreeWidget>
#include <gtest/gtest.h>

using namespace steward;
using steward::testing::ZipBuilder;

namespace {

class NoLookup : public AddressLookup {
public:
    bool hostName(QString&, int&) override { return false; }
    QList<QByteArray> addresses(const QString&) override { return {}; }
};

class MapPage : public ::testing::Test {
protected:
    void SetUp() override
    {
        ZipBuilder()
            .file(QStringLiteral("maps/mp_canyon.bsp"))
            .file(QStringLiteral("scripts/canyon.arena"),
                  steward::testing::arenaScript(QStringLiteral("mp_canyon"), QStringLiteral("Red Canyon"),
                                                QStringLiteral("ffa duel")))
            .file(QStringLiteral("levelshots/mp_canyon.tga"), steward::testing::tgaPicture(16, 16, 200, 40, 40))
            .write(t.baseFolder() + QStringLiteral("/canyon.pk3"));
        profile = host.loadMainWindow();
        window = host.mainWindow();
        host.showMainWindow();
        tree = window->findChild<QTreeView*>(QStringLiteral("tvwAvailMaps"));
        grid = window->findChild<QTreeWidget*>(QStringLiteral("lsvMapRotation"));
        ASSERT_NE(tree, nullptr);
        ASSERT_NE(grid, nullptr);
    }
    void TearDown() override
    {
        host.closeAllForms();
        QApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void menu(const QString& id) { wiring.dispatcher().SSActiveToolBars1_ToolClick(id); }
    QModelIndex mapNode()
    {
        QAbstractItemModel* model = tree->model();
        const QModelIndex root = model->index(0, 0);
        const QModelIndex archive = model->index(0, 0, root);
        return model->index(0, 0, archive);
    }
    void doubleClick(const QModelIndex& index)
    {
        tree->setCurrentIndex(index);
        emit tree->clicked(index);
        const QPoint at = tree->visualRect(index).center();
        QMouseEvent dbl(QEvent::MouseButtonDblClick, at, tree->viewport()->mapToGlobal(at), Qt::LeftButton,
                        Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(tree->viewport(), &dbl);
    }

    steward::testing::TestApp t;
    QtWindowHost host{*t.app};
    NoLookup lookup;
    CommandWiring wiring{*t.app, host, lookup};
    ServerProfile* profile = nullptr;
    frmMain* window = nullptr;
    QTreeView* tree = nullptr;
    QTreeWidget* grid = nullptr;
};

} // namespace

TEST_F(MapPage, AScanFillsTheTreeAndAClickPreviewsTheMap)
{
    t.prompts.answerNext(Answer::Yes); // "Scan for new maps?"
    menu(QStringLiteral("id_UtilitiesMapsScanfornewmaps"));
    const QModelIndex map = mapNode();
    ASSERT_TRUE(map.isValid()) << "the archive and its map are in the tree";
    EXPECT_EQ(map.data().toString(), QStringLiteral("mp_canyon"));
    EXPECT_EQ(map.parent().data().toString().toLower(), QStringLiteral("canyon.pk3"));

    emit tree->clicked(map);
    EXPECT_EQ(profile->text(QStringLiteral("lblLongMapName")), QStringLiteral("Red Canyon"));
    EXPECT_TRUE(QFileInfo(profile->text(QStringLiteral("picMap"))).fileName().startsWith(QStringLiteral("mp_canyon")))
        << profile->text(QStringLiteral("picMap")).toStdString();
}

TEST_F(MapPage, ADoubleClickBuildsTheRotationAndOkStartsTheServerOnIt)
{
    t.prompts.answerNext(Answer::Yes);
    menu(QStringLiteral("id_UtilitiesMapsScanfornewmaps"));
    doubleClick(mapNode());
    ASSERT_EQ(grid->topLevelItemCount(), 1);
    EXPECT_EQ(grid->topLevelItem(0)->text(0), QStringLiteral("mp_canyon"));
    EXPECT_EQ(profile->text(QStringLiteral("lblMapsSelected")), QStringLiteral("1 Selected Maps"));
    EXPECT_TRUE(profile->configurationChanged());

    grid->setCurrentItem(grid->topLevelItem(0));
    menu(QStringLiteral("ID_SetStartingMap"));
    EXPECT_EQ(profile->startingMap(), QStringLiteral("mp_canyon"));
    EXPECT_FALSE(grid->topLevelItem(0)->icon(0).isNull()) << "the starting map carries its mark";

    profile->setConfigurationChanged(false);
    profile->setText(QStringLiteral("txtServerConfig"), 14, QStringLiteral("secret")); // messaging is on
    t.prompts.shown.clear();
    window->raiseEvent({QStringLiteral("cmdOk"), UiEventKind::Click, {}});
    ASSERT_EQ(t.launcher.started.size(), 1u) << t.prompts.texts().join(QLatin1Char('|')).toStdString();
    EXPECT_EQ(t.launcher.started[0].workingFolder, t.app->gameFolder);
    EXPECT_TRUE(QFileInfo::exists(t.baseFolder() + QStringLiteral("/jediMaps.cfg")));
    EXPECT_TRUE(QFileInfo::exists(t.baseFolder() + QStringLiteral("/luke.cfg")));
}

TEST_F(MapPage, TheStockSetsFillTheRotationFromTheTreesMenu)
{
    t.prompts.answerNext(Answer::Yes); // "Clear Map list?" (nothing to clear: may not be asked)
    menu(QStringLiteral("ID_AllStandardSWMaps"));
    EXPECT_GT(grid->topLevelItemCount(), 0);
    EXPECT_EQ(profile->value(QStringLiteral("optDefaultGameType"), 5), 1) << "capture the flag is selected";
    menu(QStringLiteral("ID_ClearList"));
    EXPECT_EQ(grid->topLevelItemCount(), 0);
}
