// Every key of the stored-key table, walked through the writer and the reader with a
// value that a first start doesn't give: what was saved into the real settings file
// comes back into a new profile, field by field. A key written under one spelling and
// read under another, or left out by either side, loses its value here.
#include "model/RotationRows.h"
#include "model/ServerProfile.h"
#include "settings/MainSettings.h"
#include "settings/SaveSettings.h"
#include "settings/StoredKeys.h"
#include "testkit/Printers.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {

// The fields behind a key: one, or every member of its array.
std::vector<Field*> fieldsOf(ServerProfile& profile, const StoredKey& key)
{
    if (key.shape == KeyShape::One)
        return {&profile.field(key.field)};
    return profile.array(key.array());
}

// What the store keeps of a field, as one text.
QString stateOf(const Field& field)
{
    switch (field.kind()) {
    case FieldKind::Check:
    case FieldKind::Option:
        return QString::number(field.value());
    case FieldKind::List:
        return field.items().join(QLatin1Char('|'));
    case FieldKind::Grid: {
        QStringList names;
        for (int row = 0; row < field.count(); ++row)
            names << field.cell(row, 0);
        return names.join(QLatin1Char('|'));
    }
    default:
        return field.text();
    }
}

QString stateOf(ServerProfile& profile, const StoredKey& key)
{
    QStringList states;
    for (const Field* field : fieldsOf(profile, key))
        states << field->key() + QLatin1Char('=') + stateOf(*field);
    return states.join(QLatin1Char(' '));
}

// Gives every field of the key a state other than its own.
void changeAll(ServerProfile& profile, const StoredKey& key)
{
    const std::vector<Field*> fields = fieldsOf(profile, key);
    if (key.shape == KeyShape::Choice) {
        // Select the next member of the selected one's group (an array may hold more
        // than one group of options; the key keeps the first selected member).
        std::size_t selected = 0;
        while (selected + 1 < fields.size() && !fields[selected]->isSet())
            ++selected;
        const QString group = fields[selected]->definition().optionGroup;
        for (std::size_t step = 1; step < fields.size(); ++step) {
            Field* next = fields[(selected + step) % fields.size()];
            if (next->definition().optionGroup == group) {
                next->setValue(1);
                break;
            }
        }
        return;
    }
    for (Field* field : fields) {
        switch (field->kind()) {
        case FieldKind::Check:
        case FieldKind::Option:
            field->setValue(field->isSet() ? 0 : 1);
            break;
        case FieldKind::List:
            field->addItem(QStringLiteral("10.0.0.1"));
            field->addItem(QStringLiteral("10.0.0.2"));
            break;
        case FieldKind::Grid:
            field->addRow(rotationRow(QStringLiteral("ffa_bespin"), QString(), QString()));
            field->addRow(rotationRow(QStringLiteral("ctf_yavin"), QString(), QString()));
            break;
        default:
            field->setText(QStringLiteral("v%1 %2").arg(key.text()).arg(field->index()));
            break;
        }
    }
}

} // namespace

TEST(EveryStoredKey, ComesBackFromTheSettingsFileWithAValueOfItsOwn)
{
    TestApp t;
    // The option rules stay detached: each key is held to its own fields alone.
    ServerProfile first;
    GetMainSettings(*t.app, first);
    ServerProfile saved;
    GetMainSettings(*t.app, saved);
    for (const StoredKey& key : allStoredKeys())
        changeAll(saved, key);
    SaveMainSettings(*t.app, saved);

    ServerProfile loaded;
    GetMainSettings(*t.app, loaded);
    EXPECT_TRUE(t.prompts.shown.empty());
    ASSERT_FALSE(allStoredKeys().empty());
    for (const StoredKey& key : allStoredKeys()) {
        SCOPED_TRACE(key.name);
        EXPECT_NE(stateOf(saved, key), stateOf(first, key)) << "the value differs from a first start's";
        EXPECT_EQ(stateOf(loaded, key), stateOf(saved, key));
        if (key.shape == KeyShape::Each) {
            for (const Field* field : fieldsOf(saved, key))
                EXPECT_TRUE(t.store->HasSetting(key.text(field->index())));
        } else {
            EXPECT_TRUE(t.store->HasSetting(key.text()));
        }
    }
}

TEST(EveryStoredKey, IsSpeltOnceAndKeepsFieldsOfItsOwn)
{
    QStringList names;
    QStringList fields;
    ServerProfile profile;
    for (const StoredKey& key : allStoredKeys()) {
        EXPECT_FALSE(names.contains(key.text())) << key.name;
        names << key.text();
        for (const Field* field : fieldsOf(profile, key)) {
            EXPECT_FALSE(fields.contains(field->key())) << key.name << " shares " << field->key().toStdString();
            fields << field->key();
        }
    }
}
