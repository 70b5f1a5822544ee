#include "generate/BotSkills.h"

namespace steward {

const QStringList& botSkillNames()
{
    static const QStringList names = {
        QStringLiteral("I Can Win"), QStringLiteral("Bring It On "), QStringLiteral("Hurt Me Plenty "),
        QStringLiteral("Hardcore"),  QStringLiteral("Nightmare"),
    };
    return names;
}

std::optional<int> botSkillNumber(const QString& name)
{
    const qsizetype position = botSkillNames().indexOf(name);
    if (position < 0)
        return std::nullopt;
    return static_cast<int>(position) + 1;
}

QString defaultBotSkill() { return botSkillNames().at(2); }

} // namespace steward
