#include "support/DesktopOpen.h"

#include "platform/Prompts.h"
#include "platform/System.h"
#include "support/AppContext.h"
#include "support/ProductText.h"

namespace steward {

QString openFailedText(const QUrl& url)
{
    const QString what = url.isLocalFile() ? url.toLocalFile() : url.toDisplayString();
    return QStringLiteral("Could not open ") + what + kTail + kCrLf +
           QStringLiteral("Opening files and addresses needs a desktop opener: install the package xdg-utils "
                          "(the command xdg-open).") +
           kTail;
}

bool openOnDesktop(AppContext& app, const QUrl& url)
{
    if (!app.services.opener)
        return false;
    if (app.services.opener->open(url))
        return true;
    app.prompts().message(openFailedText(url), kProductTitle, Icon::Exclamation);
    return false;
}

} // namespace steward
