#include "cli/ServiceUnit.h"

namespace steward {

QString unitWord(const QString& word)
{
    QString escaped;
    bool quote = word.isEmpty();
    for (const QChar c : word) {
        if (c == QLatin1Char('%') || c == QLatin1Char('$')) {
            escaped += c;
            escaped += c;
        } else if (c == QLatin1Char('\\') || c == QLatin1Char('"')) {
            escaped += QLatin1Char('\\');
            escaped += c;
            quote = true;
        } else {
            escaped += c;
            if (c.isSpace() || c == QLatin1Char('\'') || c == QLatin1Char(';'))
                quote = true;
        }
    }
    return quote ? QLatin1Char('"') + escaped + QLatin1Char('"') : escaped;
}

QString serviceUnitText(const ServiceUnitFacts& facts)
{
    QStringList command = {unitWord(facts.program), QStringLiteral("run")};
    // %i is the instance: the profile's name, which holds no character systemd would change.
    if (facts.profileTemplate)
        command << QStringLiteral("--profile") << QStringLiteral("%i");
    if (!facts.config.isEmpty())
        command << QStringLiteral("--config") << unitWord(facts.config);
    return QStringLiteral("[Unit]\n"
                          "Description=Arena Steward: a watched Jedi Outcast dedicated server%2\n"
                          "StartLimitIntervalSec=600\n"
                          "StartLimitBurst=5\n"
                          "\n"
                          "[Service]\n"
                          "Type=exec\n"
                          "ExecStart=%1\n"
                          "Restart=on-failure\n"
                          "RestartSec=5\n"
                          "KillMode=mixed\n"
                          "TimeoutStopSec=20\n"
                          "\n"
                          "[Install]\n"
                          "WantedBy=default.target\n")
        .arg(command.join(QLatin1Char(' ')), facts.profileTemplate ? QStringLiteral(" (profile %i)") : QString());
}

QStringList enableLines(const QString& userName, const QString& profile)
{
    const QString unit =
        profile.isEmpty() ? kServiceUnitName : QStringLiteral("arena-steward@") + profile + QStringLiteral(".service");
    return {QStringLiteral("systemctl --user daemon-reload"), QStringLiteral("systemctl --user enable --now ") + unit,
            QStringLiteral("loginctl enable-linger ") + userName};
}

} // namespace steward
