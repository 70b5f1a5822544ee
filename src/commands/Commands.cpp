#include "commands/Commands.h"

#include "platform/System.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/DesktopOpen.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QUrlQuery>

// The guide is a resource of a static library: it is registered by hand.
static void initGuideResource() { Q_INIT_RESOURCE(guide); }

namespace steward {

QUrl linkAddress(Link link)
{
    switch (link) {
    case Link::OfficialSite:
        return QUrl(kOfficialGameSite);
    case Link::ProductSite:
        return QUrl(kProductSite);
    case Link::ProductForum:
        return QUrl(kProductForum);
    case Link::ModCentral:
        return QUrl(kModSite);
    case Link::ForumPlanet:
        return QUrl(kCommunityForum);
    case Link::ModCentralForum:
        return QUrl(kModForum);
    }
    return {};
}

void openLink(AppContext& app, Link link) { openOnDesktop(app, linkAddress(link)); }

QUrl mailAuthorAddress()
{
    QUrl url(QStringLiteral("mailto:") + kContactAddress);
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("subject"), QStringLiteral("Arena Steward ") + kVersionText);
    url.setQuery(query);
    return url;
}

void mailAuthor(AppContext& app) { openOnDesktop(app, mailAuthorAddress()); }

bool installUserGuide(const QString& guideFile)
{
    // The guide ships inside the program; it is written out so that the browser can open it.
    initGuideResource();
    const QDir source(QStringLiteral(":/guide"));
    if (!source.exists() || guideFile.isEmpty())
        return false;
    const QFileInfo target(guideFile);
    if (!QDir().mkpath(target.absolutePath()))
        return false;
    bool ok = true;
    QDirIterator it(source.path(), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString from = it.next();
        QString relative = from.mid(source.path().size() + 1);
        if (relative == QLatin1String("arena-steward-guide.html"))
            relative = target.fileName();
        const QString to = target.absoluteDir().filePath(relative);
        QDir().mkpath(QFileInfo(to).absolutePath());
        QFile::remove(to);
        ok = QFile::copy(from, to) && ok;
        QFile::setPermissions(to, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup |
                                      QFileDevice::ReadOther);
    }
    return ok;
}

void openHelpContents(AppContext& app)
{
    try {
        installUserGuide(app.helpFile);
        if (!QFileInfo::exists(app.helpFile))
            raiseError(err::FileNotFound, {}, app.programName + QStringLiteral("::frmMain.HelpContents"));
        openOnDesktop(app, QUrl::fromLocalFile(app.helpFile));
    } catch (const RuntimeError& e) {
        RaiseError(app, {}, {}, 0, true, false, true, &e);
    }
}

QString aboutTitle() { return QStringLiteral("About ") + kProductTitle; }

QStringList aboutLines()
{
    return {
        QStringLiteral("Arena Steward, a server tool for Jedi Knight II administrators"),
        QStringLiteral("You are using version ") + kVersionText,
        QString(),
        QStringLiteral("Please submit all requests, bugs etc., to me "),
        QStringLiteral("at ") + kContactAddress,
        QString(),
        QStringLiteral("Thanks and Enjoy!"),
    };
}

} // namespace steward
