// The server console: colour codes, the command history, requests and replies of every
// shape, and the client against fake servers on real UDP sockets on 127.0.0.1.
#include "console/ColourText.h"
#include "console/CommandHistory.h"
#include "console/ConsoleClient.h"
#include "console/ConsoleProtocol.h"
#include "FakeServer.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

QByteArray oob(const QByteArray& rest) { return QByteArray(4, '\xff') + rest; }
QString red(const char* text) { return u"<span style=\"color:#d00000\">%1</span>"_s.arg(QLatin1String(text)); }

TEST(ColourText, CodesBecomeSpansAndEverythingIsEscaped)
{
    const std::pair<QString, QString> cases[] = {
        {u"^1red^2green"_s, red("red") + u"<span style=\"color:#00a000\">green</span>"_s},
        {u"^1a^7b"_s, red("a") + u"b"_s},
        {u"^9x"_s, red("x")},
        {u"^^1"_s, u"^"_s + red("")},
        {u"end^"_s, u"end^"_s},
        {u"<b>&\"</b>"_s, u"&lt;b&gt;&amp;&quot;&lt;/b&gt;"_s},
        {u"^1<script>"_s, red("&lt;script&gt;")},
        {u"a\nb"_s, u"a<br>b"_s},
        {QString(), QString()}};
    for (const auto& [text, html] : cases)
        EXPECT_EQ(colourCodesToHtml(text), html) << text.toStdString();
    EXPECT_EQ(stripColourCodes(u"^1Steward ^7Arena^"_s), u"Steward Arena^"_s);
    EXPECT_EQ(stripColourCodes(u"^^2"_s), u"^"_s);
    EXPECT_EQ(colourOfCode(u'7'), QString());
    EXPECT_EQ(colourOfCode(u'0'), u"#000000"_s);
}

TEST(CommandHistory, UpAndDownBrowseFromTheNewestAndTheCapIs200)
{
    CommandHistory h;
    EXPECT_EQ(h.older(), QString());
    for (const char* c : {"status", "map oa_dm1", "status"})
        h.add(QString::fromLatin1(c), u"pw"_s);
    for (const char* older : {"status", "map oa_dm1", "status", "status"}) // the oldest stays
        EXPECT_EQ(h.older(), QString::fromLatin1(older));
    for (const char* newer : {"map oa_dm1", "status", "", ""}) // past the newest is an empty line
        EXPECT_EQ(h.newer(), QString::fromLatin1(newer));
    h.add(u"status"_s, {});
    EXPECT_EQ(h.entries().size(), 3) << "a repeat of the newest is not kept again";
    // It keeps the newest 200 and never the password.
    for (int i = 0; i < 250; ++i)
        h.add(u"say %1"_s.arg(i), u"s3cret"_s);
    ASSERT_EQ(h.entries().size(), 200);
    EXPECT_EQ(h.entries().first(), u"say 50"_s);
    for (const char* c :
         {"say my s3cret", "rconpassword other", "set rconPassword other", "seta rcon_password x", "", "   "})
        h.add(QString::fromLatin1(c), u"s3cret"_s);
    EXPECT_EQ(h.entries().last(), u"say 249"_s);
}

TEST(CommandHistory, SurvivesARunInItsFileReadableOnlyByTheUser)
{
    QTemporaryDir dir;
    const QString file = CommandHistory::fileIn(dir.path());
    EXPECT_TRUE(file.startsWith(dir.path()));
    CommandHistory first, second;
    first.load(file);
    EXPECT_TRUE(first.entries().isEmpty());
    first.add(u"status"_s, u"pw"_s);
    first.add(u"say caf\u00e9 \u20ac"_s, u"pw"_s);
    ASSERT_TRUE(first.save(file));
    EXPECT_EQ(QFile::permissions(file) & (QFileDevice::ReadOther | QFileDevice::ReadGroup), QFileDevice::Permissions());
    second.load(file);
    EXPECT_EQ(second.entries(), first.entries());
    EXPECT_EQ(second.older(), u"say caf\u00e9 \u20ac"_s);
    // A hand-made file of 500 lines keeps its newest 200; an unwritable place is a false.
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    for (int i = 0; i < 500; ++i)
        f.write(QByteArray::number(i) + "\n");
    f.close();
    second.load(file);
    EXPECT_EQ(QStringList({QString::number(second.entries().size()), second.entries().first()}),
              QStringList({u"200"_s, u"300"_s}));
    EXPECT_FALSE(second.save(dir.path() + u"/missing/folder/h.txt"_s));
}

