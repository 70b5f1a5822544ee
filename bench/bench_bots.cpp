// Times the scan for installed player models on a base folder of 1,000 small archives
// with a models/players folder each, then again with a stock-like archive of 205 MB
// (2,000 entries, its model folder last in the directory) beside them. The scan reads
// only the central directories.
//
// Usage: bench_bots
#include "bots/BotModelScan.h"
#include "maps/ScanProgress.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

using namespace steward;
using namespace steward::testing;

namespace {

constexpr int kArchives = 1000;
constexpr int kStockEntries = 2000;
constexpr int kStockEntrySize = 100 * 1024;
constexpr int kRounds = 5;

QByteArray randomBytes(qsizetype size, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray bytes(size, Qt::Uninitialized);
    random.fillRange(reinterpret_cast<quint32*>(bytes.data()), size / 4);
    return bytes;
}

double seconds(const QElapsedTimer& timer) { return static_cast<double>(timer.nsecsElapsed()) / 1e9; }

bool buildModels(const QString& base)
{
    const QByteArray mesh = randomBytes(16 * 1024, 3);
    for (int n = 0; n < kArchives; ++n) {
        const QString model = QStringLiteral("Bot%1").arg(n, 4, 10, QLatin1Char('0'));
        const QString folder = QStringLiteral("models/players/") + model + QLatin1Char('/');
        if (!ZipBuilder()
                 .file(QStringLiteral("sound/chars/") + model + QStringLiteral("/taunt.wav"), mesh)
                 .folder(folder)
                 .file(folder + QStringLiteral("model.glm"), mesh)
                 .file(folder + QStringLiteral("model_default.skin"), "skin")
                 .file(folder + QStringLiteral("icon_default.jpg"), mesh)
                 .write(base + QLatin1Char('/') + model.toLower() + QStringLiteral(".pk3")))
            return false;
    }
    return true;
}

bool buildStock(const QString& base)
{
    const QByteArray block = randomBytes(kStockEntrySize, 11);
    ZipBuilder stock;
    for (int i = 0; i < kStockEntries - 1; ++i)
        stock.file(QStringLiteral("textures/set%1/texture%2.jpg").arg(i / 100).arg(i), block, true);
    stock.file(QStringLiteral("models/players/stocky/model.glm"), block, true);
    return stock.write(base + QStringLiteral("/zz_stocklike.pk3"));
}

/// The best and the first of kRounds scans, and the number of models of the last.
struct Timing {
    double first = 0;
    double best = 1e9;
    int found = 0;
};

Timing timeScan(TestApp& t)
{
    Timing timing;
    SilentScanProgress progress;
    for (int round = 0; round < kRounds; ++round) {
        t.prompts.shown.clear();
        QElapsedTimer timer;
        timer.start();
        ScanBotModels(*t.app, progress, t.gameFolder(), QStringLiteral("Base"));
        const double s = seconds(timer);
        if (round == 0)
            timing.first = s;
        timing.best = std::min(timing.best, s);
    }
    timing.found = static_cast<int>(crlfLines(t.programFolder() + QStringLiteral("/BOT.txt")).size());
    return timing;
}

const char* verdict(bool ok) { return ok ? "PASS" : "FAIL"; }

} // namespace

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QGuiApplication application(argc, argv);

    TestApp t;
    std::printf("work folder: %s\n", qPrintable(t.root()));
    QElapsedTimer timer;
    timer.start();
    if (!buildModels(t.baseFolder())) {
        std::fprintf(stderr, "could not build the model archives\n");
        return 2;
    }
    std::printf("setup: %d model archives in %.2f s\n", kArchives, seconds(timer));
    sync();

    const Timing models = timeScan(t);
    std::printf("model scan, %d archives: first %.3f s, best of %d %.3f s, %d models\n", kArchives, models.first,
                kRounds, models.best, models.found);

    timer.restart();
    if (!buildStock(t.baseFolder())) {
        std::fprintf(stderr, "could not build the stock-like archive\n");
        return 2;
    }
    const qint64 stockBytes = QFileInfo(t.baseFolder() + QStringLiteral("/zz_stocklike.pk3")).size();
    std::printf("setup: stock-like archive (%.1f MB, %d entries) in %.2f s\n", static_cast<double>(stockBytes) / 1e6,
                kStockEntries, seconds(timer));
    sync();
    const Timing all = timeScan(t);
    std::printf("model scan, %d archives and the stock-like one: first %.3f s, best of %d %.3f s, %d models\n",
                kArchives, all.first, kRounds, all.best, all.found);

    std::printf("\ntargets:\n");
    const bool ok = models.first < 0.5 && models.found == kArchives && all.found == kArchives + 1;
    std::printf("  model scan of %d archives under 0.5 s: %.3f s %s\n", kArchives, models.first,
                verdict(models.first < 0.5));
    std::printf("  every model found: %s\n", verdict(models.found == kArchives && all.found == kArchives + 1));
    return ok ? 0 : 1;
}
