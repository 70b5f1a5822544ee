// A whole archive through the scan: the catalogue, the level shots and their
// conversion as the scan command chains them, in a sandbox that lives for the run. Every input is the only pk3 of the
// base folder; what the scan writes must stay inside the program's folder.
#include "FuzzInput.h"
#include "maps/MapScanChain.h"
#include "maps/MapScanner.h"
#include "support/AppContext.h"
#include "testkit/TestApp.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using namespace steward;

namespace {

struct Sandbox {
    testing::TestApp t;
    // The base folder under the exact name the scan asks for, so that no input pays
    // for a search of the game folder.
    QString base = t.gameFolder() + QStringLiteral("Base");
    QString archive = base + QStringLiteral("/custom.pk3");
    QStringList top; ///< the sandbox's own files and folders before any input

    Sandbox()
    {
        QDir(t.baseFolder()).removeRecursively();
        QDir().mkpath(base);
        QDir().mkpath(t.programFolder());
        top = entries(t.root());
    }

    // The names in a folder, sorted; read straight from the folder, as this runs for
    // every input.
    static QStringList entries(const QString& folder)
    {
        QStringList names;
        if (DIR* dir = ::opendir(QFile::encodeName(folder).constData())) {
            while (const dirent* entry = ::readdir(dir))
                if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
                    names << QFile::decodeName(entry->d_name);
            ::closedir(dir);
        }
        names.sort();
        return names;
    }

    // Removes a file, a link or a folder with everything in it; a folder that refuses
    // is opened up first.
    static void remove(const QString& path)
    {
        const QByteArray local = QFile::encodeName(path);
        struct stat info {};
        if (::lstat(local.constData(), &info) != 0)
            return;
        if (!S_ISDIR(info.st_mode)) {
            ::unlink(local.constData());
            return;
        }
        ::chmod(local.constData(), 0700);
        for (const QString& inner : entries(path))
            remove(path + QLatin1Char('/') + inner);
        ::rmdir(local.constData());
    }

    // Empties the program's folder but for the fallback pictures.
    void clearProgramFolder()
    {
        for (const QString& name : entries(t.programFolder())) {
            const QString path = t.programFolder() + QLatin1Char('/') + name;
            if (name == QLatin1String("levelshots") && QFileInfo(path).isDir() && !QFileInfo(path).isSymLink()) {
                for (const QString& shot : entries(path))
                    if (shot != QLatin1String("unknown.jpg") && shot != QLatin1String("unknown.bmp"))
                        remove(path + QLatin1Char('/') + shot);
                continue;
            }
            remove(path);
        }
        t.prompts.shown.clear();
    }
};

Sandbox& sandbox()
{
    static int argc = 1;
    static char name[] = "fuzz_archive_scan";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);
    // A folder in memory where there is one: the scan writes its catalogue and pictures.
    static const bool inMemory =
        QFileInfo(QStringLiteral("/dev/shm")).isWritable() && qputenv("TMPDIR", QByteArrayLiteral("/dev/shm"));
    Q_UNUSED(inMemory);
    static Sandbox box;
    return box;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Sandbox& box = sandbox();
    box.clearProgramFolder();
    {
        QFile archive(box.archive);
        fuzz::require(archive.open(QIODevice::WriteOnly | QIODevice::Truncate), "the archive can be written");
        archive.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    }
    AppContext& app = *box.t.app;
    const QString base = QStringLiteral("Base");
    MapScanChain chain;
    if (ScanForMaps(app, base, QStringLiteral("Jedi"), box.t.gameFolder(), &chain)) {
        fuzz::require(ExtractLevelShots(app, base, box.t.gameFolder(), &chain), "the picture phase stays true");
        fuzz::require(ConvertTgaToBmp(app, &chain), "the conversion stays true");
    }
    fuzz::require(Sandbox::entries(box.t.root()) == box.top, "nothing appears beside the sandbox's folders");
    fuzz::require(Sandbox::entries(box.base) == QStringList{QStringLiteral("custom.pk3")},
                  "nothing is written into the base folder");
    return 0;
}
