#include "support/LocalAddress.h"

#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "support/ProductText.h"

#include <QStringList>
#include <algorithm>

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
    QByteArray chosen = found.first();
    const auto isLoopback = [](const QByteArray& bytes) {
        return !bytes.isEmpty() && static_cast<unsigned char>(bytes.at(0)) == 127;
    };
    if (std::all_of(found.begin(), found.end(), isLoopback)) {
        const QList<QByteArray> cards = lookup.interfaceAddresses();
        if (!cards.isEmpty())
            chosen = cards.first();
    }
    QStringList parts;
    for (const char byte : chosen)
        parts << QString::number(static_cast<unsigned char>(byte));
    return parts.join(QLatin1Char('.'));
}

} // namespace steward
