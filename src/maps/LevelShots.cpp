#include "maps/LevelShots.h"

#include "maps/ArchiveReader.h"
#include "maps/EntryChecks.h"
#include "maps/MapScanChain.h"
#include "maps/MapScanner.h"
#include "maps/PackedShot.h"
#include "maps/ScanProgress.h"
#include "maps/TgaPicture.h"
#include "support/AppContext.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/Strings.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImage>

#include <algorithm>
#include <cstring>
#include <dirent.h>
#include <sys/stat.h>

// The fallback pictures are resources of the core library, which the linker would
// leave out of a program that never names them.
static void initCoreResources() { Q_INIT_RESOURCE(core); }

namespace steward {

QString fileStem(const QString& name)
{
    const auto dot = name.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? name : name.left(dot);
}

bool EnsureFallbackPictures(const AppContext& app)
{
    static const bool resources = (initCoreResources(), true);
    Q_UNUSED(resources);
    const QString folder = levelShotFolder(app);
    if (!QDir().mkpath(folder))
        return false;
    bool ok = true;
    for (const char* name : {"unknown.jpg", "unknown.bmp"}) {
        const QString target = folder + QLatin1Char('/') + QString::fromLatin1(name);
        if (QFileInfo::exists(target))
            continue;
        QFile source(QStringLiteral(":/core/") + QString::fromLatin1(name));
        QFile out(target);
        if (!source.open(QIODevice::ReadOnly) || !out.open(QIODevice::WriteOnly) ||
            out.write(source.readAll()) != source.size())
            ok = false;
    }
    return ok;
}

namespace {

const QString kExtractTag = QStringLiteral("::CMapScanner.ExtractLevelShots(Function)");
const QString kConvertTag = QStringLiteral("::CMapScanner.ConvertTgaToBmp(Function)");

void selectLevelShots(ArchiveReader& reader)
{
    reader.selectFiles(QStringLiteral("levelshots\\*.jpg"));
    reader.selectFiles(QStringLiteral("levelshots\\*.tga"));
}

bool isTga(const ArchiveEntry& entry) { return entry.name.endsWith(QLatin1String(".tga"), Qt::CaseInsensitive); }

// The bmp that a tga entry becomes, without regard to case: two entries with the same
// key may replace one another's file or picture.
QString shotKey(const ArchiveEntry& entry)
{
    return (entry.folder + QLatin1Char('/') + fileStem(entry.name)).toLower();
}

// Whether the conversion walks the folder that entries of a folder name land in.
class ShotFolders {
public:
    explicit ShotFolders(const AppContext& app)
        : m_root(app.programFolder), m_walked(QFileInfo(levelShotFolder(app)).canonicalFilePath())
    {
        AddSlash(m_root);
    }
    bool ready() const { return !m_walked.isEmpty(); }
    bool walked(const QString& entryFolder)
    {
        auto known = m_known.constFind(entryFolder);
        if (known == m_known.constEnd())
            known = m_known.insert(
                entryFolder,
                QFileInfo(m_root + findChildFolder(m_root, entryFolder, entryFolder)).canonicalFilePath() == m_walked);
        return *known;
    }

private:
    QString m_root;
    QString m_walked;
    QHash<QString, bool> m_known;
};

// Counts, for each bmp, the tga entries of the chain's archives that become it, as far
// as the archives can be read; reading stops at the first that can't, where the phase
// will stop too. The last entry of each bmp whose folder the conversion walks is
// planned for reading ahead.
void planShots(MapScanChain& chain, ShotFolders& folders, const QString& folder, const QStringList& files)
{
    QHash<QString, int>& counts = chain.shotsToCome;
    counts.clear();
    struct Shot {
        ShotPrefetch::Planned planned;
        QString folder;
        QString key;
    };
    std::vector<Shot> shots;
    try {
        for (const QString& file : files) {
            if (!file.toUpper().endsWith(QLatin1String("PK3")))
                continue;
            const QString path = folder + QLatin1Char('/') + file;
            ArchiveReader& reader = chain.archives.open(path);
            reader.setEntryFilter([](const ArchiveEntry& entry) { return entryNameProblem(entry.name).isEmpty(); });
            selectLevelShots(reader);
            for (const int i : reader.selectedEntries()) {
                const ArchiveEntry& e = reader.entry(i);
                if (!isTga(e))
                    continue;
                shots.push_back({{path, i}, e.folder, shotKey(e)});
                ++counts[shots.back().key];
            }
            reader.resetSelection();
            reader.park();
            chain.counted.insert(path);
        }
    } catch (const RuntimeError&) {
    }
    std::vector<ShotPrefetch::Planned> plan;
    QHash<QString, int> seen;
    for (const Shot& shot : shots)
        if (++seen[shot.key] == counts.value(shot.key) && folders.walked(shot.folder))
            plan.push_back(shot.planned);
    chain.prefetch.setPlan(std::move(plan));
}

// The chain's way through one archive: what extract writes, except that the last tga
// entry of each bmp goes to the converter in memory when it would land in the folder
// that the conversion walks.
void extractForChain(AppContext& app, MapScanChain& chain, ArchiveReader& reader, ShotFolders& folders)
{
    const bool counted = chain.counted.contains(reader.archivePath());
    reader.clearSkipped();
    for (const int i : reader.selectedEntries()) {
        const ArchiveEntry& e = reader.entry(i);
        try {
            bool inMemory = false;
            if (isTga(e) && counted) {
                int& toCome = chain.shotsToCome[shotKey(e)];
                toCome = std::max(0, toCome - 1);
                inMemory = toCome == 0 && folders.walked(e.folder);
            }
            if (!inMemory) {
                reader.extractEntry(i, app.programFolder);
                continue;
            }
            QString target;
            reader.prepareTake(i, app.programFolder, &target);
            const QString bmp = QFileInfo(target).path() + QLatin1Char('/') + fileStem(e.name) + QStringLiteral(".bmp");
            PreparedShot shot = chain.prefetch.take(chain.archives, reader.archivePath(), i);
            if (shot.verified) {
                reader.clearTarget(target);
                chain.converter.addDecoded(e.name, shot.fault, std::move(shot.bmp), bmp);
            } else {
                // The reader's own reading gives the picture or the error it always gave.
                QByteArray tga = reader.readEntry(i);
                reader.clearTarget(target);
                chain.converter.add(e.name, std::move(tga), bmp);
            }
        } catch (const RuntimeError& error) {
            if (error.number() != err::UnsafeEntry)
                throw;
            reader.noteSkipped(e.path);
        }
    }
}

// The files of a folder, links and other special files counted, folders not: a count
// of names alone, without the details of each file that a listing gathers.
int countFiles(const QString& folder)
{
    int count = 0;
    const QByteArray local = QFile::encodeName(folder);
    if (DIR* dir = ::opendir(local.constData())) {
        while (const dirent* entry = ::readdir(dir)) {
            if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0)
                continue;
            if (entry->d_type == DT_DIR)
                continue;
            struct stat info {};
            if ((entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN) &&
                ::stat((local + '/' + entry->d_name).constData(), &info) == 0 && S_ISDIR(info.st_mode))
                continue;
            ++count;
        }
        ::closedir(dir);
    }
    return count;
}

void noteConversion(AppContext& app, const QString& name, TgaFault fault)
{
    if (fault == TgaFault::TooLarge)
        logRefusal(app, err::RefusedPicture, kConvertTag,
                   QStringLiteral("The level shot %1 was not converted: it is larger than %2 by %2 pixels")
                       .arg(printableName(name))
                       .arg(kLargestTgaSide));
}

} // namespace

