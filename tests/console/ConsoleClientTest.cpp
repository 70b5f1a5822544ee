// The console's client against fake servers on real UDP sockets on 127.0.0.1: status
// round trips, several requests in flight, multi-packet prints, silence, hostile replies
// and stop.
#include "FakeServer.h"
#include "console/ConsoleClient.h"
#include "console/ConsoleProtocol.h"

#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

QByteArray oob(const QByteArray& rest) { return QByteArray(4, '\xff') + rest; }
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
        QObject::connect(&client, &ConsoleClient::statusUnanswered, [this] { ++unanswered; });
        QObject::connect(&client, &ConsoleClient::printArrived, [this](const QString& t) { prints << t; });
        QObject::connect(&client, &ConsoleClient::commandUnanswered, [this] { ++commandsUnanswered; });
        QObject::connect(&client, &ConsoleClient::unreadableReply, [this] { ++unreadable; });
        QObject::connect(&client, &ConsoleClient::hostNotFound, [this](const QString& h) { notFound << h; });
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
    QStringList prints;
    QStringList notFound;
    int unanswered = 0;
    int commandsUnanswered = 0;
    int unreadable = 0;
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
    EXPECT_EQ(unanswered, 1);
    EXPECT_EQ(commandsUnanswered, 1);
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

TEST_F(Client, StopEndsAllTraffic)
{
    server.delayMs = 100;
    answerStatus({kStatus, oob("print\nx")});
    status();
    client.stop();
    runEvents(500);
    EXPECT_TRUE(statuses.empty());
    EXPECT_TRUE(prints.isEmpty());
    EXPECT_EQ(unanswered, 0);
    EXPECT_EQ(client.statusInFlight(), 0);
    status(); // the client works again afterwards
    EXPECT_TRUE(waitUntil([&] { return !statuses.empty(); }));
}

TEST_F(Client, AReplyOfTheLargestSizeIsStillRead)
{
    // Empty lines to the last byte.
    answerStatus({kStatus + QByteArray(kMaxReplyBytes - kStatus.size(), '\n')});
    status();
    ASSERT_TRUE(waitUntil([&] { return !statuses.empty() || unreadable > 0; }));
    EXPECT_EQ(statuses.size(), 1u);
    EXPECT_EQ(unreadable, 0);
}

} // namespace
