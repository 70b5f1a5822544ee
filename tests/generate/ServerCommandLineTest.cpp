#include "generate/ServerCommandLine.h"
#include "model/ServerProfile.h"

#include <gtest/gtest.h>

using namespace steward;

namespace {

// The prefixes A (address), B (port) and C (memory) by server type and Merc, written
// out whole. Internet with Merc has no B.
struct Prefixes {
    const char* a;
    const char* b;
    const char* c;
};
const Prefixes kPrefixes[3][2] = {
    {{" +set dedicated 0 +set net_ip ", " +set dedicated 0 +set net_port ", " +set dedicated 0 +set com_hunkmegs "},
     {" +set dedicated 0 +set g_jediVmerc 1 +set net_ip ", " +set dedicated 0 +set g_jediVmerc 1 +set net_port ",
      " +set dedicated 0 +set g_jediVmerc 1 +set com_hunkmegs "}},
    {{" +set dedicated 1 +set net_ip ", " +set dedicated 1 +set net_port ", " +set dedicated 1 +set com_hunkmegs "},
     {" +set dedicated 1 +set g_jediVmerc 1 +set net_ip ", " +set dedicated 1 +set g_jediVmerc 1 +set net_port ",
      " +set dedicated 1 +set g_jediVmerc 1 +set com_hunkmegs "}},
    {{" +set dedicated 2 +set net_ip ", " +set dedicated 2 +set net_port ", " +set dedicated 2 +set com_hunkmegs "},
     {" +set dedicated 2 +set g_jediVmerc 1 +set net_ip ", nullptr,
      " +set dedicated 2 +set g_jediVmerc 1 +set com_hunkmegs "}},
};

QString expectedLine(int d, bool merc, const QString& ip, int port, const QString& g)
{
    const QString x = QStringLiteral("jk2ded"), h = QStringLiteral("48"), z = QStringLiteral("24"),
                  s = QStringLiteral("luke.cfg"), p = QString::number(port);
    const Prefixes& pre = kPrefixes[d][merc ? 1 : 0];
    const QString a = QString::fromLatin1(pre.a), c = QString::fromLatin1(pre.c);
    if (!ip.isEmpty() && port > 0)
        return x + a + ip + " +set vm_game 0 +set net_port " + p + " +set com_hunkmegs " + h + " +set com_zonemegs " +
               z + g + " +exec " + s;
    if (!ip.isEmpty())
        return x + a + ip + " +set vm_game 0 +set com_hunkmegs " + h + " +set com_zonemegs " + z + g + " +exec " + s;
    if (port > 0) {
        if (!pre.b) // shape 2 with the empty address
            return x + a + ip + " +set vm_game 0 +set com_hunkmegs " + h + " +set com_zonemegs " + z + g + " +exec " + s;
        return x + QString::fromLatin1(pre.b) + p + " +set vm_game 0 +set com_hunkmegs " + h + " +set com_zonemegs " +
               z + g + " +exec " + s;
    }
    return x + c + h + " +set vm_game 0 +set com_zonemegs " + z + g + " +exec " + s;
}

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

TEST(ServerCommandLine, EveryShapeForEveryServerTypeWithAndWithoutMerc)
{
    struct Shape {
        const char* ip;
        int port;
    };
    const Shape shapes[] = {{"10.0.0.5", 28070}, {"10.0.0.5", 0}, {"", 28070}, {"", 0}, {"", -1}, {"10.0.0.5", -5}};
    for (int d = 0; d <= 2; ++d)
        for (bool merc : {false, true})
            for (const Shape& shape : shapes)
                for (const QString& g : {QString(), QStringLiteral("7")}) {
                    const QString ip = QString::fromLatin1(shape.ip);
                    SCOPED_TRACE(QStringLiteral("D=%1 merc=%2 ip=%3 port=%4 g=%5")
                                     .arg(d)
                                     .arg(merc)
                                     .arg(ip)
                                     .arg(shape.port)
                                     .arg(g)
                                     .toStdString());
                    const QString gameArg = g.isEmpty() ? QString() : QStringLiteral(" +set g_gametype ") + g;
                    const QString expected = expectedLine(d, merc, ip, shape.port, gameArg);
                    const ServerCommand command = buildServerCommand(values(d, merc, ip, shape.port, g));
                    EXPECT_EQ(command.text(), expected);
                    // Split at every single blank: the two blanks behind an empty address
                    // are an empty argument.
                    QStringList words = expected.split(QLatin1Char(' '));
                    EXPECT_EQ(command.executable, words.takeFirst());
                    EXPECT_EQ(command.arguments, words);
                }
}

TEST(ServerCommandLine, InternetWithMercHasNoPortForm)
{
    const ServerCommand command = buildServerCommand(values(2, true, {}, 28070, {}));
    EXPECT_EQ(command.text(), QStringLiteral("jk2ded +set dedicated 2 +set g_jediVmerc 1 +set net_ip  +set vm_game 0 "
                                             "+set com_hunkmegs 48 +set com_zonemegs 24 +exec luke.cfg"));
    EXPECT_FALSE(command.arguments.contains(QStringLiteral("28070")));
}

TEST(ServerCommandLine, EachValueIsOneArgumentWhateverItHolds)
{
    ServerCommandValues v = values(1, false, QStringLiteral("1.2.3.4 +set rconPassword x; $(touch pwned)"), 27960, {});
    v.executable = QStringLiteral("my server");
    v.session = QStringLiteral("a b.cfg");
    const ServerCommand command = buildServerCommand(v);
    EXPECT_EQ(command.executable, QStringLiteral("my server"));
    EXPECT_EQ(command.arguments,
              QStringList({"+set", "dedicated", "1", "+set", "net_ip", "1.2.3.4 +set rconPassword x; $(touch pwned)",
                           "+set", "vm_game", "0", "+set", "net_port", "27960", "+set", "com_hunkmegs", "48", "+set",
                           "com_zonemegs", "24", "+exec", "a b.cfg"}));
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
