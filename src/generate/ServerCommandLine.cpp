#include "generate/ServerCommandLine.h"

#include "model/ServerProfile.h"

namespace steward {

namespace {

/// Collects the command line piece by piece: fixed text is split into words at its
/// blanks, a value always becomes exactly one argument. Every fixed piece begins and
/// ends with a blank, so that joining the words by blanks gives the line's text.
class CommandBuilder {
public:
    explicit CommandBuilder(const QString& executable) { m_command.executable = executable; }

    CommandBuilder& fixed(const QString& text)
    {
        for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts))
            m_command.arguments << word;
        return *this;
    }
    CommandBuilder& value(const QString& text)
    {
        m_command.arguments << text;
        return *this;
    }
    CommandBuilder& value(qint64 number) { return value(QString::number(number)); }

    ServerCommand result() const { return m_command; }

private:
    ServerCommand m_command;
};

} // namespace

QString ServerCommand::text() const
{
    QStringList words{executable};
    words += arguments;
    return words.join(QLatin1Char(' '));
}

std::optional<int> selectedServerType(const ServerProfile& profile)
{
    for (int d = 0; d <= 2; ++d)
        if (profile.isSet(F::chkServerType(d)))
            return d;
    return std::nullopt;
}

QString selectedGameType(const ServerProfile& profile)
{
    for (int i = 0; i <= 6; ++i)
        if (profile.isSet(F::optDefaultGameType(i)))
            return profile.tag(F::optDefaultGameType(i));
    return {};
}

ServerCommand buildServerCommand(const ServerCommandValues& v)
{
    // The prefixes: the server type, Merc behind it, then the option whose value follows.
    const QString type = QStringLiteral(" +set dedicated %1").arg(v.serverType) +
                         (v.merc ? QStringLiteral(" +set g_jediVmerc 1") : QString());
    const QString prefixAddress = type + QStringLiteral(" +set net_ip ");
    const QString prefixPort = type + QStringLiteral(" +set net_port ");
    const QString prefixMemory = type + QStringLiteral(" +set com_hunkmegs ");

    const bool internetMerc = v.serverType == 2 && v.merc;
    const bool hasAddress = !v.ip.isEmpty();
    const bool hasPort = v.port > 0;

    CommandBuilder b(v.executable);
    if (hasAddress && hasPort) {
        b.fixed(prefixAddress).value(v.ip).fixed(QStringLiteral(" +set vm_game 0 +set net_port ")).value(v.port);
        b.fixed(QStringLiteral(" +set com_hunkmegs ")).value(v.hunk);
        b.fixed(QStringLiteral(" +set com_zonemegs ")).value(v.zone);
    } else if (hasAddress || (hasPort && internetMerc)) {
        // Internet with Merc has no port form: the address form with the empty address.
        b.fixed(prefixAddress).value(v.ip).fixed(QStringLiteral(" +set vm_game 0 +set com_hunkmegs ")).value(v.hunk);
        b.fixed(QStringLiteral(" +set com_zonemegs ")).value(v.zone);
    } else if (hasPort) {
        b.fixed(prefixPort).value(v.port).fixed(QStringLiteral(" +set vm_game 0 +set com_hunkmegs ")).value(v.hunk);
        b.fixed(QStringLiteral(" +set com_zonemegs ")).value(v.zone);
    } else {
        b.fixed(prefixMemory).value(v.hunk).fixed(QStringLiteral(" +set vm_game 0 +set com_zonemegs ")).value(v.zone);
    }
    if (!v.gameType.isEmpty())
        b.fixed(QStringLiteral(" +set g_gametype ")).value(v.gameType);
    b.fixed(QStringLiteral(" +exec ")).value(v.session);
    return b.result();
}

} // namespace steward
