#pragma once
// The main window's load: the catalogue into the tree, the store into the profile,
// the bot controls, the config lists, the stock starting maps, size and place.
#include <QList>
#include <QString>
#include <QStringList>

namespace steward {

class AppContext;
class ServerProfile;

/// The window side of the load. The windows implement it; tests fake it.
class FormLoadHost {
public:
    virtual ~FormLoadHost() = default;
    /// Column widths of the rotation grid, in twips (15 twips to a pixel).
    virtual void setRotationColumns(const QList<int>& twips) = 0;
    /// The window's size in twips.
    virtual void setSizeTwips(int height, int width) = 0;
    /// Centres the window on the screen.
    virtual void centerForm() = 0;
    /// Makes the window's own close command do nothing.
    virtual void disableCloseMenu() = 0;
};

/// The user guide that Help > Contents opens, an HTML page in the program's folder.
inline const QString kHelpFileName = QStringLiteral("arena-steward-guide.html");

/// Runs the load of the main window in its fixed order. An index out of range (35600)
/// turns the window to page 2 and the load goes on with the next step; any other error
/// is reported with the load's tag and ends the load. The loading flag is always cleared.
void MainFormLoad(AppContext& app, ServerProfile& profile, FormLoadHost& host);

} // namespace steward
