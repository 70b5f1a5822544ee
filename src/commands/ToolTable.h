#pragma once
// The commands of the main window as data: the menu bar, the two pop-up menus, their
// captions, tool ids and icon keys. The windows build their menus from these tables.
#include <QString>
#include <QStringList>
#include <vector>

namespace steward {

struct Tool {
    QString id;      ///< the tool id; empty for a separator
    QString caption; ///< "&" marks the access key
    QString iconKey; ///< the image-list key of its icon, or empty
    QString tooltip;
    std::vector<Tool> children; ///< a menu or sub-menu when not empty

    bool isSeparator() const { return id.isEmpty() && caption.isEmpty(); }
    bool isMenu() const { return !children.empty(); }
};

/// The menus of the menu bar, in order.
const std::vector<Tool>& menuBarTools();
/// The pop-up of the map tree, "Standards" (ID_mnuStandards).
const Tool& standardsPopup();
/// The pop-up of the rotation, "Advanced" (ID_Advanced).
const Tool& advancedPopup();

/// Every command id in the order of the tables, each once: the order in which the
/// dispatcher compares.
QStringList toolIdsInTableOrder();

} // namespace steward
