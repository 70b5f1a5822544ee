#include "watch/ServerFolder.h"

#include "watch/PrivateFile.h"

namespace steward {

QString ServerFolder::idForSession(const QString& sessionName)
{
    QString id = sessionName.toLower();
    if (id.endsWith(QLatin1String(".cfg")))
        id.chop(4);
    for (QChar& c : id) {
        const bool plain = (c >= QLatin1Char('a') && c <= QLatin1Char('z')) ||
                           (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('-') ||
                           c == QLatin1Char('_') || c == QLatin1Char('.');
        if (!plain)
            c = QLatin1Char('_');
    }
    if (id.isEmpty() || id.startsWith(QLatin1Char('.')))
        id.prepend(QLatin1Char('_'));
    return id;
}

ServerFolder::ServerFolder(const QString& programFolder, const QString& id)
    : m_id(id), m_path(programFolder + QStringLiteral("/servers/") + id)
{
}

bool ServerFolder::make(QString* error) const { return makePrivateFolder(m_path, error); }

QString ServerFolder::crashLog(const QDateTime& when) const
{
    return file(QStringLiteral("crash-%1.log").arg(when.toString(QStringLiteral("yyyyMMdd-HHmmss"))));
}

} // namespace steward
