#pragma once
// Builds the menu bar and the two pop-up menus from the tool table. Each action carries
// its tool id as objectName and hands that id to the dispatcher when triggered.
#include "commands/ToolTable.h"

#include <QIcon>
#include <functional>

class QMenu;
class QMenuBar;
class QWidget;

namespace steward {

using ToolClick = std::function<void(const QString& id)>;

/// The icon of an image-list key, from the desktop's icon theme or the style.
QIcon toolIcon(const QString& key);

/// Fills a menu bar with the menus of the tool table.
void buildMenuBar(QMenuBar* bar, const ToolClick& click);
/// A pop-up menu (objectName = its tool id) from a pop-up tool.
QMenu* buildPopup(const Tool& popup, QWidget* parent, const ToolClick& click);

} // namespace steward
