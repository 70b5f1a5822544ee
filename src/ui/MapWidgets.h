#pragma once
// The Map page's two lists: the tree of available maps, shown from the catalogue's tree
// model, and the rotation grid with the mark picture of the starting map.
#include "ui/FieldWidgets.h"

#include <QTreeView>

namespace steward {

class AppContext;
class ServerProfile;

/// tvwAvailMaps: archives and their maps. A click previews a map; the window's
/// routes answer the double click and the right click.
class MapTreeView : public QTreeView {
    Q_OBJECT
public:
    MapTreeView(AppContext& app, ServerProfile& profile, QWidget* parent = nullptr);

private:
    AppContext& m_app;
    ServerProfile& m_profile;
};

/// lsvMapRotation: the rows of the rotation, column 0 marked with its picture.
class RotationGrid : public BoundTree {
    Q_OBJECT
public:
    RotationGrid(Field& field, QWidget* parent = nullptr);

protected:
    void decorate(QTreeWidgetItem* item, const QStringList& cells) override;
};

/// The picture of a node or mark by its image-list name.
QIcon mapPicture(const QString& key);

} // namespace steward
