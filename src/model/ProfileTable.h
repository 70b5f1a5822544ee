#pragma once
// The rows of the main window's field table: every field with its name, index, kind,
// caption, caption label, Tag, design default and tooltip.
#include "model/Field.h"

#include <vector>

namespace steward {

/// Every field, in window order, built afresh; ServerProfile keeps one copy
/// (profileFieldTable).
std::vector<FieldDefinition> buildProfileFieldTable();

} // namespace steward
