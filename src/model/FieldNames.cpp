#include "model/FieldNames.h"

#include "model/Field.h"

namespace steward {

QString FieldId::key() const { return Field::makeKey(nameText(), index); }

const std::vector<FieldNameEntry>& allFieldNames()
{
    static const std::vector<FieldNameEntry> names = {
#define STEWARD_FIELD(n) {#n, false},
#define STEWARD_ARRAY(n) {#n, true},
#include "model/FieldNames.def"
#undef STEWARD_FIELD
#undef STEWARD_ARRAY
    };
    return names;
}

} // namespace steward
