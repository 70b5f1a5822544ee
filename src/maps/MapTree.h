#pragma once
// The catalogue read back into the tree of available maps, and what a click and a
// double click on the tree do.
#include <QByteArray>
#include <QModelIndex>
#include <QString>

namespace steward {
class AppContext;
class ServerProfile;
struct MapTreeNode;

/// One record of the map catalogue.
struct MapEntry {
    QString Pk3File;
    QString MapName;
    QString ShotName;
    QString LongName;
    QString MapType;
};

/// Reads the catalogue as one stream of comma-separated values: a value ends at a
/// comma or a line end, blanks before it are skipped, and a value that starts with a
/// double quote runs to the next one. Line ends don't end a record: five values do.
class CatalogueReader {
public:
    explicit CatalogueReader(QByteArray data) : m_data(std::move(data)) {}
    bool atEnd() const { return m_pos >= m_data.size(); }
    /// The next value; false when the stream has none left.
    bool next(QString& value);
    /// Reads up to five values into entry; the fields it doesn't reach keep their
    /// texts. False when the stream ended before the fifth.
    bool read(MapEntry& entry);

private:
    QByteArray m_data;
    qsizetype m_pos = 0;
};

/// Reads catalogueName + ".aml" of the program's folder into the profile's tree of
/// available maps, under a root named rootText, and shows the count.
void LoadMapTree(AppContext& app, ServerProfile& profile, const QString& catalogueName, const QString& rootText);

/// Shows the picture in picMap if it can be loaded; false, and the old picture stays,
/// if it can't.
bool showPicture(ServerProfile& profile, const QString& path);

/// A click on a node: the preview, the long name and the type of a map.
void tvwAvailMaps_NodeClick(AppContext& app, ServerProfile& profile, MapTreeNode* node);
void tvwAvailMaps_NodeClick(AppContext& app, ServerProfile& profile, const QModelIndex& index);
/// A double click: the selected map goes to the end of the rotation.
void tvwAvailMaps_DblClick(AppContext& app, ServerProfile& profile);

} // namespace steward
