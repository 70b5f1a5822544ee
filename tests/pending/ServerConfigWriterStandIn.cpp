// A stand-in for the session file writer while it is not in the tree. It writes no
// file; it works out the values that the command line needs as the writer does and
// hands over to the launch or the export, on the writer's error road. The build drops
// it as soon as src/generate/ServerConfigWriter.cpp exists.
#include "generate/ServerConfigWriter.h"
#include "generate/ServerLaunch.h"
#include "platform/Prompts.h"
#include "shell/AppContext.h"
#include "shell/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/Strings.h"

namespace steward {

bool CreateJediConfiguration(AppContext& app, ServerProfile& profile, bool exportOnly, bool useSavedCycle,
                             QString& sessionName)
{
    Q_UNUSED(useSavedCycle);
    bool result = true;
    profile.setFormPointer(pointer::Hourglass);
    try {
        sessionName = sessionName.replace(QLatin1Char(' '), QLatin1Char('_')).toLower();
        SessionValues v;
        v.sessionName = sessionName;
        v.fileName = app.baseFolder() + QLatin1Char('/') + sessionName;
        v.merc = profile.isSet(QStringLiteral("chkQuake3Specific"), 18);
        const QString spin = QStringLiteral("txtServerConfigSpin");
        v.zone = toInt16(leadingNumber(profile.text(spin, 11)));
        v.hunk = toInt16(leadingNumber(profile.text(spin, 5)));
        v.sound = toInt16(leadingNumber(profile.text(spin, 12)));
        v.ip = profile.text(QStringLiteral("txtServerConfig"), 16);
        const QString port = profile.text(QStringLiteral("txtServerConfig"), 12).trimmed();
        v.port = port.isEmpty() ? 28070 : textToInt32(port);
        if (exportOnly)
            showExportedConfiguration(app, profile, v);
        else
            startServerAfterConfiguration(app, profile, v);
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::Code.CreateJediConfiguration(Function)"));
        result = false;
    }
    profile.setFormPointer(pointer::Default);
    return result;
}

} // namespace steward
