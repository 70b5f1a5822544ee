// The server console window driven through its objectNames against fake servers on real UDP sockets.
#include "console/CommandHistory.h"
#include "console/ConsoleClient.h"
#include "platform/ProcessIdentity.h"
#include "platform/System.h"
#include "ui/WiredMainWindow.h"
#include "ui/frmServerConsole.h"
#include "watch/ServerFolder.h"
#include "watch/WatchState.h"

#include <csignal>

namespace {

const QByteArray kStatus = oob("statusResponse\n\\sv_hostname\\^1Red ^7Arena\\mapname\\ffa_bespin\\sv_maxclients\\"
                               "16\\g_gametype\\7\\g_needpass\\0\n3 0 \"^4Gnubee\"\n12 48 \"Luke\"\n");

class ConsoleWindow : public ::testing::Test {
protected:
    void SetUp() override
    {
        profile.setText(F::txtServerConfig(16), u"127.0.0.1"_s);
        profile.setText(F::txtServerConfig(12), QString::number(server.port()));
        profile.setText(F::txtServerConfig(14), u"secret"_s);
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
    template <typename T = QPushButton>
    T* find(const char* name)
    {
        return child<T>(window, QString::fromLatin1(name));
    }
    QString label(const char* name) { return find<QLabel>(name)->text(); }
    void press(const char* button) { find(button)->click(); }
    QLineEdit* line() { return find<QLineEdit>("txtConsoleCommand"); }
    void type(const QString& text)
    {
        line()->setText(text);
        sendKey(line(), Qt::Key_Return);
    }
    QString output() { return window->outputText(); }
    TestApp t;
    FakeServer server;
    ServerProfile profile;
    QPointer<frmServerConsole> window;
};

TEST_F(ConsoleWindow, ShowsTheStatusOfTheServerAndWithoutAnAnswerTheLastAnswerAsPast)
{
    t.clock.at = QDateTime(QDate(2002, 6, 13), QTime(14, 2, 11));
    ASSERT_TRUE(waitUntil([&] { return label("lblServerMap") == u"ffa_bespin"_s; }));
    const QString colouredName = u"<span style=\"color:#d00000\">Red </span>Arena"_s;
    EXPECT_EQ(label("lblServerName"), colouredName);
    EXPECT_EQ(label("lblServerPlayers"), u"2 / 16"_s);
    EXPECT_EQ(label("lblServerGameType"), u"Capture the Flag"_s);
    EXPECT_TRUE(label("lblServerPing").endsWith(u" ms"_s));
    EXPECT_TRUE(label("lblLastAnswer").isEmpty());
    auto* grid = find<QTableWidget>("grdPlayers");
    ASSERT_EQ(grid->rowCount(), 2);
    EXPECT_EQ(grid->item(0, 0)->text(), u"Gnubee"_s);
    EXPECT_EQ(grid->item(0, 2)->text(), u"0"_s) << "a bot's ping";
    EXPECT_EQ(grid->item(1, 1)->text(), u"12"_s);
    auto* cvars = find<QTableWidget>("grdServerCvars"); // the whole list of settings is one click away
    EXPECT_FALSE(cvars->isVisible());
    find<QToolButton>("cmdShowCvars")->click();
    EXPECT_TRUE(cvars->isVisible());
    EXPECT_EQ(cvars->item(4, 0)->text(), u"g_needpass"_s);
    const char* const values[] = {"lblServerName", "lblServerMap", "lblServerPlayers"};
    const auto answer = server.answer;
    server.answer = nullptr;
    t.clock.at = t.clock.at.addSecs(30);
    press("cmdRefresh");
    ASSERT_TRUE(waitUntil([&] { return label("lblServerAnswer") == u"No answer"_s; }));
    EXPECT_TRUE(t.prompts.shown.empty()) << "silence is a state, not a box";
    for (const char* name : values) {
        EXPECT_FALSE(find<QLabel>(name)->isEnabled()) << name;
        EXPECT_FALSE(label(name).isEmpty()) << name << " keeps the last answer's value";
    }
    EXPECT_FALSE(grid->isEnabled());
    EXPECT_EQ(grid->rowCount(), 2);
    EXPECT_EQ(label("lblLastAnswer"), u"Last answer at 14:02:11"_s);
    EXPECT_EQ(label("lblServerName"), u"Red Arena"_s) << "greyed without its colours";
    server.answer = answer;
    press("cmdRefresh");
    ASSERT_TRUE(waitUntil([&] { return label("lblServerAnswer") == u"Answers"_s; }));
    for (const char* name : values)
        EXPECT_TRUE(find<QLabel>(name)->isEnabled()) << name;
    EXPECT_EQ(label("lblServerName"), colouredName);
    EXPECT_TRUE(grid->isEnabled());
    EXPECT_TRUE(label("lblLastAnswer").isEmpty());
}

TEST_F(ConsoleWindow, TheConsoleShowsRepliesJoinedAndColouredAndRefusedPasswordsAsOneLineNotes)
{
    type(u"status"_s);
    EXPECT_EQ(line()->text(), QString());
    ASSERT_TRUE(waitUntil([&] { return output().contains(u"127.0.0.1:27960"_s); }));
    EXPECT_TRUE(output().startsWith(u"] status\nmap: ffa_bespin\ncl score ping name"_s));
    EXPECT_FALSE(output().contains(u"^7"_s)) << "colour codes are rendered, not shown";
    for (const auto& [password, note] :
         {std::pair{u"wrong"_s, u"Bad rconpassword."_s}, {QString(), u"No rconpassword set on the server."_s}}) {
        profile.setText(F::txtServerConfig(14), password);
        type(u"status"_s);
        ASSERT_TRUE(waitUntil([&] { return output().contains(note); }));
        EXPECT_FALSE(output().section(u"] status\n"_s, -1).contains(u'\n')) << output().toStdString();
    }
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(ConsoleWindow, KickAndTheMapButtonsAskFirstWhilePlayersAreOnAndActAtOnceWithoutThem)
{
    ASSERT_TRUE(waitUntil([&] { return label("lblServerPlayers") == u"2 / 16"_s; }));
    find<QTableWidget>("grdPlayers")->selectRow(1);
    const QString tail = u"         "_s, players = u"\r\n2 players are on the server."_s + tail;
    const std::tuple<const char*, QString, QByteArray> cases[] = {
        {"cmdServerKick", u"Kick Luke off the server?"_s + tail, oob("rcon secret clientkick 1")},
        {"cmdServerNextMap", u"Change to the next map?"_s + tail + players, oob("rcon secret vstr nextmap")},
        {"cmdServerRestartMap", u"Restart the map?"_s + tail + players, oob("rcon secret map_restart")}};
    for (const auto& [button, question, command] : cases) {
        SCOPED_TRACE(button);
        t.prompts.shown.clear();
        t.prompts.answerNext(Answer::No);
        press(button);
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(), {u"Arena Steward"_s, Icon::Question, question, Buttons::YesNo}));
        EXPECT_EQ(t.prompts.last().request.defaultButton, 1) << "Enter doesn't act";
        runEvents(200);
        EXPECT_FALSE(server.requests.contains(command)) << "No sends nothing";
        EXPECT_FALSE(output().contains(QString::fromLatin1(command.mid(16)))) << "nor shows it as sent";
        t.prompts.answerNext(Answer::Yes);
        press(button);
        EXPECT_TRUE(waitUntil([&] { return server.requests.contains(command); }));
    }
    type(u"status"_s); // now Kick takes the slot that status printed for the player
    ASSERT_TRUE(waitUntil([&] { return output().contains(u"127.0.0.1:27960"_s); }));
    t.prompts.answerNext(Answer::Yes);
    press("cmdServerKick");
    EXPECT_TRUE(waitUntil([&] { return server.requests.contains(oob("rcon secret clientkick 7")); }));
    server.answer = [](const QByteArray& request) -> QList<QByteArray> {
        if (request == oob("getstatus"))
            return {oob("statusResponse\n\\sv_hostname\\Empty\\mapname\\ffa_bespin\\sv_maxclients\\8\n")};
        return {};
    };
    press("cmdRefresh");
    ASSERT_TRUE(waitUntil([&] { return label("lblServerPlayers") == u"0 / 8"_s; }));
    server.requests.clear();
    t.prompts.shown.clear();
    line()->setText(u"^1hello all"_s);
    press("cmdServerSay");
    press("cmdServerNextMap");
    press("cmdServerRestartMap");
    EXPECT_TRUE(waitUntil([&] {
        return server.requests.contains(oob("rcon secret say ^1hello all")) &&
               server.requests.contains(oob("rcon secret vstr nextmap")) &&
               server.requests.contains(oob("rcon secret map_restart"));
    }));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(ConsoleWindow, HistoryBrowsesAndOutlivesTheWindowWithoutThePasswordAndClosingStopsAllTraffic)
{
    type(u"status"_s);
    type(u"say my secret"_s); // holds the password: never kept
    type(u"map ffa_bespin"_s);
    QStringList browsed;
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Up, Qt::Key_Down, Qt::Key_Down}) {
        sendKey(line(), key);
        browsed << line()->text();
    }
    EXPECT_EQ(browsed, (QStringList{u"map ffa_bespin"_s, u"status"_s, u"map ffa_bespin"_s, QString()}));
    find<QSpinBox>("spnStatusInterval")->setValue(2);
    ASSERT_TRUE(waitUntil([&] { return server.requests.size() == 4; })) << "a status and three commands";
    window->close();
    EXPECT_EQ(window->client().statusInFlight() + window->client().commandsInFlight(), 0);
    const auto before = server.requests.size();
    CommandHistory saved;
    saved.load(CommandHistory::fileIn(t.app->programFolder));
    EXPECT_EQ(saved.entries(), QStringList({u"status"_s, u"map ffa_bespin"_s}));
    runEvents(2300);
    EXPECT_EQ(server.requests.size(), before);
}

