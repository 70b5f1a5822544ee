#pragma once
// The per-map records of the map wizard, one for each row of the rotation.
#include <QList>
#include <QString>

namespace steward {

class AppContext;
class ServerProfile;

struct WizardMapRecord {
    bool Configured = false;
    QString MapName;
    QString GameType;
    QString TimeLimit;
    QString CaptureLimit;
    QString DuelFragLimit;
    QString FragLimit;
    QString FriendlyFire;
    QString Spare;
    QString Warmup;
    QString Gravity;
    QString RunSpeed;
    QString DmFlags;
    QString PrivateDuel;
    QString SaberLock;
    QString FriendlySaber;
    bool DuelNoWeapons = false;
    bool ForceDisabled = false;
};

struct WizardState {
    QList<WizardMapRecord> records;
    int upper = -1;      ///< the row count minus one
    int current = 0;     ///< the row being configured
    QString startingMap; ///< WizardStartingMap: set on page 1, kept from one start to the next
};

/// The start of the map wizard: with an empty rotation the information box "There are
/// no maps in the list, please select at least one map" and false. Otherwise the lists
/// are emptied and sized to the rotation, each record named after column 0 of its row
/// and given the game type that stands selected, pending events run, and true. The
/// starting map stays as it was.
bool prepareMapWizard(AppContext& app, ServerProfile& profile, WizardState& state);

} // namespace steward
