#pragma once
// The map wizard's three pages, frmWizard_1 to frmWizard_3: windows bound to the flow's
// fields, their buttons and clicks passed to the flow.
#include "wizard/MapWizard.h"

#include <QDialog>
#include <QPointer>
#include <array>
#include <functional>
#include <memory>

class QPushButton;
class QVBoxLayout;

namespace steward {

class AppContext;
class Beeper;
class QtWindowHost;

/// One page of the wizard. Its close button does nothing: the page's buttons are the
/// only ways out.
class WizardPage : public QDialog {
    Q_OBJECT
public:
    WizardPage(AppContext& app, MapWizard& wizard, int number, QWidget* parent = nullptr);

    int number() const { return m_number; }

private:
    void buildPage1(QVBoxLayout* layout);
    void buildPage2(QVBoxLayout* layout);
    void buildPage3(QVBoxLayout* layout);
    QPushButton* button(FieldId name, const QString& caption, const std::function<void()>& click);
    QWidget* fieldWidget(FieldId id);
    /// Runs work of the flow with this page as the window that asks.
    void asking(const std::function<void()>& work);
    void showWizardPopup(const QPoint& where);

    AppContext& m_app;
    MapWizard& m_wizard;
    int m_number;
};

/// The windows of the wizard on the screen: the main window of the host and the pages.
class QtWizardWindows : public WizardWindows {
public:
    QtWizardWindows(AppContext& app, QtWindowHost& host);
    void setWizard(MapWizard* wizard) { m_wizard = wizard; }

    void hideMainWindow() override;
    void showMainWindow() override;
    void showPage(int page) override;
    void hidePage(int page) override;
    void unloadPage(int page) override;

    /// The page's window while it is loaded, else null.
    WizardPage* page(int number) const { return m_pages.at(number - 1).data(); }

private:
    AppContext& m_app;
    QtWindowHost& m_host;
    MapWizard* m_wizard = nullptr;
    std::array<QPointer<WizardPage>, 3> m_pages;
};

/// The wizard as the program runs it: the flow and its windows together.
class MapWizardWindows {
public:
    MapWizardWindows(AppContext& app, QtWindowHost& host);
    MapWizard& wizard() { return m_wizard; }
    QtWizardWindows& windows() { return m_windows; }

private:
    QtWizardWindows m_windows;
    MapWizard m_wizard;
};

} // namespace steward