TEST(ConsoleRequests, GetstatusAndRconByteForByte)
{
    EXPECT_EQ(getstatusDatagram(), oob("getstatus"));
    EXPECT_EQ(rconDatagram(u"secret"_s, u"status"_s), oob("rcon secret status"));
    EXPECT_EQ(rconDatagram(u"p\u00e4ss"_s, u"say caf\u00e9"_s), oob("rcon p\xe4ss say caf\xe9"));
    EXPECT_EQ(rconDatagram(QString(), u"status"_s), oob("rcon  status"));
    // One datagram is one command line: a pasted line break does not start another.
    EXPECT_EQ(rconDatagram(u"pw"_s, u"say a\nquit\r"_s), oob("rcon pw say a quit "));
}

TEST(StatusReply, ARecordedReplyGivesItsValuesAndPlayers)
{
    // The shape of an OpenArena 0.8.8 reply: info string, then a bot and a player.
    const QByteArray recorded =
        oob("statusResponse\n\\com_protocol\\71\\g_gametype\\3\\mapname\\oa_dm1\\sv_hostname\\^1Steward ^7Arena"
            "\\sv_maxclients\\8\\version\\ioq3 1.36\n0 0 \"Angelyss\"\n12 48 \"^4Luke^7\"\n");
    ASSERT_EQ(replyKind(recorded), ReplyKind::Status);
    const auto status = parseStatusResponse(recorded);
    ASSERT_TRUE(status);
    QStringList players;
    for (const auto& p : status->players)
        players << u"%1 %2 %3"_s.arg(p.score).arg(p.ping).arg(p.name);
    EXPECT_EQ(
        QStringList({status->hostName(), status->mapName(), status->maxClients(),
                     gameTypeName(status->gameTypeNumber()), status->value(u"MAPNAME"_s),
                     QString::number(status->cvars.size()), status->cvars.first().first}),
        QStringList({u"^1Steward ^7Arena"_s, u"oa_dm1"_s, u"8"_s, u"Duel"_s, u"oa_dm1"_s, u"6"_s, u"com_protocol"_s}));
    EXPECT_EQ(players, QStringList({u"0 0 Angelyss"_s, u"12 48 ^4Luke^7"_s}));
}

TEST(StatusReply, OddRepliesAreReadAndMalformedOnesRefusedAsAWhole)
{
    const struct {
        const char* what;
        QByteArray datagram;
        int cvars, players;
    } good[] = {{"no players, no newline at the end", oob("statusResponse\n\\a\\1"), 1, 0},
                {"a negative score and a quote in the name", oob("statusResponse\n\\a\\1\n-5 999 \"a\"b\"\n"), 1, 1},
                {"a blank name", oob("statusResponse\n\\a\\1\n0 0 \"\"\n"), 1, 1},
                {"high bytes", oob("statusResponse\n\\sv_hostname\\caf\xe9\n1 2 \"\xff\"\n"), 1, 1}};
    for (const auto& c : good) {
        SCOPED_TRACE(c.what);
        const auto status = parseStatusResponse(c.datagram);
        ASSERT_TRUE(status);
        EXPECT_EQ(status->cvars.size(), c.cvars);
        EXPECT_EQ(status->players.size(), c.players);
    }
    EXPECT_EQ(parseStatusResponse(oob("statusResponse\n\\sv_hostname\\caf\xe9"))->hostName(), u"caf\u00e9"_s);
    QByteArray manyPlayers = oob("statusResponse\n\\a\\1\n");
    for (int i = 0; i < 1000; ++i)
        manyPlayers += "1 2 \"bot\"\n";
    const QByteArray oversized = oob("statusResponse\n\\a\\") + QByteArray(16 * 1024, 'y');
    const std::pair<const char*, QByteArray> bad[] = {
        {"empty", QByteArray()},
        {"only the prefix", oob("")},
        {"missing header", QByteArray("statusResponse\n\\a\\1")},
        {"another word", oob("statusResponsex\n\\a\\1")},
        {"no info string", oob("statusResponse")},
        {"info without a leading backslash", oob("statusResponse\na\\1")},
        {"a key without a value", oob("statusResponse\n\\a\\1\\b")},
        {"an empty key", oob("statusResponse\n\\\\1")},
        {"a player line without quotes", oob("statusResponse\n\\a\\1\n1 2 bot\n")},
        {"a player line with letters for a score", oob("statusResponse\n\\a\\1\nx 2 \"bot\"\n")},
        {"a player line with a huge number", oob("statusResponse\n\\a\\1\n99999999999 2 \"bot\"\n")},
        {"a player line with an open quote", oob("statusResponse\n\\a\\1\n1 2 \"bot\n")},
        {"a thousand players", manyPlayers},
        {"a 64 KB player line", oob("statusResponse\n\\a\\1\n1 2 \"") + QByteArray(64 * 1024, 'x') + "\"\n"},
        {"a datagram over 16 KB", oversized}};
    for (const auto& [what, datagram] : bad)
        EXPECT_FALSE(parseStatusResponse(datagram)) << what;
    EXPECT_EQ(replyKind(oversized), ReplyKind::Unreadable);
    EXPECT_EQ(replyKind(oob("infoResponse\n")), ReplyKind::Unreadable);
}

