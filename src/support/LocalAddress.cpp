#include "support/LocalAddress.h"

#include "platform/Prompts.h"
#include "shell/AppContext.h"
#include "shell/Constants.h"
#include "shell/ServerProfile.h"
#include "support/FileDialog.h"

#include <QStringList>
#include <exception>

namespace steward {

namespace {
void plainBox(AppContext& app, const QString& text)
{
    app.prompts().message(text + kTail, app.programName, Icon::None);
}

/// A number with its sign place: a blank ahead of a number that isn't negative.
QString withSignPlace(int number)
{
    return number < 0 ? QString::number(number) : QLatin1Char(' ') + QString::number(number);
}
} // namespace

QString GetIPAddress(AppContext& app, AddressLookup& lookup)
{
    QString name;
    int error = 0;
    if (!lookup.hostName(name, error)) {
        plainBox(app, QStringLiteral("Windows Sockets error ") + withSignPlace(error) +
                          QStringLiteral(" has occurred. Unable to successfully get Host Name."));
        return {};
    }
    const QList<QByteArray> found = lookup.addresses(name.trimmed());
    if (found.isEmpty()) {
        plainBox(app, QStringLiteral("Windows Sockets are not responding. ") +
                          QStringLiteral("Unable to successfully get Host Name."));
        return {};
    }
    QStringList parts;
    for (const char byte : found.first())
        parts << QString::number(static_cast<unsigned char>(byte));
    return parts.join(QLatin1Char('.'));
}

Field& cmdIP_Click(AppContext& app, ServerProfile& profile, AddressLookup& lookup)
{
    Field& address = profile.field(QStringLiteral("txtServerConfig"), 16);
    try {
        CCursor cursor(app.prompts());
        cursor.SetCursor(pointer::Hourglass);
        address.setText(GetIPAddress(app, lookup));
        cursor.RestoreCursor();
    } catch (const std::exception&) {
        // Errors are ignored here.
    }
    return address;
}

} // namespace steward
