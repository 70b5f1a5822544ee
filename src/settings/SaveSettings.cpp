#include "settings/SaveSettings.h"

#include "platform/Prompts.h"
#include "settings/SettingsStore.h"
#include "settings/StoredKeys.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/Strings.h"

namespace steward {

namespace {

// An empty text becomes one blank, then every comma a percent sign: no comma reaches
// the store through these keys.
QString cleanText(const QString& text)
{
    return IsClean(text.isEmpty() ? QStringLiteral(" ") : text, QStringLiteral(","), QStringLiteral("%"));
}

QString booleanText(const Field& box) { return box.isSet() ? QStringLiteral("True") : QStringLiteral("False"); }

class Writer {
public:
    Writer(SettingsStore& store, ServerProfile& profile) : m_store(store), m_profile(profile) {}

    void run()
    {
        eachText(K::ServerInfo1, true);
        eachText(K::ServerInfo2, false);
        eachBoolean(K::GameSpecificOptions);
        eachBoolean(K::DMFlags);
        save(K::BannedIPs, listText(m_profile.field(K::BannedIPs.field).items()));
        rotation();
        const Field& minimize = m_profile.field(K::AppMinimize.field);
        save(K::AppMinimize, minimize.isSet() ? minimize.name() : m_profile.field(F::optStartClose).name());
        firstSelected(K::GameType);
        firstSelected(K::LoggingType);
        save(K::LogName, text(K::LogName));
        firstSelected(K::ServerType);
        eachText(K::GameLimts, false);
        eachText(K::CFG1, false);
        eachBoolean(K::WeaponFlags);
        eachBoolean(K::ForceFlags);
        eachText(K::SpeedGravity, false);
        eachBoolean(K::AdvSaber);
        eachText(K::AdvSaberValues, false);
        save(K::Msg1, cleanText(text(K::Msg1)));
        save(K::Msg2, cleanText(text(K::Msg2)));
        save(K::MsgTime, text(K::MsgTime));
        save(K::MsgOn, QString::number(m_profile.value(K::MsgOn.field)));
        // The first master is never kept.
        for (const StoredKey& master : {K::Master2, K::Master3, K::Master4, K::Master5})
            save(master, cleanText(text(master)));
        save(K::SelectAdvMapCfg, booleanText(m_profile.field(K::SelectAdvMapCfg.field)));
        save(K::PathToMapsCFG, cleanText(text(K::PathToMapsCFG)));
        save(K::Quad, cleanText(text(K::Quad)));
        save(K::Knockback, cleanText(text(K::Knockback)));
        save(K::WeapRespawn, cleanText(text(K::WeapRespawn)));
        save(K::MaxForceRank, text(K::MaxForceRank));
        save(K::ForceRegen, text(K::ForceRegen));
        save(K::MaxHoloCarry, text(K::MaxHoloCarry));
        save(K::MapTimeOut, text(K::MapTimeOut));
        save(K::RestartServer, QString::number(m_profile.value(K::RestartServer.field)));
        save(K::RestartLimit, text(K::RestartLimit));
        save(K::RestartWindow, text(K::RestartWindow));
        for (const Field* f : m_profile.array(K::BOTs.array()))
            save(K::BOTs.text(f->index()), QString::number(f->value()));
    }

private:
    void save(const QString& k, const QString& value) { m_store.SaveSetting(k, value); }
    void save(const StoredKey& one, const QString& value) { m_store.SaveSetting(one.text(), value); }
    // The text of a One key's field.
    QString text(const StoredKey& one) const { return m_profile.text(one.field); }

    static QString listText(const QStringList& items)
    {
        QString all;
        for (const QString& item : items)
            all += item + QLatin1Char(';');
        return all;
    }

    void eachText(const StoredKey& each, bool clean)
    {
        for (const Field* f : m_profile.array(each.array()))
            save(each.text(f->index()), clean ? cleanText(f->text()) : f->text());
    }

    void eachBoolean(const StoredKey& each)
    {
        for (const Field* f : m_profile.array(each.array()))
            save(each.text(f->index()), booleanText(*f));
    }

    void rotation()
    {
        const Field& grid = m_profile.field(K::MapListSaved.field);
        QStringList maps;
        for (int row = 0; row < grid.count(); ++row)
            maps << grid.cell(row, 0);
        save(K::MapListSaved, listText(maps));
    }

    // The first selected index from the lowest up; nothing is written when none is.
    void firstSelected(const StoredKey& choice)
    {
        for (const Field* f : m_profile.array(choice.array())) {
            if (f->isSet()) {
                save(choice, QString::number(f->index()));
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
        saveAsDefaults(app, profile);
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

void saveAsDefaults(AppContext& app, ServerProfile& profile)
{
    SaveMainSettings(app, profile);
    app.prompts().message(QStringLiteral("Settings have been saved") + kTail, kProductTitle, Icon::Information);
    profile.setConfigurationChanged(false);
}

void noteKeyPress(ServerProfile& profile) { profile.setConfigurationChanged(true); }

void askSaveChangedConfiguration_Ok(AppContext& app, ServerProfile& profile) { askSetAsDefault(app, profile, true); }

void askSaveChangedConfiguration_Save(AppContext& app, ServerProfile& profile) { askSetAsDefault(app, profile, false); }

} // namespace steward
