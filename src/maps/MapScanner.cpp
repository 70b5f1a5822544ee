#include "maps/MapScanner.h"

#include "maps/ArchiveReader.h"
#include "maps/ArenaScript.h"
#include "maps/EntryChecks.h"
#include "maps/LineTokeniser.h"
#include "maps/MapScanChain.h"
#include "maps/MapRotation.h"
#include "maps/MapTree.h"
#include "maps/ScanProgress.h"
#include "maps/StockMaps.h"
#include "platform/Prompts.h"
#include "settings/SettingsStore.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/FileDialog.h"
#include "support/Strings.h"
#include "support/TextFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace steward {

QString levelShotFolder(const AppContext& app)
{
    QString folder = app.programFolder;
    AddSlash(folder);
    return folder + findChildFolder(folder, QStringLiteral("levelshots"), QStringLiteral("levelshots"));
}

QString scriptFolder(const AppContext& app)
{
    QString folder = app.programFolder;
    AddSlash(folder);
    return folder + findChildFolder(folder, QStringLiteral("Scripts"), QStringLiteral("Scripts"));
}

QString cutFolderEnd(QString folder)
{
    if (folder.endsWith(QChar(0)) || folder.endsWith(QLatin1Char('/')))
        folder.chop(1);
    return folder;
}

QString catalogueRecord(const QString& archive, const QString& mapName, const QString& longName, const QString& type)
{
    return QStringList{archive, mapName, mapName, longName, type}.join(QLatin1Char(','));
}

int fileAttributes(const QString& path)
{
    const QFileInfo info(path);
    int word = 0;
    if (!info.permission(QFile::WriteOwner))
        word |= 1;
    if (info.fileName().startsWith(QLatin1Char('.')))
        word |= 2;
    if (info.isDir())
        word |= 16;
    return word;
}

namespace {

QString archiveMessage(const QString& archive)
{
    return QStringLiteral("The following pk3 ") + archive +
           QStringLiteral(" file does not contain an arena file, Arena Steward is unable to process this file") +
           kCrLf +
           QStringLiteral("it is recomended that you remove this pk3 file from your Jedi Main folder and run this map "
                          "scan again") +
           kTail;
}

QString pathMessage()
{
    const QStringList lines = {
        QStringLiteral("Arena Steward was unable to locate any pk3 files in your Jedi base folder"),
        QStringLiteral("This might be because the path to Jedi Knight 2 is inncorrect"),
        QStringLiteral("Arena Steward will now close and reset the selected path to Jedi Knight 2"),
        QStringLiteral("Restart Arena Steward and make sure you select the correct path to Jedi Knight 2"),
        QStringLiteral("If this problem continues please contact ") + kContactAddress,
    };
    QStringList tailed;
    for (const QString& line : lines)
        tailed << line + kTail;
    return tailed.join(kCrLf);
}

// The state of one scan that lives across archives.
struct Scan {
    Scan(AppContext& a, ScanProgress& p, TextFileWriter& c) : app(a), progress(p), catalogue(c) {}

    AppContext& app;
    ScanProgress& progress;
    TextFileWriter& catalogue;
    LineTokeniser entryFields{QStringLiteral("|")};
    // The long name and type read last from a script; never reset between archives.
    QString longName;
    QString type;
    // The scripts folders that passed the folder checks of scriptInMemory, by the
    // entries' folder name, with the identity each had then: found again as the same
    // folder, it needs no second walk of the program folder and its canonical paths.
    struct CheckedFolder {
        QString path;
        dev_t device = 0;
        ino_t inode = 0;
    };
    QHash<QString, CheckedFolder> checkedFolders;

    QString entryName(const ArchiveReader& reader, int index)
    {
        entryFields.setText(reader.entryText(index));
        return entryFields.field(2);
    }

    void record(const QString& archive, const QString& mapName, const QString& longText, const QString& typeText)
    {
        catalogue.line(catalogueRecord(archive, mapName, longText, typeText));
    }

    // Reads the first block of an extracted script into longName and type.
    void readScript(const QString& path) { readArenaScript(readLines(path), longName, type); }

