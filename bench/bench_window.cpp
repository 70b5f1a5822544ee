// Times the scan command on the program's real windows on an X server: the main window
// is loaded and shown as the program does it, the menu's "Scan for Maps..." is
// triggered, its question "Scan for new maps?" answered Yes in its real box, and the
// clock runs from that answer until the box "Map scan complete" comes up. Beside it,
// in alternating rounds on the same base folder, run the same chain in this process
// without a window (as bench_maps times it) and the one-process Python peer (peer.py).
// Each size (1,000 and 10,000 custom archives by default) has a base folder of its own.
//
// Run it on an X server with the xcb platform, as on a desktop: bench/run.sh starts a
// private Xvfb for it (bench/xvfb.sh). On another platform the figures are printed but
// the verdicts fail, since the targets are the X server's.
//
// Usage: bench_window [--archives N[,N...]] [--rounds N] [--work DIR] [--window-only]
//   --archives N,N  sizes of the base folders (1000,10000)
//   --rounds N      rounds of window, chain and peer per size (3)
//   --work DIR      where the work folder is made (/dev/shm, else the temporary folder)
//   --window-only   only the window's rounds, for a profiler; no verdicts
#include "platform/AddressLookup.h"
#include "sides.h"
#include "support/ProductText.h"
#include "testkit/TestApp.h"
#include "ui/CommandWiring.h"
#include "ui/MainWindowHost.h"
#include "ui/QtPrompts.h"
#include "ui/frmScanner.h"
#include "ui/frmMain.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QWindow>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>
#include <vector>

using namespace steward;
using namespace steward::bench;
using namespace steward::testing;

namespace {

/// A host without a name: every address lookup fails quietly.
class NoHostName : public AddressLookup {
public:
    bool hostName(QString&, int&) override { return false; }
    QList<QByteArray> addresses(const QString&) override { return {}; }
};

const char* const kScanAction = "id_UtilitiesMapsScanfornewmaps";

struct Options {
    std::vector<int> sizes{1000, 10000};
    int rounds = 3;
    QString work;
    bool windowOnly = false;
};

bool parseOptions(const QStringList& args, Options& o)
{
    for (qsizetype i = 1; i < args.size(); ++i) {
        const QString& a = args[i];
        bool number = i + 1 < args.size();
        if (a == QLatin1String("--window-only")) {
            o.windowOnly = true;
            number = true;
        } else if (a == QLatin1String("--work") && number) {
            o.work = args[++i];
        } else if (a == QLatin1String("--rounds") && number) {
            o.rounds = args[++i].toInt(&number);
            number = number && o.rounds > 0;
        } else if (a == QLatin1String("--archives") && number) {
            o.sizes.clear();
            for (const QString& size : args[++i].split(QLatin1Char(','))) {
                o.sizes.push_back(size.toInt(&number));
                if (!number || o.sizes.back() < 1)
                    break;
            }
        } else {
            number = false;
        }
        if (!number) {
            std::fprintf(stderr, "bench_window: bad argument %s\n", qPrintable(a));
            return false;
        }
    }
    return true;
}

/// Answers the scan's real boxes: Yes to the question, OK to everything else, and
/// notes when "Map scan complete" came up.
class BoxAnswers : public QObject {
public:
    explicit BoxAnswers(const QElapsedTimer& clock) : m_clock(clock) { qApp->installEventFilter(this); }
    ~BoxAnswers() override { qApp->removeEventFilter(this); }
    BoxAnswers(const BoxAnswers&) = delete;
    BoxAnswers& operator=(const BoxAnswers&) = delete;

    qint64 answeredNs = -1; ///< the question answered Yes
    qint64 completeNs = -1; ///< "Map scan complete" on screen
    QStringList otherTexts;

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        auto* box = qobject_cast<QMessageBox*>(object);
        if (!box || event->type() != QEvent::Show)
            return false;
        const QString text = box->text();
        QMessageBox::StandardButton answer = QMessageBox::Ok;
        if (text.startsWith(QLatin1String("Scan for new maps?"))) {
            answer = QMessageBox::Yes;
        } else if (text.startsWith(QLatin1String("Map scan complete"))) {
            completeNs = m_clock.nsecsElapsed();
        } else {
            otherTexts << text.trimmed();
        }
        // Answered once the box's own event loop runs, as a click would be.
        QMetaObject::invokeMethod(
            box,
            [this, box, answer] {
                QAbstractButton* button = box->button(answer);
                if (!button)
                    button = box->buttons().value(0);
                if (answer == QMessageBox::Yes)
                    answeredNs = m_clock.nsecsElapsed();
                if (button)
                    button->click();
            },
            Qt::QueuedConnection);
        return false;
    }

private:
    const QElapsedTimer& m_clock;
};

