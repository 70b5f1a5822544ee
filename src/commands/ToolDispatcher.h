#pragma once
// The one door of every menu command: the id of the chosen tool goes in, the routine
// registered for it runs. Ids are compared exactly, in table order; an id that no
// routine is registered for does nothing.
#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>

namespace steward {

class ToolDispatcher {
public:
    ToolDispatcher();

    /// Registers the routine of a tool id of the tables; an id outside the tables is refused.
    bool on(const QString& id, std::function<void()> routine);

    /// Runs the routine of the chosen tool id; false when none ran.
    bool SSActiveToolBars1_ToolClick(const QString& id) const;

private:
    QStringList m_order;
    QHash<QString, std::function<void()>> m_routines;
};

} // namespace steward
