// Writes the seed corpus of every fuzz target into a folder, one sub-folder per
// target: small valid inputs of each kind and a few known bad ones.
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QDir>
#include <cstdio>

using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

struct Seed {
    const char* target;
    const char* name;
    QByteArray bytes;
};

std::vector<Seed> seeds()
{
    return {
        {"tga", "plain24", tgaPicture(4, 3, 10, 20, 30)},
        {"tga", "runs24", tgaHeader(10, 4, 1, 24) + QByteArray("\x82\x00\x00\xff\x00\x00\xff\x00", 8)},
        {"tga", "grey_runs", tgaHeader(11, 2, 1, 8) + QByteArray("\x81\x40", 2)},
        {"tga", "grey", tgaHeader(3, 2, 2, 8, 0) + QByteArray("\x01\x02\x03\x04", 4)},
        {"tga", "high16", tgaHeader(2, 2, 1, 16, 0x30) + QByteArray("\x00\x7c\x00\x00", 4)},
        {"tga", "alpha32", tgaHeader(2, 1, 1, 32, 0x28) + QByteArray("\x10\x20\x30\x80", 4)},
        {"tga", "with_id",
         QByteArray(1, '\x02') + tgaHeader(2, 1, 1, 24).mid(1) + "id" + QByteArray("\x01\x02\x03", 3)},
        {"tga", "huge_header", tgaHeader(10, 65535, 1024, 32) + QByteArray(64, '\xff')},
        {"tga", "short_runs", tgaHeader(10, 2048, 2048, 32) + QByteArray(200, '\xff')},
        {"catalogue", "records",
         "assets0.pk3,duel_bespin,duel_bespin,Bespin Air Vanes,duel\r\nmymap.pk3,mymap,mymap,My Map,FFA DUEL\r\n"
         "mymap.pk3,mymap,mymap,mymap,unknown\r\n"},
        {"catalogue", "comma_and_quotes", "a.pk3,m,m,I, the map,FFA\r\n  \"q,uoted\",x,\"y\r\n\",z\r\nlast"},
        {"settings_ini", "store",
         "[General]\nVersion=\"1.4\"\n\n[_Steward]\nPathToJedi=\"/games/jk2\"\n"
         "txtServerConfig%2812%29=\"a,b;c\\\\d\\\"e\\x41\\r\\n\"\nplain = 1.2.3.4;;5.6.7.8;\n"
         "; comment\n# another\nRunOnce=0\n"},
        {"settings_ini", "latin1", QByteArray("[_Steward]\nName=Jos\xe9\n")},
        {"configuration_file", "pairs",
         "PathToJedi,/games/jk2\r\nRunOnce,1\r\n\"quoted, with comma\",value\r\n  blanks,  before\r\n"},
        {"configuration_file", "odd", "one,two,three\r\n"},
        {"console_replies", "status",
         QByteArray("\xff\xff\xff\xffstatusResponse\n\\sv_hostname\\^1Arena^7 Test\\mapname\\oa_dm1"
                    "\\g_gametype\\0\\sv_maxclients\\12\n5 0 \"^2Gnubee\"\n0 48 \"Player\"\n")},
        {"console_replies", "print",
         QByteArray("\xff\xff\xff\xffprint\nmap: oa_dm1\nnum score ping name            lastmsg address\n"
                    "--- ----- ---- --------------- ------- ---------------------\n"
                    "  0     5    0 Gnubee^7              0 bot\n")},
        {"console_replies", "bad_password", QByteArray("\xff\xff\xff\xffprint\nBad rconpassword.\n")},
        {"arena_script", "one_block", arenaScript(u"mymap"_s, u"My Map"_s, u"ffa duel"_s)},
        {"arena_script", "two_blocks",
         "{\r\nmap \"h\"\r\nlongname \"H One\"\r\ntype \"duel\"\r\n}\r\n{\r\nmap \"h2\"\r\n}\r\n"},
        {"arena_script", "one_line", "{ map \"e\" longname \"E\" type \"duel\" }\r"},
    };
}

// Archives seed both the whole scan and the reader's comparison with the library.
std::vector<std::pair<const char*, ZipBuilder>> archives()
{
    const QByteArray script = arenaScript(u"mymap"_s, u"My Map"_s, u"ffa"_s);
    return {
        {"stock.pk3", ZipBuilder().file(u"maps/ffa_bespin.bsp"_s).file(u"levelshots/ffa_bespin.jpg"_s, "jpg")},
        {"custom.pk3", ZipBuilder()
                           .file(u"maps/mymap.bsp"_s)
                           .file(u"scripts/mymap.arena"_s, script)
                           .file(u"levelshots/mymap.tga"_s, tgaPicture(8, 8, 1, 2, 3))},
        {"stored.pk3", ZipBuilder()
                           .file(u"maps/s.bsp"_s, "x", true)
                           .file(u"Scripts/s.arena"_s, script, true)
                           .file(u"LevelShots/s.tga"_s, tgaPicture(2, 2, 9, 9, 9), true)},
        {"readonly.pk3", ZipBuilder().file(u"maps/ro.bsp"_s).readOnlyFile(u"scripts/ro.arena"_s, script)},
        {"hostile.pk3", ZipBuilder()
                            .file(u"maps/h.bsp"_s)
                            .folder(u"levelshots/"_s)
                            .symlink(u"levelshots/link.jpg"_s, u"/etc/passwd"_s)
                            .file(u"levelshots/../escape.jpg"_s, "out")
                            .file(u"levelshots/new\nline.tga"_s, tgaPicture(1, 1, 0, 0, 0))
                            .file(u"scripts/h.arena"_s, script)},
        {"no_script.pk3", ZipBuilder().file(u"maps/n.bsp"_s).file(u"n.arena"_s, "{")},
    };
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: fuzz_seeds FOLDER\n");
        return 2;
    }
    const QString root = QString::fromLocal8Bit(argv[1]);
    QDir(root).removeRecursively();
    bool ok = QDir().mkpath(root);
    for (const Seed& seed : seeds()) {
        const QString path = root + u'/' + QLatin1String(seed.target) + u'/' + QLatin1String(seed.name);
        writeFile(path, seed.bytes);
        ok = ok && fileBytes(path) == seed.bytes;
    }
    for (const auto& [name, zip] : archives())
        for (const char* target : {"archive_scan", "archive_read"})
            ok = ok && zip.write(root + u'/' + QLatin1String(target) + u'/' + QLatin1String(name));
    if (!ok) {
        std::fprintf(stderr, "the seeds could not be written to %s\n", argv[1]);
        return 1;
    }
    return 0;
}
