#include "maps/LevelShots.h"

#include "maps/ArchiveReader.h"
#include "maps/EntryChecks.h"
#include "maps/MapScanner.h"
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

bool ExtractLevelShots(AppContext& app, const QString& baseName, const QString& gamePath)
{
    ScanProgress& progress = scanProgress(app);
    try {
        EnsureFallbackPictures(app);
        QString folder;
        const QStringList files = baseFolderFiles(app, gamePath, baseName, &folder);
        progress.setMaximum(static_cast<int>(files.size()));
        int counter = 0;
        ArchiveReader reader;
        for (const QString& file : files) {
            progress.setValue(++counter);
            if (!file.toUpper().endsWith(QLatin1String("PK3")))
                continue;
            progress.setActivity(QStringLiteral("Copying images from ") + file + QStringLiteral("...."));
            reader.open(folder + QLatin1Char('/') + file);
            reader.setEntryFilter([&app, &file](const ArchiveEntry& entry) {
                const QString why = entryNameProblem(entry.name);
                if (!why.isEmpty())
                    logRefusal(app, err::RefusedEntryName, QStringLiteral("::CMapScanner.ExtractLevelShots(Function)"),
                               QStringLiteral("The level shot %1 of %2 was left out: %3")
                                   .arg(printableName(entry.path), file, why));
                return why.isEmpty();
            });
            reader.selectFiles(QStringLiteral("levelshots\\*.jpg"));
            reader.selectFiles(QStringLiteral("levelshots\\*.tga"));
            reader.extract(app.programFolder);
        }
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::CMapScanner.ExtractLevelShots(Function)"), false, false);
    }
    progress.setValue(0);
    progress.setActivity(QStringLiteral("Done"));
    return true;
}

bool ConvertTgaToBmp(AppContext& app)
{
    ScanProgress& progress = scanProgress(app);
    try {
        progress.setActivity(QString());
        progress.setActivityVisible(true);
        progress.setActivity(QStringLiteral("Verifying images...."));

        const QString folder = levelShotFolder(app);
        if (!QFileInfo(folder).isDir())
            raiseError(err::PathNotFound, {}, app.programName);
        const int count = static_cast<int>(QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System).size());
        progress.setMaximum(count);

        // The folder is walked while bmp files appear in it, so the counter may pass
        // the count taken before; the bar stops at its maximum.
        int counter = 0;
        QDirIterator walk(folder, QDir::Files | QDir::Hidden | QDir::System);
        while (walk.hasNext()) {
            const QString path = walk.next();
            ++counter;
            progress.setValue(std::min(counter, count));
            const QString name = walk.fileName();
            if (!name.toLower().endsWith(QLatin1String("tga")))
                continue;
            progress.setActivity(QStringLiteral("Converting ") + name + QStringLiteral("...."));

            TgaFault fault = TgaFault::None;
            const QImage picture = readTgaPicture(path, &fault);
            if (fault == TgaFault::TooLarge)
                logRefusal(app, err::RefusedPicture, QStringLiteral("::CMapScanner.ConvertTgaToBmp(Function)"),
                           QStringLiteral("The level shot %1 was not converted: it is larger than %2 by %2 pixels")
                               .arg(printableName(name))
                               .arg(kLargestTgaSide));
            if (!picture.isNull())
                picture.convertToFormat(QImage::Format_RGB32)
                    .save(folder + QLatin1Char('/') + fileStem(name) + QStringLiteral(".bmp"), "BMP");

            QFile tga(path);
            tga.setPermissions(tga.permissions() | QFile::WriteOwner);
            if (!tga.remove())
                raiseError(err::PathFileAccess, {}, app.programName);
        }
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::CMapScanner.ConvertTgaToBmp(Function)"), false, false);
    }
    return true;
}

} // namespace steward