TEST(PrintReply, TextTheTwoRefusalsAndThePlayerTable)
{
    EXPECT_EQ(parsePrintReply(oob("print\nmap: oa_dm1\n")), u"map: oa_dm1\n"_s);
    EXPECT_EQ(parsePrintReply(oob("print\n")), QString());
    EXPECT_EQ(parsePrintReply(oob("print\ncaf\xe9")), u"caf\u00e9"_s);
    EXPECT_FALSE(parsePrintReply(oob("print")));
    EXPECT_FALSE(parsePrintReply(QByteArray("print\nx")));
    EXPECT_FALSE(parsePrintReply(oob("print\n") + QByteArray(17 * 1024, 'z')));
    EXPECT_EQ(QList<RconNote>({rconNote(u"Bad rconpassword.\n"_s), rconNote(u"No rconpassword set on the server.\n"_s),
                               rconNote(u"map: oa_dm1\nBad rconpassword.\n"_s)}),
              QList<RconNote>({RconNote::BadPassword, RconNote::NoPassword, RconNote::None}));
    EXPECT_FALSE(rconNoteText(RconNote::BadPassword).contains(u'\n'));
    EXPECT_TRUE(rconNoteText(RconNote::BadPassword).contains(u"Bad rconpassword."_s));
    EXPECT_TRUE(rconNoteText(RconNote::NoPassword).contains(u"No rconpassword set on the server."_s));
    EXPECT_TRUE(rconNoteText(RconNote::None).isEmpty());
    const std::pair<const char*, const char*> types[] = {
        {"0", "Free For All"}, {"8", "Capture the Ysalimari"}, {"9", "9"}, {"-1", "-1"}, {"abc", "abc"}, {"", ""}};
    for (const auto& [number, name] : types)
        EXPECT_EQ(gameTypeName(QString::fromLatin1(number)), QString::fromLatin1(name)) << number;
    // The rows of the printed player table.
    const QString printed = u"map: oa_dm1\n"
                            "cl score ping name            address                                 rate \n"
                            "-- ----- ---- --------------- --------------------------------------- -----\n"
                            " 0     0    0 Angelyss        ^7bot                                     16384\n"
                            " 3    15   48 ^4Luke Sky^7    ^7127.0.0.1:27960                         25000\n"
                            " x     1    1 broken          ^7bot                                     16384\n"
                            "\n"_s;
    QStringList rows;
    for (const StatusTableRow& r : parseStatusTable(printed))
        rows << u"%1 %2 %3 %4"_s.arg(r.client).arg(r.score).arg(r.ping).arg(r.name);
    EXPECT_EQ(rows, QStringList({u"0 0 0 Angelyss"_s, u"3 15 48 ^4Luke Sky"_s}));
    for (const QString& none : {u"Bad rconpassword.\n"_s, u"--\n--"_s, QString()})
        EXPECT_TRUE(parseStatusTable(none).isEmpty());
}

const QByteArray kStatus =
    oob("statusResponse\n\\sv_hostname\\^1Test\\mapname\\oa_dm1\\sv_maxclients\\8\\g_gametype\\0\n0 0 \"bot\"\n");

class Client : public ::testing::Test {
protected:
    Client()
    {
        client.setTimeout(300);
        QObject::connect(&client, &ConsoleClient::statusArrived, [this](const ServerStatus& s, int ms) {
            statuses.push_back(s);
            roundTrips.push_back(ms);
        });
        using C = ConsoleClient;
        QObject::connect(&client, &C::statusUnanswered, [this] { ++unanswered; });
        QObject::connect(&client, &C::printArrived, [this](const QString& t) { prints << t; });
        QObject::connect(&client, &C::commandUnanswered, [this] { ++commandsUnanswered; });
        QObject::connect(&client, &C::unreadableReply, [this] { ++unreadable; });
        QObject::connect(&client, &C::hostNotFound, [this](const QString& h) { notFound << h; });
    }
    void status(const QString& host = u"127.0.0.1"_s) { client.requestStatus(host, server.port()); }
    void answerStatus(QList<QByteArray> replies = {kStatus})
    {
        server.answer = [replies](const QByteArray&) { return replies; };
    }
    FakeServer server;
    ConsoleClient client;
    std::vector<ServerStatus> statuses;
    std::vector<int> roundTrips;
    QStringList prints, notFound;
    int unanswered = 0, commandsUnanswered = 0, unreadable = 0;
};

