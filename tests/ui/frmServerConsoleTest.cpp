// The server console window driven through its objectNames against fake servers on real UDP sockets.
#include "../console/FakeServer.h"
#include "console/CommandHistory.h"
#include "console/ConsoleClient.h"
#include "model/ServerProfile.h"
#include "platform/ProcessIdentity.h"
#include "platform/System.h"
#include "watch/ServerFolder.h"
#include "watch/WatchState.h"
#include "testkit/BoxExpect.h"
#include "ui/frmServerConsole.h"
#include "ui/WiredMainWindow.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QToolButton>
#include <gtest/gtest.h>

#include <csignal>

using namespace steward;
using namespace steward::testing;

namespace {

QByteArray oob(const QByteArray& rest) { return QByteArray(4, '\xff') + rest; }
const QByteArray kStatus = oob("statusResponse\n\\sv_hostname\\^1Red ^7Arena\\mapname\\ffa_bespin\\sv_maxclients\\"
                               "16\\g_gametype\\7\\g_needpass\\0\n3 0 \"^4Gnubee\"\n12 48 \"Luke\"\n");

class ConsoleWindow : public ::testing::Test {
protected:
    void SetUp() override
    {
        profile.setText(F::txtServerConfig(16), QStringLiteral("127.0.0.1"));
        profile.setText(F::txtServerConfig(12), QString::number(server.port()));
        profile.setText(F::txtServerConfig(14), QStringLiteral("secret"));
        server.answer = [this](const QByteArray& request) -> QList<QByteArray> {
            if (request == oob("getstatus"))
                return {kStatus};
            if (request == oob("rcon secret status"))
                return {oob("print\nmap: ffa_bespin\ncl score ping name            address                             "
                            "    rate \n"
                            "-- ----- ---- --------------- --------------------------------------- -----\n"),
                        oob("print\n 5     3    0 ^4Gnubee^7        ^7bot                                     16384\n"
                            " 7    12   48 Luke^7          ^7127.0.0.1:27960                         25000\n\n")};
            if (request.startsWith(oob("rcon wrong ")))
                return {oob("print\nBad rconpassword.\n")};
            if (request.startsWith(oob("rcon  ")))
                return {oob("print\nNo rconpassword set on the server.\n")};
            if (request.startsWith(oob("rcon secret ")))
                return {oob("print\n^2ok\n")};
            return {};
        };
        window = new frmServerConsole(*t.app, profile);
        window->client().setTimeout(300);
        window->show();
    }
    void TearDown() override { delete window.data(); }
    template <typename T>
    T* find(const char* name)
    {
        T* w = window->findChild<T*>(QString::fromLatin1(name));
        EXPECT_NE(w, nullptr) << name;
        return w;
    }
    QString label(const char* name) { return find<QLabel>(name)->text(); }
    void type(const QString& text)
    {
        auto* line = find<QLineEdit>("txtConsoleCommand");
        line->setText(text);
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(line, &enter);
    }
    void key(Qt::Key k)
    {
        QKeyEvent press(QEvent::KeyPress, k, Qt::NoModifier);
        QApplication::sendEvent(find<QLineEdit>("txtConsoleCommand"), &press);
    }
    QString output() { return window->outputText(); }

    TestApp t;
    FakeServer server;
    ServerProfile profile;
    QPointer<frmServerConsole> window;
};

} // namespace

TEST_F(ConsoleWindow, ShowsTheStatusOfTheServer)
{
    ASSERT_TRUE(waitUntil([&] { return label("lblServerMap") == QStringLiteral("ffa_bespin"); }));
    EXPECT_EQ(label("lblServerName"), QStringLiteral("<span style=\"color:#d00000\">Red </span>Arena"));
    EXPECT_EQ(label("lblServerPlayers"), QStringLiteral("2 / 16"));
    EXPECT_EQ(label("lblServerGameType"), QStringLiteral("Capture the Flag"));
    EXPECT_TRUE(label("lblServerPing").endsWith(QStringLiteral(" ms")));
    auto* grid = find<QTableWidget>("grdPlayers");
    ASSERT_EQ(grid->rowCount(), 2);
    EXPECT_EQ(grid->item(0, 0)->text(), QStringLiteral("Gnubee"));
    EXPECT_EQ(grid->item(0, 2)->text(), QStringLiteral("0")) << "a bot's ping";
    EXPECT_EQ(grid->item(1, 1)->text(), QStringLiteral("12"));

    // The whole list of settings is one click away.
    auto* cvars = find<QTableWidget>("grdServerCvars");
    EXPECT_FALSE(cvars->isVisible());
    find<QToolButton>("cmdShowCvars")->click();
    EXPECT_TRUE(cvars->isVisible());
    EXPECT_EQ(cvars->rowCount(), 5);
    EXPECT_EQ(cvars->item(4, 0)->text(), QStringLiteral("g_needpass"));
}

