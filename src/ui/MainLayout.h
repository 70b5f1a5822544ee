#pragma once
// The layout of the main window as tables: its pages, the frames on each page, the
// fields and controls in each frame, and the controls that are not fields.
#include <QList>
#include <QString>
#include <QStringList>

namespace steward {

/// A control of the main window that is not a field of the profile.
struct StaticControl {
    enum class Kind { Button, Label, Link };
    QString name; ///< object name, "cmdBOTs(3)"
    Kind kind = Kind::Button;
    QString text;
    QString tooltip;
    bool hidden = false;
    bool wrap = false; ///< a label whose text breaks into lines
};

/// Fields and controls arranged in a grid: item i goes down the first column, then the
/// next. An item with a caption label takes a label cell and a control cell; others
/// take both cells. "a+b+c" puts several controls side by side in one item; an empty
/// key leaves its place empty.
struct Section {
    int columns = 1;
    QStringList keys;
    bool captionsAbove = false; ///< caption labels above their controls, not beside
    int spacing = -1;           ///< space between rows, -1 for the window's usual
};

/// A frame (QGroupBox) or, with an empty name, a plain group, placed in the page's grid.
struct Block {
    QString frame;
    QString caption;
    QList<Section> sections;
    int row = 0;
    int column = 0;
    int rowSpan = 1;
    int columnSpan = 1;
    bool top = false; ///< keeps its own height at the top of its place instead of filling it
};

struct PageLayout {
    QString caption;
    QList<Block> blocks;
    QList<int> columnStretch; ///< stretch factor of each grid column of the page
    int margin = 4;           ///< space around the page's content
};

/// "Server     |Game       |Map        |BOT        |Misc.      |Information"
QString mainTabCaptions();
/// "Game|Weapon Flags|Force Flags|DM Flags|Advanced Saber"
QString gameTabCaptions();

/// The six pages of vsMainTab; the Game page holds vsExtraGameFlags alone.
const QList<PageLayout>& mainPages();
/// The five pages of vsExtraGameFlags.
const QList<PageLayout>& gamePages();
/// Every control of the window that is not a field, the command buttons below the tabs
/// included.
const QList<StaticControl>& staticControls();
/// The command buttons below the tabs, in their order from left to right.
QStringList commandBarButtons();

/// Text fields that hold a short number and get a narrow box.
bool isNarrowTextField(const QString& name);
/// The mask boxes that show the sum of their check boxes; the user doesn't type them.
bool isMaskField(const QString& name);

} // namespace steward
