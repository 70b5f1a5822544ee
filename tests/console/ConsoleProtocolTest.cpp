// Requests byte for byte, and replies of every shape the server gives, read or refused
// as a whole.
#include "console/ConsoleProtocol.h"

#include <gtest/gtest.h>

using namespace steward;

namespace {
QByteArray oob(const QByteArray& rest) { return QByteArray(4, '\xff') + rest; }

// The shape of an OpenArena 0.8.8 reply: info string, then a bot and a player.
const QByteArray kRecordedStatus =
    oob("statusResponse\n\\com_protocol\\71\\g_gametype\\3\\mapname\\oa_dm1\\sv_hostname\\^1Steward ^7Arena"
        "\\sv_maxclients\\8\\version\\ioq3 1.36\n0 0 \"Angelyss\"\n12 48 \"^4Luke^7\"\n");
} // namespace

TEST(ConsoleRequests, GetstatusAndRconByteForByte)
{
    EXPECT_EQ(getstatusDatagram(), oob("getstatus"));
    EXPECT_EQ(rconDatagram(QStringLiteral("secret"), QStringLiteral("status")), oob("rcon secret status"));
    EXPECT_EQ(rconDatagram(QStringLiteral("p\u00e4ss"), QStringLiteral("say caf\u00e9")),
              oob("rcon p\xe4ss say caf\xe9"));
    EXPECT_EQ(rconDatagram(QString(), QStringLiteral("status")), oob("rcon  status"));
    // One datagram is one command line: a pasted line break does not start another.
    EXPECT_EQ(rconDatagram(QStringLiteral("pw"), QStringLiteral("say a\nquit\r")), oob("rcon pw say a quit "));
}

TEST(StatusReply, ARecordedReplyGivesItsValuesAndPlayers)
{
    ASSERT_EQ(replyKind(kRecordedStatus), ReplyKind::Status);
    const auto status = parseStatusResponse(kRecordedStatus);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->hostName(), QStringLiteral("^1Steward ^7Arena"));
    EXPECT_EQ(status->mapName(), QStringLiteral("oa_dm1"));
    EXPECT_EQ(status->maxClients(), QStringLiteral("8"));
    EXPECT_EQ(gameTypeName(status->gameTypeNumber()), QStringLiteral("Duel"));
    EXPECT_EQ(status->value(QStringLiteral("MAPNAME")), QStringLiteral("oa_dm1"));
    EXPECT_EQ(status->cvars.size(), 6);
    EXPECT_EQ(status->cvars.first().first, QStringLiteral("com_protocol"));
    ASSERT_EQ(status->players.size(), 2);
    EXPECT_EQ(status->players[0].name, QStringLiteral("Angelyss"));
    EXPECT_EQ(status->players[0].ping, 0);
    EXPECT_EQ(status->players[1].name, QStringLiteral("^4Luke^7"));
    EXPECT_EQ(status->players[1].score, 12);
    EXPECT_EQ(status->players[1].ping, 48);
}