/// A recorded server of the console's session ("luke.cfg") that is a real process.
class ConsoleServerState : public ConsoleWindow {
protected:
    void startRecorded()
    {
        sleeper.start(u"sleep"_s, {u"30"_s});
        ASSERT_TRUE(sleeper.waitForStarted());
        folder.make();
        WatchState state;
        state.session = u"luke.cfg"_s;
        state.server = identifyProcess(sleeper.processId());
        state.program = u"sleep"_s;
        state.arguments = {u"30"_s};
        state.phase = WatchState::Phase::Running;
        state.since = QDateTime(QDate(2026, 11, 25), QTime(14, 2));
        state.restarts = 2;
        writeWatchState(folder.stateFile(), state);
    }
    void TearDown() override
    {
        sleeper.kill();
        sleeper.waitForFinished();
        ConsoleWindow::TearDown();
    }
    ServerFolder folder{t.programFolder(), u"luke"_s};
    QProcess sleeper;
};

TEST_F(ConsoleServerState, ShowsTheRecordedServerRestartsOneWithoutAWatcherAsItWasStartedAndStopsItAfterAsking)
{
    DetachedProcessLauncher launcher;
    t.app->services.launcher = &launcher;
    EXPECT_EQ(label("lblServerState"), u"Not running"_s);
    press("cmdServerStop");
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {u"Arena Steward"_s, Icon::Information, u"The server of luke.cfg is not running         "_s}));
    startRecorded();
    press("cmdRefresh");
    EXPECT_EQ(label("lblServerState"), u"Running since 14:02 · 2 restarts"_s);
    t.prompts.answers.push_back(Answer::No);
    press("cmdServerStop");
    EXPECT_TRUE(isBox(t.prompts.last(), {u"Arena Steward"_s, Icon::Question, u"Stop the server of luke.cfg?         "_s,
                                         Buttons::YesNo}));
    EXPECT_EQ(sleeper.state(), QProcess::Running);
    const qint64 before = sleeper.processId();
    t.prompts.answers.push_back(Answer::Yes);
    press("cmdServerRestart");
    EXPECT_TRUE(isBox(t.prompts.last(), {u"Arena Steward"_s, Icon::Question,
                                         u"Restart the server of luke.cfg?         "_s, Buttons::YesNo}));
    EXPECT_TRUE(sleeper.waitForFinished(5000));
    const auto state = readWatchState(folder.stateFile());
    ASSERT_TRUE(state);
    EXPECT_NE(state->server.pid, before);
    EXPECT_TRUE(stillRuns(state->server));
    EXPECT_EQ(state->restarts, 3);
    EXPECT_TRUE(label("lblServerState").startsWith(u"Running since "_s));
    t.prompts.answers.push_back(Answer::Yes);
    press("cmdServerStop");
    EXPECT_TRUE(waitUntil([&] { return !stillRuns(state->server); }));
    EXPECT_EQ(label("lblServerState"), u"Stopped"_s);
    signalProcess(state->server, SIGKILL);
}

} // namespace
