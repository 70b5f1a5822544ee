// Pictures of the windows for a person to look at and for the guide: every page of the
// main window with some content, and the server console against a small fake server.
// Usage: steward-screenshots FOLDER (scripts/screenshots.sh builds and runs it).
#include "console/ColourText.h"
#include "console/FakeServer.h"
#include "commands/MainFormLoad.h"
#include "model/ServerProfile.h"
#include "testkit/TestApp.h"
#include "ui/frmServerConsole.h"
#include "ui/frmMain.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

using namespace steward;

namespace {

bool save(QWidget& window, const QString& file)
{
    if (window.grab().save(file)) {
        std::printf("%s\n", qPrintable(file));
        return true;
    }
    std::fprintf(stderr, "could not write %s\n", qPrintable(file));
    return false;
}

bool mainWindowPages(const QString& folder)
{
    testing::TestApp t;
    frmMain window(*t.app);
    MainFormLoad(*t.app, window.profile(), window);
    // Some content, as the logic would give it.
    ServerProfile& p = window.profile();
    p.field(F::tvwAvailMaps).setItems({QStringLiteral("Jedi"), QStringLiteral("assets0.pk3")});
    p.field(F::lsvMapRotation)
        .setRows({{QStringLiteral("ffa_bespin"), QStringLiteral("Bespin Streets"), QStringLiteral("ffa")},
                  {QStringLiteral("ctf_yavin"), QStringLiteral("Yavin Temple"), QStringLiteral("ctf")}});
    p.field(F::grdBOTList)
        .setRows({{QStringLiteral("NAME"), QStringLiteral("SKILL"), QStringLiteral("TEAM"), QStringLiteral("MODEL"),
                   QStringLiteral("PING")},
                  {QStringLiteral("Gnubee"), QStringLiteral("Hardcore"), QStringLiteral("RED"),
                   QStringLiteral("Desann"), QStringLiteral("25")}});
    p.setText(F::lblLongMapName, QStringLiteral("Bespin Streets"));
    p.setText(F::lblMapType, QStringLiteral("ffa"));
    p.setText(F::lblMapsSelected, QStringLiteral("2 Selected Maps"));
    p.setText(F::lblNumberOfMapsAvailable, QStringLiteral("2 Maps Available"));
    p.field(F::lstBannedIPs).setItems({QStringLiteral("10.0.0.1")});
    window.show();
    std::printf("smallest size %d x %d\n", window.minimumSizeHint().width(), window.minimumSizeHint().height());
    QApplication::processEvents();
    auto* game = window.control<QTabWidget>(QStringLiteral("vsExtraGameFlags"));
    bool ok = true;
    for (int page = 0; page < window.mainTab()->count(); ++page) {
        window.mainTab()->setCurrentIndex(page);
        const int subPages = page == 1 ? game->count() : 1;
        for (int sub = 0; sub < subPages; ++sub) {
            if (page == 1)
                game->setCurrentIndex(sub);
            QApplication::processEvents();
            ok &= save(window, QStringLiteral("%1/page%2-%3.png").arg(folder).arg(page).arg(sub));
        }
    }
    return ok;
}

bool serverConsole(const QString& folder)
{
    testing::TestApp t;
    testing::FakeServer server;
    const QByteArray oob(4, '\xff');
    server.answer = [oob](const QByteArray& request) -> QList<QByteArray> {
        if (request == oob + "getstatus")
            return {oob + "statusResponse\n\\sv_hostname\\^1Steward ^4Arena\\mapname\\ffa_bespin\\sv_maxclients\\16"
                          "\\g_gametype\\0\\g_needpass\\0\\version\\JK2MP: v1.04\n"
                          "31 0 \"^1Gnubee\"\n17 45 \"^5Kyle\"\n9 62 \"Luke\"\n"};
        // The server pads the names by their visible length.
        const auto row = [](int num, int score, int ping, const QString& name, int lastmsg, const char* address,
                            int qport) {
            QString padded = name + QString(16 - stripColourCodes(name).size(), QLatin1Char(' '));
            return QStringLiteral("%1 %2 %3 ").arg(num, 3).arg(score, 5).arg(ping, 4) + padded +
                   QStringLiteral("%1 %2%3 %4\n")
                       .arg(lastmsg, 7)
                       .arg(QString::fromLatin1(address), -22)
                       .arg(qport, 5)
                       .arg(25000, 5);
        };
        const QString table =
            QStringLiteral("map: ffa_bespin\n"
                           "num score ping name            lastmsg address               qport rate\n"
                           "--- ----- ---- --------------- ------- --------------------- ----- -----\n") +
            row(0, 31, 0, QStringLiteral("^1Gnubee^7"), 0, "bot", 0) +
            row(1, 17, 45, QStringLiteral("^5Kyle^7"), 50, "192.168.1.20:29070", 31337) +
            row(2, 9, 62, QStringLiteral("Luke^7"), 50, "192.168.1.21:29070", 4711);
        return {oob + "print\n" + table.toLatin1()};
    };
    ServerProfile profile;
    profile.setText(F::txtServerConfig(16), QStringLiteral("127.0.0.1"));
    profile.setText(F::txtServerConfig(12), QString::number(server.port()));
    profile.setText(F::txtServerConfig(14), QStringLiteral("secret"));
    frmServerConsole window(*t.app, profile);
    window.resize(1000, 540);
    window.show();
    auto* grid = window.findChild<QTableWidget*>(QStringLiteral("grdPlayers"));
    if (!testing::waitUntil([&] { return grid->rowCount() == 3; })) {
        std::fprintf(stderr, "the fake server's status did not arrive\n");
        return false;
    }
    grid->selectRow(1);
    window.sendCommand(QStringLiteral("status"));
    if (!testing::waitUntil([&] { return window.outputText().contains(QStringLiteral("Luke")); })) {
        std::fprintf(stderr, "the fake server's rcon answer did not arrive\n");
        return false;
    }
    window.findChild<QLineEdit*>(QStringLiteral("txtConsoleCommand"))
        ->setText(QStringLiteral("^2Next map in 5 minutes"));
    testing::runEvents(100);
    return save(window, folder + QStringLiteral("/server-console.png"));
}

} // namespace

int main(int argc, char** argv)
{
    // Offscreen, and the user's configuration and data folders in a temporary folder.
    QTemporaryDir home;
    const QByteArray root = home.path().toLocal8Bit();
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("XDG_CONFIG_HOME", (root + "/config").constData(), 1);
    setenv("XDG_DATA_HOME", (root + "/data").constData(), 1);
    QApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 64;
    }
    const QString folder = QDir(QString::fromLocal8Bit(argv[1])).absolutePath();
    QDir().mkpath(folder);
    const bool pages = mainWindowPages(folder);
    const bool console = serverConsole(folder);
    return pages && console ? 0 : 1;
}