bool ExtractLevelShots(AppContext& app, const QString& baseName, const QString& gamePath, MapScanChain* chain)
{
    ScanProgress& progress = scanProgress(app);
    try {
        EnsureFallbackPictures(app);
        QString folder;
        const QStringList files = baseFolderFiles(app, gamePath, baseName, &folder);
        progress.setMaximum(static_cast<int>(files.size()));
        ShotFolders shotFolders(app);
        if (chain)
            planShots(*chain, shotFolders, folder, files);
        int counter = 0;
        ArchiveReader ownReader;
        for (const QString& file : files) {
            progress.setValue(++counter);
            if (!file.toUpper().endsWith(QLatin1String("PK3")))
                continue;
            progress.setActivity(QStringLiteral("Copying images from ") + file + QStringLiteral("...."));
            const QString path = folder + QLatin1Char('/') + file;
            ArchiveReader& reader = chain ? chain->archives.open(path) : (ownReader.open(path), ownReader);
            reader.setEntryFilter([&app, &file](const ArchiveEntry& entry) {
                const QString why = entryNameProblem(entry.name);
                if (!why.isEmpty())
                    logRefusal(app, err::RefusedEntryName, kExtractTag,
                               QStringLiteral("The level shot %1 of %2 was left out: %3")
                                   .arg(printableName(entry.path), file, why));
                return why.isEmpty();
            });
            selectLevelShots(reader);
            if (chain && shotFolders.ready()) {
                extractForChain(app, *chain, reader, shotFolders);
                reader.park();
            } else {
                reader.extract(app.programFolder);
            }
        }
    } catch (const RuntimeError& e) {
        reportTagged(app, e, kExtractTag, false, false);
    }
    progress.setValue(0);
    progress.setActivity(QStringLiteral("Done"));
    progress.phaseDone();
    return true;
}

bool ConvertTgaToBmp(AppContext& app, MapScanChain* chain)
{
    ScanProgress& progress = scanProgress(app);
    try {
        progress.setActivity(QString());
        progress.setActivityVisible(true);
        progress.setActivity(QStringLiteral("Verifying images...."));
        // The pictures converted while the archives were read come first, in their order.
        const std::vector<ConvertedShot> converted = chain ? chain->converter.finish() : std::vector<ConvertedShot>();

        const QString folder = levelShotFolder(app);
        if (!QFileInfo(folder).isDir())
            raiseError(err::PathNotFound, {}, app.programName);
        const int count = countFiles(folder) + static_cast<int>(converted.size());
        progress.setMaximum(count);

        // The folder is walked while bmp files appear in it, so the counter may pass
        // the count taken before; the bar stops at its maximum.
        int counter = 0;
        for (const ConvertedShot& shot : converted) {
            ++counter;
            progress.setValue(std::min(counter, count));
            progress.setActivity(QStringLiteral("Converting ") + shot.name + QStringLiteral("...."));
            noteConversion(app, shot.name, shot.fault);
        }
        QDirIterator walk(folder, QDir::Files | QDir::Hidden | QDir::System);
        while (walk.hasNext()) {
            const QString path = walk.next();
            ++counter;
            progress.setValue(std::min(counter, count));
            const QString name = walk.fileName();
            if (!name.toLower().endsWith(QLatin1String("tga")))
                continue;
            progress.setActivity(QStringLiteral("Converting ") + name + QStringLiteral("...."));
            noteConversion(
                app, name,
                convertTgaToBmpFile(path, folder + QLatin1Char('/') + fileStem(name) + QStringLiteral(".bmp")));

            QFile tga(path);
            tga.setPermissions(tga.permissions() | QFile::WriteOwner);
            if (!tga.remove())
                raiseError(err::PathFileAccess, {}, app.programName);
        }
    } catch (const RuntimeError& e) {
        reportTagged(app, e, kConvertTag, false, false);
    }
    progress.phaseDone();
    return true;
}

} // namespace steward
