// The console's texts: colour codes as rich text, the command history and its file, the
// requests byte for byte, and replies of every shape the server gives, read or refused whole.
#include "console/ColourText.h"
#include "console/CommandHistory.h"
#include "console/ConsoleProtocol.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace steward;
using namespace Qt::StringLiterals;

namespace {

QByteArray oob(const QByteArray& rest) { return QByteArray(4, '\xff') + rest; }
QString red(const char* text) { return u"<span style=\"color:#d00000\">%1</span>"_s.arg(QLatin1String(text)); }

TEST(ColourText, CodesBecomeSpansAndEverythingIsEscaped)
{
    const std::pair<QString, QString> cases[] = {
        {u"plain"_s, u"plain"_s},
        {u"^1red^2green"_s, red("red") + u"<span style=\"color:#00a000\">green</span>"_s},
        {u"^1a^7b"_s, red("a") + u"b"_s},
        {u"^9x"_s, red("x")},
        {u"^^1"_s, u"^"_s + red("")},
        {u"end^"_s, u"end^"_s},
        {u"<b>&\"</b>"_s, u"&lt;b&gt;&amp;&quot;&lt;/b&gt;"_s},
        {u"^1<script>"_s, red("&lt;script&gt;")},
        {u"a\nb"_s, u"a<br>b"_s},
        {u"^"_s, u"^"_s},
        {QString(), QString()},
    };
    for (const auto& [text, html] : cases)
        EXPECT_EQ(colourCodesToHtml(text), html) << text.toStdString();
    EXPECT_EQ(stripColourCodes(u"^1Steward ^7Arena^"_s), u"Steward Arena^"_s);
    EXPECT_EQ(stripColourCodes(u"^^2"_s), u"^"_s);
    EXPECT_EQ(colourOfCode(u'7'), QString());
    EXPECT_EQ(colourOfCode(u'0'), u"#000000"_s);
}

TEST(CommandHistory, UpAndDownBrowseFromTheNewest)
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
}

TEST(CommandHistory, KeepsTheNewest200AndNeverThePassword)
{
    CommandHistory h;
    for (int i = 0; i < 250; ++i)
        h.add(u"say %1"_s.arg(i), u"s3cret"_s);
    ASSERT_EQ(h.entries().size(), 200);
    EXPECT_EQ(h.entries().first(), u"say 50"_s);
    for (const char* c :
         {"say my s3cret", "rconpassword other", "set rconPassword other", "seta rcon_password x", "", "   "})
        h.add(QString::fromLatin1(c), u"s3cret"_s);
    EXPECT_EQ(h.entries().last(), u"say 249"_s);
}

TEST(CommandHistory, SurvivesARunInItsFile)
{
    QTemporaryDir dir;
    const QString file = CommandHistory::fileIn(dir.path());
    EXPECT_TRUE(file.startsWith(dir.path()));
    CommandHistory first;
    first.load(file);
    EXPECT_TRUE(first.entries().isEmpty());
    first.add(u"status"_s, u"pw"_s);
    first.add(u"say caf\u00e9 \u20ac"_s, u"pw"_s);
    ASSERT_TRUE(first.save(file));
    EXPECT_EQ(QFile::permissions(file) & (QFileDevice::ReadOther | QFileDevice::ReadGroup), QFileDevice::Permissions());
    CommandHistory second;
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
    EXPECT_EQ(second.entries().size(), 200);
    EXPECT_EQ(second.entries().first(), u"300"_s);
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
    EXPECT_EQ(status->hostName(), u"^1Steward ^7Arena"_s);
    EXPECT_EQ(status->mapName(), u"oa_dm1"_s);
    EXPECT_EQ(status->maxClients(), u"8"_s);
    EXPECT_EQ(gameTypeName(status->gameTypeNumber()), u"Duel"_s);
    EXPECT_EQ(status->value(u"MAPNAME"_s), u"oa_dm1"_s);
    EXPECT_EQ(status->cvars.size(), 6);
    EXPECT_EQ(status->cvars.first().first, u"com_protocol"_s);
    ASSERT_EQ(status->players.size(), 2);
    EXPECT_EQ(status->players[0].name, u"Angelyss"_s);
    EXPECT_EQ(status->players[0].ping, 0);
    EXPECT_EQ(status->players[1].name, u"^4Luke^7"_s);
    EXPECT_EQ(status->players[1].score, 12);
    EXPECT_EQ(status->players[1].ping, 48);
}

