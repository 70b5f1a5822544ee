#pragma once
// Stand-ins for the windows that start-up and the main window's load talk to. The
// window host creates a fresh profile for each main window and runs the real load on
// it; both record what was asked of them.
#include "wizard/MapWizard.h"
#include "commands/MainFormLoad.h"
#include "model/ServerProfile.h"
#include "commands/Startup.h"

#include <QHash>
#include <QStringList>
#include <functional>
#include <memory>

namespace steward::testing {

class FakeFormLoadHost : public FormLoadHost {
public:
    void setRotationColumns(const QList<int>& twips) override;
    void setSizeTwips(int height, int width) override;
    void centerForm() override;
    void disableCloseMenu() override;

    /// The calls in order: "columns", "size", "center", "disableClose".
    QStringList calls;
    QList<int> columns;
    int height = 0;
    int width = 0;
    /// A call named here throws a RuntimeError with this number instead of acting.
    QHash<QString, int> failures;
    /// Runs at each call, before it acts.
    std::function<void(const QString& call)> onCall;

private:
    void enter(const QString& call);
};

class FakeWindowHost : public WindowHost {
public:
    explicit FakeWindowHost(AppContext& app) : m_app(app) {}

    ServerProfile* loadMainWindow() override;
    void showMainWindow() override;
    void unloadMainWindow() override;
    void closeAllForms() override;
    void unloadScanner() override;
    void minimizeMainWindow() override;

    /// The calls in order: "load", "show", "unloadMain", "closeAll", "unloadScanner", "minimize".
    QStringList calls;
    /// The main window's profile while a main window is loaded.
    std::unique_ptr<ServerProfile> profile;
    bool shown = false;
    int loads = 0;
    FakeFormLoadHost form;
    /// Runs on the fresh profile after the load, as settings restored by the load would.
    std::function<void(ServerProfile&)> afterLoad;

private:
    AppContext& m_app;
};

/// The wizard's windows, when a test runs its flow without them.
class QuietWizardWindows : public WizardWindows {
public:
    void hideMainWindow() override {}
    void showMainWindow() override {}
    void showPage(int) override {}
    void hidePage(int) override {}
    void unloadPage(int) override {}
};

} // namespace steward::testing