bool waitForExposure(QWidget& window)
{
    QElapsedTimer waited;
    waited.start();
    while (!(window.windowHandle() && window.windowHandle()->isExposed()) && waited.elapsed() < 5000)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    return window.windowHandle() && window.windowHandle()->isExposed();
}

struct WindowRun {
    bool ran = false;
    double seconds = 0;
    bool complete = false;
    QStringList otherTexts;
    QStringList catalogue;
    QStringList bmps;
};

// The program's windows on a fresh, empty program folder, wired as the program wires
// them; only the seams that a scan doesn't touch (the clock, the names, the settings'
// place) are the test kit's.
WindowRun runWindow(const QString& gameFolder)
{
    WindowRun run;
    TestApp t;
    // An empty catalogue: the main window loads it without a box, as after a scan of
    // a folder without archives.
    writeFile(t.programFolder() + QStringLiteral("/Jedi.aml"), {});
    t.app->gameFolder = gameFolder;
    QtPrompts prompts;
    t.app->services.prompts = &prompts;
    frmScannerProgress scanner;
    t.app->services.scanProgress = &scanner;
    {
        QElapsedTimer clock;
        BoxAnswers answers(clock);
        QtWindowHost host(*t.app, &prompts);
        host.addWindowSetup([&scanner](frmMain& window) { scanner.setOwner(&window); });
        NoHostName lookup;
        CommandWiring wiring(*t.app, host, lookup);
        host.loadMainWindow();
        host.showMainWindow();
        frmMain* window = host.mainWindow();
        QAction* scan = window ? window->findChild<QAction*>(QLatin1String(kScanAction)) : nullptr;
        if (scan && waitForExposure(*window)) {
            QApplication::processEvents();
            sync();
            answers.otherTexts.clear();
            clock.start();
            scan->trigger();
            run.ran = answers.answeredNs >= 0;
            run.complete = answers.completeNs >= 0;
            run.seconds = run.complete ? static_cast<double>(answers.completeNs - answers.answeredNs) / 1e9 : 0;
            run.otherTexts = answers.otherTexts;
        }
        host.closeAllForms();
        QApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    t.app->services.scanProgress = nullptr;
    t.app->services.prompts = &t.prompts;
    run.catalogue = crlfLines(t.programFolder() + QStringLiteral("/Jedi.aml"));
    run.bmps = files(t.programFolder() + QStringLiteral("/levelshots"), QStringLiteral("*.bmp"));
    return run;
}

QString loadAverage()
{
    QFile f(QStringLiteral("/proc/loadavg"));
    return f.open(QIODevice::ReadOnly) ? QString::fromLatin1(f.readAll()).section(QLatin1Char(' '), 0, 2)
                                       : QStringLiteral("?");
}

struct Verdicts {
    bool ok = true;
    QStringList table;
    void add(const QString& what, double ratio, double target)
    {
        const bool pass = ratio > 0 && ratio <= target;
        table << QStringLiteral("  %1 %2  %3")
                     .arg(what, -52)
                     .arg(QString::number(ratio, 'f', 2), -8)
                     .arg(pass ? QStringLiteral("PASS") : QStringLiteral("FAIL"));
        ok = ok && pass;
    }
    void fail(const QString& why)
    {
        std::printf("FAIL: %s\n", qPrintable(why));
        table << QStringLiteral("  FAIL: ") + why;
        ok = false;
    }
};

} // namespace