TEST(StatusReply, OddRepliesAreReadAndMalformedOnesRefusedAsAWhole)
{
    const struct {
        const char* what;
        QByteArray datagram;
        int cvars;
        int players;
    } good[] = {
        {"no players, no newline at the end", oob("statusResponse\n\\a\\1"), 1, 0},
        {"an empty value", oob("statusResponse\n\\sv_hostname\\\\mapname\\x\n"), 2, 0},
        {"a negative score and a quote in the name", oob("statusResponse\n\\a\\1\n-5 999 \"a\"b\"\n"), 1, 1},
        {"a blank name", oob("statusResponse\n\\a\\1\n0 0 \"\"\n"), 1, 1},
        {"high bytes", oob("statusResponse\n\\sv_hostname\\caf\xe9\n1 2 \"\xff\"\n"), 1, 1},
    };
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
        {"a 64 KB player line", oob("statusResponse\n\\a\\1\n1 2 \"") + QByteArray(64 * 1024, 'x') + "\"\n"},
        {"a datagram over 16 KB", oversized},
    };
    for (const auto& [what, datagram] : bad)
        EXPECT_FALSE(parseStatusResponse(datagram)) << what;
    EXPECT_EQ(replyKind(oversized), ReplyKind::Unreadable);
    EXPECT_EQ(replyKind(oob("infoResponse\n")), ReplyKind::Unreadable);
}

TEST(PrintReply, TextAndTheTwoRefusals)
{
    EXPECT_EQ(parsePrintReply(oob("print\nmap: oa_dm1\n")), u"map: oa_dm1\n"_s);
    EXPECT_EQ(parsePrintReply(oob("print\n")), QString());
    EXPECT_EQ(parsePrintReply(oob("print\ncaf\xe9")), u"caf\u00e9"_s);
    EXPECT_FALSE(parsePrintReply(oob("print")));
    EXPECT_FALSE(parsePrintReply(QByteArray("print\nx")));
    EXPECT_FALSE(parsePrintReply(oob("print\n") + QByteArray(17 * 1024, 'z')));

    EXPECT_EQ(rconNote(u"Bad rconpassword.\n"_s), RconNote::BadPassword);
    EXPECT_EQ(rconNote(u"No rconpassword set on the server.\n"_s), RconNote::NoPassword);
    EXPECT_EQ(rconNote(u"map: oa_dm1\nBad rconpassword.\n"_s), RconNote::None);
    EXPECT_FALSE(rconNoteText(RconNote::BadPassword).contains(u'\n'));
    EXPECT_TRUE(rconNoteText(RconNote::BadPassword).contains(u"Bad rconpassword."_s));
    EXPECT_TRUE(rconNoteText(RconNote::NoPassword).contains(u"No rconpassword set on the server."_s));
    EXPECT_TRUE(rconNoteText(RconNote::None).isEmpty());

    const std::pair<const char*, const char*> types[] = {
        {"0", "Free For All"}, {"8", "Capture the Ysalimari"}, {"9", "9"}, {"-1", "-1"}, {"abc", "abc"}, {"", ""},
    };
    for (const auto& [number, name] : types)
        EXPECT_EQ(gameTypeName(QString::fromLatin1(number)), QString::fromLatin1(name)) << number;
}

TEST(StatusTable, TheRowsOfThePrintedPlayerTable)
{
    const QString printed = u"map: oa_dm1\n"
                            "cl score ping name            address                                 rate \n"
                            "-- ----- ---- --------------- --------------------------------------- -----\n"
                            " 0     0    0 Angelyss        ^7bot                                     16384\n"
                            " 3    15   48 ^4Luke Sky^7    ^7127.0.0.1:27960                         25000\n"
                            " x     1    1 broken          ^7bot                                     16384\n"
                            "\n"_s;
    const QList<StatusTableRow> rows = parseStatusTable(printed);
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0].client, 0);
    EXPECT_EQ(rows[0].name, u"Angelyss"_s);
    EXPECT_EQ(rows[1].client, 3);
    EXPECT_EQ(rows[1].score, 15);
    EXPECT_EQ(rows[1].ping, 48);
    EXPECT_EQ(rows[1].name, u"^4Luke Sky"_s);
    for (const QString& none : {u"Bad rconpassword.\n"_s, u"--\n--"_s, QString()})
        EXPECT_TRUE(parseStatusTable(none).isEmpty());
}

} // namespace
