// Times the map scan command's whole chain, from "Scan for new maps?" to "Map scan
// complete", as the menu runs it:
//  1. on a base folder of 1,000 small custom archives, in alternating rounds with a
//     one-process Python peer (peer.py: zipfile and Pillow) and the physical floor
//     (floor.cpp: read the directories, inflate what must be inflated, write nothing);
//  2. on 10,000 such archives, in a child process that reports its peak memory, each run
//     after a child run on the 1,000 archives, with which its time is compared;
//  3. on a base folder that holds only one 205 MB stock-like archive;
// then the loading of a 10,000-record catalogue into the tree and, on request, the same
// work done by a shell pipeline with unzip and ImageMagick.
//
// The work folder (base folders, program folders, outputs) lies in /dev/shm by default:
// on this project's virtual machines the disk's writes are throttled, and the rounds that
// write their level shots to it slow down one after the other (2x in five rounds) while
// the floor, which writes nothing, stays put. In RAM the rounds agree within a few
// percent. --work DIR puts it on another file system, for instance a disk.
//
// Usage: bench_maps [--archives N] [--large N] [--rounds N] [--large-rounds N] [--work DIR] [--pipeline]
//   --archives N      custom archives of the compared folder (1000)
//   --large N         archives of the large folder, 0 leaves it out (10000)
//   --rounds N        rounds of chain, peer and floor (5)
//   --large-rounds N  child runs on the large folder (2)
//   --work DIR        where the work folder is made (/dev/shm, else the temporary folder)
//   --pipeline        also time pipeline.sh on the compared folder (needs unzip, convert)
// Internal: bench_maps --chain-child GAME_FOLDER runs the chain once and prints its figures.
// bench_maps --build-base BASE_FOLDER N makes a base folder of N custom archives and
// exits, for a profiler's runs of --chain-child.
#include "commands/MapScanCommand.h"
#include "floor.h"
#include "sides.h"
#include "maps/MapTree.h"
#include "maps/MapTreeModel.h"
#include "model/ServerProfile.h"
#include "platform/Prompts.h"
#include "support/ProductText.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>
#include <vector>

using namespace steward;
using namespace steward::testing;
using namespace steward::bench;