TEST(StatusReply, OddButWellFormedRepliesAreRead)
{
    struct Case {
        const char* what;
        QByteArray datagram;
        int cvars;
        int players;
    };
    const Case cases[] = {
        {"no players, no newline at the end", oob("statusResponse\n\\a\\1"), 1, 0},
        {"an empty value", oob("statusResponse\n\\sv_hostname\\\\mapname\\x\n"), 2, 0},
        {"a negative score and a quote in the name", oob("statusResponse\n\\a\\1\n-5 999 \"a\"b\"\n"), 1, 1},
        {"a blank name", oob("statusResponse\n\\a\\1\n0 0 \"\"\n"), 1, 1},
        {"high bytes", oob("statusResponse\n\\sv_hostname\\caf\xe9\n1 2 \"\xff\"\n"), 1, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto status = parseStatusResponse(c.datagram);
        ASSERT_TRUE(status);
        EXPECT_EQ(status->cvars.size(), c.cvars);
        EXPECT_EQ(status->players.size(), c.players);
    }
    EXPECT_EQ(parseStatusResponse(oob("statusResponse\n\\sv_hostname\\caf\xe9"))->hostName(),
              QStringLiteral("caf\u00e9"));
}

TEST(StatusReply, MalformedRepliesAreUnreadableAsAWhole)
{
    QByteArray manyPlayers = oob("statusResponse\n\\a\\1\n");
    for (int i = 0; i < 1000; ++i)
        manyPlayers += "1 2 \"bot\"\n";
    const QByteArray longLine = oob("statusResponse\n\\a\\1\n1 2 \"") + QByteArray(64 * 1024, 'x') + "\"\n";
    const QByteArray oversized = oob("statusResponse\n\\a\\") + QByteArray(16 * 1024, 'y');
    struct Case {
        const char* what;
        QByteArray datagram;
    };
    const Case cases[] = {
        {"empty", QByteArray()},
        {"only the prefix", oob("")},
        {"missing header", QByteArray("statusResponse\n\\a\\1")},
        {"three FF bytes", QByteArray("\xff\xff\xffstatusResponse\n\\a\\1")},
        {"another word", oob("statusResponsex\n\\a\\1")},
        {"no info string", oob("statusResponse")},
        {"info without a leading backslash", oob("statusResponse\na\\1")},
        {"a key without a value", oob("statusResponse\n\\a\\1\\b")},
        {"an empty key", oob("statusResponse\n\\\\1")},
        {"a player line without quotes", oob("statusResponse\n\\a\\1\n1 2 bot\n")},
        {"a player line with letters for a score", oob("statusResponse\n\\a\\1\nx 2 \"bot\"\n")},
        {"a player line with a huge number", oob("statusResponse\n\\a\\1\n99999999999 2 \"bot\"\n")},
        {"a player line with one number", oob("statusResponse\n\\a\\1\n1 \"bot\"\n")},
        {"a player line with an open quote", oob("statusResponse\n\\a\\1\n1 2 \"bot\n")},
        {"a thousand players", manyPlayers},
        {"a 64 KB player line", longLine},
        {"a datagram over 16 KB", oversized},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_FALSE(parseStatusResponse(c.datagram));
    }
    EXPECT_EQ(replyKind(oversized), ReplyKind::Unreadable);
    EXPECT_EQ(replyKind(oob("infoResponse\n")), ReplyKind::Unreadable);
}

TEST(PrintReply, TextAndTheTwoRefusals)
{
    EXPECT_EQ(parsePrintReply(oob("print\nmap: oa_dm1\n")), QStringLiteral("map: oa_dm1\n"));
    EXPECT_EQ(parsePrintReply(oob("print\n")), QString());
    EXPECT_EQ(parsePrintReply(oob("print\ncaf\xe9")), QStringLiteral("caf\u00e9"));
    EXPECT_FALSE(parsePrintReply(oob("print")));
    EXPECT_FALSE(parsePrintReply(QByteArray("print\nx")));
    EXPECT_FALSE(parsePrintReply(oob("print\n") + QByteArray(17 * 1024, 'z')));

    EXPECT_EQ(rconNote(QStringLiteral("Bad rconpassword.\n")), RconNote::BadPassword);
    EXPECT_EQ(rconNote(QStringLiteral("No rconpassword set on the server.\n")), RconNote::NoPassword);
    EXPECT_EQ(rconNote(QStringLiteral("map: oa_dm1\nBad rconpassword.\n")), RconNote::None);
    EXPECT_FALSE(rconNoteText(RconNote::BadPassword).contains(QLatin1Char('\n')));
    EXPECT_TRUE(rconNoteText(RconNote::BadPassword).contains(QStringLiteral("Bad rconpassword.")));
    EXPECT_TRUE(rconNoteText(RconNote::NoPassword).contains(QStringLiteral("No rconpassword set on the server.")));
    EXPECT_TRUE(rconNoteText(RconNote::None).isEmpty());
}

TEST(GameType, NamesOfTheGamesTypes)
{
    const std::pair<const char*, const char*> cases[] = {
        {"0", "Free For All"}, {"8", "Capture the Ysalimari"}, {"9", "9"}, {"-1", "-1"}, {"abc", "abc"}, {"", ""},
    };
    for (const auto& [number, name] : cases)
        EXPECT_EQ(gameTypeName(QString::fromLatin1(number)), QString::fromLatin1(name)) << number;
}

TEST(StatusTable, TheRowsOfThePrintedPlayerTable)
{
    const QString printed =
        QStringLiteral("map: oa_dm1\n"
                       "cl score ping name            address                                 rate \n"
                       "-- ----- ---- --------------- --------------------------------------- -----\n"
                       " 0     0    0 Angelyss        ^7bot                                     16384\n"
                       " 3    15   48 ^4Luke Sky^7    ^7127.0.0.1:27960                         25000\n"
                       " x     1    1 broken          ^7bot                                     16384\n"
                       "\n");
    const QList<StatusTableRow> rows = parseStatusTable(printed);
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0].client, 0);
    EXPECT_EQ(rows[0].name, QStringLiteral("Angelyss"));
    EXPECT_EQ(rows[1].client, 3);
    EXPECT_EQ(rows[1].score, 15);
    EXPECT_EQ(rows[1].ping, 48);
    EXPECT_EQ(rows[1].name, QStringLiteral("^4Luke Sky"));

    EXPECT_TRUE(parseStatusTable(QStringLiteral("Bad rconpassword.\n")).isEmpty());
    EXPECT_TRUE(parseStatusTable(QStringLiteral("--\n--")).isEmpty());
    EXPECT_TRUE(parseStatusTable(QString()).isEmpty());
}