TEST_F(ConsoleWindow, TheConsoleShowsRepliesJoinedAndColoured)
{
    type(QStringLiteral("status"));
    EXPECT_EQ(find<QLineEdit>("txtConsoleCommand")->text(), QString());
    ASSERT_TRUE(waitUntil([&] { return output().contains(QStringLiteral("127.0.0.1:27960")); }));
    EXPECT_TRUE(output().startsWith(QStringLiteral("] status\nmap: ffa_bespin\ncl score ping name")));
    EXPECT_FALSE(output().contains(QStringLiteral("^7"))) << "colour codes are rendered, not shown";
    EXPECT_TRUE(server.requests.contains(oob("rcon secret status")));

    // Kick uses the slot that status printed for the selected player.
    auto* grid = find<QTableWidget>("grdPlayers");
    ASSERT_TRUE(waitUntil([&] { return grid->rowCount() == 2; }));
    grid->selectRow(1);
    t.prompts.answerNext(Answer::Yes);
    find<QPushButton>("cmdServerKick")->click();
    EXPECT_TRUE(waitUntil([&] { return server.requests.contains(oob("rcon secret clientkick 7")); }));
}

TEST_F(ConsoleWindow, RefusedPasswordsAreOneLineNotes)
{
    profile.setText(F::txtServerConfig(14), QStringLiteral("wrong"));
    type(QStringLiteral("status"));
    ASSERT_TRUE(waitUntil([&] { return output().contains(QStringLiteral("Bad rconpassword.")); }));
    EXPECT_EQ(output().split(QLatin1Char('\n')).size(), 2);
    profile.setText(F::txtServerConfig(14), QString());
    type(QStringLiteral("status"));
    EXPECT_TRUE(waitUntil([&] { return output().contains(QStringLiteral("No rconpassword set on the server.")); }));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(ConsoleWindow, QuickButtonsSendTheirCommands)
{
    // Nobody on the server: the map buttons act at once.
    server.answer = [](const QByteArray& request) -> QList<QByteArray> {
        if (request == oob("getstatus"))
            return {oob("statusResponse\n\\sv_hostname\\Empty\\mapname\\ffa_bespin\\sv_maxclients\\8\n")};
        return {};
    };
    find<QPushButton>("cmdRefresh")->click();
    ASSERT_TRUE(waitUntil([&] { return label("lblServerPlayers") == QStringLiteral("0 / 8"); }));
    find<QLineEdit>("txtConsoleCommand")->setText(QStringLiteral("^1hello all"));
    find<QPushButton>("cmdServerSay")->click();
    find<QPushButton>("cmdServerNextMap")->click();
    find<QPushButton>("cmdServerRestartMap")->click();
    EXPECT_TRUE(waitUntil([&] {
        return server.requests.contains(oob("rcon secret say ^1hello all")) &&
               server.requests.contains(oob("rcon secret vstr nextmap")) &&
               server.requests.contains(oob("rcon secret map_restart"));
    }));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(ConsoleWindow, KickAndTheMapButtonsAskFirstWhilePlayersAreOn)
{
    ASSERT_TRUE(waitUntil([&] { return label("lblServerPlayers") == QStringLiteral("2 / 16"); }));
    auto* grid = find<QTableWidget>("grdPlayers");
    grid->selectRow(1);
    struct Case {
        const char* button;
        QString question;
        QByteArray command;
    };
    const QString tail = QStringLiteral("         ");
    const Case cases[] = {
        {"cmdServerKick", QStringLiteral("Kick Luke off the server?") + tail, oob("rcon secret clientkick 1")},
        {"cmdServerNextMap",
         QStringLiteral("Change to the next map?") + tail + QStringLiteral("\r\n2 players are on the server.") + tail,
         oob("rcon secret vstr nextmap")},
        {"cmdServerRestartMap",
         QStringLiteral("Restart the map?") + tail + QStringLiteral("\r\n2 players are on the server.") + tail,
         oob("rcon secret map_restart")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.button);
        t.prompts.shown.clear();
        t.prompts.answerNext(Answer::No);
        find<QPushButton>(c.button)->click();
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(
            isBox(t.prompts.last(), {QStringLiteral("Arena Steward"), Icon::Question, c.question, Buttons::YesNo}));
        EXPECT_EQ(t.prompts.last().request.defaultButton, 1) << "Enter doesn't act";
        runEvents(200);
        EXPECT_FALSE(server.requests.contains(c.command)) << "No sends nothing";
        EXPECT_FALSE(output().contains(QString::fromLatin1(c.command.mid(16)))) << "nor shows it as sent";

        t.prompts.answerNext(Answer::Yes);
        find<QPushButton>(c.button)->click();
        EXPECT_TRUE(waitUntil([&] { return server.requests.contains(c.command); }));
    }
}

TEST_F(ConsoleWindow, WithoutAnAnswerTheLastAnswerIsShownAsPast)
{
    t.clock.at = QDateTime(QDate(2002, 6, 13), QTime(14, 2, 11));
    ASSERT_TRUE(waitUntil([&] { return label("lblServerMap") == QStringLiteral("ffa_bespin"); }));
    const char* const values[] = {"lblServerName", "lblServerMap", "lblServerPlayers"};
    EXPECT_TRUE(label("lblLastAnswer").isEmpty());

    const auto answer = server.answer;
    server.answer = nullptr;
    t.clock.at = t.clock.at.addSecs(30);
    find<QPushButton>("cmdRefresh")->click();
    ASSERT_TRUE(waitUntil([&] { return label("lblServerAnswer") == QStringLiteral("No answer"); }));
    EXPECT_TRUE(t.prompts.shown.empty()) << "silence is a state, not a box";
    for (const char* name : values) {
        EXPECT_FALSE(find<QLabel>(name)->isEnabled()) << name;
        EXPECT_FALSE(label(name).isEmpty()) << name << " keeps the last answer's value";
    }
    EXPECT_FALSE(find<QTableWidget>("grdPlayers")->isEnabled());
    EXPECT_EQ(find<QTableWidget>("grdPlayers")->rowCount(), 2);
    EXPECT_EQ(label("lblLastAnswer"), QStringLiteral("Last answer at 14:02:11"));
    EXPECT_EQ(label("lblServerName"), QStringLiteral("Red Arena")) << "greyed without its colours";

    server.answer = answer;
    find<QPushButton>("cmdRefresh")->click();
    ASSERT_TRUE(waitUntil([&] { return label("lblServerAnswer") == QStringLiteral("Answers"); }));
    for (const char* name : values)
        EXPECT_TRUE(find<QLabel>(name)->isEnabled()) << name;
    EXPECT_EQ(label("lblServerName"), QStringLiteral("<span style=\"color:#d00000\">Red </span>Arena"));
    EXPECT_TRUE(find<QTableWidget>("grdPlayers")->isEnabled());
    EXPECT_TRUE(label("lblLastAnswer").isEmpty());
}

TEST_F(ConsoleWindow, HistoryBrowsesAndOutlivesTheWindowWithoutThePassword)
{
    type(QStringLiteral("status"));
    type(QStringLiteral("say my secret"));
    type(QStringLiteral("map ffa_bespin"));
    key(Qt::Key_Up);
    EXPECT_EQ(find<QLineEdit>("txtConsoleCommand")->text(), QStringLiteral("map ffa_bespin"));
    key(Qt::Key_Up);
    EXPECT_EQ(find<QLineEdit>("txtConsoleCommand")->text(), QStringLiteral("status"));
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    EXPECT_EQ(find<QLineEdit>("txtConsoleCommand")->text(), QString());

    window->close();
    CommandHistory saved;
    saved.load(CommandHistory::fileIn(t.app->programFolder));
    EXPECT_EQ(saved.entries(), QStringList({QStringLiteral("status"), QStringLiteral("map ffa_bespin")}));
    EXPECT_FALSE(steward::testing::fileBytes(CommandHistory::fileIn(t.app->programFolder)).contains("secret"));
}

TEST_F(ConsoleWindow, RefreshAsksAgainTheIntervalIsTwoToSixtyAndClosingStopsAllTraffic)
{
    ASSERT_TRUE(waitUntil([&] { return server.requests.size() == 1; }));
    find<QPushButton>("cmdRefresh")->click();
    EXPECT_TRUE(waitUntil([&] { return server.requests.size() == 2; }));
    auto* spin = find<QSpinBox>("spnStatusInterval");
    EXPECT_EQ(spin->value(), 5);
    EXPECT_EQ(spin->minimum(), 2);
    EXPECT_EQ(spin->maximum(), 60);

    spin->setValue(2);
    window->close();
    EXPECT_EQ(window->client().statusInFlight() + window->client().commandsInFlight(), 0);
    const auto before = server.requests.size();
    runEvents(2300);
    EXPECT_EQ(server.requests.size(), before);
}

using ConsoleMenu = WiredMainWindow;

TEST_F(ConsoleMenu, UtilitiesServerConsoleOpensOneWindowWithCtrlK)
{
    openMainWindow();
    QAction* entry = action(QStringLiteral("id_UtilitiesServerConsole"));
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->text(), QStringLiteral("Server Console..."));
    EXPECT_EQ(entry->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_K));
    entry->trigger();
    entry->trigger();
    const auto windows = window->findChildren<frmServerConsole*>(QStringLiteral("frmServerConsole"));
    ASSERT_EQ(windows.size(), 1);
    EXPECT_TRUE(windows[0]->isVisible());
    EXPECT_FALSE(windows[0]->isModal());
}