    // The one entry that extracting the script `name` would write, when reading it in
    // memory leaves the same behind as writing, reading and deleting it: a plain,
    // writable entry of the scripts folder with exactly that name, a scripts folder that
    // is there, inside the program's folder, writable and the one the scan reads from,
    // and nothing yet at the script's place.
    std::optional<int> scriptInMemory(const ArchiveReader& reader, const QString& name)
    {
        if (name.contains(QLatin1Char('*')) || name.contains(QLatin1Char('?')))
            return std::nullopt;
        const QString pattern = QStringLiteral("Scripts\\") + name;
        std::optional<int> sole;
        for (int j = 0; j < reader.entryCount(); ++j) {
            if (!ArchiveReader::matches(reader.entry(j), pattern))
                continue;
            if (sole)
                return std::nullopt;
            sole = j;
        }
        if (!sole)
            return std::nullopt;
        const ArchiveEntry& e = reader.entry(*sole);
        if (e.isLink || e.readOnly || e.name != name || !ArchiveReader::isSafeName(e.path) ||
            e.size > static_cast<quint64>(ArchiveReader::kDefaultLimit))
            return std::nullopt;

        const QString folder = checkedScriptFolder(e.folder);
        if (folder.isEmpty())
            return std::nullopt;
        const QByteArray local = QFile::encodeName(folder);
        struct stat info {};
        if (::access(local.constData(), W_OK | X_OK) != 0 ||
            ::lstat(QFile::encodeName(folder + QLatin1Char('/') + name).constData(), &info) == 0)
            return std::nullopt;
        return sole;
    }

    // The scripts folder that entries of the folder entryFolder land in when it is the
    // one the scan reads from, a folder inside the program's folder; empty otherwise.
    QString checkedScriptFolder(const QString& entryFolder)
    {
        struct stat info {};
        if (const auto checked = checkedFolders.constFind(entryFolder); checked != checkedFolders.constEnd()) {
            if (::lstat(QFile::encodeName(checked->path).constData(), &info) == 0 && S_ISDIR(info.st_mode) &&
                info.st_dev == checked->device && info.st_ino == checked->inode)
                return checked->path;
            checkedFolders.remove(entryFolder);
        }
        QString program = app.programFolder;
        AddSlash(program);
        const QString readFrom = findChildFolder(program, QStringLiteral("Scripts"), QStringLiteral("Scripts"));
        if (findChildFolder(program, entryFolder, entryFolder) != readFrom)
            return {};
        const QFileInfo folder(program + readFrom);
        const QString root = QFileInfo(app.programFolder).canonicalFilePath();
        if (!folder.isDir() || root.isEmpty() || folder.canonicalFilePath() != root + QLatin1Char('/') + readFrom)
            return {};
        const QString path = folder.filePath();
        if (::lstat(QFile::encodeName(path).constData(), &info) == 0 && S_ISDIR(info.st_mode))
            checkedFolders.insert(entryFolder, {path, info.st_dev, info.st_ino});
        return path;
    }

    void archive(const QString& folder, const QString& file, ArchiveShelf* shelf)
    {
        const QString path = folder + QLatin1Char('/') + file;
        progress.setActivity(QStringLiteral("Scanning ") + file + QStringLiteral(" ...."));
        if (shelf) {
            ArchiveReader& reader = shelf->open(path);
            archive(reader, file);
            reader.park();
        } else {
            ArchiveReader reader(path);
            archive(reader, file);
        }
    }

    void archive(ArchiveReader& reader, const QString& file)
    {
        QString mapName;
        if (stockPass(reader, file, mapName))
            scriptPass(reader, file, mapName);
    }

    // First pass: stock maps by name; the first other map ends the pass. True when
    // that map, named in mapName, is a custom one.
    bool stockPass(ArchiveReader& reader, const QString& file, QString& mapName)
    {
        const QString upper = file.toUpper();
        const int count = reader.entryCount();
        bool custom = false;
        for (int i = 0; i < count; ++i) {
            const QString name = entryName(reader, i);
            if (!name.toLower().endsWith(QLatin1String("bsp")))
                continue;
            const auto dot = name.indexOf(QLatin1Char('.'));
            if (dot < 0)
                raiseError(err::InvalidProcedureCall, {}, app.programName);
            mapName = name.left(dot);
            if (const StockMap* stock = findStockMap(mapName)) {
                record(file, mapName, stock->longName, stock->type);
                continue;
            }
            if (upper == QLatin1String("ASSETS0.PK3"))
                continue;
            custom = true;
            break;
        }
        return custom;
    }