int main(int argc, char** argv)
{
    QStringList args;
    for (int i = 0; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    Options o;
    if (!parseOptions(args, o))
        return 2;
    if (o.work.isEmpty())
        o.work = QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm") : QDir::tempPath();
    QTemporaryDir work(o.work + QStringLiteral("/bench_window-XXXXXX"));
    if (!work.isValid()) {
        std::fprintf(stderr, "could not make a work folder in %s\n", qPrintable(o.work));
        return 2;
    }
    // Every temporary folder lies in the work folder, and nothing of the program's
    // settings or data reaches the real home.
    setenv("TMPDIR", QFile::encodeName(work.path()).constData(), 1);
    setenv("XDG_CONFIG_HOME", QFile::encodeName(work.path() + QStringLiteral("/xdg-config")).constData(), 1);
    setenv("XDG_DATA_HOME", QFile::encodeName(work.path() + QStringLiteral("/xdg-data")).constData(), 1);
    QApplication application(argc, argv);

    const QString platform = QGuiApplication::platformName();
    std::printf("platform: %s (DISPLAY=%s); work folder: %s; load average at start: %s\n", qPrintable(platform),
                qgetenv("DISPLAY").constData(), qPrintable(work.path()), qPrintable(loadAverage()));
    Verdicts v;
    if (platform != QLatin1String("xcb"))
        v.fail(QStringLiteral("the targets are an X server's: run with QT_QPA_PLATFORM=xcb (bench/xvfb.sh)"));
    const bool peer = !o.windowOnly && peerAvailable();
    if (!peer && !o.windowOnly)
        v.fail(QStringLiteral("the peer needs %1 with Pillow (Debian: python3-pil)").arg(peerPython()));

    struct SizeFigures {
        int archives;
        double window, chain, peer;
    };
    std::vector<SizeFigures> figures;
    for (const int size : o.sizes) {
        const QString game = work.path() + QStringLiteral("/game%1/").arg(size);
        QElapsedTimer setup;
        setup.start();
        if (!buildCustomBase(game + QStringLiteral("base"), size)) {
            std::fprintf(stderr, "could not build the base folder of %d archives\n", size);
            return 2;
        }
        sync();
        std::printf("\n%d custom archives (setup %.1f s), %d rounds of window, chain, peer:\n", size, seconds(setup),
                    o.rounds);
        std::vector<double> windowTimes, chainTimes, peerTimes;
        for (int round = 1; round <= o.rounds; ++round) {
            const WindowRun w = runWindow(game);
            if (o.windowOnly) {
                std::printf("   round %d: window %.3f s\n", round, w.seconds);
                continue;
            }
            const ChainRun c = runChain(game);
            if (!w.ran || !w.complete)
                v.fail(QStringLiteral("%1 archives, round %2: the window's scan did not reach \"Map scan complete\"")
                           .arg(size)
                           .arg(round));
            for (const QString& text : w.otherTexts + c.otherTexts)
                v.fail(QStringLiteral("%1 archives, round %2: a box showed \"%3\"").arg(size).arg(round).arg(text));
            if (w.catalogue != c.catalogue || w.bmps != c.bmps || c.catalogue.size() != size || c.bmps.size() != size)
                v.fail(QStringLiteral("%1 archives, round %2: window %3 records, %4 bmp; chain %5 records, %6 bmp")
                           .arg(size)
                           .arg(round)
                           .arg(w.catalogue.size())
                           .arg(w.bmps.size())
                           .arg(c.catalogue.size())
                           .arg(c.bmps.size()));
            windowTimes.push_back(w.seconds);
            chainTimes.push_back(c.seconds);
            std::printf("   round %d: window %.3f s, chain %.3f s", round, w.seconds, c.seconds);
            if (peer) {
                const PeerRun p = runPeer(QStringLiteral(STEWARD_PEER_SCRIPT), game + QStringLiteral("base"),
                                          work.path() + QStringLiteral("/peer-out"));
                if (!p.ok || p.catalogue != c.catalogue || p.bmps != c.bmps)
                    v.fail(QStringLiteral("%1 archives, round %2: the peer failed or made other files")
                               .arg(size)
                               .arg(round));
                peerTimes.push_back(p.seconds);
                std::printf(", peer %.3f s", p.seconds);
            }
            std::printf("\n");
            std::fflush(stdout);
        }
        QDir(game).removeRecursively();
        if (o.windowOnly)
            continue;
        figures.push_back({size, median(windowTimes), median(chainTimes), median(peerTimes)});
    }

    std::printf("\nload average at the end: %s\n\nmedians:\n", qPrintable(loadAverage()));
    for (const SizeFigures& f : figures) {
        std::printf("  %6d archives: window %.3f s, chain %.3f s, peer %.3f s\n", f.archives, f.window, f.chain,
                    f.peer);
        const QString size = QString::number(f.archives);
        if (peer)
            v.add(QStringLiteral("%1 archives: window / peer (target <= 0.5)").arg(size), f.window / f.peer, 0.5);
        if (f.archives >= 10000)
            v.add(QStringLiteral("%1 archives: window / chain (target <= 1.2)").arg(size), f.window / f.chain, 1.2);
        else
            v.table << QStringLiteral("  %1 archives: window / chain %2").arg(size).arg(f.window / f.chain, 0, 'f', 2);
    }
    for (const QString& line : v.table)
        std::printf("%s\n", qPrintable(line));
    return o.windowOnly || v.ok ? 0 : 1;
}
