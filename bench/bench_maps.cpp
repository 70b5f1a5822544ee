// Times the map catalogue's whole chain (scan, level shots, conversion, tree) on a
// base folder of 1,000 small custom archives and one large stock-like archive, and the
// same work done by a shell pipeline with unzip and ImageMagick; then the loading of a
// 10,000-record catalogue into the tree.
//
// Usage: bench_maps [--no-pipeline]
#include "maps/MapScanner.h"
#include "maps/MapTree.h"
#include "maps/MapTreeModel.h"
#include "model/ServerProfile.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

using namespace steward;
using namespace steward::testing;

namespace {

constexpr int kCustomArchives = 1000;
constexpr int kStockEntries = 2000;
constexpr int kStockEntrySize = 100 * 1024;
constexpr int kTreeRecords = 10000;

const char* const kStockMaps[] = {
    "duel_bespin", "duel_hangar", "duel_temple", "duel_training", "ffa_bespin", "ffa_deathstar", "ffa_imperial",
    "ffa_ns_hideout", "ffa_ns_streets", "ffa_yavin", "ctf_bespin", "ctf_imperial", "ctf_ns_streets", "ctf_yavin",
    "duel_bay", "duel_carbon", "duel_jedi", "duel_pit", "ffa_raven",
};

QByteArray randomBytes(qsizetype size, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray bytes(size, Qt::Uninitialized);
    random.fillRange(reinterpret_cast<quint32*>(bytes.data()), size / 4);
    return bytes;
}

// A 128 by 128 level shot with some structure, so that deflate has work to do.
QByteArray levelShot(int n)
{
    QByteArray tga = tgaPicture(128, 128, 0, 0, 0);
    char* pixel = tga.data() + 18;
    QRandomGenerator random(static_cast<quint32>(n));
    for (int y = 0; y < 128; ++y)
        for (int x = 0; x < 128; ++x) {
            *pixel++ = static_cast<char>((x * 2 + n) & 0xff);
            *pixel++ = static_cast<char>((y * 2) & 0xff);
            *pixel++ = static_cast<char>(((x * y) >> 4) + static_cast<int>(random.bounded(8)));
        }
    return tga;
}

double seconds(const QElapsedTimer& timer) { return static_cast<double>(timer.nsecsElapsed()) / 1e9; }

int countFiles(const QString& folder, const QString& pattern)
{
    return static_cast<int>(QDir(folder).entryList({pattern}, QDir::Files).size());
}

bool buildBase(const QString& base)
{
    const QByteArray bsp = randomBytes(4096, 7);
    for (int n = 0; n < kCustomArchives; ++n) {
        const QString map = QStringLiteral("map%1").arg(n, 4, 10, QLatin1Char('0'));
        if (!ZipBuilder()
                 .file(QStringLiteral("maps/") + map + QStringLiteral(".bsp"), bsp)
                 .file(QStringLiteral("scripts/") + map + QStringLiteral(".arena"),
                       arenaScript(map, QStringLiteral("Custom Map %1").arg(n), QStringLiteral("ffa duel")))
                 .file(QStringLiteral("levelshots/") + map + QStringLiteral(".tga"), levelShot(n))
                 .write(base + QStringLiteral("/") + map + QStringLiteral(".pk3")))
            return false;
    }
    // The stock-like archive: incompressible entries, stored, as the game's are mostly
    // jpg and compressed data already.
    const QByteArray block = randomBytes(kStockEntrySize, 11);
    ZipBuilder stock;
    int entries = 0;
    for (const char* map : kStockMaps) {
        stock.file(QStringLiteral("maps/%1.bsp").arg(QString::fromLatin1(map)), block, true);
        stock.file(QStringLiteral("levelshots/%1.jpg").arg(QString::fromLatin1(map)), block, true);
        entries += 2;
    }
    for (int i = 0; entries < kStockEntries; ++i, ++entries)
        stock.file(QStringLiteral("textures/set%1/texture%2.jpg").arg(i / 100).arg(i), block, true);
    return stock.write(base + QStringLiteral("/assets0.pk3"));
}

QByteArray treeCatalogue(int archives, int mapsPerArchive)
{
    QByteArray text;
    text.reserve(kTreeRecords * 60);
    for (int a = 0; a < archives; ++a)
        for (int m = 0; m < mapsPerArchive; ++m) {
            const QByteArray pk3 = "archive" + QByteArray::number((a * 7919) % archives) + ".pk3";
            const QByteArray map = "map" + QByteArray::number(a) + "_" + QByteArray::number(m);
            text += pk3 + "," + map + "," + map + ",Long Name " + map + ",FFA DUEL\r\n";
        }
    return text;
}

double loadTree(const QByteArray& catalogue, int* nodes)
{
    TestApp t;
    writeFile(t.programFolder() + QStringLiteral("/Jedi.aml"), catalogue);
    double best = 1e9;
    for (int round = 0; round < 5; ++round) {
        ServerProfile profile;
        QElapsedTimer timer;
        timer.start();
        LoadMapTree(*t.app, profile, QStringLiteral("Jedi"), QStringLiteral("Jedi"));
        best = std::min(best, seconds(timer));
        *nodes = mapTreeOf(profile).nodeCount();
    }
    return best;
}

const char* verdict(bool ok) { return ok ? "PASS" : "FAIL"; }

} // namespace

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QGuiApplication application(argc, argv);
    const bool pipeline = !QCoreApplication::arguments().contains(QStringLiteral("--no-pipeline"));

    TestApp t;
    std::printf("work folder: %s\n", qPrintable(t.root()));

    QElapsedTimer timer;
    timer.start();
    if (!buildBase(t.baseFolder())) {
        std::fprintf(stderr, "could not build the base folder\n");
        return 2;
    }
    const qint64 stockBytes = QFileInfo(t.baseFolder() + QStringLiteral("/assets0.pk3")).size();
    std::printf("setup: %d custom archives and assets0.pk3 (%.1f MB, %d entries) in %.2f s\n", kCustomArchives,
                static_cast<double>(stockBytes) / 1e6, kStockEntries, seconds(timer));

    // Both contestants start with the setup's writes on disk.
    sync();

    // The chain, as the scan command runs it.
    ServerProfile profile;
    const QString base = QStringLiteral("Base");
    double phase[4];
    timer.restart();
    const bool scanned = ScanForMaps(*t.app, base, QStringLiteral("Jedi"), t.gameFolder());
    phase[0] = seconds(timer);
    timer.restart();
    ExtractLevelShots(*t.app, base, t.gameFolder());
    phase[1] = seconds(timer);
    timer.restart();
    ConvertTgaToBmp(*t.app);
    phase[2] = seconds(timer);
    timer.restart();
    LoadMapTree(*t.app, profile, QStringLiteral("Jedi"), QStringLiteral("Jedi"));
    phase[3] = seconds(timer);
    const double chain = phase[0] + phase[1] + phase[2] + phase[3];
    const QString shots = t.programFolder() + QStringLiteral("/levelshots");
    const int records = static_cast<int>(crlfLines(t.programFolder() + QStringLiteral("/Jedi.aml")).size());
    std::printf("chain: scan %.3f s, level shots %.3f s, conversion %.3f s, tree %.3f s, total %.3f s\n", phase[0],
                phase[1], phase[2], phase[3], chain);
    std::printf("       %s, %d catalogue records, %d bmp, %d jpg, %s\n", scanned ? "scan ok" : "SCAN FAILED", records,
                countFiles(shots, QStringLiteral("*.bmp")), countFiles(shots, QStringLiteral("*.jpg")),
                qPrintable(profile.text(F::lblNumberOfMapsAvailable)));

    double shell = 0;
    bool shellRan = false;
    if (pipeline) {
        const bool tools = !QStandardPaths::findExecutable(QStringLiteral("unzip")).isEmpty() &&
                           QFileInfo::exists(QStringLiteral("/usr/bin/convert"));
        if (!tools) {
            std::printf("pipeline: skipped, unzip or ImageMagick's convert is not installed\n");
        } else {
            const QString out = t.root() + QStringLiteral("/pipeline");
            sync();
            QProcess process;
            process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            timer.restart();
            process.start(QStringLiteral("/bin/sh"),
                          {QStringLiteral(STEWARD_PIPELINE_SCRIPT), t.baseFolder(), out});
            process.waitForFinished(-1);
            shell = seconds(timer);
            shellRan = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
            std::printf("pipeline (unzip + convert): %.3f s, %s, %d catalogue records, %d bmp\n", shell,
                        shellRan ? "ok" : "FAILED", static_cast<int>(crlfLines(out + QStringLiteral("/Jedi.aml")).size()),
                        countFiles(out + QStringLiteral("/levelshots"), QStringLiteral("*.bmp")));
        }
    }

    int nodes = 0;
    const double deep = loadTree(treeCatalogue(1000, 10), &nodes);
    std::printf("tree: %d records (1,000 archives of 10 maps) best of 5: %.1f ms, %d nodes\n", kTreeRecords, deep * 1e3,
                nodes);
    const double wide = loadTree(treeCatalogue(kTreeRecords, 1), &nodes);
    std::printf("tree: %d records (10,000 archives of 1 map) best of 5: %.1f ms, %d nodes\n", kTreeRecords, wide * 1e3,
                nodes);

    std::printf("\ntargets:\n");
    bool ok = true;
    std::printf("  chain under 3 s: %.3f s %s\n", chain, verdict(chain < 3.0));
    ok = ok && chain < 3.0;
    if (shellRan) {
        std::printf("  chain at least 5x faster than the pipeline: %.1fx %s\n", shell / chain, verdict(shell >= 5 * chain));
        ok = ok && shell >= 5 * chain;
    }
    const double tree = std::max(deep, wide);
    std::printf("  10,000 records into the tree under 0.3 s: %.1f ms %s\n", tree * 1e3, verdict(tree < 0.3));
    ok = ok && tree < 0.3;
    return ok ? 0 : 1;
}
