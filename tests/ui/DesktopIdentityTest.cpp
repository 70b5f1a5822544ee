// The program's windows carry the icon that is installed into the icon theme, and the
// application names the desktop entry it is started from.
#include "ui/DesktopIdentity.h"

#include <QApplication>
#include <QWidget>
#include <algorithm>
#include <gtest/gtest.h>

using namespace steward;

namespace {

QList<int> widths(const QIcon& icon)
{
    QList<int> result;
    for (const QSize& size : icon.availableSizes())
        result << size.width();
    std::sort(result.begin(), result.end());
    return result;
}

} // namespace

TEST(DesktopIdentity, EveryWindowGetsTheThreeRenderedSizesAndTheAppNamesItsDesktopEntry)
{
    const QIcon oldIcon = QApplication::windowIcon();
    const QString oldName = QApplication::desktopFileName();

    applyDesktopIdentity();
    QWidget window;
    EXPECT_EQ(QApplication::desktopFileName(), QStringLiteral("io.github.arena_steward.ArenaSteward"));
    EXPECT_EQ(desktopId(), QApplication::desktopFileName());
    EXPECT_EQ(widths(QApplication::windowIcon()), (QList<int>{48, 128, 256}));
    EXPECT_EQ(widths(window.windowIcon()), (QList<int>{48, 128, 256}));
    for (int size : {48, 128, 256}) {
        const QPixmap pixmap = window.windowIcon().pixmap(QSize(size, size));
        EXPECT_EQ(pixmap.size(), QSize(size, size)) << size;
        EXPECT_NE(pixmap.toImage().pixelColor(size / 2, size / 2).alpha(), 0) << "the middle is drawn at " << size;
    }

    QApplication::setWindowIcon(oldIcon);
    QApplication::setDesktopFileName(oldName);
}
