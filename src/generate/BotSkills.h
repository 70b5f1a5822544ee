#pragma once
// The five bot skill levels. A skill's name maps to its number by exact comparison of
// the whole text: "Bring It On " and "Hurt Me Plenty " carry a trailing blank.
#include <QString>
#include <QStringList>
#include <optional>

namespace steward {

/// The skill names in the order of their numbers 1 to 5.
const QStringList& botSkillNames();
/// The number of a skill name, or none for any other text.
std::optional<int> botSkillNumber(const QString& name);
/// "Hurt Me Plenty ", the skill a new bot and the skill list start with.
QString defaultBotSkill();

} // namespace steward