namespace {

/// A recorded server of the console's session ("luke.cfg") that is a real process.
class ConsoleServerState : public ConsoleWindow {
protected:
    void startRecorded(bool watched)
    {
        sleeper.start(QStringLiteral("sleep"), {QStringLiteral("30")});
        ASSERT_TRUE(sleeper.waitForStarted());
        WatchState state;
        state.session = QStringLiteral("luke.cfg");
        state.server = identifyProcess(sleeper.processId());
        state.watched = watched;
        state.watcher = watched ? identifyProcess(QCoreApplication::applicationPid()) : ProcessIdentity{};
        state.program = QStringLiteral("sleep");
        state.arguments = {QStringLiteral("30")};
        state.phase = WatchState::Phase::Running;
        state.since = QDateTime(QDate(2026, 11, 25), QTime(14, 2));
        state.restarts = 2;
        state.lastCrash = QDateTime(QDate(2026, 11, 25), QTime(13, 58));
        state.lastCrashCause = QStringLiteral("signal 11");
        folder.make();
        writeWatchState(folder.stateFile(), state);
    }
    void TearDown() override
    {
        sleeper.kill();
        sleeper.waitForFinished();
        ConsoleWindow::TearDown();
    }
    ServerFolder folder{t.programFolder(), QStringLiteral("luke")};
    QProcess sleeper;
};

} // namespace

