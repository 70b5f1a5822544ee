#pragma once
// The tree of available maps (tvwAvailMaps): a root, one node per archive and one per
// map. Each node has a text, a key that is unique in the tree (compared without
// regard to case), the number of its picture in the tree's image list and a Tag. The
// tree is an item model, so that a tree view can show it as it stands.
#include <QAbstractItemModel>
#include <QHash>
#include <QString>
#include <memory>
#include <vector>

namespace steward {

class ServerProfile;

struct MapTreeNode {
    QString text;
    QString key;
    int image = 0; ///< position in the image list: 1 STEWARD, 3 PAK, 5 JEDI
    QString tag;
    MapTreeNode* parent = nullptr;
    int row = 0; ///< position among the parent's children
    std::vector<std::unique_ptr<MapTreeNode>> children;
};

class MapTreeModel : public QAbstractItemModel {
    Q_OBJECT
public:
    enum Role {
        KeyRole = Qt::UserRole + 1,
        TagRole,
        ImageRole,    ///< the picture's position in the image list, as a number
        ImageKeyRole, ///< the picture's name: "STEWARD", "PAK" or "JEDI"
    };
    static constexpr int kRootImage = 1;
    static constexpr int kArchiveImage = 3;
    static constexpr int kMapImage = 5;

    explicit MapTreeModel(QObject* parent = nullptr);
    ~MapTreeModel() override;

    /// Removes every node.
    void clear();
    /// Adds a node without a key at the top.
    MapTreeNode* addRoot(const QString& text, int image);
    /// Adds a child at the end of parent's children; nothing, and nullptr, when the
    /// key is taken or there is no parent.
    MapTreeNode* addChild(MapTreeNode* parent, const QString& key, const QString& text, int image);
    /// Puts the children of node in alphabetical order, without regard to case.
    void sortChildren(MapTreeNode* node);

    /// Bulk loading: the views hear of the whole change once, at the end.
    void beginLoad();
    void endLoad();

    MapTreeNode* root() const { return m_roots.empty() ? nullptr : m_roots.front().get(); }
    const std::vector<std::unique_ptr<MapTreeNode>>& roots() const { return m_roots; }
    MapTreeNode* findKey(const QString& key) const;
    int nodeCount() const { return m_count; }

    /// The node the user selected last; cleared with the tree.
    MapTreeNode* selectedNode() const { return m_selected; }
    void setSelectedNode(MapTreeNode* node) { m_selected = node; }

    MapTreeNode* nodeAt(const QModelIndex& index) const;
    QModelIndex indexOf(const MapTreeNode* node) const;

    static QString imageKey(int image);

    // QAbstractItemModel
    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<std::unique_ptr<MapTreeNode>> m_roots;
    QHash<QString, MapTreeNode*> m_keys;
    MapTreeNode* m_selected = nullptr;
    int m_count = 0;
    int m_loading = 0;
};

/// The tree of the profile's tvwAvailMaps, made on first use; it lives as long as
/// the profile.
MapTreeModel& mapTreeOf(ServerProfile& profile);

} // namespace steward
