// A whole archive through the scan: the catalogue, the level shots and their
// conversion, in a sandbox that lives for the run. Every input is the only pk3 of the
// base folder; what the scan writes must stay inside the program's folder.
#include "FuzzInput.h"
#include "maps/MapScanner.h"
#include "support/AppContext.h"
#include "testkit/TestApp.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <memory>

using namespace steward;

namespace {

struct Sandbox {
    testing::TestApp t;
    QString archive = t.baseFolder() + QStringLiteral("/custom.pk3");
    QStringList top; ///< the sandbox's own files and folders before any input

    Sandbox()
    {
        QDir().mkpath(t.baseFolder());
        QDir().mkpath(t.programFolder());
        top = entries(t.root());
    }

    static QStringList entries(const QString& folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

    // Empties the program's folder, read-only files too, but for the fallback pictures.
    void clearProgramFolder()
    {
        QDir program(t.programFolder());
        for (const QString& name : entries(t.programFolder())) {
            const QString path = t.programFolder() + QLatin1Char('/') + name;
            if (name == QLatin1String("levelshots") && QFileInfo(path).isDir() && !QFileInfo(path).isSymLink()) {
                for (const QString& shot : entries(path)) {
                    if (shot == QLatin1String("unknown.jpg") || shot == QLatin1String("unknown.bmp"))
                        continue;
                    QFile::setPermissions(path + QLatin1Char('/') + shot, QFile::ReadOwner | QFile::WriteOwner);
                    if (!QDir(path + QLatin1Char('/') + shot).removeRecursively())
                        QFile::remove(path + QLatin1Char('/') + shot);
                }
                continue;
            }
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            if (QFileInfo(path).isDir() && !QFileInfo(path).isSymLink()) {
                QDir sub(path);
                for (const QString& inner : entries(path))
                    QFile::setPermissions(path + QLatin1Char('/') + inner, QFile::ReadOwner | QFile::WriteOwner);
                sub.removeRecursively();
            } else {
                program.remove(name);
            }
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
    // A folder in memory where there is one: the scan works through files.
    static const bool inMemory = QFileInfo(QStringLiteral("/dev/shm")).isWritable() &&
                                 qputenv("TMPDIR", QByteArrayLiteral("/dev/shm"));
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
    if (ScanForMaps(app, base, QStringLiteral("Jedi"), box.t.gameFolder())) {
        fuzz::require(ExtractLevelShots(app, base, box.t.gameFolder()), "the picture phase stays true");
        fuzz::require(ConvertTgaToBmp(app), "the conversion stays true");
    }
    fuzz::require(Sandbox::entries(box.t.root()) == box.top, "nothing appears beside the sandbox's folders");
    fuzz::require(Sandbox::entries(box.t.baseFolder()) == QStringList{QStringLiteral("custom.pk3")},
                  "nothing is written into the base folder");
    return 0;
}
