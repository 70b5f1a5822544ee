#include "commands/CreateJediConfiguration.h"

#include "commands/ServerLaunch.h"
#include "commands/SessionName.h"
#include "commands/BanListCommands.h"
#include "commands/MapCycleCommands.h"
#include "commands/BotConfigWriter.h"
#include "generate/MapCycleWriter.h"
#include "generate/ServerConfigWriter.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/Strings.h"
#include "support/TextFile.h"

namespace steward {

namespace {

const QString kErrorTag = QStringLiteral("::Code.CreateJediConfiguration(Function)");

/// The cycle file that the session executes: the saved one, or the one made from the
/// rotation now. False when the cycle could not be made. Auto cycling needs none.
bool prepareCycle(AppContext& app, ServerProfile& profile, bool useSavedCycle, QString& cycleFile)
{
    if (profile.isSet(F::chkMapAutoCycle))
        return true;
    if (useSavedCycle) {
        cycleFile = GetNamePart(profile.text(F::txtServerINI));
        return true;
    }
    return MakeMapCycle(app, profile, cycleFile, false, useSavedCycle);
}

/// The bot section: false when a password and "Enable BOT" meet; the box is shown and
/// nothing more is written.
bool writeBots(AppContext& app, ServerProfile& profile, LineSink& out)
{
    if (!sessionWantsBots(profile))
        return true;
    if (botsMeetAPassword(profile)) {
        app.prompts().message(botsWithPasswordText(), kProductTitle, Icon::Exclamation);
        return false;
    }
    if (gbln_MakeBOTConfig(app, profile))
        out.line(QStringLiteral("exec \"BOTFile.cfg\""));
    return true;
}

void writeBans(AppContext& app, ServerProfile& profile, LineSink& out)
{
    const int count = profile.field(F::lstBannedIPs).count();
    if (count > 0 && gbln_MakeBANList(app, profile, count))
        out.line(QStringLiteral("exec \"BAN.cfg\""));
}

} // namespace

QString botsWithPasswordText()
{
    return QStringLiteral("Arena Steward does not support adding BOT's to a password enabled server") + kTail + kCrLf +
           QStringLiteral("either uncheck enable BOT's or remove password to continue") + kTail;
}

bool CreateJediConfiguration(AppContext& app, ServerProfile& profile, bool exportOnly, bool useSavedCycle,
                             QString& sessionName)
{
    profile.setFormPointer(pointer::Hourglass);
    bool result = true;
    try {
        sessionName = sessionNameAsWritten(sessionName);
        SessionValues session;
        session.sessionName = sessionName;

        if (!prepareCycle(app, profile, useSavedCycle, session.cycleFile)) {
            profile.setFormPointer(pointer::Default);
            app.prompts().message(QStringLiteral("Unable to create Map cycle") + kTail, kProductTitle,
                                  Icon::Exclamation);
            return false;
        }

        SessionFacts facts;
        facts.clock = &app.clock();
        facts.serverExecutable = app.serverExecutable;
        facts.useSavedCycle = useSavedCycle;
        facts.savedCycleStart = [&app, &profile] {
            return gbln_LoadMapCycle(app, profile, profile.text(F::txtServerINI));
        };

        session.fileName = app.baseFolder() + QLatin1Char('/') + sessionName;
        {
            // The writer closes the file when it goes out of scope, also on the error
            // road, so the lines written before an error stay on disk.
            TextFileWriter out(session.fileName);
            writeSessionOpening(profile, facts, session, out);
            if (!writeBots(app, profile, out))
                return false; // refused: the hourglass stays until the next run
            writeBans(app, profile, out);
            writeSessionClosing(profile, out);
        }

        result = exportOnly ? showExportedConfiguration(app, profile, session)
                            : startServerAfterConfiguration(app, profile, session);
    } catch (const RuntimeError& error) {
        reportTagged(app, error, kErrorTag);
        result = false;
    }
    profile.setFormPointer(pointer::Default);
    return result;
}

} // namespace steward
