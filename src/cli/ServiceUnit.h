#pragma once
// The systemd user service that keeps a watched server running and starts it at boot:
// systemd does the starting; the service runs `arena-stewardctl run`.
#include <QString>
#include <QStringList>

namespace steward {

struct ServiceUnitFacts {
    /// arena-stewardctl with its absolute path.
    QString program;
    /// The saved configuration to run, absolute; empty for the window's settings.
    QString config;
    /// A named profile's service is the template unit, run as arena-steward@<profile>.
    bool profileTemplate = false;
};

inline const QString kServiceUnitName = QStringLiteral("arena-steward.service");
inline const QString kProfileUnitName = QStringLiteral("arena-steward@.service");

/// The unit's text.
QString serviceUnitText(const ServiceUnitFacts& facts);

/// One word of an ExecStart line: quoted when it holds blanks, quotes or backslashes;
/// "%" and "$" doubled so that systemd takes them literally.
QString unitWord(const QString& word);

/// The lines that enable the installed unit at boot for the user: the service, or
/// arena-steward@<profile>.service for a named profile.
QStringList enableLines(const QString& userName, const QString& profile = {});

} // namespace steward
