// A generated corpus of mutated replies through every reader: none may crash or hang,
// and what is read keeps its limits. Runs under AddressSanitizer with
// scripts/asan.sh.
#include "console/ColourText.h"
#include "console/ConsoleProtocol.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

#include <random>

using namespace steward;

namespace {

QByteArray oob(const QByteArray& rest) { return QByteArray(4, '\xff') + rest; }

const QByteArray kSeeds[] = {
    oob("statusResponse\n\\com_protocol\\71\\g_gametype\\0\\mapname\\oa_dm1\\sv_hostname\\^1Steward ^7Arena"
        "\\sv_maxclients\\8\n0 0 \"Angelyss\"\n12 48 \"^4Luke^7\"\n"),
    oob("statusResponse\n\\sv_hostname\\noname\n"),
    oob("print\nmap: oa_dm1\ncl score ping name            address                                 rate \n"
        "-- ----- ---- --------------- --------------------------------------- -----\n"
        " 0     0    0 Angelyss        ^7bot                                     16384\n\n"),
    oob("print\nBad rconpassword.\n"),
    oob("print\n"),
    oob("infoResponse\n\\hostname\\x"),
};

// Bytes that matter to the readers.
const char kSpecial[] = {'\\', '\n', '"', ' ', '^', '\xff', '\0', '-', '0', '9'};

QByteArray mutate(QByteArray d, std::mt19937& rng)
{
    const auto pick = [&rng](int n) { return n <= 0 ? 0 : static_cast<int>(rng() % static_cast<unsigned>(n)); };
    const int steps = 1 + pick(4);
    for (int s = 0; s < steps; ++s) {
        switch (pick(8)) {
        case 0: // flip a byte
            if (!d.isEmpty())
                d[pick(static_cast<int>(d.size()))] = static_cast<char>(rng());
            break;
        case 1: // put in a byte that matters
            d.insert(pick(static_cast<int>(d.size()) + 1), kSpecial[pick(sizeof kSpecial)]);
            break;
        case 2: { // cut a piece out
            const int at = pick(static_cast<int>(d.size()));
            d.remove(at, pick(static_cast<int>(d.size()) - at + 1));
            break;
        }
        case 3: { // repeat a piece, sometimes many times
            const int at = pick(static_cast<int>(d.size()));
            const QByteArray piece = d.mid(at, 1 + pick(40));
            d.insert(at, piece.repeated(1 + pick(pick(8) == 0 ? 2000 : 4)));
            break;
        }
        case 4: // cut the end
            d.truncate(pick(static_cast<int>(d.size()) + 1));
            break;
        case 5: // a long run of one byte
            d.insert(pick(static_cast<int>(d.size()) + 1), QByteArray(pick(20000), kSpecial[pick(sizeof kSpecial)]));
            break;
        case 6: // many player lines
            d += QByteArray("1 2 \"x\"\n").repeated(pick(1200));
            break;
        default: // random bytes
            for (int i = pick(16); i > 0; --i)
                d.insert(pick(static_cast<int>(d.size()) + 1), static_cast<char>(rng()));
            break;
        }
    }
    return d;
}

} // namespace

TEST(ReplyFuzz, TenThousandMutatedRepliesNeverCrashAndKeepTheLimits)
{
    std::mt19937 rng(20020613);
    int statuses = 0;
    int prints = 0;
    int unreadable = 0;
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 12000; ++i) {
        const QByteArray reply = mutate(kSeeds[i % std::size(kSeeds)], rng);
        SCOPED_TRACE(i);
        switch (replyKind(reply)) {
        case ReplyKind::Status: {
            const auto status = parseStatusResponse(reply);
            if (!status) {
                ++unreadable;
                break;
            }
            ++statuses;
            ASSERT_LE(reply.size(), kMaxReplyBytes);
            ASSERT_LE(status->players.size(), kMaxStatusPlayers);
            (void)colourCodesToHtml(status->hostName());
            (void)gameTypeName(status->gameTypeNumber());
            for (const PlayerStatus& p : status->players) {
                (void)colourCodesToHtml(p.name);
                (void)stripColourCodes(p.name);
            }
            break;
        }
        case ReplyKind::Print: {
            const auto text = parsePrintReply(reply);
            ASSERT_TRUE(text);
            ++prints;
            ASSERT_LE(text->size(), kMaxReplyBytes);
            (void)colourCodesToHtml(*text);
            (void)rconNote(*text);
            ASSERT_LE(parseStatusTable(*text).size(), kMaxStatusPlayers);
            break;
        }
        case ReplyKind::Unreadable:
            ++unreadable;
            ASSERT_FALSE(parseStatusResponse(reply));
            ASSERT_FALSE(parsePrintReply(reply));
            break;
        }
    }
    // The corpus reaches every road.
    EXPECT_GT(statuses, 500);
    EXPECT_GT(prints, 500);
    EXPECT_GT(unreadable, 500);
    std::printf("%d read as status, %d as print, %d unreadable in %lld ms\n", statuses, prints, unreadable,
                static_cast<long long>(clock.elapsed()));
}
