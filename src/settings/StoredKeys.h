#pragma once
// The keys of the settings store that keep the main window's settings, each spelt once
// (StoredKeys.def): the reader and the writer both name a key as K::ServerInfo1, so a
// key can't be read under one spelling and written under another.
#include "model/FieldNames.h"

#include <QString>
#include <vector>

namespace steward {

enum class KeyShape {
    Each,   ///< one key per member of an array: the key's name followed by the index
    Choice, ///< one key: the index of the selected member of an array
    One,    ///< one key for one field (an array member included)
};

struct StoredKey {
    const char* name;
    FieldId field; ///< the field of a One key; for Each and Choice the array, index -1
    KeyShape shape;

    QString text() const { return QString::fromLatin1(name); }
    /// The key of one member of an Each key.
    QString text(int index) const { return text() + QString::number(index); }
    FieldArray array() const { return FieldArray{field.name}; }
};

namespace K {
#define STEWARD_KEY_EACH(k, a) inline constexpr StoredKey k{#k, FieldId{F::a.name}, KeyShape::Each};
#define STEWARD_KEY_CHOICE(k, a) inline constexpr StoredKey k{#k, FieldId{F::a.name}, KeyShape::Choice};
#define STEWARD_KEY_ONE(k, f) inline constexpr StoredKey k{#k, F::f, KeyShape::One};
#define STEWARD_KEY_MEMBER(k, a, i) inline constexpr StoredKey k{#k, F::a(i), KeyShape::One};
#include "settings/StoredKeys.def"
#undef STEWARD_KEY_EACH
#undef STEWARD_KEY_CHOICE
#undef STEWARD_KEY_ONE
#undef STEWARD_KEY_MEMBER
} // namespace K

/// Every key of the list, in its order.
const std::vector<StoredKey>& allStoredKeys();

} // namespace steward
