#include "maps/MapTree.h"

#include "maps/LevelShots.h"
#include "maps/MapRotation.h"
#include "maps/MapScanner.h"
#include "maps/MapTreeModel.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>

namespace steward {

bool CatalogueReader::next(QString& value)
{
    const qsizetype size = m_data.size();
    const char* d = m_data.constData();
    while (m_pos < size && d[m_pos] == ' ')
        ++m_pos;
    if (m_pos >= size)
        return false;
    auto isEnd = [&](qsizetype at) { return d[at] == ',' || d[at] == '\r' || d[at] == '\n'; };
    if (d[m_pos] == '"') {
        const qsizetype start = ++m_pos;
        while (m_pos < size && d[m_pos] != '"')
            ++m_pos;
        value = QString::fromLatin1(d + start, m_pos - start);
        if (m_pos < size)
            ++m_pos;
        while (m_pos < size && !isEnd(m_pos))
            ++m_pos; // what follows the closing quote up to the delimiter is dropped
    } else {
        const qsizetype start = m_pos;
        while (m_pos < size && !isEnd(m_pos))
            ++m_pos;
        value = QString::fromLatin1(d + start, m_pos - start);
    }
    if (m_pos < size) {
        if (d[m_pos] == ',') {
            ++m_pos;
        } else if (d[m_pos] == '\r') {
            ++m_pos;
            if (m_pos < size && d[m_pos] == '\n')
                ++m_pos;
        } else {
            ++m_pos;
        }
    }
    return true;
}

bool CatalogueReader::read(MapEntry& entry)
{
    QString* fields[] = {&entry.Pk3File, &entry.MapName, &entry.ShotName, &entry.LongName, &entry.MapType};
    for (QString* field : fields)
        if (!next(*field))
            return false;
    return true;
}

void LoadMapTree(AppContext& app, ServerProfile& profile, const QString& catalogueName, const QString& rootText)
{
    const QString path = app.programFile(catalogueName + QStringLiteral(".aml"));
    if (!QFileInfo::exists(path)) {
        profile.setFormPointer(pointer::Default);
        app.prompts().message(QStringLiteral("Unable to locate ") + rootText +
                                  QStringLiteral(" file, please run a new Map Scan") + kTail,
                              kProductTitle, Icon::Exclamation);
        return;
    }
    EnsureFallbackPictures(app);

    profile.setFormPointer(pointer::Hourglass);
    MapTreeModel& tree = mapTreeOf(profile);
    tree.beginLoad();
    tree.clear();
    MapTreeNode* root = tree.addRoot(rootText, MapTreeModel::kRootImage);

    QFile file(path);
    int count = 0;
    if (file.open(QIODevice::ReadOnly)) {
        CatalogueReader reader(file.readAll());
        MapEntry entry;
        QString previous;
        MapTreeNode* archive = nullptr;
        // A record that the end of the file cuts short is still taken, with the fields
        // it didn't reach as the last record left them.
        while (!reader.atEnd()) {
            reader.read(entry);
            if (entry.Pk3File.compare(previous, Qt::CaseInsensitive) != 0) {
                if (MapTreeNode* added = tree.addChild(root, rootText + QLatin1Char('\\') + entry.Pk3File,
                                                       entry.Pk3File, MapTreeModel::kArchiveImage))
                    archive = added;
            }
            if (archive) {
                if (MapTreeNode* map = tree.addChild(archive, archive->text + QLatin1Char('\\') + entry.MapName,
                                                     entry.MapName, MapTreeModel::kMapImage))
                    map->tag = entry.ShotName + QLatin1Char(',') + entry.LongName + QLatin1Char(',') + entry.MapType;
            }
            ++count;
            previous = entry.Pk3File;
        }
    }
    tree.sortChildren(root);
    tree.endLoad();

    profile.setText(F::lblNumberOfMapsAvailable, QString::number(count) + QStringLiteral(" Maps available"));
    profile.setFormPointer(pointer::Default);
}

bool showPicture(ServerProfile& profile, const QString& path)
{
    if (path.isEmpty() || QImage(path).isNull())
        return false;
    profile.setText(F::picMap, path);
    return true;
}

namespace {

// A picture of the levelshots folder; a name that only differs in case counts.
QString levelShot(const AppContext& app, const QString& name)
{
    const QString folder = levelShotFolder(app);
    const QString exact = folder + QLatin1Char('/') + name;
    if (QFileInfo::exists(exact))
        return exact;
    const QStringList all = QDir(folder).entryList({name}, QDir::Files | QDir::Hidden | QDir::System);
    for (const QString& file : all)
        if (file.compare(name, Qt::CaseInsensitive) == 0)
            return folder + QLatin1Char('/') + file;
    return exact;
}

void showUnknown(AppContext& app, ServerProfile& profile)
{
    showPicture(profile, levelShot(app, QStringLiteral("unknown.jpg")));
    profile.setText(F::lblMapType, QString());
    profile.setText(F::lblLongMapName, QString());
}

} // namespace

void tvwAvailMaps_NodeClick(AppContext& app, ServerProfile& profile, MapTreeNode* node)
{
    if (!node)
        return;
    mapTreeOf(profile).setSelectedNode(node);
    if (node->tag.isEmpty()) {
        showUnknown(app, profile);
        return;
    }
    const QStringList parts = node->tag.split(QLatin1Char(','));
    const QString shot = parts.value(0);
    if (!showPicture(profile, levelShot(app, shot + QStringLiteral(".jpg"))) &&
        !showPicture(profile, levelShot(app, shot + QStringLiteral(".bmp"))))
        showPicture(profile, levelShot(app, QStringLiteral("unknown.jpg")));
    profile.setText(F::lblMapType, parts.value(2));
    profile.setText(F::lblLongMapName, parts.value(1));
}

void tvwAvailMaps_NodeClick(AppContext& app, ServerProfile& profile, const QModelIndex& index)
{
    tvwAvailMaps_NodeClick(app, profile, mapTreeOf(profile).nodeAt(index));
}

void tvwAvailMaps_DblClick(AppContext& app, ServerProfile& profile)
{
    try {
        const MapTreeNode* node = mapTreeOf(profile).selectedNode();
        if (!node)
            return;
        // The archive test looks at the small letters only: an archive named in capitals
        // counts as a map.
        if (node->text.endsWith(QLatin1String("pk3")) ||
            node->text.compare(QLatin1String("jedi"), Qt::CaseInsensitive) == 0) {
            showUnknown(app, profile);
            return;
        }
        const QString type = profile.text(F::lblMapType);
        if (firstMapType(profile).isEmpty())
            setFirstMapType(profile, type);
        Field& grid = profile.field(F::lsvMapRotation);
        grid.addRow(rotationRow(node->text, profile.text(F::lblLongMapName), type));
        profile.setText(F::lblMapsSelected, QString::number(grid.count()) + QStringLiteral(" Selected Maps"));
        profile.setConfigurationChanged(true);
    } catch (const RuntimeError&) {
        // Failures of the double click are skipped.
    }
}

} // namespace steward