TEST_F(ConsoleServerState, ShowsTheRecordedServerAndStopsItAfterAsking)
{
    EXPECT_EQ(label("lblServerState"), QStringLiteral("Not running"));
    find<QPushButton>("cmdServerStop")->click();
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {QStringLiteral("Arena Steward"), Icon::Information,
                                         QStringLiteral("The server of luke.cfg is not running         ")}));

    startRecorded(false);
    find<QPushButton>("cmdRefresh")->click();
    EXPECT_EQ(label("lblServerState"),
              QStringLiteral("Running since 14:02 · 2 restarts · last crash 13:58, signal 11"));

    t.prompts.answers.push_back(Answer::No);
    find<QPushButton>("cmdServerStop")->click();
    EXPECT_TRUE(isBox(t.prompts.last(), {QStringLiteral("Arena Steward"), Icon::Question,
                                         QStringLiteral("Stop the server of luke.cfg?         "), Buttons::YesNo}));
    EXPECT_EQ(sleeper.state(), QProcess::Running);

    t.prompts.answers.push_back(Answer::Yes);
    find<QPushButton>("cmdServerStop")->click();
    EXPECT_TRUE(sleeper.waitForFinished(5000));
    EXPECT_EQ(label("lblServerState"), QStringLiteral("Stopped"));
}

TEST_F(ConsoleServerState, RestartStartsAServerWithoutAWatcherAgainAsItWasStarted)
{
    DetachedProcessLauncher launcher;
    t.app->services.launcher = &launcher;
    startRecorded(false);
    const qint64 before = sleeper.processId();
    t.prompts.answers.push_back(Answer::Yes);
    find<QPushButton>("cmdServerRestart")->click();
    EXPECT_TRUE(isBox(t.prompts.last(), {QStringLiteral("Arena Steward"), Icon::Question,
                                         QStringLiteral("Restart the server of luke.cfg?         "), Buttons::YesNo}));
    EXPECT_TRUE(sleeper.waitForFinished(5000));
    const auto state = readWatchState(folder.stateFile());
    ASSERT_TRUE(state);
    EXPECT_NE(state->server.pid, before);
    EXPECT_TRUE(stillRuns(state->server));
    EXPECT_EQ(state->restarts, 3);
    EXPECT_TRUE(label("lblServerState").startsWith(QStringLiteral("Running since ")));
    signalProcess(state->server, SIGKILL);
}
