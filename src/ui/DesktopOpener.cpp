#include "ui/DesktopOpener.h"

#include <QDesktopServices>

namespace steward {

bool DesktopOpener::open(const QUrl& url) { return QDesktopServices::openUrl(url); }

} // namespace steward
