#include "commands/ToolDispatcher.h"

#include "commands/ToolTable.h"

namespace steward {

ToolDispatcher::ToolDispatcher() : m_order(toolIdsInTableOrder())
{
    // Cancel in either pop-up closes the menu and changes nothing.
    m_routines.insert(QStringLiteral("ID_Cancel"), [] {});
}

bool ToolDispatcher::on(const QString& id, std::function<void()> routine)
{
    if (!m_order.contains(id))
        return false;
    m_routines.insert(id, std::move(routine));
    return true;
}

bool ToolDispatcher::SSActiveToolBars1_ToolClick(const QString& id) const
{
    for (const QString& known : m_order) {
        if (known != id)
            continue;
        const auto it = m_routines.constFind(known);
        if (it == m_routines.constEnd() || !*it)
            return false;
        (*it)();
        return true;
    }
    return false;
}

} // namespace steward
