#pragma once
// The commands that live in the dispatcher itself: the web links, the mail to the
// author, the help contents and the text of the About window.
#include <QString>
#include <QStringList>
#include <QUrl>

namespace steward {

class AppContext;

/// The places the window's links open.
enum class Link {
    OfficialSite,   ///< Picture1, id_HelpOfficialSite
    ProductSite,    ///< Picture3
    ProductForum,   ///< lblLink "Arena Steward Forums"
    ModCentral,     ///< id_HelpModCentral
    ForumPlanet,    ///< id_HelpForumsForumPlanet
    ModCentralForum ///< id_HelpForumsModCentral
};

QUrl linkAddress(Link link);
/// Opens a link through the system's "open" action; the result is not looked at.
void openLink(AppContext& app, Link link);

/// The mail address form of the contact address with the subject "Arena Steward " and
/// the version text.
QUrl mailAuthorAddress();
/// Opens a mail message to the author; errors are ignored.
void mailAuthor(AppContext& app);

/// Writes the user guide that ships with the program to guideFile (its pictures beside it).
bool installUserGuide(const QString& guideFile);
/// Opens the user guide that start-up named.
void openHelpContents(AppContext& app);

/// The title of the About window.
QString aboutTitle();
/// The lines of the About window's marquee.
QStringList aboutLines();

} // namespace steward
