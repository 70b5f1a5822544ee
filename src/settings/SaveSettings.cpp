#include "settings/SaveSettings.h"

#include "platform/Prompts.h"
#include "settings/SettingsStore.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/Strings.h"

namespace steward {

namespace {

QString key(const QString& base, int index) { return base + QString::number(index); }

// An empty text becomes one blank, then every comma a percent sign: no comma reaches
// the store through these keys.
QString cleanText(const QString& text)
{
    return IsClean(text.isEmpty() ? QStringLiteral(" ") : text, QStringLiteral(","), QStringLiteral("%"));
}

constexpr FieldId kMasterFields[] = {F::txtMaster1, F::txtMaster2, F::txtMaster3, F::txtMaster4, F::txtMaster5};

QString booleanText(const Field& box) { return box.isSet() ? QStringLiteral("True") : QStringLiteral("False"); }

class Writer {
public:
    Writer(SettingsStore& store, ServerProfile& profile) : m_store(store), m_profile(profile) {}

    void run()
    {
        eachText(QStringLiteral("ServerInfo1"), F::txtServerConfig, true);
        eachText(QStringLiteral("ServerInfo2"), F::txtServerConfigSpin, false);
        eachBoolean(QStringLiteral("GameSpecificOptions"), F::chkQuake3Specific);
        eachBoolean(QStringLiteral("DMFlags"), F::chkDMFlags);
        save(QStringLiteral("BannedIPs"), listText(m_profile.field(F::lstBannedIPs).items()));
        rotation();
        const Field& minimize = m_profile.field(F::optStartMinimize);
        save(QStringLiteral("AppMinimize"),
             minimize.isSet() ? minimize.name() : m_profile.field(F::optStartClose).name());
        firstSelected(QStringLiteral("GameType"), F::optDefaultGameType);
        firstSelected(QStringLiteral("LoggingType"), F::optLogging);
        save(QStringLiteral("LogName"), text(F::txtLogFileName));
        firstSelected(QStringLiteral("ServerType"), F::chkServerType);
        eachText(QStringLiteral("GameLimts"), F::txtGameLimits, false);
        eachText(QStringLiteral("CFG1"), F::cboConfig, false);
        eachBoolean(QStringLiteral("WeaponFlags"), F::chkWeaponFlags);
        eachBoolean(QStringLiteral("ForceFlags"), F::chkPowerUpFlags);
        eachText(QStringLiteral("SpeedGravity"), F::txtSpeed, false);
        eachBoolean(QStringLiteral("AdvSaber"), F::chkAdvancedSaber);
        eachText(QStringLiteral("AdvSaberValues"), F::txtAdvancedSaber, false);
        save(QStringLiteral("Msg1"), cleanText(m_profile.text(F::txtMsg(0))));
        save(QStringLiteral("Msg2"), cleanText(m_profile.text(F::txtMsg(1))));
        save(QStringLiteral("MsgTime"), text(F::txtMsgTimer));
        save(QStringLiteral("MsgOn"), QString::number(m_profile.value(F::chkSendMessage)));
        for (int i = 2; i <= 5; ++i) // the first master is never kept
            save(QStringLiteral("Master%1").arg(i), cleanText(m_profile.text(kMasterFields[i - 1])));
        save(QStringLiteral("SelectAdvMapCfg"), booleanText(m_profile.field(F::chkUseINI)));
        save(QStringLiteral("PathToMapsCFG"), cleanText(text(F::txtServerINI)));
        save(QStringLiteral("Quad"), cleanText(text(F::txtWeaponEnhancer)));
        save(QStringLiteral("Knockback"), cleanText(text(F::txtKnockBack)));
        save(QStringLiteral("WeapRespawn"), cleanText(text(F::txtWeapRespawn)));
        save(QStringLiteral("MaxForceRank"), text(F::txtMaxForceRank));
        save(QStringLiteral("ForceRegen"), m_profile.text(F::txtForceReGen(0)));
        save(QStringLiteral("MaxHoloCarry"), text(F::txtMaxHolocronCarry));
        save(QStringLiteral("MapTimeOut"), text(F::txtMapTimeOut));
        save(QStringLiteral("RestartServer"), QString::number(m_profile.value(F::chkRestartServer)));
        save(QStringLiteral("RestartLimit"), text(F::txtRestartLimit));
        save(QStringLiteral("RestartWindow"), text(F::txtRestartWindow));
        for (const Field* f : m_profile.array(F::chkBOTs))
            save(key(QStringLiteral("BOTs"), f->index()), QString::number(f->value()));
    }

private:
    void save(const QString& k, const QString& value) { m_store.SaveSetting(k, value); }
    QString text(FieldId field) const { return m_profile.text(field); }

    static QString listText(const QStringList& items)
    {
        QString all;
        for (const QString& item : items)
            all += item + QLatin1Char(';');
        return all;
    }

    void eachText(const QString& base, FieldArray array, bool clean)
    {
        for (const Field* f : m_profile.array(array))
            save(key(base, f->index()), clean ? cleanText(f->text()) : f->text());
    }

    void eachBoolean(const QString& base, FieldArray array)
    {
        for (const Field* f : m_profile.array(array))
            save(key(base, f->index()), booleanText(*f));
    }

    void rotation()
    {
        const Field& grid = m_profile.field(F::lsvMapRotation);
        QStringList maps;
        for (int row = 0; row < grid.count(); ++row)
            maps << grid.cell(row, 0);
        save(QStringLiteral("MapListSaved"), listText(maps));
    }

    // The first selected index from the lowest up; nothing is written when none is.
    void firstSelected(const QString& k, FieldArray array)
    {
        for (const Field* f : m_profile.array(array)) {
            if (f->isSet()) {
                save(k, QString::number(f->index()));
                return;
            }
        }
    }

    SettingsStore& m_store;
    ServerProfile& m_profile;
};

void askSetAsDefault(AppContext& app, ServerProfile& profile, bool clearOnNo)
{
    if (!profile.configurationChanged())
        return;
    const Answer answer = app.prompts().message(QStringLiteral("Configuration has changed, set as default?") + kTail,
                                                kProductTitle, Icon::Question, Buttons::YesNo);
    if (answer == Answer::Yes)
        cmdDefault_Click(app, profile);
    if (clearOnNo)
        profile.setConfigurationChanged(false);
}

} // namespace

void SaveMainSettings(AppContext& app, ServerProfile& profile)
{
    try {
        // One file write for the whole pass; on an error the keys before it are kept.
        SettingsBatch batch(app.store());
        Writer(app.store(), profile).run();
        batch.commit();
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::Code.SaveMainSettings(Sub)"));
    }
}

void cmdDefault_Click(AppContext& app, ServerProfile& profile)
{
    SaveMainSettings(app, profile);
    app.prompts().message(QStringLiteral("Settings have been saved") + kTail, kProductTitle, Icon::Information);
    profile.setConfigurationChanged(false);
}

void noteKeyPress(ServerProfile& profile) { profile.setConfigurationChanged(true); }

void askSaveChangedConfiguration_Ok(AppContext& app, ServerProfile& profile)
{
    askSetAsDefault(app, profile, true);
}

void askSaveChangedConfiguration_Save(AppContext& app, ServerProfile& profile)
{
    askSetAsDefault(app, profile, false);
}

} // namespace steward
