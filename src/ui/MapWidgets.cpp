#include "ui/MapWidgets.h"

#include "maps/MapRotation.h"
#include "maps/MapTree.h"
#include "maps/MapTreeModel.h"
#include "model/ServerProfile.h"

#include <QApplication>
#include <QHeaderView>
#include <QIdentityProxyModel>
#include <QStyle>

namespace steward {

QIcon mapPicture(const QString& key)
{
    QStyle* style = QApplication::style();
    if (key == QLatin1String("STEWARD"))
        return style->standardIcon(QStyle::SP_ComputerIcon);
    if (key == QLatin1String("PAK"))
        return style->standardIcon(QStyle::SP_DirIcon);
    if (key == QLatin1String("JEDI"))
        return style->standardIcon(QStyle::SP_FileIcon);
    if (key == kMarkSelected)
        return style->standardIcon(QStyle::SP_MediaPlay);
    if (key == kMarkNotSelected)
        return style->standardIcon(QStyle::SP_MediaStop);
    return {};
}

namespace {
/// The catalogue's tree with the pictures of its nodes.
class PictureProxy final : public QIdentityProxyModel {
public:
    using QIdentityProxyModel::QIdentityProxyModel;
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role == Qt::DecorationRole)
            return mapPicture(QIdentityProxyModel::data(index, MapTreeModel::ImageKeyRole).toString());
        return QIdentityProxyModel::data(index, role);
    }
};
} // namespace

MapTreeView::MapTreeView(AppContext& app, ServerProfile& profile, QWidget* parent)
    : QTreeView(parent), m_app(app), m_profile(profile)
{
    MapTreeModel& tree = mapTreeOf(profile);
    auto* proxy = new PictureProxy(this);
    proxy->setSourceModel(&tree);
    setModel(proxy);
    setHeaderHidden(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setUniformRowHeights(true);
    // The root stands open, so that the archives show at once.
    auto expandRoot = [this, proxy] {
        if (proxy->rowCount() > 0)
            expand(proxy->index(0, 0));
    };
    connect(proxy, &QAbstractItemModel::modelReset, this, expandRoot);
    connect(proxy, &QAbstractItemModel::rowsInserted, this, expandRoot);
    expandRoot();
    connect(this, &QTreeView::clicked, this, [this, proxy](const QModelIndex& index) {
        tvwAvailMaps_NodeClick(m_app, m_profile, proxy->mapToSource(index));
    });
    new FieldPresence(this, profile.field(F::tvwAvailMaps));
}

RotationGrid::RotationGrid(Field& field, QWidget* parent) : BoundTree(field, 4, parent)
{
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(0);
    // A changed mark changes no row count: show the rows again on any change of them.
    refresh();
}

void RotationGrid::decorate(QTreeWidgetItem* item, const QStringList& cells)
{
    item->setIcon(0, mapPicture(cells.value(kMarkColumn)));
}

} // namespace steward
