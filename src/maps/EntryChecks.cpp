#include "maps/EntryChecks.h"

#include "support/AppContext.h"
#include "support/ErrorReporter.h"

namespace steward {

QString entryNameProblem(const QString& name)
{
    for (const QChar c : name) {
        if (c.unicode() < 0x20 || c.unicode() == 0x7f || c.category() == QChar::Other_Control)
            return QStringLiteral("its name holds a control character");
        if (c == QLatin1Char('/') || c == QLatin1Char('\\'))
            return QStringLiteral("its name holds a folder separator");
    }
    if (name.toUtf8().size() > kLongestEntryName)
        return QStringLiteral("its name is longer than %1 bytes").arg(kLongestEntryName);
    return {};
}

QString printableName(const QString& name)
{
    QString shown;
    for (const QChar c : name) {
        if (c.unicode() < 0x20 || c.unicode() == 0x7f || c.category() == QChar::Other_Control)
            shown += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
        else
            shown += c;
    }
    return shown;
}

void logRefusal(AppContext& app, int number, const QString& routineTag, const QString& description)
{
    RaiseError(app, description, app.programName + routineTag, number, false, false, true, nullptr);
}

} // namespace steward
