#pragma once
// Typed names of the profile's fields, checked by the compiler: F::cboStartingMap names
// a field of its own, F::txtServerConfig(12) a member of an array. They are made from
// the same list as the field table (FieldNames.def); the string form of a name serves
// only the windows' object names and the texts of errors.
#include <QString>

#include <string_view>
#include <vector>

namespace steward {

/// One field: a name and an index, -1 for a field that is not part of an array.
struct FieldId {
    const char* name;
    int index = -1;

    QString nameText() const { return QString::fromLatin1(name); }
    /// "txtServerConfig(12)" for an array member, the plain name otherwise.
    QString key() const;
    friend bool operator==(const FieldId& a, const FieldId& b)
    {
        return a.index == b.index && std::string_view(a.name) == std::string_view(b.name);
    }
};

/// An array of fields; calling it with an index names one member.
struct FieldArray {
    const char* name;

    constexpr FieldId operator()(int index) const { return FieldId{name, index}; }
    QString nameText() const { return QString::fromLatin1(name); }
};

namespace F {
#define STEWARD_FIELD(n) inline constexpr FieldId n{#n};
#define STEWARD_ARRAY(n) inline constexpr FieldArray n{#n};
#include "model/FieldNames.def"
#undef STEWARD_FIELD
#undef STEWARD_ARRAY
} // namespace F

/// Every name of the list, with whether it names an array.
struct FieldNameEntry {
    const char* name;
    bool array;
};
const std::vector<FieldNameEntry>& allFieldNames();

} // namespace steward