TEST_F(Client, AStatusRoundTripAndAnEmptyHostIsThisComputer)
{
    EXPECT_EQ(ConsoleClient().timeout(), 2000);
    answerStatus();
    status();
    ASSERT_TRUE(waitUntil([&] { return !statuses.empty(); }));
    EXPECT_EQ(server.requests, QList<QByteArray>{oob("getstatus")});
    EXPECT_EQ(statuses[0].hostName(), u"^1Test"_s);
    EXPECT_EQ(statuses[0].players.size(), 1);
    EXPECT_GE(roundTrips[0], 0);
    EXPECT_EQ(client.statusInFlight(), 0);
    runEvents(400);
    EXPECT_EQ(unanswered, 0) << "an answered request is not reported again";
    status(QString());
    EXPECT_TRUE(waitUntil([&] { return statuses.size() == 2; }));
}

TEST_F(Client, SeveralRequestsInFlightAreMatchedByTime)
{
    client.setTimeout(2000);
    server.delayMs = 250;
    answerStatus();
    for (int i = 0; i < 3; ++i) {
        status();
        runEvents(60);
    }
    EXPECT_EQ(client.statusInFlight(), 3);
    ASSERT_TRUE(waitUntil([&] { return statuses.size() == 3; }));
    for (int ms : roundTrips) {
        EXPECT_GE(ms, 240);
        EXPECT_LT(ms, 1900);
    }
}

TEST_F(Client, AServerThatNeverAnswersIsReportedOncePerRequest)
{
    // The command goes later than the status request: the status's silence, reported
    // first, leaves the command waiting for its own.
    status();
    runEvents(150);
    client.sendCommand(u"127.0.0.1"_s, server.port(), u"pw"_s, u"status"_s);
    ASSERT_TRUE(waitUntil([&] { return unanswered == 1 && commandsUnanswered == 1; }));
    runEvents(400);
    EXPECT_EQ(std::pair(unanswered, commandsUnanswered), std::pair(1, 1));
    EXPECT_EQ(client.statusInFlight() + client.commandsInFlight(), 0);
}

TEST_F(Client, APrintInSeveralDatagramsArrivesInOrder)
{
    server.answer = [](const QByteArray& request) {
        if (request != oob("rcon secret cvarlist"))
            return QList<QByteArray>{};
        return QList<QByteArray>{oob("print\none\n"), oob("print\ntwo\n"), oob("print\nthree\n")};
    };
    client.sendCommand(u"127.0.0.1"_s, server.port(), u"secret"_s, u"cvarlist"_s);
    ASSERT_TRUE(waitUntil([&] { return prints.size() == 3; }));
    EXPECT_EQ(prints, QStringList({u"one\n"_s, u"two\n"_s, u"three\n"_s}));
    runEvents(400);
    EXPECT_EQ(commandsUnanswered, 0);
}

TEST_F(Client, HostileRepliesAreUnreadableAndStrangersAreIgnored)
{
    answerStatus({QByteArray("no header"), oob("statusResponse\n\\odd"), oob("print\n") + QByteArray(20 * 1024, 'x'),
                  QByteArray()});
    status();
    ASSERT_TRUE(waitUntil([&] { return unreadable >= 3; }));
    EXPECT_TRUE(statuses.empty());
    // A datagram from another port is not the server's.
    FakeServer stranger;
    ASSERT_NE(client.localPort(), 0);
    status();
    stranger.socket().writeDatagram(kStatus, QHostAddress::LocalHost, client.localPort());
    server.answer = nullptr;
    const int before = unreadable;
    runEvents(200);
    EXPECT_TRUE(statuses.empty());
    EXPECT_EQ(unreadable, before);
}

TEST_F(Client, ANameIsLookedUpWithoutBlockingAndAMissingOneIsSaid)
{
    answerStatus();
    status(u"localhost"_s);
    ASSERT_TRUE(waitUntil([&] { return !statuses.empty(); }, 10000));
    status(u"no-such-host.invalid"_s);
    ASSERT_TRUE(waitUntil([&] { return !notFound.isEmpty(); }, 15000));
    EXPECT_EQ(notFound, QStringList{u"no-such-host.invalid"_s});
}

TEST_F(Client, StopEndsAllTrafficAndAReplyOfTheLargestSizeIsRead)
{
    server.delayMs = 100;
    answerStatus({kStatus, oob("print\nx")});
    status();
    client.stop();
    runEvents(500);
    EXPECT_TRUE(statuses.empty() && prints.isEmpty() && unanswered == 0 && client.statusInFlight() == 0);
    status(); // the client works again afterwards
    EXPECT_TRUE(waitUntil([&] { return !statuses.empty(); }));
    // A reply of the largest size is still read: empty lines to the last byte.
    answerStatus({kStatus + QByteArray(kMaxReplyBytes - kStatus.size(), '\n')});
    status();
    ASSERT_TRUE(waitUntil([&] { return statuses.size() == 2 || unreadable > 0; }));
    EXPECT_EQ(unreadable, 0);
}

} // namespace
