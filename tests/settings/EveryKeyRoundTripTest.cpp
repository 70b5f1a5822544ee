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
using namespace Qt::StringLiterals;

namespace {

// The fields behind a key: one, or every member of its array.
std::vector<Field*> fieldsOf(ServerProfile& profile, const StoredKey& key)
{
    return key.shape == KeyShape::One ? std::vector<Field*>{&profile.field(key.field)} : profile.array(key.array());
}

// What the store keeps of the key's fields, as one text.
QString stateOf(ServerProfile& profile, const StoredKey& key)
{
    QStringList states;
    for (const Field* field : fieldsOf(profile, key)) {
        QStringList state{field->text()};
        if (field->kind() == FieldKind::Check || field->kind() == FieldKind::Option)
            state = {QString::number(field->value())};
        else if (field->kind() == FieldKind::List)
            state = field->items();
        else if (field->kind() == FieldKind::Grid)
            for (int row = 0; row < field->count(); ++row)
                state << field->cell(row, 0);
        states << field->key() + u'=' + state.join(u'|');
    }
    return states.join(u' ');
}

// Gives every field of the key a state other than its own.
void changeAll(ServerProfile& profile, const StoredKey& key)
{
    const std::vector<Field*> fields = fieldsOf(profile, key);
    if (key.shape == KeyShape::Choice) {
        // Select the next member of the selected one's group (an array may hold more than
        // one group of options; the key keeps the first selected member).
        std::size_t selected = 0;
        while (selected + 1 < fields.size() && !fields[selected]->isSet())
            ++selected;
        for (std::size_t step = 1; step < fields.size(); ++step) {
            Field* next = fields[(selected + step) % fields.size()];
            if (next->definition().optionGroup == fields[selected]->definition().optionGroup) {
                next->setValue(1);
                break;
            }
        }
        return;
    }
    for (Field* field : fields) {
        if (field->kind() == FieldKind::Check || field->kind() == FieldKind::Option)
            field->setValue(field->isSet() ? 0 : 1);
        else if (field->kind() == FieldKind::List)
            field->setItems({u"10.0.0.1"_s, u"10.0.0.2"_s});
        else if (field->kind() == FieldKind::Grid)
            field->setRows({rotationRow(u"ffa_bespin"_s, {}, {}), rotationRow(u"ctf_yavin"_s, {}, {})});
        else
            field->setText(u"v%1 %2"_s.arg(key.text()).arg(field->index()));
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