namespace {

constexpr int kStockEntries = 2000;
constexpr int kStockEntrySize = 100 * 1024;
constexpr int kTreeRecords = 10000;
constexpr int kStockRuns = 3;
// The chain's median on the stock archive alone, measured on the chain that reads the
// archives through extracted files (2 cores shared). The run is short, so a few
// milliseconds are noise.
constexpr double kStockBaselineSeconds = 0.018;
constexpr double kStockNoise = 1.10;
constexpr double kStockNoiseSeconds = 0.005;
constexpr double kPeakTargetMb = 60;

struct Options {
    int archives = 1000;
    int large = 10000;
    int rounds = 5;
    int largeRounds = 2;
    bool pipeline = false;
    QString work;
};

bool parseOptions(const QStringList& args, Options& o)
{
    for (qsizetype i = 1; i < args.size(); ++i) {
        const QString& a = args[i];
        if (a == QLatin1String("--pipeline")) {
            o.pipeline = true;
            continue;
        }
        if (a == QLatin1String("--work") && i + 1 < args.size()) {
            o.work = args[++i];
            continue;
        }
        int* target = a == QLatin1String("--archives")       ? &o.archives
                      : a == QLatin1String("--large")        ? &o.large
                      : a == QLatin1String("--rounds")       ? &o.rounds
                      : a == QLatin1String("--large-rounds") ? &o.largeRounds
                                                             : nullptr;
        bool number = false;
        if (target && i + 1 < args.size())
            *target = args[++i].toInt(&number);
        if (!number || *target < 0) {
            std::fprintf(stderr, "bench_maps: bad argument %s\n", qPrintable(a));
            return false;
        }
    }
    o.archives = std::max(o.archives, 1);
    o.rounds = std::max(o.rounds, 1);
    o.largeRounds = std::max(o.largeRounds, 1);
    return true;
}

QString loadAverage()
{
    QFile f(QStringLiteral("/proc/loadavg"));
    return f.open(QIODevice::ReadOnly) ? QString::fromLatin1(f.readAll()).section(QLatin1Char(' '), 0, 2)
                                       : QStringLiteral("?");
}

// The stock-like archive: incompressible entries, stored, as the game's are mostly jpg
// and compressed data already.
bool buildStockBase(const QString& base)
{
    const QByteArray block = randomBytes(kStockEntrySize, 11);
    ZipBuilder stock;
    int entries = 0;
    for (const char* map : kStockMapNames) {
        stock.file(QStringLiteral("maps/%1.bsp").arg(QString::fromLatin1(map)), block, true);
        stock.file(QStringLiteral("levelshots/%1.jpg").arg(QString::fromLatin1(map)), block, true);
        entries += 2;
    }
    for (int i = 0; entries < kStockEntries; ++i, ++entries)
        stock.file(QStringLiteral("textures/set%1/texture%2.jpg").arg(i / 100).arg(i), block, true);
    return stock.write(base + QStringLiteral("/assets0.pk3"));
}

// ---- the chain ---------------------------------------------------------------------

int chainChild(const QString& gameFolder)
{
    const ChainRun run = runChain(gameFolder);
    std::printf("chain-child %.6f %ld %ld %lld %lld %d %lld\n", run.seconds, run.beforeKb, run.peakKb,
                static_cast<long long>(run.catalogue.size()), static_cast<long long>(run.bmps.size()),
                run.complete ? 1 : 0, static_cast<long long>(run.otherTexts.size()));
    for (const QString& text : run.otherTexts)
        std::fprintf(stderr, "chain-child: shown: %s\n", qPrintable(text.trimmed()));
    return 0;
}

struct ChildRun {
    bool ran = false;
    double seconds = 0;
    double beforeMb = 0;
    double peakMb = 0;
    int records = 0;
    int bmps = 0;
    bool complete = false;
    int otherTexts = 0;
};

ChildRun runChainChild(const QString& gameFolder)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--chain-child"), gameFolder});
    ChildRun run;
    if (!child.waitForFinished(-1) || child.exitStatus() != QProcess::NormalExit || child.exitCode() != 0)
        return run;
    const QList<QByteArray> f = child.readAllStandardOutput().trimmed().split(' ');
    if (f.size() != 8 || f[0] != "chain-child")
        return run;
    run.ran = true;
    run.seconds = f[1].toDouble();
    run.beforeMb = f[2].toDouble() / 1024;
    run.peakMb = f[3].toDouble() / 1024;
    run.records = f[4].toInt();
    run.bmps = f[5].toInt();
    run.complete = f[6] == "1";
    run.otherTexts = f[7].toInt();
    return run;
}

// ---- the peer and the floor ------------------------------------------------------

struct FloorRun {
    double seconds = 0;
    FloorCount count;
};

FloorRun runFloor(const QString& base)
{
    FloorRun run;
    sync();
    QElapsedTimer timer;
    timer.start();
    run.count = steward::bench::physicalFloor(QFile::encodeName(base).toStdString());
    run.seconds = seconds(timer);
    return run;
}

// ---- the tree ----------------------------------------------------------------------

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

// ---- the verdicts ------------------------------------------------------------------

struct Verdicts {
    bool ok = true;
    QStringList table;
    void add(const QString& what, const QString& figure, bool pass)
    {
        table << QStringLiteral("  %1 %2  %3")
                     .arg(what, -48)
                     .arg(figure, -26)
                     .arg(pass ? QStringLiteral("PASS") : QStringLiteral("FAIL"));
        ok = ok && pass;
    }
    void note(const QString& what, const QString& figure)
    {
        table << QStringLiteral("  %1 %2").arg(what, -48).arg(figure);
    }
    void fail(const QString& why)
    {
        std::printf("FAIL: %s\n", qPrintable(why));
        table << QStringLiteral("  FAIL: ") + why;
        ok = false;
    }
};

