#include "model/OptionRules.h"

#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/Strings.h"

#include <QVariant>

namespace steward {

namespace {

constexpr auto kWeapons = F::chkWeaponFlags;
constexpr auto kPowers = F::chkPowerUpFlags;
constexpr auto kDMFlags = F::chkDMFlags;
constexpr auto kQuake3 = F::chkQuake3Specific;
constexpr auto kServerType = F::chkServerType;
constexpr auto kGameType = F::optDefaultGameType;
constexpr auto kAutoCycle = F::chkMapAutoCycle;
constexpr auto kDuelNote = F::lblSaberModeDuel;
constexpr auto kStartingMap = F::cboStartingMap;
const char* const kAttached = "stewardOptionRules";

// The last box of the weapon half; the duel half follows it.
constexpr int kLastWeapon = 15;
constexpr int kLoneSaber = 2;
constexpr int kDisableTheForce = 17;
constexpr int kListen = 0;
constexpr int kLan = 1;
constexpr int kDuel = 3;

// Runs the handler on every change of the box's value.
template <typename Handler>
void onValue(ServerProfile& profile, FieldArray array, Handler handler)
{
    for (Field* f : profile.array(array))
        QObject::connect(f, &Field::valueChanged, &profile, [handler, i = f->index()](Field*) { handler(i); });
}

// Runs the handler when the option becomes the selected one of its group.
template <typename Handler>
void onSelected(ServerProfile& profile, FieldArray array, Handler handler)
{
    for (Field* f : profile.array(array))
        QObject::connect(f, &Field::valueChanged, &profile, [handler, i = f->index()](Field* field) {
            if (field->isSet())
                handler(i);
        });
}

} // namespace

QString maskText(const ServerProfile& profile, FieldArray array, int first, int last, bool saberOnly)
{
    qint64 sum = 0;
    bool none = true;
    int ticked = 0;
    bool saberTicked = false;
    for (int i = first; i <= last; ++i) {
        const Field& box = profile.field(array(i));
        if (!box.isSet())
            continue;
        sum += textToInt32(box.tag());
        none = false;
        ++ticked;
        if (i == kLoneSaber)
            saberTicked = true;
    }
    if (none)
        return QStringLiteral("0");
    if (saberOnly && saberTicked && ticked == 1)
        return QStringLiteral("65531");
    return QString::number(sum);
}

void chkWeaponFlags_Click(ServerProfile& profile, int index)
{
    // One handler for both halves; the test for the lone saber looks at the loop index,
    // so it can only ever hold in the first half.
    if (index <= kLastWeapon)
        profile.setText(F::txtWeaponFlags, maskText(profile, kWeapons, profile.lbound(kWeapons), kLastWeapon, true));
    else
        profile.setText(F::txtDuelWeaponFlags,
                        maskText(profile, kWeapons, kLastWeapon + 1, profile.ubound(kWeapons), true));
}

void chkPowerUpFlags_Click(ServerProfile& profile, int index)
{
    Q_UNUSED(index);
    profile.setText(F::txtForceFlags,
                    maskText(profile, kPowers, profile.lbound(kPowers), profile.ubound(kPowers), false));
}

void chkDMFlags_Click(ServerProfile& profile, int index)
{
    Q_UNUSED(index);
    profile.setText(F::txtDMFlags,
                    maskText(profile, kDMFlags, profile.lbound(kDMFlags), profile.ubound(kDMFlags), false));
}

void chkQuake3Specific_Click(ServerProfile& profile, int index)
{
    // Ticking "Disable The Force" ticks every force box; clearing it leaves them.
    if (index != kDisableTheForce || !profile.isSet(kQuake3(index)))
        return;
    for (Field* f : profile.array(kPowers))
        f->setValue(1);
}

void chkServerType_Click(AppContext& app, ServerProfile& profile, int index)
{
    if (index != kListen || !profile.isSet(kServerType(kListen)))
        return;
    if (app.serverExecutable != QLatin1String("jk2Ded.exe"))
        return;
    app.prompts().message(QStringLiteral("Listen server not supported with jk2Ded.exe") + kTail, kProductTitle,
                          Icon::Information);
    profile.setValue(kServerType(kLan), 1);
}

void optDefaultGameType_Click(ServerProfile& profile, int index)
{
    Field& note = profile.field(kDuelNote);
    note.setVisible(false);
    if (index == kDuel && profile.isSet(kGameType(kDuel)))
        note.setVisible(true);
}

void attachOptionRules(AppContext& app, ServerProfile& profile)
{
    if (profile.property(kAttached).toBool())
        return;
    profile.setProperty(kAttached, true);

    ServerProfile* p = &profile;
    AppContext* a = &app;
    onValue(profile, kWeapons, [p](int i) { chkWeaponFlags_Click(*p, i); });
    onValue(profile, kPowers, [p](int i) { chkPowerUpFlags_Click(*p, i); });
    onValue(profile, kDMFlags, [p](int i) { chkDMFlags_Click(*p, i); });
    onValue(profile, kQuake3, [p](int i) { chkQuake3Specific_Click(*p, i); });
    onSelected(profile, kServerType, [a, p](int i) { chkServerType_Click(*a, *p, i); });
    onSelected(profile, kGameType, [p](int i) { optDefaultGameType_Click(*p, i); });

    // The note and the combo start as their options say.
    profile.field(kDuelNote).setVisible(profile.isSet(kGameType(kDuel)));
    profile.field(kStartingMap).setVisible(profile.isSet(kAutoCycle));
}

} // namespace steward
