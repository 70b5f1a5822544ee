#include "settings/StartKeys.h"

#include "model/ServerProfile.h"
#include "settings/SettingsStore.h"

#include <QUrl>

namespace steward {

namespace {

enum class Part { Text, Value };

struct StartKey {
    const char* key;
    FieldId field;
    Part part;
};

// Auto cycling first: ticking it clears "Use Saved Cycle", as it did in the window.
const QString kExact = QStringLiteral("Exact ");

const StartKey kStartKeys[] = {
    {"RunAutoCycle", F::chkMapAutoCycle, Part::Value},   {"RunAutoCycleMap", F::cboStartingMap, Part::Text},
    {"RunStartingMap", F::StartingMap, Part::Text},      {"RunMaster1", F::txtMaster1, Part::Text},
    {"RunBOTThinkTime", F::txtBOTThinkTime, Part::Text}, {"RunBOTSkill", F::cboBOT, Part::Text},
    {"RunStatsLogName", F::txtStatsLogName, Part::Text}, {"RunStatsLog", F::optLogging(4), Part::Value},
};

} // namespace

void saveStartKeys(SettingsStore& store, const ServerProfile& profile)
{
    for (const StartKey& k : kStartKeys)
        store.SaveSetting(QString::fromLatin1(k.key),
                          k.part == Part::Text ? profile.text(k.field) : QString::number(profile.value(k.field)));
}

void restoreStartKeys(const SettingsStore& store, ServerProfile& profile)
{
    for (const StartKey& k : kStartKeys) {
        const QString key = QString::fromLatin1(k.key);
        if (!store.HasSetting(key))
            continue;
        const QString stored = store.GetSetting(key);
        if (k.part == Part::Text) {
            profile.setText(k.field, stored);
        } else if (k.field == F::optLogging(4)) {
            // The stats log is one of two options.
            profile.setValue(stored == QLatin1String("1") ? F::optLogging(4) : F::optLogging(5), 1);
        } else {
            profile.setValue(k.field, stored == QLatin1String("1") ? 1 : 0);
        }
    }
}

void saveExactTexts(SettingsStore& store, const ServerProfile& profile)
{
    for (const Field* field : profile.fields())
        if (field->kind() == FieldKind::Text || field->kind() == FieldKind::Combo)
            store.SaveSetting(kExact + field->key(), QString::fromLatin1(QUrl::toPercentEncoding(field->text())));
}

void restoreExactTexts(const SettingsStore& store, ServerProfile& profile)
{
    for (const auto& [key, value] : store.GetAllSettings()) {
        if (!key.startsWith(kExact))
            continue;
        // "Exact name(index)" or "Exact name"; a key that names no field is left alone.
        const QString name = key.mid(kExact.size());
        const qsizetype open = name.indexOf(QLatin1Char('('));
        bool ok = true;
        const int index = open < 0 ? -1 : name.mid(open + 1, name.size() - open - 2).toInt(&ok);
        Field* field = ok ? profile.findByName(open < 0 ? name : name.left(open), index) : nullptr;
        if (field && (field->kind() == FieldKind::Text || field->kind() == FieldKind::Combo))
            field->setText(QUrl::fromPercentEncoding(value.toLatin1()));
    }
}

} // namespace steward
