#include "ui/UiEvents.h"

#include "support/ErrorReporter.h"
#include "support/Errors.h"

namespace steward {

QString UiRoutes::routeKey(const QString& control, UiEventKind kind)
{
    return control + QLatin1Char('_') + QString::number(static_cast<int>(kind));
}

void UiRoutes::on(const QString& control, UiEventKind kind, Handler handler)
{
    m_routes.insert(routeKey(control, kind), std::move(handler));
}

void UiRoutes::onClick(const QString& control, std::function<void(frmMain& window)> handler)
{
    on(control, UiEventKind::Click,
       [handler = std::move(handler)](frmMain& window, const UiEvent&) { handler(window); });
}

void UiRoutes::remove(const QString& control, UiEventKind kind) { m_routes.remove(routeKey(control, kind)); }

bool UiRoutes::has(const QString& control, UiEventKind kind) const
{
    return m_routes.contains(routeKey(control, kind));
}

bool UiRoutes::dispatch(AppContext& app, frmMain& window, const UiEvent& event) const
{
    const auto it = m_routes.constFind(routeKey(event.control, event.kind));
    if (it == m_routes.constEnd())
        return false;
    // A copy: the routine may replace its own route while it runs.
    const Handler handler = it.value();
    try {
        handler(window, event);
    } catch (const RuntimeError& e) {
        reportInformation(app, e);
    }
    return true;
}

} // namespace steward
