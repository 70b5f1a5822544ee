// Every field of the main window: name, index, kind, caption, caption label, Tag,
// design default and tooltip. Captions and Tags are exact, trailing blanks included.
#include "model/ProfileTable.h"

#include "model/Constants.h"
#include "model/FieldNames.h"
#include "model/ServerProfile.h"

namespace steward {

namespace {

using K = FieldKind;

struct TableBuilder {
    std::vector<FieldDefinition> rows;

    FieldDefinition& add(FieldId id, K kind, const QString& caption, const QString& tag = {}, const QString& def = {},
                         const QString& tooltip = {}, const QString& label = {})
    {
        FieldDefinition s;
        s.name = id.nameText();
        s.index = id.index;
        s.kind = kind;
        s.caption = caption;
        s.tag = tag;
        s.defaultText = def;
        s.tooltip = tooltip;
        s.captionLabel = label;
        rows.push_back(s);
        return rows.back();
    }
    // A text field whose caption is a label of its own.
    FieldDefinition& text(FieldId id, const QString& label, const QString& caption, const QString& tag,
                          const QString& def, const QString& tooltip = {})
    {
        return add(id, K::Text, caption, tag, def, tooltip, label);
    }
    FieldDefinition& check(FieldId id, const QString& caption, const QString& tag, const QString& tooltip = {},
                           const QString& def = QStringLiteral("0"))
    {
        return add(id, K::Check, caption, tag, def, tooltip);
    }
    FieldDefinition& option(FieldId id, const QString& group, const QString& caption, const QString& tag,
                            bool selected = false)
    {
        FieldDefinition& s = add(id, K::Option, caption, tag, selected ? QStringLiteral("1") : QStringLiteral("0"));
        s.optionGroup = group;
        return s;
    }
};

void serverPage(TableBuilder& t)
{
    const QString L = QStringLiteral("lblServerConfig(%1)");
    struct Row {
        int i;
        const char* caption;
        const char* tag;
        QString def;
        const char* tip;
    };
    const Row identity[] = {
        {0, "MOTD", "g_motd", QStringLiteral("Frag the weak, hurdle the dead..."),
         "Set message of the day that players see while connecting to the server"},
        {1, "Session", "Config File", QStringLiteral("Luke"), ""},
        {2, "Host", "sv_hostname", {}, "Set host name that shows up in server list"},
        {3, "Admin", "Admin", {}, ""},
        {4, "E-Mail", "Admin E-Mail", kContactAddress, ""},
        {5, "ICQ#", "ICQ", {}, ""},
        {6, "Location", "Location", {}, ""},
        {7, "URL", "URL", kGameSite, ""},
        {8, "Spec", "Server Spec", {}, "Server specification"},
        {9, "Hours", "Hours", QStringLiteral("Now and Then"), ""},
        {10, "IRC", "IRC", kChatChannel, ""},
        {11, "Clan", "Clan", {}, ""},
        {12, "Server Port", "net_port", QStringLiteral("28070"),
         "Setting the game port is useful for running multiple servers on the same computer (Default 28070)"},
        {13, "Private Password", "sv_privatePassword", {}, "Set Private password (leave blank for none)"},
        {14, "Remote Password", "rconPassword", {}, "Set Remote password (leave blank for none)"},
        {15, "Server Password", "g_password", {}, "Set Server password (leave blank for none)"},
        {16,
         "Server IP",
         "net_ip",
         {},
         "If you have multiple NIC's and want the server to broadcast on all of them (internet and local) clear this "
         "field"},
    };
    for (const Row& r : identity) {
        FieldDefinition& s = t.text(F::txtServerConfig(r.i), L.arg(r.i), QString::fromUtf8(r.caption),
                                    QString::fromUtf8(r.tag), r.def, QString::fromUtf8(r.tip));
        s.password = r.i >= 13 && r.i <= 15;
    }

    struct Spin {
        int label;
        const char* caption;
        const char* tag;
        const char* def;
        const char* tip;
    };
    const Spin spins[] = {
        {17, "Max Clients", "sv_maxclients", "12", "Sets the maximum amount of clients that can connect to the server"},
        {18, "Private Clients", "sv_privateClients", "0", ""},
        {19, "Max Ping", "sv_maxPing", "0", ""},
        {20, "Spawn Protect", "g_respawnProtection", "3",
         "Number of seconds that a player should be invulnerable for after they have respawned"},
        {21, "Kick Inactive", "g_inactivity", "360", ""},
        {22, "Hunkmegs", "com_HunkMegs", "32",
         "Allocates a certain amount of memory for map and item loading, default of 56 is required for the client but "
         "is overkill for a dedicated server"},
        {23, "Min Clients", "sv_minclients", "0",
         "Set the minimum number of players before BOT's are automatically added"},
        {24, "Max Rate", "sv_maxRate", "5000", "Set max allowable rate for a client. 8000 to 10000 recommended"},
        {25, "Min Ping", "sv_minPing", "0", ""},
        {26, "Spawn Delay", "g_forcerespawn", "3", "Set the respawn time in seconds, 0 = don't force respawn"},
        {27, "Max FPS", "sv_fps", "50", "max frame rate to clients - increasing will raise pings"},
        {28, "Zonemegs", "com_zoneMegs", "16",
         "How much physical memory for the quake3 application to reserve for miscellaneous operation"},
        {29, "Soundmegs", "com_SoundMegs", "16", ""},
        {30, "Reconnect", "sv_reconnectlimit", "3",
         "Set number of times a disconnected client can come back and reconnect"},
        {44, "Warmup", "g_warmup", "20", "Amount of warmup time allotted to connected clients. Defaults to 20 seconds"},
        {45, "Zombie Time", "sv_zombietime", "30",
         "Determines how long the server will keep the connection alive while not receiving any response from the "
         "client"},
        {33, "Max Game Clients", "g_maxGameClients", "0",
         "Set maximum # of players who may join the game the remainder of clients are forced to spectate"},
        {68, "Min Game Clients", "g_minGameClients", "0",
         "Determines how many players need to join the server before the game begins"},
    };
    int i = 0;
    for (const Spin& s : spins)
        t.text(F::txtServerConfigSpin(i++), L.arg(s.label), QString::fromUtf8(s.caption), QString::fromUtf8(s.tag),
               QString::fromUtf8(s.def), QString::fromUtf8(s.tip));

    const QString st = F::chkServerType.nameText();
    t.option(F::chkServerType(0), st, QStringLiteral("Listen"), QStringLiteral("+set dedicated 0"));
    t.option(F::chkServerType(1), st, QStringLiteral("LAN"), QStringLiteral("+set dedicated 1"));
    t.option(F::chkServerType(2), st, QStringLiteral("Internet"), QStringLiteral("+set dedicated 2"), true);
}

void gameOptions(TableBuilder& t)
{
    const QString none;
    t.text(F::txtWeaponEnhancer, QStringLiteral("Label18"), QStringLiteral("Quad Damage"),
           QStringLiteral("g_quadfactor"), QStringLiteral("3"),
           QStringLiteral("Allows the admin to set the amount of damage the quad damage will do."));
    t.text(F::txtKnockBack, QStringLiteral("lblKnockBack"), QStringLiteral("Knockback"), QStringLiteral("g_knockback"),
           QStringLiteral("1000"), QStringLiteral("The knockback from a weapon, higher number = greater knockback."));
    t.text(F::txtWeapRespawn, QStringLiteral("lblWeapRespawn(0)"), QStringLiteral("Weapon Respawn"),
           QStringLiteral("g_weaponrespawn"), QStringLiteral("5"),
           QStringLiteral("Set time before a picked up weapon will respawn again 0 = weapons stay"));
    t.text(F::txtMaxForceRank, QStringLiteral("lblWeapRespawn(1)"), QStringLiteral("Max Force Rank"),
           QStringLiteral("g_maxForceRank"), QStringLiteral("0"),
           QStringLiteral("Number from 0 to 7, going from Initiate to Jedi Master. The higher the rank, the more "
                          "points to spend on powers"));
    t.text(F::txtMaxHolocronCarry, QStringLiteral("lblWeapRespawn(2)"), QStringLiteral("Max Holocron Carry"),
           QStringLiteral("g_maxHolocronCarry"), QStringLiteral("3"),
           QStringLiteral("Indicates the number of holocrons (default = 3) that a player can carry in Holocron mode"));
    t.text(F::txtForceReGen(0), QStringLiteral("lblWeapRespawn(3)"), QStringLiteral("Force Regen Time"),
           QStringLiteral("g_ForceRegenTime"), QStringLiteral("200"), none);
    t.text(F::txtSpeed(0), QStringLiteral("lblRunSpeed(0)"), QStringLiteral("Run Speed"), QStringLiteral("g_speed"),
           QStringLiteral("250"), QStringLiteral("Set the games run speed"));
    t.text(F::txtSpeed(1), QStringLiteral("lblRunSpeed(1)"), QStringLiteral("Gravity"), QStringLiteral("g_gravity"),
           QStringLiteral("800"),
           QStringLiteral("set the gravity level. (this is normally set by a property of the map loaded)"));
    t.text(F::txtMapTimeOut, QStringLiteral("lblTimeOut"), QStringLiteral("Map Time Out"), QStringLiteral("sv_timeout"),
           QStringLiteral("300"),
           QStringLiteral("Assign the amount of time for the server to wait for a client packet before assuming a "
                          "disconnected state"));
    t.text(F::txtSpeed(2), QStringLiteral("lblRunSpeed(2)"), QStringLiteral("Spec Time Out"),
           QStringLiteral("g_timeouttospec"), QStringLiteral("70"),
           QStringLiteral("Time in secs when an \"idle\" player is sent to spec but not dropped (default 70)"));
    t.text(F::txtSpeed(3), QStringLiteral("lblRunSpeed(3)"), QStringLiteral("Dismember"), QStringLiteral("g_dismember"),
           QStringLiteral("0"),
           QStringLiteral("must be set between 1 and 100 to be enabled on the server (100 the most frequent, 1 is the "
                          "least, 0 is off)"));

    struct Q3 {
        const char* caption;
        const char* tag;
        const char* tip;
    };
    const Q3 q3[] = {
        {"&Allow Voting", "g_allowvote", "Toggle the use of voting on a server"},
        {"Allo&w Downloads", "sv_allowDownload",
         "Toggle the ability for clients to download files maps etc. from server"},
        {"Allow Anony&mous", "sv_allowAnonymous", "Toggle the allowing of anonymous clients to connect to your server"},
        {"Game &Warmup", "g_doWarmup", "Toggle the use of a warmup period before a match game"},
        {"Flood &Protection", "sv_floodProtect",
         "Toggle server flood protection to keep players from bringing the server down"},
        {"&Friendly Fire", "g_friendlyfire", "Determines if players can damage their own teammates"},
        {"Force Team &Balance", "g_teamForceBalance",
         "Toggle the forcing of teams to be as even as possible on a server"},
        {"Force Based Teams", "g_forceBasedTeams",
         "If selected, then the red team must use the dark side, the blue team must use the light side"},
        {"Pure Server", "sv_pure",
         "Enable crc/zip check of client pk3 files to make sure the pk3 file has not been modified for cheating or "
         "other purposes"},
        {"Synchronous Clients", "g_synchronousclients",
         "Toggle synching of all client movements (1 required to record server demo) show \"snc\" on lagometer"},
        {"Force Team Auto Join", "g_teamAutoJoin", "Toggle the automatic joining of the smallest or loosing team"},
        {"Enable Private Duel", "g_privateDuel",
         "If selected, then the \"engage_duel\" key is functional in FFA and Holocron games"},
        {"Adaptive Respawn", "g_adaptrespawn", "Make weapons respawn faster"},
        {"Smooth Clients", "g_smoothClients",
         "Enable players to use the smooth clients option on the server (cg_smoothClients)"},
        {"Pad Packets", "sv_padPackets", "Toggles the padding of network packets on the server PAD"},
        {"&Saber Lock", "g_saberLocking",
         "If selected, allows saber locking while playing Duel or while in a private duel"},
        {"Friendly Saber", "g_friendlySaber", "If selected, then team members can be hit by sabers that are idle "},
        {"Disable The Force", "g_forcePowerDisable",
         "If selected, prevents players from using any Force Powers during game play"},
        {"Jedi vs Merc", "g_jediVmerc",
         "If selected, players have to choose between Jedi (Force/Saber) and Merc (No Force/Guns)"},
    };
    int i = 0;
    for (const Q3& q : q3)
        t.check(F::chkQuake3Specific(i++), QString::fromUtf8(q.caption), QString::fromUtf8(q.tag),
                QString::fromUtf8(q.tip));

    struct Limit {
        const char* caption;
        const char* tag;
        const char* def;
        const char* tip;
    };
    const Limit limits[] = {
        {"Kills", "fraglimit", "0", "Frag limit for match"},
        {"Time", "timelimit", "20", "Time limit for match"},
        {"Duels", "duel_fraglimit", "1", "Duel frag limit"},
        {"Captures", "capturelimit", "0", ""},
    };
    i = 0;
    for (const Limit& l : limits) {
        t.text(F::txtGameLimits(i), QStringLiteral("lblGameLimits(%1)").arg(i), QString::fromUtf8(l.caption),
               QString::fromUtf8(l.tag), QString::fromUtf8(l.def), QString::fromUtf8(l.tip));
        ++i;
    }

    const QString gt = F::optDefaultGameType.nameText();
    const char* types[][2] = {
        {"&Free For All", "0"},      {"&Holocron", "1"},         {"&Jedi Master", "2"},          {"D&uel", "3"},
        {"&Team Free For All", "5"}, {"&Capture the Flag", "7"}, {"Capture the &Ysalimari", "8"}};
    i = 0;
    for (const auto& type : types) {
        t.option(F::optDefaultGameType(i), gt, QString::fromUtf8(type[0]), QString::fromUtf8(type[1]), i == 0);
        ++i;
    }
}

void flagPages(TableBuilder& t)
{
    t.add(F::txtWeaponFlags, K::Text, {}, QStringLiteral("g_weaponDisable"), QStringLiteral("0"));
    t.add(F::txtDuelWeaponFlags, K::Text, {}, QStringLiteral("g_weaponDisable"), QStringLiteral("0"));
    t.add(F::lblSaberModeDuel, K::Label, QStringLiteral("Saber only mode is encouraged in duel"), {},
          QStringLiteral("Saber only mode is encouraged in duel"));

    // Bit, caption, normal index, duel index.
    struct Weapon {
        int bit;
        const char* caption;
        int normal;
        int duel;
    };
    const Weapon weapons[] = {
        {1, "Unused", 0, 16},          {2, "Stun Baton", 1, 24},  {4, "Lightsaber", 2, 17},
        {8, "Bryer Pistol", 3, 18},    {16, "Blaster", 4, 25},    {32, "Disruptor", 5, 19},
        {64, "Bowcaster", 6, 20},      {128, "Repeater ", 7, 26}, {256, "Demp2", 8, 21},
        {512, "Flechette Gun", 9, 22}, {1024, "Merr", 10, 27},    {2048, "Therma", 11, 23},
        {4096, "Trip Mines", 12, 28},  {8192, "Detpack", 13, 29}, {16384, "Unused", 14, 30},
        {32768, "Unused", 15, 31},
    };
    FieldDefinition byIndex[32];
    for (const Weapon& w : weapons) {
        for (int idx : {w.normal, w.duel}) {
            FieldDefinition s;
            s.name = F::chkWeaponFlags.nameText();
            s.index = idx;
            s.kind = K::Check;
            s.caption = QString::fromUtf8(w.caption);
            s.tag = QString::number(w.bit);
            s.defaultText = QStringLiteral("0");
            byIndex[idx] = s;
        }
    }
    for (const FieldDefinition& s : byIndex)
        t.rows.push_back(s);

    t.add(F::txtForceFlags, K::Text, {}, QStringLiteral("g_forcePowerDisable"), QStringLiteral("0"));
    const char* powers[] = {"Heal [light]",
                            "Jump",
                            "Speed",
                            "Push",
                            "Pull",
                            "Mind Trick [light]",
                            "Grip [dark] ",
                            "Lightning [dark]",
                            "Dark Rage [dark] ",
                            "Protect [light] ",
                            "Absorb [light]",
                            "Team Heal ",
                            "Team Energize ",
                            "Drain [dark] ",
                            "Seeing",
                            "Saber Attack",
                            "Saber Defend",
                            "Saber Throw"};
    int i = 0;
    for (const char* p : powers) {
        t.check(F::chkPowerUpFlags(i), QString::fromUtf8(p), QString::number(1 << i));
        ++i;
    }

    t.add(F::txtDMFlags, K::Text, {}, QStringLiteral("dmflags"), QStringLiteral("0"));
    t.check(F::chkDMFlags(0), QStringLiteral("No Falling Damage"), QStringLiteral("8"));
    t.check(F::chkDMFlags(1), QStringLiteral("Fixed Field of Vision"), QStringLiteral("16"));
    t.check(F::chkDMFlags(2), QStringLiteral("No Footsteps"), QStringLiteral("32"));

    struct Saber {
        const char* caption;
        const char* tag;
        const char* def;
        const char* tip;
    };
    const Saber sabers[] = {
        {"Box Trace Size", "g_saberboxtracesize", "2",
         "Set it to -1 and sabers are *very* dangerous indeed! (default is 2)"},
        {"Damage Velocity Scale", "g_saberdmgvelocityscale", "0",
         "When this is given a value, a saber hit knocks a player back depending on the amount of damage done and this "
         "value (default is 0)"},
        {"Damage Delay Idle", "g_saberdmgdelay_idle", "350",
         "The length of time that an idle saber must be in contact with a player before damage is done (default is "
         "350)"},
        {"Damage Delay Wound", "g_saberdmgdelay_wound", "0",
         "Same as idle except for it affects actual attacks (default is 0)"},
    };
    i = 0;
    for (const Saber& s : sabers) {
        t.text(F::txtAdvancedSaber(i), QStringLiteral("lblAdvancedSaber(%1)").arg(i), QString::fromUtf8(s.caption),
               QString::fromUtf8(s.tag), QString::fromUtf8(s.def), QString::fromUtf8(s.tip));
        ++i;
    }
    const QString one = QStringLiteral("1");
    t.check(F::chkAdvancedSaber(0), QStringLiteral("Ghoul 2 Collision "), QStringLiteral("g_saberghoul2collision"),
            QStringLiteral("If selected, allows the infamous backstab to be blocked!"), one);
    t.check(F::chkAdvancedSaber(1), QStringLiteral("Trace Saber First "), QStringLiteral("g_sabertracesaberfirst"), {},
            one);
    t.check(F::chkAdvancedSaber(2), QStringLiteral("Always Box Trace "), QStringLiteral("_saberalwaysboxtrace"),
            QStringLiteral("If selected, seems to make saber hit detection more accurate"), one);
}

void mapPage(TableBuilder& t)
{
    const QString rightClick = QStringLiteral("Right click for more options");
    t.add(F::tvwAvailMaps, K::List, QStringLiteral("Available Maps:"), {}, {}, rightClick,
          QStringLiteral("lblServerConfig(32)"));
    t.add(F::lsvMapRotation, K::Grid, QStringLiteral("Selected Maps:"), {}, {}, rightClick,
          QStringLiteral("lblSelectedMaps"));
    t.add(F::cboStartingMap, K::Combo, QStringLiteral("Starting Map:"), {}, {}, {},
          QStringLiteral("lblServerConfig(34)"));
    t.check(F::chkMapAutoCycle, QStringLiteral("Auto Cycle Maps"), QStringLiteral("g_autoMapCycle"),
            QStringLiteral("If selected the game will auto cycle to the next map from the arenas list."));
    t.check(F::chkUseINI, QStringLiteral("Use Saved Cycle"), {},
            QStringLiteral("Select a saved map cycle configuration"));
    t.add(F::txtServerINI, K::Text, {}, QStringLiteral("g_mapCycle"), {}, QStringLiteral("Double click file to view"));
    t.add(F::picMap, K::State, {}, {}, {});
    for (FieldId label : {F::lblLongMapName, F::lblNumberOfMapsAvailable, F::lblMapsSelected, F::lblMapType})
        t.add(label, K::Label, {});
}

void botPage(TableBuilder& t)
{
    const char* bots[][3] = {
        {"Enable BOT", "bot_minplayers", "Enable BOT's on your server"},
        {"Enable Challenge", "bot_challenge", "Make the bot a bit more challenging"},
        {"Enable Jumping", "", "Toggle determines whether the bots can jump"},
        {"Enable Chat", "bot_nochat", "Toggle determines whether bots will chat or not"},
        {"Enable Fast Chat", "bot_fastchat", "Toggle between frequent and less frequent bot chat "},
        {"Enable User Defined BOT's", "", ""},
    };
    int i = 0;
    for (const auto& b : bots) {
        t.check(F::chkBOTs(i), QString::fromUtf8(b[0]), QString::fromUtf8(b[1]), QString::fromUtf8(b[2]));
        ++i;
    }
    t.add(F::cboBOT, K::Combo, QStringLiteral("BOT Skill Level"), QStringLiteral("g_spSkill"), {}, {},
          QStringLiteral("lblServerConfig(42)"));
    t.text(F::txtBOTThinkTime, QStringLiteral("lblServerConfig(43)"), QStringLiteral("Think Time"),
           QStringLiteral("bot_thinktime"), QStringLiteral("100"), QStringLiteral("Set time bots will spend thinking"));
    t.add(F::grdBOTList, K::Grid, {});
}

void miscPage(TableBuilder& t)
{
    const char* cfgLabels[] = {"Label14(5)", "Label14(7)", "Label14(6)", "Label14(8)"};
    for (int i = 0; i < 4; ++i)
        t.add(F::cboConfig(i), K::Combo, QStringLiteral("&%1.").arg(i + 1), {}, {}, {},
              QString::fromUtf8(cfgLabels[i]));

    const QString gameLog = QStringLiteral("optLogging.game");
    const QString statsLog = QStringLiteral("optLogging.stats");
    t.option(F::optLogging(0), gameLog, QStringLiteral("No Logging"), QStringLiteral("logfile"));
    t.option(F::optLogging(1), gameLog, QStringLiteral("Buffered"), QStringLiteral("logfile"));
    t.option(F::optLogging(2), gameLog, QStringLiteral("Continuous"), QStringLiteral("logfile"));
    t.option(F::optLogging(3), gameLog, QStringLiteral("Append"), QStringLiteral("logfile"), true);
    t.option(F::optLogging(4), statsLog, QStringLiteral("Enable Stats Logging"), QStringLiteral("g_statLog"));
    t.option(F::optLogging(5), statsLog, QStringLiteral("Disable"), QStringLiteral("g_statLog"), true);
    t.text(F::txtStatsLogName, QStringLiteral("Label3(0)"), QStringLiteral("Name"), QStringLiteral("g_statLogFile"),
           QStringLiteral("stats.log"), QStringLiteral("Log weapon usage statistics"));
    t.text(F::txtLogFileName, QStringLiteral("lblLogFileName"), QStringLiteral("Name"), QStringLiteral("g_log"),
           QStringLiteral("games.log"), QStringLiteral("Toggles logging of game data or statistics"));

    t.text(F::txtServerIP, QStringLiteral("lblServerConfig(31)"), QStringLiteral("IP"), {}, {});
    t.add(F::lstBannedIPs, K::List, {});

    const QString purge = QStringLiteral("fraPurge");
    t.option(F::optStartMinimize, purge, QStringLiteral("&Minimize Steward"), {});
    t.option(F::optStartClose, purge, QStringLiteral("Close Steward"), {}, true);

    // The watcher: a server that stops unexpectedly is started again, at most the limit
    // of times within the window of minutes.
    t.check(F::chkRestartServer, QStringLiteral("Restart the server when it stops unexpectedly"), {},
            QStringLiteral("Keep the server running: restart it after a crash and log why it stopped"));
    t.add(F::txtRestartLimit, K::Text, {}, {}, QStringLiteral("5"),
          QStringLiteral("How many restarts are allowed within the window"));
    t.add(F::txtRestartWindow, K::Text, {}, {}, QStringLiteral("10"),
          QStringLiteral("The window, in minutes, that the restart limit counts in"));

    t.add(F::txtMsg(0), K::Text, {}, {}, QStringLiteral("^2This Server was configured by ^1Arena Steward"));
    t.add(F::txtMsg(1), K::Text, {}, {}, QStringLiteral("^2") + kProductSite);
    t.check(F::chkSendMessage, QStringLiteral("Send Message every"), {},
            QStringLiteral("Check to automatically send a message to the quake console for all players to see"));
    t.add(F::txtMsgTimer, K::Text, {}, QStringLiteral("Don't abuse!!"), QStringLiteral("5"),
          QStringLiteral("Don't abuse"));

    const QString masters[] = {kMaster1, kMaster2, kMaster3, kMaster4, QString()};
    const FieldId masterFields[] = {F::txtMaster1, F::txtMaster2, F::txtMaster3, F::txtMaster4, F::txtMaster5};
    for (int i = 0; i < 5; ++i)
        t.add(masterFields[i], K::Text, QStringLiteral("&%1.").arg(i + 1), QStringLiteral("sv_master%1").arg(i + 1),
              masters[i], {}, QStringLiteral("Label14(%1)").arg(i));
}

void windowState(TableBuilder& t)
{
    // The window's own state that the logic reads and writes.
    t.add(F::vsMainTab, K::State, {}, {}, QStringLiteral("0"));
    t.add(F::vsExtraGameFlags, K::State, {}, {}, QStringLiteral("0"));
    t.add(F::StartingMap, K::State, {}, {}, {});
    t.add(F::FirstMapType, K::State, {}, {}, {});
    t.add(F::ConfigurationChanged, K::State, {}, {}, QStringLiteral("0"));
    t.add(F::MousePointer, K::State, {}, {}, QStringLiteral("0"));
}

} // namespace

std::vector<FieldDefinition> buildProfileFieldTable()
{
    TableBuilder t;
    serverPage(t);
    gameOptions(t);
    flagPages(t);
    mapPage(t);
    botPage(t);
    miscPage(t);
    windowState(t);
    return std::move(t.rows);
}

} // namespace steward
