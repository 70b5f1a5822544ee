#pragma once
// The system's "open" action on a file, folder, web or mail address, with a box when the
// desktop can't open it: without a desktop opener nothing would show on screen at all.
#include <QString>
#include <QUrl>

namespace steward {

class AppContext;

/// Opens url through the desktop. When the desktop can't open it, a box (exclamation,
/// OK, titled "Arena Steward") names what could not be opened and the desktop opener
/// that is needed; false then. Nothing is opened or shown without an opener service.
bool openOnDesktop(AppContext& app, const QUrl& url);

/// The text of that box for url.
QString openFailedText(const QUrl& url);

} // namespace steward
