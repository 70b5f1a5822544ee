#include "commands/ExportServer.h"

#include "commands/CreateJediConfiguration.h"
#include "generate/ServerConfigWriter.h"
#include "commands/SessionName.h"
#include "model/FieldIndexes.h"
#include "model/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/Strings.h"

namespace steward {

namespace {

void showPage(ServerProfile& profile, int page)
{
    if (profile.value(F::vsMainTab) != page)
        profile.setValue(F::vsMainTab, page);
}

/// The map checks of the export, worded in their own way; false after a refusal.
bool mapsReady(AppContext& app, ServerProfile& profile, bool& useSavedCycle)
{
    useSavedCycle = false;
    if (profile.isSet(F::chkMapAutoCycle))
        return true;
    useSavedCycle = profile.isSet(F::chkUseINI);
    QString refusal;
    if (useSavedCycle) {
        const QString cycle = profile.text(F::txtServerINI);
        if (firstMatchingFile(cycle).isEmpty())
            refusal = QStringLiteral("Selected Map List ") + cycle +
                      QStringLiteral(" is missing, please define a new map list");
    } else if (profile.field(F::lsvMapRotation).count() == 0) {
        refusal = QStringLiteral("No Maps have been selected");
    } else if (profile.startingMap().isEmpty()) {
        refusal = QStringLiteral("No Starting Map has been selected");
    }
    if (refusal.isEmpty())
        return true;
    warn(app, refusal);
    showPage(profile, 2);
    return false;
}

} // namespace

void mnuExportServer_Click(AppContext& app, ServerProfile& profile)
{
    try {
        QString name = profile.text(F::txtServerConfig(ServerBox::Session));
        if (name.isEmpty()) {
            warn(app, QStringLiteral("A Session name is required"));
            showPage(profile, 0);
            return;
        }
        if (!ValidSessionName(app, name))
            return;
        name = completeSessionName(name);

        bool useSavedCycle = false;
        if (!mapsReady(app, profile, useSavedCycle))
            return;

        CreateJediConfiguration(app, profile, true, useSavedCycle, name);
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::frmMain.mnuExportServer_Click(Function)"));
    }
}

} // namespace steward
