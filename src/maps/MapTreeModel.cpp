#include "maps/MapTreeModel.h"

#include "model/ServerProfile.h"

#include <algorithm>

namespace steward {

MapTreeModel::MapTreeModel(QObject* parent) : QAbstractItemModel(parent) {}

MapTreeModel::~MapTreeModel() = default;

void MapTreeModel::beginLoad()
{
    if (m_loading++ == 0)
        beginResetModel();
}

void MapTreeModel::endLoad()
{
    if (m_loading > 0 && --m_loading == 0)
        endResetModel();
}

void MapTreeModel::clear()
{
    if (!m_loading)
        beginResetModel();
    m_roots.clear();
    m_keys.clear();
    m_selected = nullptr;
    m_count = 0;
    if (!m_loading)
        endResetModel();
}

MapTreeNode* MapTreeModel::addRoot(const QString& text, int image)
{
    const int row = static_cast<int>(m_roots.size());
    if (!m_loading)
        beginInsertRows({}, row, row);
    auto node = std::make_unique<MapTreeNode>();
    node->text = text;
    node->image = image;
    node->row = row;
    MapTreeNode* added = node.get();
    m_roots.push_back(std::move(node));
    ++m_count;
    if (!m_loading)
        endInsertRows();
    return added;
}

MapTreeNode* MapTreeModel::addChild(MapTreeNode* parent, const QString& key, const QString& text, int image)
{
    if (!parent)
        return nullptr;
    const QString folded = key.toCaseFolded();
    if (m_keys.contains(folded))
        return nullptr;
    const int row = static_cast<int>(parent->children.size());
    if (!m_loading)
        beginInsertRows(indexOf(parent), row, row);
    auto node = std::make_unique<MapTreeNode>();
    node->text = text;
    node->key = key;
    node->image = image;
    node->parent = parent;
    node->row = row;
    MapTreeNode* added = node.get();
    parent->children.push_back(std::move(node));
    m_keys.insert(folded, added);
    ++m_count;
    if (!m_loading)
        endInsertRows();
    return added;
}

void MapTreeModel::sortChildren(MapTreeNode* node)
{
    if (!node)
        return;
    QModelIndexList before;
    std::vector<MapTreeNode*> held;
    if (!m_loading) {
        emit layoutAboutToBeChanged();
        before = persistentIndexList();
        for (const QModelIndex& index : std::as_const(before))
            held.push_back(nodeAt(index));
    }
    std::stable_sort(node->children.begin(), node->children.end(),
                     [](const std::unique_ptr<MapTreeNode>& a, const std::unique_ptr<MapTreeNode>& b) {
                         return a->text.compare(b->text, Qt::CaseInsensitive) < 0;
                     });
    int row = 0;
    for (auto& child : node->children)
        child->row = row++;
    if (!m_loading) {
        QModelIndexList after;
        for (MapTreeNode* n : held)
            after << indexOf(n);
        changePersistentIndexList(before, after);
        emit layoutChanged();
    }
}

MapTreeNode* MapTreeModel::findKey(const QString& key) const { return m_keys.value(key.toCaseFolded(), nullptr); }

QString MapTreeModel::imageKey(int image)
{
    switch (image) {
    case kRootImage:
        return QStringLiteral("STEWARD");
    case kArchiveImage:
        return QStringLiteral("PAK");
    case kMapImage:
        return QStringLiteral("JEDI");
    default:
        return {};
    }
}

MapTreeNode* MapTreeModel::nodeAt(const QModelIndex& index) const
{
    return index.isValid() ? static_cast<MapTreeNode*>(index.internalPointer()) : nullptr;
}

QModelIndex MapTreeModel::indexOf(const MapTreeNode* node) const
{
    return node ? createIndex(node->row, 0, const_cast<MapTreeNode*>(node)) : QModelIndex();
}

QModelIndex MapTreeModel::index(int row, int column, const QModelIndex& parent) const
{
    if (column != 0 || row < 0)
        return {};
    const MapTreeNode* p = nodeAt(parent);
    const auto& list = p ? p->children : m_roots;
    if (row >= static_cast<int>(list.size()))
        return {};
    return createIndex(row, 0, list[static_cast<size_t>(row)].get());
}

QModelIndex MapTreeModel::parent(const QModelIndex& child) const
{
    const MapTreeNode* node = nodeAt(child);
    return node ? indexOf(node->parent) : QModelIndex();
}

int MapTreeModel::rowCount(const QModelIndex& parent) const
{
    if (parent.column() > 0)
        return 0;
    const MapTreeNode* p = nodeAt(parent);
    return static_cast<int>(p ? p->children.size() : m_roots.size());
}

int MapTreeModel::columnCount(const QModelIndex&) const { return 1; }

QVariant MapTreeModel::data(const QModelIndex& index, int role) const
{
    const MapTreeNode* node = nodeAt(index);
    if (!node)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return node->text;
    case KeyRole:
        return node->key;
    case TagRole:
        return node->tag;
    case ImageRole:
        return node->image;
    case ImageKeyRole:
        return imageKey(node->image);
    default:
        return {};
    }
}

QHash<int, QByteArray> MapTreeModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractItemModel::roleNames();
    names.insert(KeyRole, "key");
    names.insert(TagRole, "tag");
    names.insert(ImageRole, "image");
    names.insert(ImageKeyRole, "imageKey");
    return names;
}

MapTreeModel& mapTreeOf(ServerProfile& profile)
{
    Field& field = profile.field(F::tvwAvailMaps);
    if (auto* model = field.findChild<MapTreeModel*>(QString(), Qt::FindDirectChildrenOnly))
        return *model;
    auto* model = new MapTreeModel(&field);
    model->setObjectName(QStringLiteral("tvwAvailMaps"));
    return *model;
}

} // namespace steward
