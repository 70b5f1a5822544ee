#include "sides.h"

#include "commands/MapScanCommand.h"
#include "model/ServerProfile.h"
#include "platform/Prompts.h"
#include "support/ProductText.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <algorithm>
#include <unistd.h>

namespace steward::bench {

using namespace steward::testing;

namespace {

const QString kPython = QStringLiteral("/usr/bin/python3");

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

} // namespace

QByteArray randomBytes(qsizetype size, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray bytes(size, Qt::Uninitialized);
    random.fillRange(reinterpret_cast<quint32*>(bytes.data()), size / 4);
    return bytes;
}

// Each archive holds a map, its arena script and a tga level shot: map0000.pk3 ...
bool buildCustomBase(const QString& base, int count)
{
    QDir().mkpath(base);
    const int width = std::max(4, static_cast<int>(QString::number(count - 1).size()));
    const QByteArray bsp = randomBytes(4096, 7);
    for (int n = 0; n < count; ++n) {
        const QString map = QStringLiteral("map%1").arg(n, width, 10, QLatin1Char('0'));
        if (!ZipBuilder()
                 .file(QStringLiteral("maps/") + map + QStringLiteral(".bsp"), bsp)
                 .file(QStringLiteral("scripts/") + map + QStringLiteral(".arena"),
                       arenaScript(map, QStringLiteral("Custom Map %1").arg(n), QStringLiteral("ffa duel")))
                 .file(QStringLiteral("levelshots/") + map + QStringLiteral(".tga"), levelShot(n))
                 .write(base + QStringLiteral("/") + map + QStringLiteral(".pk3")))
            return false;
    }
    return true;
}

QStringList files(const QString& folder, const QString& pattern)
{
    QStringList names = QDir(folder).entryList({pattern}, QDir::Files, QDir::Name);
    names.removeAll(QStringLiteral("unknown.bmp")); // the chain's fallback picture
    names.removeAll(QStringLiteral("unknown.jpg"));
    return names;
}

double seconds(const QElapsedTimer& timer) { return static_cast<double>(timer.nsecsElapsed()) / 1e9; }

double median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

long vmHwmKb()
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    return -1;
}

ChainRun runChain(const QString& gameFolder)
{
    TestApp t;
    QFile::remove(t.programFolder() + QStringLiteral("/Jedi.aml"));
    t.app->gameFolder = gameFolder;
    t.prompts.answerNext(Answer::Yes);
    ServerProfile profile;
    ChainRun run;
    sync();
    run.beforeKb = vmHwmKb();
    QElapsedTimer timer;
    timer.start();
    mnuMapScan_Click(*t.app, profile);
    run.seconds = seconds(timer);
    run.peakKb = vmHwmKb();

    const QString question = QStringLiteral("Scan for new maps?") + kTail;
    const QString done = QStringLiteral("Map scan complete ") + kTail;
    for (const QString& text : t.prompts.texts()) {
        if (text == done)
            run.complete = true;
        else if (text != question)
            run.otherTexts << text;
    }
    run.catalogue = crlfLines(t.programFolder() + QStringLiteral("/Jedi.aml"));
    const QString shots = t.programFolder() + QStringLiteral("/levelshots");
    run.bmps = files(shots, QStringLiteral("*.bmp"));
    run.jpgs = static_cast<int>(files(shots, QStringLiteral("*.jpg")).size());
    return run;
}

QString peerPython() { return kPython; }

bool peerAvailable()
{
    return QFileInfo(kPython).isExecutable() &&
           QProcess::execute(kPython, {QStringLiteral("-c"), QStringLiteral("import zipfile, PIL.Image")}) == 0;
}

PeerRun runPeer(const QString& peerScript, const QString& base, const QString& out)
{
    QDir(out).removeRecursively();
    QDir().mkpath(out);
    PeerRun run;
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setStandardOutputFile(QProcess::nullDevice());
    sync();
    QElapsedTimer timer;
    timer.start();
    process.start(kPython, {peerScript, base, out});
    process.waitForFinished(-1);
    run.seconds = seconds(timer);
    run.ok = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    run.catalogue = crlfLines(out + QStringLiteral("/Jedi.aml"));
    run.bmps = files(out + QStringLiteral("/levelshots"), QStringLiteral("*.bmp"));
    QDir(out).removeRecursively();
    return run;
}

} // namespace steward::bench
