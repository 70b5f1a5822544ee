#pragma once
// The events of the main window's controls that the program's routines answer: clicks
// of the command buttons, double clicks and right clicks of the fields. A route table
// maps a control and an event to the routine; the window host owns the table, so that
// the routes outlive a restart and every new main window is served by them.
#include <QHash>
#include <QPoint>
#include <QString>
#include <functional>

namespace steward {

class AppContext;
class frmMain;

enum class UiEventKind {
    Click,       ///< a command button or the link label
    DblClick,    ///< a double click on a field's control
    ContextMenu, ///< a right click on a field's control; globalPos is where
};

struct UiEvent {
    QString control; ///< the control's key, "cmdBOTs(3)", "txtServerINI"
    UiEventKind kind = UiEventKind::Click;
    QPoint globalPos;
};

class UiRoutes {
public:
    using Handler = std::function<void(frmMain& window, const UiEvent& event)>;

    /// Routes an event of a control to a routine; a later route replaces an earlier one.
    void on(const QString& control, UiEventKind kind, Handler handler);
    /// A click route whose routine needs only the window.
    void onClick(const QString& control, std::function<void(frmMain& window)> handler);
    void remove(const QString& control, UiEventKind kind);
    bool has(const QString& control, UiEventKind kind) const;

    /// Runs the routine of the event, if there is one. A run-time error that escapes it is
    /// reported in the information box of an untagged event routine. False when no route
    /// exists.
    bool dispatch(AppContext& app, frmMain& window, const UiEvent& event) const;

private:
    static QString routeKey(const QString& control, UiEventKind kind);
    QHash<QString, Handler> m_routes;
};

} // namespace steward
