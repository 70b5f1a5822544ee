#pragma once
// The map wizard's flow: the main window hides, page 1 picks a map of the rotation,
// page 2 sets its game type and DM flags, page 3 its limits and switches; Next Map goes
// round again, Finish writes the advanced cycle and hands it to the main window as the
// saved cycle, Cancel asks and leaves. The pages are fields here; the windows that show
// them sit behind WizardWindows.
#include "wizard/WizardPageFields.h"
#include "wizard/WizardRecords.h"

#include <QString>
#include <array>
#include <functional>

namespace steward {

class AppContext;
class ServerProfile;

/// What the flow asks of the windows.
class WizardWindows {
public:
    virtual ~WizardWindows() = default;
    virtual void hideMainWindow() = 0;
    virtual void showMainWindow() = 0;
    /// Shows a page (1 to 3), creating its form bound to the fields on first use.
    virtual void showPage(int page) = 0;
    virtual void hidePage(int page) = 0;
    virtual void unloadPage(int page) = 0;
};

class MapWizard {
public:
    MapWizard(AppContext& app, WizardWindows& windows);

    /// "Map Wizard...": with maps in the rotation, prepares a record for each, hides the
    /// main window and shows page 1. WizardStartingMap is kept from an earlier run.
    void ID_MapWizard(ServerProfile& mainProfile);

    // Page 1.
    void grdMapList_Click(int row);
    /// The pop-up ID_Wizard opens on a right click while the grid has rows.
    bool popupOpens() const;
    /// ID_SetStartingMap, ID_SortAscending, ID_SortDescending, ID_Cancel.
    void runPopupTool(const QString& toolId);
    // Page 2.
    void optDefaultGameType_Click(int index);
    // Buttons; page is 1, 2 or 3.
    void cmdNext_Click(int page);
    void cmdBack_Click(int page);
    void cmdNextMap_Click();
    void cmdFinish_Click();
    void cmdCancel_Click();

    /// Unloads every page that is loaded; failures are ignored.
    void UnloadWizards();

    WizardPageFields& fields() { return m_fields; }
    const WizardState& state() const { return m_state; }
    bool pageLoaded(int page) const { return m_loaded.at(page - 1); }

private:
    void show(int page);
    void hide(int page);
    void loadPage1();
    void storePage3();
    Field& grid();
    void guarded(const std::function<void()>& handler);

    AppContext& m_app;
    WizardWindows& m_windows;
    WizardPageFields m_fields;
    WizardState m_state;
    ServerProfile* m_main = nullptr;
    std::array<bool, 3> m_loaded{false, false, false};
};

} // namespace steward
