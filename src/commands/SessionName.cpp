#include "commands/SessionName.h"

#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "model/Constants.h"

namespace steward {

void warn(AppContext& app, const QString& text)
{
    app.prompts().message(text + kTail, kProductTitle, Icon::Exclamation);
}

QString sessionNameAsWritten(const QString& name)
{
    return QString(name).replace(QLatin1Char(' '), QLatin1Char('_')).toLower();
}

bool ValidSessionName(AppContext& app, const QString& name)
{
    static const QString forbidden = QStringLiteral("\\/:*?<>|");
    for (const QChar c : name) {
        if (forbidden.contains(c)) {
            warn(app, QStringLiteral("Invalid session name, you cannot use \\/:*?<>| in a session name"));
            return false;
        }
    }
    return true;
}

QString completeSessionName(const QString& name)
{
    if (name.size() < 4 || name.right(4).toLower() != QLatin1String(".cfg"))
        return name + QStringLiteral(".cfg");
    return name;
}

} // namespace steward
