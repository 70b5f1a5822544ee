#include "ui/MainLayout.h"

#include "model/Constants.h"
#include "model/KeyRules.h"

namespace steward {

namespace {

/// Row spacing of a page with room to spare.
constexpr int kRoomy = 6;

QStringList keys(const QString& name, std::initializer_list<int> indexes)
{
    QStringList result;
    for (int i : indexes)
        result << QStringLiteral("%1(%2)").arg(name).arg(i);
    return result;
}

QStringList range(const QString& name, int first, int last)
{
    QStringList result;
    for (int i = first; i <= last; ++i)
        result << QStringLiteral("%1(%2)").arg(name).arg(i);
    return result;
}

PageLayout serverPage()
{
    PageLayout page;
    page.columnStretch = {4, 3, 2};
    // Clients; times; network and memory.
    const QStringList spins =
        keys(QStringLiteral("txtServerConfigSpin"), {0, 6, 1, 16, 17, 10, 3, 9, 14, 13, 15, 4, 2, 8, 7, 5, 11, 12});
    page.blocks = {
        {{}, {}, {{1, range(QStringLiteral("txtServerConfig"), 0, 11), false, kRoomy}}, 0, 0, 2, 1},
        {{},
         {},
         {{1, keys(QStringLiteral("txtServerConfig"), {15, 14, 13, 12, 16}) << QStringLiteral("cmdIP"), false, kRoomy}},
         0,
         1},
        {QStringLiteral("fraGameType(4)"),
         QStringLiteral("Server Type"),
         {{1, range(QStringLiteral("chkServerType"), 0, 2)}},
         0,
         2,
         1,
         1,
         true},
        {{}, {}, {{3, spins, false, kRoomy}}, 1, 1, 1, 2},
    };
    return page;
}

PageLayout gameOptionsPage()
{
    PageLayout page;
    page.columnStretch = {3, 1};
    // Grouped so that the long captions share a column.
    const QStringList texts = {
        QStringLiteral("txtMaxHolocronCarry"), QStringLiteral("txtMaxForceRank"),   QStringLiteral("txtForceReGen(0)"),
        QStringLiteral("txtWeapRespawn"),      QStringLiteral("txtWeaponEnhancer"), QStringLiteral("txtKnockBack"),
        QStringLiteral("txtMapTimeOut"),       QStringLiteral("txtSpeed(2)"),       QStringLiteral("txtSpeed(0)"),
        QStringLiteral("txtSpeed(1)"),         QStringLiteral("txtSpeed(3)"),
    };
    // Teams, force and duels; what the server allows; the rules of play.
    const QStringList options =
        keys(QStringLiteral("chkQuake3Specific"), {6, 7, 10, 16, 11, 9, 17, 0, 1, 2, 4, 13, 12, 5, 3, 15, 18, 14, 8});
    page.blocks = {
        {QStringLiteral("fraGameType(2)"),
         QStringLiteral("Jedi Knight 2 Options"),
         {{3, texts}, {3, options}},
         0,
         0,
         2,
         1},
        {QStringLiteral("fraGameType(1)"),
         QStringLiteral("Game Limits"),
         {{1, range(QStringLiteral("txtGameLimits"), 0, 3)}},
         0,
         1},
        {QStringLiteral("fraGameType(0)"),
         QStringLiteral("Game Type"),
         {{1, range(QStringLiteral("optDefaultGameType"), 0, 6)}},
         1,
         1},
    };
    return page;
}

PageLayout weaponPage()
{
    PageLayout page;
    page.columnStretch = {1, 1};
    // Both frames show the weapons in the order of their bits.
    const QStringList duel =
        keys(QStringLiteral("chkWeaponFlags"), {16, 24, 17, 18, 25, 19, 20, 26, 21, 22, 27, 23, 28, 29, 30, 31});
    page.blocks = {
        {QStringLiteral("fraWeaponFlags(0)"),
         QStringLiteral("Weapons (check to disable)"),
         {{2, range(QStringLiteral("chkWeaponFlags"), 0, 15)}, {1, {QStringLiteral("txtWeaponFlags")}}},
         0,
         0},
        {QStringLiteral("fraWeaponFlags(2)"),
         QStringLiteral("Duel Weapons (check to disable)"),
         {{2, duel}, {1, {QStringLiteral("txtDuelWeaponFlags")}}},
         0,
         1},
        {{}, {}, {{1, {QStringLiteral("lblSaberModeDuel")}}}, 1, 0, 1, 2},
    };
    return page;
}

PageLayout forcePage()
{
    PageLayout page;
    page.blocks = {
        {QStringLiteral("fraWeaponFlags(1)"),
         QStringLiteral("Force Power (check to disable)"),
         {{3, range(QStringLiteral("chkPowerUpFlags"), 0, 17)}, {1, {QStringLiteral("txtForceFlags")}}},
         0,
         0},
    };
    return page;
}

PageLayout dmPage()
{
    PageLayout page;
    page.columnStretch = {1, 1};
    page.blocks = {
        {QStringLiteral("fraDMFlags"),
         QStringLiteral("DM Flags"),
         {{1, range(QStringLiteral("chkDMFlags"), 0, 2) << QStringLiteral("txtDMFlags")}},
         0,
         0},
    };
    return page;
}

PageLayout saberPage()
{
    PageLayout page;
    page.columnStretch = {1, 1};
    page.blocks = {
        {QStringLiteral("Frame1"),
         QStringLiteral("Options"),
         {{1, range(QStringLiteral("txtAdvancedSaber"), 0, 3)}, {1, range(QStringLiteral("chkAdvancedSaber"), 0, 2)}},
         0,
         0},
    };
    return page;
}

PageLayout gamePage()
{
    PageLayout page;
    page.margin = 0;
    page.blocks = {{{}, {}, {{1, {QStringLiteral("vsExtraGameFlags")}}}, 0, 0}};
    return page;
}

PageLayout mapPage()
{
    PageLayout page;
    page.columnStretch = {4, 3, 4};
    page.blocks = {
        {{}, {}, {{1, {QStringLiteral("tvwAvailMaps"), QStringLiteral("lblNumberOfMapsAvailable")}, true}}, 0, 0},
        {{},
         {},
         {{1,
           {QStringLiteral("picMap"), QStringLiteral("lblLongMapName"), QStringLiteral("lblMapType"),
            QStringLiteral("chkMapAutoCycle"), QStringLiteral("chkUseINI"), QStringLiteral("txtServerINI")},
           true}},
         0,
         1},
        {{},
         {},
         {{1,
           {QStringLiteral("lsvMapRotation"), QStringLiteral("lblMapsSelected"), QStringLiteral("cboStartingMap")},
           true}},
         0,
         2},
    };
    return page;
}

PageLayout botPage()
{
    PageLayout page;
    page.columnStretch = {2, 5, 0};
    page.blocks = {
        {QStringLiteral("fraBOTs"),
         QStringLiteral("Options"),
         {{1, range(QStringLiteral("chkBOTs"), 0, 5)},
          {1, {QStringLiteral("cboBOT"), QStringLiteral("txtBOTThinkTime+updBOTThinkTime")}, true}},
         0,
         0},
        {{}, {}, {{1, {QStringLiteral("grdBOTList")}}}, 0, 1},
        {{}, {}, {{1, range(QStringLiteral("cmdBOTs"), 0, 4)}}, 0, 2},
        {{}, {}, {{1, {QStringLiteral("lblCTFMapNote(2)"), QStringLiteral("Label1")}}}, 1, 0, 1, 3},
    };
    return page;
}

PageLayout miscPage()
{
    PageLayout page;
    page.columnStretch = {4, 3, 5};
    const QStringList masters = {QStringLiteral("txtMaster1"), QStringLiteral("txtMaster2"),
                                 QStringLiteral("txtMaster3"), QStringLiteral("txtMaster4"),
                                 QStringLiteral("txtMaster5")};
    page.blocks = {
        {QStringLiteral("fraAdditionalCfg"),
         QStringLiteral("Additional configs to execute"),
         {{1, range(QStringLiteral("cboConfig"), 0, 3)}},
         0,
         0},
        {QStringLiteral("Frame7(0)"),
         QStringLiteral("Game Logging"),
         {{2, range(QStringLiteral("optLogging"), 0, 3)}, {1, {QStringLiteral("txtLogFileName")}}},
         1,
         0},
        {QStringLiteral("Frame7(1)"),
         QStringLiteral("Stats Logging"),
         {{1, {QStringLiteral("optLogging(4)"), QStringLiteral("optLogging(5)"), QStringLiteral("txtStatsLogName")}}},
         2,
         0},
        {QStringLiteral("fraGameType(5)"),
         QStringLiteral("IP Banning"),
         {{1, {QStringLiteral("txtServerIP")}},
          {1, {QStringLiteral("lstBannedIPs")}},
          {1, range(QStringLiteral("cmdThreeWave"), 2, 4)}},
         1,
         1,
         2,
         1},
        {QStringLiteral("fraMsg"),
         QStringLiteral("Messaging"),
         {{1,
           {QStringLiteral("txtMsg(0)"), QStringLiteral("txtMsg(1)"),
            QStringLiteral("chkSendMessage+txtMsgTimer+Label6(1)")}}},
         0,
         2},
        {QStringLiteral("Frame3"), QStringLiteral("Additional Master Servers"), {{1, masters}}, 1, 2},
        {QStringLiteral("fraPurge"),
         QStringLiteral("On Startup"),
         {{1, {QStringLiteral("optStartMinimize"), QStringLiteral("optStartClose")}}},
         0,
         1},
        {QStringLiteral("fraRestart"),
         QStringLiteral("Server Watch"),
         {{1,
           {QStringLiteral("chkRestartServer"),
            QStringLiteral("lblRestartLimit+txtRestartLimit+lblRestartWindow+txtRestartWindow+lblRestartMinutes")}}},
         2,
         2},
    };
    return page;
}

PageLayout informationPage()
{
    PageLayout page;
    page.margin = 12;
    page.blocks = {
        {{},
         {},
         {{1,
           QStringList{QStringLiteral("lblInfo(0)"), QStringLiteral("lblInfo(1)")} +
               range(QStringLiteral("lblInfo"), 2, 10) +
               QStringList{QStringLiteral("lblInfo(11)"), QStringLiteral("lblInfo(12)"), QStringLiteral("lblLink"),
                           QStringLiteral("Picture1"), QStringLiteral("Picture3")},
           false, 14}},
         0,
         0},
    };
    return page;
}

QList<StaticControl> buildStaticControls()
{
    using K = StaticControl::Kind;
    QList<StaticControl> c;
    auto button = [&c](const QString& name, const QString& text, const QString& tooltip = {}) {
        c.append({name, K::Button, text, tooltip, false, false});
    };
    auto label = [&c](const QString& name, const QString& text, bool wrap = false, bool hidden = false) {
        c.append({name, K::Label, text, {}, hidden, wrap});
    };

    button(QStringLiteral("cmdOk"), QStringLiteral("&OK"));
    button(QStringLiteral("cmdCancel"), QStringLiteral("&Close"));
    button(QStringLiteral("cmdDefault"), QStringLiteral("&Defaults"),
           QStringLiteral("Set current settings as default settings"));
    button(QStringLiteral("cmdReset"), QStringLiteral("&Reset"), QStringLiteral("Reset Arena Steward"));
    button(QStringLiteral("cmdTrayIt"), QStringLiteral("Send to Tray"));

    button(QStringLiteral("cmdIP"), QStringLiteral("Get Local I.P"));

    const char* bots[] = {"Save", "Load", "Clear", "Add", "View"};
    for (int i = 0; i < 5; ++i)
        button(QStringLiteral("cmdBOTs(%1)").arg(i), QString::fromLatin1(bots[i]));
    label(QStringLiteral("lblCTFMapNote(2)"),
          QStringLiteral("Make sure the selected map(s) support BOT's otherwise you will get various errors displayed "
                         "in the console when trying to load the custom map."),
          true);
    label(QStringLiteral("Label1"), QStringLiteral("BOT's"), false, true);

    button(QStringLiteral("cmdThreeWave(2)"), QStringLiteral("Add IP"));
    button(QStringLiteral("cmdThreeWave(3)"), QStringLiteral("Delete selected ip"));
    button(QStringLiteral("cmdThreeWave(4)"), QStringLiteral("Clear list"));
    label(QStringLiteral("Label6(1)"), QStringLiteral("minutes"));
    label(QStringLiteral("lblRestartLimit"), QStringLiteral("Up to"));
    label(QStringLiteral("lblRestartWindow"), QStringLiteral("restarts in"));
    label(QStringLiteral("lblRestartMinutes"), QStringLiteral("minutes"));

    label(QStringLiteral("lblInfo(0)"),
          QStringLiteral("Thank you for choosing Arena Steward to run your Jedi Knight II server. Questions, "
                         "suggestions and bug reports are always welcome: write to us at %1.")
              .arg(kContactAddress),
          true);
    label(QStringLiteral("lblInfo(1)"), QStringLiteral("Other server utilities available"));
    for (int i = 2; i <= 10; ++i)
        label(QStringLiteral("lblInfo(%1)").arg(i), {}, false, true);
    label(QStringLiteral("lblInfo(11)"),
          QStringLiteral("All our programs are free, however, you are more than welcome to make a donation so that "
                         "we can continue to offer free server utilites to the gaming community."),
          true);
    label(QStringLiteral("lblInfo(12)"), QStringLiteral("more to follow...."));
    c.append({QStringLiteral("lblLink"), K::Link, QStringLiteral("Arena Steward Forums"), kProductForum, false, false});
    c.append({QStringLiteral("Picture1"), K::Link, QStringLiteral("Star Wars Jedi Knight II: Jedi Outcast"),
              kOfficialGameSite, false, false});
    c.append(
        {QStringLiteral("Picture3"), K::Link, QStringLiteral("Arena Steward on the web"), kProductSite, false, false});
    return c;
}

/// The pages with the captions of a "|"-separated list, blanks kept.
QList<PageLayout> captioned(QList<PageLayout> pages, const QString& captions)
{
    const QStringList parts = captions.split(QLatin1Char('|'));
    for (int i = 0; i < pages.size(); ++i)
        pages[i].caption = parts.value(i);
    return pages;
}

} // namespace

QString mainTabCaptions()
{
    return QStringLiteral("Server     |Game       |Map        |BOT        |Misc.      |Information");
}

QString gameTabCaptions() { return QStringLiteral("Game|Weapon Flags|Force Flags|DM Flags|Advanced Saber"); }

const QList<PageLayout>& mainPages()
{
    static const QList<PageLayout> pages =
        captioned({serverPage(), gamePage(), mapPage(), botPage(), miscPage(), informationPage()}, mainTabCaptions());
    return pages;
}

const QList<PageLayout>& gamePages()
{
    static const QList<PageLayout> pages =
        captioned({gameOptionsPage(), weaponPage(), forcePage(), dmPage(), saberPage()}, gameTabCaptions());
    return pages;
}

const QList<StaticControl>& staticControls()
{
    static const QList<StaticControl> controls = buildStaticControls();
    return controls;
}

QStringList commandBarButtons()
{
    return {QStringLiteral("cmdTrayIt"),  QString(),
            QStringLiteral("cmdDefault"), QStringLiteral("cmdReset"),
            QStringLiteral("cmdOk"),      QStringLiteral("cmdCancel")};
}

bool isNarrowTextField(const QString& name)
{
    // The boxes that take digits only, and a few more that hold short numbers.
    static const QStringList alsoNarrow = {QStringLiteral("txtAdvancedSaber"), QStringLiteral("txtBOTThinkTime"),
                                           QStringLiteral("txtMsgTimer")};
    return textBoxKeyRules(name).characterFilter || alsoNarrow.contains(name) || isMaskField(name);
}

bool isMaskField(const QString& name)
{
    return name == QLatin1String("txtWeaponFlags") || name == QLatin1String("txtDuelWeaponFlags") ||
           name == QLatin1String("txtForceFlags") || name == QLatin1String("txtDMFlags");
}

} // namespace steward
