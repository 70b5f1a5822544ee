// A whole archive through the chained scan (catalogue, level shots, conversion) in a
// sandbox that lives for the run: every input is the only pk3 of the base folder, and
// what the scan writes must stay inside the program's folder.
#include "FuzzInput.h"
#include "maps/MapScanChain.h"
#include "maps/MapScanner.h"
#include "testkit/TestApp.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <filesystem>

using namespace steward;
using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace {

// A folder's entries, read straight from the folder, as this runs for every input.
std::vector<fs::path> listing(const fs::path& folder)
{
    std::error_code error;
    return {fs::directory_iterator(folder, error), fs::directory_iterator()};
}

QStringList names(const QString& folder)
{
    QStringList found;
    for (const fs::path& path : listing(QFile::encodeName(folder).toStdString()))
        found << QFile::decodeName(path.filename().c_str());
    found.sort();
    return found;
}

// Removes a file, a link or a folder with everything in it; a folder that refuses is
// opened up first.
void removeAll(const fs::path& path)
{
    std::error_code error;
    if (fs::is_directory(fs::symlink_status(path, error))) {
        fs::permissions(path, fs::perms::owner_all, fs::perm_options::add, error);
        for (const fs::path& inner : listing(path))
            removeAll(inner);
    }
    fs::remove(path, error);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz_archive_scan";
    static char* argv[] = {name, nullptr};
    static QCoreApplication qt(argc, argv);
    // A folder in memory where there is one: the scan writes its catalogue and pictures.
    [[maybe_unused]] static const bool inMemory =
        QFileInfo(u"/dev/shm"_s).isWritable() && qputenv("TMPDIR", "/dev/shm");
    static testing::TestApp t;
    // The base folder under the exact name the scan asks for, so that no input pays for
    // a search of the game folder; the sandbox's own files and folders before any input.
    static const QString base = t.gameFolder() + u"Base"_s;
    static const QStringList top = [] {
        QDir(t.baseFolder()).removeRecursively();
        QDir().mkpath(base);
        QDir().mkpath(t.programFolder());
        return names(t.root());
    }();

    // The program's folder is emptied but for the fallback pictures.
    std::error_code error;
    for (const fs::path& path : listing(QFile::encodeName(t.programFolder()).toStdString())) {
        if (path.filename() != "levelshots" || !fs::is_directory(fs::symlink_status(path, error)))
            removeAll(path);
        else
            for (const fs::path& shot : listing(path))
                if (shot.filename() != "unknown.jpg" && shot.filename() != "unknown.bmp")
                    removeAll(shot);
    }
    t.prompts.shown.clear();
    testing::writeFile(base + u"/custom.pk3"_s, fuzz::bytesOf(data, size));
    fuzz::require(QFileInfo(base + u"/custom.pk3"_s).size() == qint64(size), "the archive can be written");
    MapScanChain chain;
    if (ScanForMaps(*t.app, u"Base"_s, u"Jedi"_s, t.gameFolder(), &chain)) {
        fuzz::require(ExtractLevelShots(*t.app, u"Base"_s, t.gameFolder(), &chain), "the picture phase stays true");
        fuzz::require(ConvertTgaToBmp(*t.app, &chain), "the conversion stays true");
    }
    fuzz::require(names(t.root()) == top, "nothing appears beside the sandbox's folders");
    fuzz::require(names(base) == QStringList{u"custom.pk3"_s}, "nothing is written into the base folder");
    return 0;
}
