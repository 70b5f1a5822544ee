#include "generate/ServerCommandLine.h"
#include "model/ServerProfile.h"

#include <gtest/gtest.h>

using namespace steward;

namespace {

ServerCommandValues values(int d, bool merc, const QString& ip, int port, const QString& gameType)
{
    ServerCommandValues v;
    v.executable = QStringLiteral("jk2ded");
    v.serverType = d;
    v.merc = merc;
    v.ip = ip;
    v.port = port;
    v.hunk = 48;
    v.zone = 24;
    v.gameType = gameType;
    v.session = QStringLiteral("luke.cfg");
    return v;
}

} // namespace

TEST(ServerCommandLine, EachShapeOfTheLine)
{
    // The address and port, the address alone, the port alone, neither; Merc and the
    // game type go in wherever they are set; Internet with Merc has no port form.
    const struct {
        int d;
        bool merc;
        const char* ip;
        int port;
        const char* gameType;
        const char* line;
    } cases[] = {
        {0, false, "10.0.0.5", 28070, "",
         "jk2ded +set dedicated 0 +set net_ip 10.0.0.5 +set vm_game 0 +set net_port 28070 +set com_hunkmegs 48 "
         "+set com_zonemegs 24 +exec luke.cfg"},
        {1, true, "10.0.0.5", 0, "7",
         "jk2ded +set dedicated 1 +set g_jediVmerc 1 +set net_ip 10.0.0.5 +set vm_game 0 +set com_hunkmegs 48 "
         "+set com_zonemegs 24 +set g_gametype 7 +exec luke.cfg"},
        {1, false, "10.0.0.5", -5, "",
         "jk2ded +set dedicated 1 +set net_ip 10.0.0.5 +set vm_game 0 +set com_hunkmegs 48 +set com_zonemegs 24 "
         "+exec luke.cfg"},
        {2, false, "", 28070, "",
         "jk2ded +set dedicated 2 +set net_port 28070 +set vm_game 0 +set com_hunkmegs 48 +set com_zonemegs 24 "
         "+exec luke.cfg"},
        {1, true, "", 28070, "",
         "jk2ded +set dedicated 1 +set g_jediVmerc 1 +set net_port 28070 +set vm_game 0 +set com_hunkmegs 48 "
         "+set com_zonemegs 24 +exec luke.cfg"},
        {0, true, "", -1, "0",
         "jk2ded +set dedicated 0 +set g_jediVmerc 1 +set com_hunkmegs 48 +set vm_game 0 +set com_zonemegs 24 "
         "+set g_gametype 0 +exec luke.cfg"},
        {2, false, "", 0, "",
         "jk2ded +set dedicated 2 +set com_hunkmegs 48 +set vm_game 0 +set com_zonemegs 24 +exec luke.cfg"},
        {2, true, "", 28070, "",
         "jk2ded +set dedicated 2 +set g_jediVmerc 1 +set net_ip  +set vm_game 0 +set com_hunkmegs 48 "
         "+set com_zonemegs 24 +exec luke.cfg"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        const ServerCommand command =
            buildServerCommand(values(c.d, c.merc, QString::fromLatin1(c.ip), c.port, QString::fromLatin1(c.gameType)));
        EXPECT_EQ(command.text(), QString::fromLatin1(c.line));
        // Split at every single blank: the two blanks behind an empty address are an
        // empty argument.
        QStringList words = QString::fromLatin1(c.line).split(QLatin1Char(' '));
        EXPECT_EQ(command.executable, words.takeFirst());
        EXPECT_EQ(command.arguments, words);
    }
}

TEST(ServerCommandLine, EachValueIsOneArgumentWhateverItHolds)
{
    ServerCommandValues v = values(1, false, QStringLiteral("1.2.3.4 +set rconPassword x; $(touch pwned)"), 27960, {});
    v.executable = QStringLiteral("my server");
    v.session = QStringLiteral("a b.cfg");
    const ServerCommand command = buildServerCommand(v);
    EXPECT_EQ(command.executable, QStringLiteral("my server"));
    EXPECT_EQ(command.arguments,
              QStringList(
                  {"+set",  "dedicated",    "1",  "+set", "net_ip",       "1.2.3.4 +set rconPassword x; $(touch pwned)",
                   "+set",  "vm_game",      "0",  "+set", "net_port",     "27960",
                   "+set",  "com_hunkmegs", "48", "+set", "com_zonemegs", "24",
                   "+exec", "a b.cfg"}));
}

TEST(ServerCommandLine, ServerAndGameTypeAreTheFirstSelected)
{
    ServerProfile p;
    EXPECT_EQ(selectedServerType(p), 2) << "Internet is the design default";
    p.setValue(F::chkServerType(0), 1);
    EXPECT_EQ(selectedServerType(p), 0);
    p.setValue(F::chkServerType(0), 0);
    EXPECT_EQ(selectedServerType(p), std::nullopt);

    EXPECT_EQ(selectedGameType(p), QStringLiteral("0"));
    p.setValue(F::optDefaultGameType(5), 1);
    EXPECT_EQ(selectedGameType(p), QStringLiteral("7")) << "the Tag, not the index";
    p.setValue(F::optDefaultGameType(5), 0);
    EXPECT_EQ(selectedGameType(p), QString());
}
