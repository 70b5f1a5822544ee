#pragma once
// Ties the main window's buttons, links, menus and keyboard to the program's routines.
// The routines live in the core; this file only says which event runs which routine.
#include "commands/ToolDispatcher.h"

#include <QPoint>
#include <functional>
#include <memory>

namespace steward {

class AppContext;
class AddressLookup;
class QtWindowHost;
class frmMain;
class MapWizardWindows;

class ProfileSet;

class CommandWiring {
public:
    CommandWiring(AppContext& app, QtWindowHost& host, AddressLookup& addresses);
    ~CommandWiring();
    CommandWiring(const CommandWiring&) = delete;
    CommandWiring& operator=(const CommandWiring&) = delete;

    /// The menus' door to the routines.
    ToolDispatcher& dispatcher() { return m_dispatcher; }
    /// The map wizard and its pages.
    MapWizardWindows& mapWizard() { return *m_wizard; }
    /// The profiles that the Profile menu offers; without them the window has no such menu.
    void setProfiles(ProfileSet* profiles) { m_profiles = profiles; }

private:
    void setUpWindow(frmMain& window);
    void routeButtons();
    void registerTools();
    /// Runs a routine on the live main window, if there is one.
    void withWindow(const std::function<void(frmMain&)>& routine) const;
    void showPopup(const QString& popupId, frmMain& window, const QPoint& where);
    void profileChosen(const QString& choice);

    AppContext& m_app;
    QtWindowHost& m_host;
    AddressLookup& m_addresses;
    ToolDispatcher m_dispatcher;
    std::unique_ptr<MapWizardWindows> m_wizard;
    ProfileSet* m_profiles = nullptr;
};

} // namespace steward