    // Second pass: the first arena script of the archive names the custom map.
    void scriptPass(ArchiveReader& reader, const QString& file, const QString& mapName)
    {
        const int count = reader.entryCount();
        bool found = false;
        bool selected = false; // the selection of an archive grows with each script tried
        QString readScriptFile;
        for (int i = 0; i < count; ++i) {
            const QString name = entryName(reader, i);
            if (!name.toLower().endsWith(QLatin1String("arena")))
                continue;
            if (const QString why = entryNameProblem(name); !why.isEmpty()) {
                logRefusal(app, err::RefusedEntryName, QStringLiteral("::CMapScanner.ScanForMaps(Function)"),
                           QStringLiteral("The script %1 of %2 was left out: %3").arg(printableName(name), file, why));
                continue;
            }
            found = true;
            if (!selected) {
                if (const std::optional<int> entry = scriptInMemory(reader, name)) {
                    // Read where it lies: the script would have been written, read and deleted.
                    readArenaScript(textLines(reader.readEntry(*entry)), longName, type);
                    record(file, mapName, longName, type.toUpper());
                    break;
                }
            }
            selected = true;
            checkedFolders.clear(); // the extraction may make or change folders
            reader.selectFiles(QStringLiteral("Scripts\\") + name);
            reader.extract(app.programFolder);
            const QString script = scriptFolder(app) + QLatin1Char('/') + name;
            readScript(script);
            record(file, mapName, longName, type.toUpper());
            if (QFileInfo::exists(script)) {
                readScriptFile = script;
                break;
            }
        }
        if (!readScriptFile.isEmpty()) {
            if (fileAttributes(readScriptFile) != 1 && !QFile::remove(readScriptFile))
                raiseError(err::PathFileAccess, {}, readScriptFile);
        } else if (!found) {
            record(file, mapName, mapName, QStringLiteral("unknown"));
        }
    }
};

// The files of the base folder that the scan reads: the pk3 archives but the second
// stock one.
bool isScanned(const QString& file)
{
    const QString upper = file.toUpper();
    return upper.endsWith(QLatin1String("PK3")) && upper != QLatin1String("ASSETS1.PK3");
}

} // namespace

QStringList baseFolderFiles(AppContext& app, const QString& gamePath, const QString& baseName, QString* folderPath)
{
    QString folder = gamePath;
    AddSlash(folder);
    folder += findChildFolder(folder, baseName, baseName);
    if (!QFileInfo(folder).isDir())
        raiseError(err::PathNotFound, {}, app.programName);
    if (folderPath)
        *folderPath = folder;
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name | QDir::IgnoreCase);
}

bool ScanForMaps(AppContext& app, const QString& baseName, const QString& catalogueName, const QString& gamePath,
                 MapScanChain* chain)
{
    ScanProgress& progress = scanProgress(app);
    bool result = true;
    progress.show();
    progress.setActivity(QString());
    progress.setBusy(true);

    std::unique_ptr<TextFileWriter> catalogue;
    QString archive;
    try {
        QString folder;
        const QStringList files = baseFolderFiles(app, gamePath, baseName, &folder);
        progress.setMaximum(static_cast<int>(files.size()));

        catalogue = std::make_unique<TextFileWriter>(app.programFile(catalogueName + QStringLiteral(".aml")));
        progress.setValue(1);

        Scan scan(app, progress, *catalogue);
        if (chain) {
            // The archives' tables of contents are read on the idle workers ahead of the scan.
            QStringList archives;
            for (const QString& file : files)
                if (isScanned(file))
                    archives << folder + QLatin1Char('/') + file;
            chain->archives.readAhead(chain->converter.pool(), std::move(archives));
        }
        int fileCount = 0;
        for (const QString& file : files) {
            fileCount = toInt16(fileCount + 1);
            progress.setValue(fileCount);
            if (!isScanned(file))
                continue;
            archive = file;
            scan.archive(folder, file, chain ? &chain->archives : nullptr);
        }

        progress.setValue(0);
        catalogue->close();
        progress.setBusy(false);
    } catch (const RuntimeError& e) {
        result = false;
        const bool fileMissing = e.number() == err::FileNotFound;
        const bool pathMissing = e.number() == err::PathNotFound;
        if (fileMissing || pathMissing)
            progress.hide();
        if (fileMissing) {
            app.prompts().message(archiveMessage(archive), kProductTitle, Icon::Exclamation);
        } else if (pathMissing) {
            app.prompts().message(pathMessage(), kProductTitle, Icon::Critical);
            app.store().SaveSetting(QStringLiteral("PathToJedi"), QString());
            app.store().SaveSetting(QStringLiteral("RunOnce"), QStringLiteral("0"));
        } else {
            app.prompts().message(e.description(), e.source().isEmpty() ? app.programName : e.source(),
                                  Icon::Exclamation);
        }
        progress.setValue(0);
        if (catalogue)
            catalogue->close();
        progress.setBusy(false);
    }
    if (chain)
        chain->archives.stopReadingAhead();
    progress.phaseDone();
    return result;
}

} // namespace steward