QString secs(double s) { return QStringLiteral("%1 s").arg(s, 0, 'f', 3); }

} // namespace

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    if (argc == 3 && QByteArray(argv[1]) == "--chain-child") {
        QCoreApplication application(argc, argv);
        return chainChild(QString::fromLocal8Bit(argv[2]));
    }
    if (argc == 4 && QByteArray(argv[1]) == "--build-base") {
        QCoreApplication application(argc, argv);
        return buildCustomBase(QString::fromLocal8Bit(argv[2]), std::max(1, std::atoi(argv[3]))) ? 0 : 2;
    }

    QStringList args;
    for (int i = 0; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    Options o;
    if (!parseOptions(args, o))
        return 2;
    if (o.work.isEmpty())
        o.work = QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm") : QDir::tempPath();
    QTemporaryDir work(o.work + QStringLiteral("/bench_maps-XXXXXX"));
    if (!work.isValid()) {
        std::fprintf(stderr, "could not make a work folder in %s\n", qPrintable(o.work));
        return 2;
    }
    // Every temporary folder of the rounds and the children lies in the work folder, and
    // nothing of the program's settings or data reaches the real home.
    setenv("TMPDIR", QFile::encodeName(work.path()).constData(), 1);
    setenv("XDG_CONFIG_HOME", QFile::encodeName(work.path() + QStringLiteral("/xdg-config")).constData(), 1);
    setenv("XDG_DATA_HOME", QFile::encodeName(work.path() + QStringLiteral("/xdg-data")).constData(), 1);
    QCoreApplication application(argc, argv);

    const QString root = work.path();
    const QString customGame = root + QStringLiteral("/custom/");
    const QString stockGame = root + QStringLiteral("/stock/");
    const QString largeGame = root + QStringLiteral("/large/");
    std::printf("work folder: %s; load average at start: %s\n", qPrintable(root), qPrintable(loadAverage()));

    QElapsedTimer timer;
    timer.start();
    if (!buildCustomBase(customGame + QStringLiteral("base"), o.archives) ||
        !QDir().mkpath(stockGame + QStringLiteral("base")) || !buildStockBase(stockGame + QStringLiteral("base"))) {
        std::fprintf(stderr, "could not build the base folders\n");
        return 2;
    }
    const qint64 stockBytes = QFileInfo(stockGame + QStringLiteral("base/assets0.pk3")).size();
    std::printf("setup: %d custom archives; assets0.pk3 alone (%.1f MB, %d entries); %.2f s\n", o.archives,
                static_cast<double>(stockBytes) / 1e6, kStockEntries, seconds(timer));
    sync();

    Verdicts v;
    const bool peer = peerAvailable();
    if (!peer)
        v.fail(QStringLiteral("the peer needs %1 with Pillow (Debian: python3-pil)").arg(peerPython()));

    // 1. Chain, peer and floor in alternating rounds on the same folder.
    std::printf("\n1. %d custom archives, %d rounds of chain, peer, floor:\n", o.archives, o.rounds);
    const QString customBase = customGame + QStringLiteral("base");
    std::vector<double> chainTimes, peerTimes, floorTimes;
    QStringList referenceCatalogue, referenceBmps;
    bool same = true;
    for (int round = 1; round <= o.rounds; ++round) {
        const ChainRun chain = runChain(customGame);
        chainTimes.push_back(chain.seconds);
        if (!chain.complete)
            v.fail(QStringLiteral("round %1: the chain did not show \"Map scan complete\"").arg(round));
        for (const QString& text : chain.otherTexts)
            v.fail(QStringLiteral("round %1: the chain showed \"%2\"").arg(round).arg(text.trimmed()));
        if (round == 1) {
            referenceCatalogue = chain.catalogue;
            referenceBmps = chain.bmps;
        } else {
            same = same && chain.catalogue == referenceCatalogue && chain.bmps == referenceBmps;
        }
        std::printf("   round %d: chain %.3f s (%lld records, %lld bmp)", round, chain.seconds,
                    static_cast<long long>(chain.catalogue.size()), static_cast<long long>(chain.bmps.size()));

        if (peer) {
            const PeerRun p =
                runPeer(QStringLiteral(STEWARD_PEER_SCRIPT), customBase, root + QStringLiteral("/peer-out"));
            peerTimes.push_back(p.seconds);
            if (!p.ok)
                v.fail(QStringLiteral("round %1: the peer failed").arg(round));
            if (p.catalogue != referenceCatalogue || p.bmps != referenceBmps) {
                v.fail(QStringLiteral("round %1: the peer's catalogue or bmp files differ from the chain's "
                                      "(%2 records, %3 bmp)")
                           .arg(round)
                           .arg(p.catalogue.size())
                           .arg(p.bmps.size()));
            }
            std::printf(", peer %.3f s", p.seconds);
        }

        const FloorRun f = runFloor(customBase);
        floorTimes.push_back(f.seconds);
        if (!f.count.error.empty())
            v.fail(QStringLiteral("the floor: ") + QString::fromStdString(f.count.error));
        // The floor writes nothing: it must have inflated one script per record and one
        // level shot per bmp file.
        if (f.count.scripts != referenceCatalogue.size() || f.count.tgaShots != referenceBmps.size())
            v.fail(QStringLiteral("round %1: the floor inflated %2 scripts and %3 tga, the chain made %4 records "
                                  "and %5 bmp")
                       .arg(round)
                       .arg(f.count.scripts)
                       .arg(f.count.tgaShots)
                       .arg(referenceCatalogue.size())
                       .arg(referenceBmps.size()));
        std::printf(", floor %.3f s (%d archives, %.1f MB inflated)\n", f.seconds, f.count.archives,
                    static_cast<double>(f.count.bytes) / 1e6);
    }
    if (!same)
        v.fail(QStringLiteral("the chain's rounds made different catalogues or bmp files"));
    if (referenceCatalogue.size() != o.archives || referenceBmps.size() != o.archives)
        v.fail(QStringLiteral("the chain made %1 records and %2 bmp of %3 archives")
                   .arg(referenceCatalogue.size())
                   .arg(referenceBmps.size())
                   .arg(o.archives));
    const double chain = median(chainTimes);
    const double peerTime = median(peerTimes);
    const double floorTime = median(floorTimes);

    // 2. The stock archive alone.
    std::printf("\n2. assets0.pk3 alone, %d runs of the chain:\n", kStockRuns);
    std::vector<double> stockTimes;
    for (int round = 1; round <= kStockRuns; ++round) {
        const ChainRun s = runChain(stockGame);
        stockTimes.push_back(s.seconds);
        std::printf("   run %d: %.3f s (%lld records, %d jpg)\n", round, s.seconds,
                    static_cast<long long>(s.catalogue.size()), s.jpgs);
        const int stockMaps = static_cast<int>(std::size(kStockMapNames));
        if (!s.complete || s.catalogue.size() != stockMaps || s.jpgs != stockMaps || !s.otherTexts.isEmpty())
            v.fail(QStringLiteral("the chain on assets0.pk3: %1 records, %2 jpg, %3")
                       .arg(s.catalogue.size())
                       .arg(s.jpgs)
                       .arg(s.complete ? QStringLiteral("complete") : QStringLiteral("not complete")));
    }
    const double stock = median(stockTimes);

    // 3. The large folder, each run in a child that reports its peak memory.
    std::vector<double> largeTimes;
    std::vector<double> smallChildTimes; // the 1,000 archives the same way, for the scale
    double largeBefore = 0, largePeak = 0;
    if (o.large > 0) {
        std::printf("\n3. %d custom archives, %d runs of the chain in a child process:\n", o.large, o.largeRounds);
        timer.restart();
        if (!buildCustomBase(largeGame + QStringLiteral("base"), o.large)) {
            std::fprintf(stderr, "could not build the large base folder\n");
            return 2;
        }
        sync();
        std::printf("   setup: %.1f s\n", seconds(timer));
        for (int round = 1; round <= o.largeRounds; ++round) {
            // The small folder in a child of its own first: a child pays for its start,
            // so the scale compares child with child.
            if (const ChildRun small = runChainChild(customGame); small.ran) {
                smallChildTimes.push_back(small.seconds);
                std::printf("   run %d: %d archives %.3f s, peak %.1f MB\n", round, o.archives, small.seconds,
                            small.peakMb);
            }
            const ChildRun c = runChainChild(largeGame);
            if (!c.ran) {
                v.fail(QStringLiteral("the chain's child process on %1 archives failed").arg(o.large));
                continue;
            }
            largeTimes.push_back(c.seconds);
            largeBefore = std::max(largeBefore, c.beforeMb);
            largePeak = std::max(largePeak, c.peakMb);
            std::printf("   run %d: %.3f s, peak %.1f MB (%.1f MB before the chain), %d records, %d bmp\n", round,
                        c.seconds, c.peakMb, c.beforeMb, c.records, c.bmps);
            if (!c.complete || c.records != o.large || c.bmps != o.large || c.otherTexts != 0)
                v.fail(QStringLiteral("the chain on %1 archives: %2 records, %3 bmp, %4, %5 other boxes")
                           .arg(o.large)
                           .arg(c.records)
                           .arg(c.bmps)
                           .arg(c.complete ? QStringLiteral("complete") : QStringLiteral("not complete"))
                           .arg(c.otherTexts));
        }
        QDir(largeGame).removeRecursively();
    }

    // A footnote: the same work by hand.
    double shell = 0;
    if (o.pipeline) {
        const bool tools = !QStandardPaths::findExecutable(QStringLiteral("unzip")).isEmpty() &&
                           QFileInfo::exists(QStringLiteral("/usr/bin/convert"));
        if (!tools) {
            std::printf("\npipeline: skipped, unzip or ImageMagick's convert is not installed\n");
        } else {
            const QString out = root + QStringLiteral("/pipeline");
            sync();
            QProcess process;
            process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            timer.restart();
            process.start(QStringLiteral("/bin/sh"), {QStringLiteral(STEWARD_PIPELINE_SCRIPT), customBase, out});
            process.waitForFinished(-1);
            shell = seconds(timer);
            const bool ran = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
            std::printf(
                "\npipeline (unzip + convert): %.3f s, %s, %lld catalogue records, %lld bmp\n", shell,
                ran ? "ok" : "FAILED", static_cast<long long>(crlfLines(out + QStringLiteral("/Jedi.aml")).size()),
                static_cast<long long>(files(out + QStringLiteral("/levelshots"), QStringLiteral("*.bmp")).size()));
            if (!ran)
                shell = 0;
        }
    }

    int nodes = 0;
    const double deep = loadTree(treeCatalogue(1000, 10), &nodes);
    std::printf("\ntree: %d records (1,000 archives of 10 maps) best of 5: %.1f ms, %d nodes\n", kTreeRecords,
                deep * 1e3, nodes);
    const double wide = loadTree(treeCatalogue(kTreeRecords, 1), &nodes);
    std::printf("tree: %d records (10,000 archives of 1 map) best of 5: %.1f ms, %d nodes\n", kTreeRecords, wide * 1e3,
                nodes);

    // The table.
    std::printf("\nload average at the end: %s\n", qPrintable(loadAverage()));
    std::printf("\n%d custom archives, medians of %d rounds:\n", o.archives, o.rounds);
    std::printf("  chain %.3f s, peer %.3f s, floor %.3f s\n", chain, peerTime, floorTime);
    if (peer && peerTime > 0)
        v.add(QStringLiteral("chain / peer (target <= 0.5)"), QStringLiteral("%1").arg(chain / peerTime, 0, 'f', 2),
              chain <= 0.5 * peerTime);
    if (floorTime > 0)
        v.add(QStringLiteral("chain / floor (target <= 2)"), QStringLiteral("%1").arg(chain / floorTime, 0, 'f', 2),
              chain <= 2 * floorTime);
    if (!largeTimes.empty()) {
        const double large = median(largeTimes);
        const double best = *std::min_element(largeTimes.begin(), largeTimes.end());
        const double scale = static_cast<double>(o.large) / o.archives;
        v.note(QStringLiteral("%1 archives: chain, median of %2").arg(o.large).arg(largeTimes.size()),
               QStringLiteral("%1 (best %2)").arg(secs(large), secs(best)));
        const double small = smallChildTimes.empty() ? chain : median(smallChildTimes);
        v.note(QStringLiteral("%1 archives in a child, median of %2").arg(o.archives).arg(smallChildTimes.size()),
               secs(small));
        v.add(QStringLiteral("%1 / %2 archives (target <= %3)").arg(o.large).arg(o.archives).arg(scale, 0, 'g', 3),
              QStringLiteral("%1").arg(large / small, 0, 'f', 2), large <= scale * small);
        v.add(QStringLiteral("peak memory (target < %1 MB)").arg(kPeakTargetMb),
              QStringLiteral("%1 MB (%2 before)").arg(largePeak, 0, 'f', 1).arg(largeBefore, 0, 'f', 1),
              largePeak < kPeakTargetMb);
    }
    if (kStockBaselineSeconds > 0)
        v.add(QStringLiteral("assets0.pk3 alone (<= %1 +10 % +5 ms)").arg(secs(kStockBaselineSeconds)), secs(stock),
              stock <= kStockBaselineSeconds * kStockNoise + kStockNoiseSeconds);
    else
        v.note(QStringLiteral("assets0.pk3 alone, median of %1").arg(kStockRuns), secs(stock));
    const double tree = std::max(deep, wide);
    v.add(QStringLiteral("10,000 records into the tree (target < 0.3 s)"),
          QStringLiteral("%1 ms").arg(tree * 1e3, 0, 'f', 1), tree < 0.3);
    if (shell > 0)
        v.note(QStringLiteral("footnote: pipeline / chain"), QStringLiteral("%1").arg(shell / chain, 0, 'f', 1));
    for (const QString& line : v.table)
        std::printf("%s\n", qPrintable(line));
    return v.ok ? 0 : 1;
}
