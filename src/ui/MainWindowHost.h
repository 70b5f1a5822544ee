#pragma once
// The windows as start-up sees them: creates, shows and unloads the main window, closes
// every form, and owns the routes of the main window's events, which outlive a restart.
#include "commands/Startup.h"
#include "ui/UiEvents.h"

#include <QObject>
#include <QPointer>
#include <functional>
#include <vector>

namespace steward {

class AppContext;
class QtPrompts;
class frmMain;

class QtWindowHost final : public QObject, public WindowHost {
    Q_OBJECT
public:
    /// prompts, when given, gets the main window as the owner of its boxes.
    QtWindowHost(AppContext& app, QtPrompts* prompts = nullptr, QObject* parent = nullptr);
    ~QtWindowHost() override;

    ServerProfile* loadMainWindow() override;
    void showMainWindow() override;
    void unloadMainWindow() override;
    void closeAllForms() override;
    void unloadScanner() override;
    void minimizeMainWindow() override;

    /// The main window while it is loaded and not on its way out, else null.
    frmMain* mainWindow() const;

    /// The routes of the main window's events; the command wiring fills them.
    UiRoutes& routes() { return m_routes; }
    /// A step that runs on every new main window after it is built and before its load,
    /// such as putting up its menu bar.
    void addWindowSetup(std::function<void(frmMain&)> setup);

    /// Unloads a top-level form by its object name, if one is loaded.
    static void unloadFormNamed(const QString& name);

signals:
    /// The main window object has ended.
    void mainWindowDestroyed();

private:
    AppContext& m_app;
    QtPrompts* m_prompts;
    QPointer<frmMain> m_window;
    UiRoutes m_routes;
    std::vector<std::function<void(frmMain&)>> m_setups;
};

/// Ends the event loop once it is idle with no main window loaded and no other window
/// shown. A restart runs within one event and has its new main window before the loop is
/// idle again, so a restart never ends the program.
void quitWhenMainWindowGone(QtWindowHost& host);

} // namespace steward
