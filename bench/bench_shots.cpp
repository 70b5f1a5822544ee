// Peak memory of the level-shot phases on one archive of 10,000 tga level shots, and
// the time that a run-length picture bomb (8192 by 8192 pixels in a few KB) costs them.
//
// The archive is made by a child process, so that the peak of this process is that of
// the phases alone (plus the program's own start).
//
// Usage: bench_shots
#include "maps/MapScanner.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <cstdio>
#include <sys/resource.h>

using namespace steward;
using namespace steward::testing;

namespace {

constexpr int kShots = 10000;
constexpr int kSide = 64;
constexpr double kPeakTargetMb = 150;

double peakMb()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

// Every shot has the same bytes under its own name; the bytes are shared, so that the
// maker stays small too.
int makeArchive(const QString& path)
{
    const QByteArray shot = tgaPicture(kSide, kSide, 90, 120, 30);
    ZipBuilder zip;
    zip.file(QStringLiteral("maps/many.bsp"));
    for (int n = 0; n < kShots; ++n)
        zip.file(QStringLiteral("levelshots/shot%1.tga").arg(n, 5, 10, QLatin1Char('0')), shot);
    return zip.write(path) ? 0 : 1;
}

QByteArray runLengthBomb(int side)
{
    QByteArray tga(18, '\0');
    tga[2] = 10;
    tga[12] = static_cast<char>(side & 0xff);
    tga[13] = static_cast<char>(side >> 8);
    tga[14] = tga[12];
    tga[15] = tga[13];
    tga[16] = 24;
    tga[17] = 0x20;
    const qint64 packets = static_cast<qint64>(side) * side / 128;
    QByteArray packet("\xff\x10\x20\x30", 4);
    tga.reserve(18 + packets * 4);
    for (qint64 i = 0; i < packets; ++i)
        tga += packet;
    return tga;
}

double pictures(TestApp& t)
{
    QElapsedTimer timer;
    timer.start();
    ExtractLevelShots(*t.app, QStringLiteral("Base"), t.gameFolder());
    ConvertTgaToBmp(*t.app);
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && QByteArray(argv[1]) == "--make")
        return makeArchive(QString::fromLocal8Bit(argv[2]));

    QCoreApplication application(argc, argv);
    bool ok = true;
    {
        TestApp t;
        const QString archive = t.baseFolder() + QStringLiteral("/many.pk3");
        QDir().mkpath(t.baseFolder());
        if (QProcess::execute(QCoreApplication::applicationFilePath(), {QStringLiteral("--make"), archive}) != 0) {
            std::fprintf(stderr, "could not make the archive\n");
            return 2;
        }
        const double before = peakMb();
        const double time = pictures(t);
        const double peak = peakMb();
        const int bmp = static_cast<int>(QDir(t.programFolder() + QStringLiteral("/levelshots"))
                                             .entryList({QStringLiteral("*.bmp")}, QDir::Files)
                                             .size());
        std::printf("%d level shots of %dx%d in one archive: %.2f s, %d bmp, peak memory %.1f MB (%.1f MB before)\n",
                    kShots, kSide, kSide, time, bmp, peak, before);
        const bool fits = peak < kPeakTargetMb && bmp == kShots + 1;
        std::printf("  target: peak under %.0f MB: %s\n", kPeakTargetMb, fits ? "PASS" : "FAIL");
        ok = ok && fits;
    }
    {
        TestApp t;
        QDir().mkpath(t.baseFolder());
        ZipBuilder()
            .file(QStringLiteral("maps/bomb.bsp"))
            .file(QStringLiteral("levelshots/bomb.tga"), runLengthBomb(8192))
            .write(t.baseFolder() + QStringLiteral("/bomb.pk3"));
        const qint64 size = QFileInfo(t.baseFolder() + QStringLiteral("/bomb.pk3")).size();
        const double time = pictures(t);
        const bool refused = !QFileInfo::exists(t.programFolder() + QStringLiteral("/levelshots/bomb.bmp"));
        std::printf("an 8192x8192 run-length tga in a %lld byte archive: %.3f s, %s\n", static_cast<long long>(size),
                    time, refused ? "refused" : "CONVERTED");
        ok = ok && refused;
    }
    return ok ? 0 : 1;
}
