// Writes the seed corpus of every fuzz target into a folder, one sub-folder per
// target: small valid inputs of each kind and a few known bad ones.
#include "testkit/ZipBuilder.h"

#include <QDir>
#include <QFile>
#include <cstdio>

using namespace steward::testing;

namespace {

QString g_root;

bool seed(const char* target, const char* name, const QByteArray& bytes)
{
    const QString folder = g_root + QLatin1Char('/') + QString::fromLatin1(target);
    QDir().mkpath(folder);
    QFile file(folder + QLatin1Char('/') + QString::fromLatin1(name));
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

// An archive seeds both the whole scan and the reader's comparison with the library.
bool archive(const char* name, const ZipBuilder& zip)
{
    bool ok = true;
    for (const char* target : {"archive_scan", "archive_read"})
        ok &= zip.write(g_root + QLatin1Char('/') + QString::fromLatin1(target) + QLatin1Char('/') +
                        QString::fromLatin1(name));
    return ok;
}

bool tgaSeeds()
{
    bool ok = seed("tga", "plain24", tgaPicture(4, 3, 10, 20, 30));
    ok &= seed("tga", "runs24", tgaHeader(10, 4, 1, 24) + QByteArray("\x82\x00\x00\xff\x00\x00\xff\x00", 8));
    ok &= seed("tga", "grey_runs", tgaHeader(11, 2, 1, 8) + QByteArray("\x81\x40", 2));
    ok &= seed("tga", "grey", tgaHeader(3, 2, 2, 8, 0) + QByteArray("\x01\x02\x03\x04", 4));
    ok &= seed("tga", "high16", tgaHeader(2, 2, 1, 16, 0x30) + QByteArray("\x00\x7c\x00\x00", 4));
    ok &= seed("tga", "alpha32", tgaHeader(2, 1, 1, 32, 0x28) + QByteArray("\x10\x20\x30\x80", 4));
    QByteArray withId = tgaHeader(2, 1, 1, 24) + QByteArray("id") + QByteArray("\x01\x02\x03", 3);
    withId[0] = 2;
    ok &= seed("tga", "with_id", withId);
    ok &= seed("tga", "huge_header", tgaHeader(10, 65535, 1024, 32) + QByteArray(64, '\xff'));
    ok &= seed("tga", "short_runs", tgaHeader(10, 2048, 2048, 32) + QByteArray(200, '\xff'));
    return ok;
}

bool textSeeds()
{
    bool ok = seed("catalogue", "records",
                   "assets0.pk3,duel_bespin,duel_bespin,Bespin Air Vanes,duel\r\n"
                   "mymap.pk3,mymap,mymap,My Map,FFA DUEL\r\n"
                   "mymap.pk3,mymap,mymap,mymap,unknown\r\n");
    ok &= seed("catalogue", "comma_and_quotes", "a.pk3,m,m,I, the map,FFA\r\n  \"q,uoted\",x,\"y\r\n\",z\r\nlast");
    ok &= seed("settings_ini", "store",
               "[General]\nVersion=\"1.4\"\n\n[_Steward]\nPathToJedi=\"/games/jk2\"\n"
               "txtServerConfig%2812%29=\"a,b;c\\\\d\\\"e\\x41\\r\\n\"\nplain = 1.2.3.4;;5.6.7.8;\n"
               "; comment\n# another\nRunOnce=0\n");
    ok &= seed("settings_ini", "latin1", QByteArray("[_Steward]\nName=Jos\xe9\n"));
    ok &= seed("configuration_file", "pairs",
               "PathToJedi,/games/jk2\r\nRunOnce,1\r\n\"quoted, with comma\",value\r\n  blanks,  before\r\n");
    ok &= seed("configuration_file", "odd", "one,two,three\r\n");
    ok &= seed("console_replies", "status",
               QByteArray("\xff\xff\xff\xffstatusResponse\n\\sv_hostname\\^1Arena^7 Test\\mapname\\oa_dm1"
                          "\\g_gametype\\0\\sv_maxclients\\12\n5 0 \"^2Gnubee\"\n0 48 \"Player\"\n"));
    ok &= seed("console_replies", "print",
               QByteArray("\xff\xff\xff\xffprint\nmap: oa_dm1\nnum score ping name            lastmsg address\n"
                          "--- ----- ---- --------------- ------- ---------------------\n"
                          "  0     5    0 Gnubee^7              0 bot\n"));
    ok &= seed("console_replies", "bad_password", QByteArray("\xff\xff\xff\xffprint\nBad rconpassword.\n"));
    ok &= seed("arena_script", "one_block",
               arenaScript(QStringLiteral("mymap"), QStringLiteral("My Map"), QStringLiteral("ffa duel")));
    ok &= seed("arena_script", "two_blocks",
               "{\r\nmap \"h\"\r\nlongname \"H One\"\r\ntype \"duel\"\r\n}\r\n{\r\nmap \"h2\"\r\n}\r\n");
    ok &= seed("arena_script", "one_line", "{ map \"e\" longname \"E\" type \"duel\" }\r");
    return ok;
}

bool archiveSeeds()
{
    const QByteArray script = arenaScript(QStringLiteral("mymap"), QStringLiteral("My Map"), QStringLiteral("ffa"));
    bool ok = archive("stock.pk3", ZipBuilder()
                                       .file(QStringLiteral("maps/ffa_bespin.bsp"))
                                       .file(QStringLiteral("levelshots/ffa_bespin.jpg"), "jpg"));
    ok &= archive("custom.pk3", ZipBuilder()
                                    .file(QStringLiteral("maps/mymap.bsp"))
                                    .file(QStringLiteral("scripts/mymap.arena"), script)
                                    .file(QStringLiteral("levelshots/mymap.tga"), tgaPicture(8, 8, 1, 2, 3)));
    ok &= archive("stored.pk3", ZipBuilder()
                                    .file(QStringLiteral("maps/s.bsp"), "x", true)
                                    .file(QStringLiteral("Scripts/s.arena"), script, true)
                                    .file(QStringLiteral("LevelShots/s.tga"), tgaPicture(2, 2, 9, 9, 9), true));
    ok &= archive(
        "readonly.pk3",
        ZipBuilder().file(QStringLiteral("maps/ro.bsp")).readOnlyFile(QStringLiteral("scripts/ro.arena"), script));
    ok &= archive("hostile.pk3", ZipBuilder()
                                     .file(QStringLiteral("maps/h.bsp"))
                                     .folder(QStringLiteral("levelshots/"))
                                     .symlink(QStringLiteral("levelshots/link.jpg"), QStringLiteral("/etc/passwd"))
                                     .file(QStringLiteral("levelshots/../escape.jpg"), "out")
                                     .file(QStringLiteral("levelshots/new\nline.tga"), tgaPicture(1, 1, 0, 0, 0))
                                     .file(QStringLiteral("scripts/h.arena"), script));
    ok &=
        archive("no_script.pk3", ZipBuilder().file(QStringLiteral("maps/n.bsp")).file(QStringLiteral("n.arena"), "{"));
    return ok;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: fuzz_seeds FOLDER\n");
        return 2;
    }
    g_root = QString::fromLocal8Bit(argv[1]);
    QDir(g_root).removeRecursively();
    if (!QDir().mkpath(g_root) || !tgaSeeds() || !textSeeds() || !archiveSeeds()) {
        std::fprintf(stderr, "the seeds could not be written to %s\n", argv[1]);
        return 1;
    }
    return 0;
}
