#include "support/ErrorReporter.h"

#include "platform/Clock.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "support/ProductText.h"
#include "support/Errors.h"
#include "support/TextFile.h"

#include <QFile>

namespace steward {

QString logSeparator() { return QString(78, QLatin1Char('-')); }

bool WriteLog(AppContext& app, const QString& text, const QString& logFile, bool stamp, bool separator, bool overwrite)
{
    QString file = logFile;
    if (file.isEmpty())
        file = app.errorLog().lastFile().isEmpty() ? app.programFile(app.programName + QStringLiteral(".log"))
                                                   : app.errorLog().lastFile();
    app.errorLog().setLastFile(file);

    if (overwrite) {
        QFile empty(file);
        if (!empty.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return false;
    }
    QStringList lines;
    if (separator)
        lines << logSeparator();
    if (stamp)
        lines << QStringLiteral("---%1---").arg(app.clock().now().toString(QStringLiteral("MM/dd/yyyy HH:mm:ss")));
    lines << text;
    return appendLines(file, lines);
}

void RaiseError(AppContext& app, QString description, QString source, int number, bool show, bool raise, bool log,
                const RuntimeError* error, const QString& logFile)
{
    if (error) {
        description = description.isEmpty()
                          ? error->description()
                          : description + QStringLiteral("(") + error->description() + QStringLiteral(")");
        // An error raised without a source of its own comes from the program itself.
        const QString origin = error->source().isEmpty() ? app.programName : error->source();
        source = source.isEmpty() ? origin : source + QStringLiteral(" (") + origin + QStringLiteral(")");
        if (number == 0)
            number = error->number();
    }
    if (log)
        WriteLog(app, QStringLiteral("Error %1 in %2:").arg(number).arg(source) + kCrLf + description, logFile, true,
                 true, false);
    if (show) {
        const QString text = QStringLiteral("Following error occurred in this application:") + kCrLf + kCrLf +
                             description + kCrLf + QStringLiteral("Number: %1").arg(number) + kCrLf +
                             QStringLiteral("Source: ") + source;
        app.prompts().messageBox(
            {text, app.programName + QStringLiteral(" Error"), Icon::Critical, Buttons::Ok, 0, true});
    }
    if (raise)
        throw RuntimeError(number, description, source);
}

void reportTagged(AppContext& app, const RuntimeError& error, const QString& tag, bool show, bool raise)
{
    RaiseError(app, {}, app.programName + tag, 0, show, raise, true, &error);
}

void reportPlain(AppContext& app, const RuntimeError& error, const QString& routine)
{
    app.prompts().message(QStringLiteral("Error: %1. %2").arg(error.number()).arg(error.description()), routine,
                          Icon::None);
}

void reportInformation(AppContext& app, const RuntimeError& error)
{
    // As in the central report, an error without a source of its own comes from the program.
    app.prompts().message(error.description(), error.source().isEmpty() ? app.programName : error.source(),
                          Icon::Information);
}

} // namespace steward
