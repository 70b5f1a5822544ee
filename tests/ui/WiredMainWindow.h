#pragma once
// The fixture of the window tests that drive the main window with its real command
// wiring: a whole program context, the window host, and a host without a name unless a
// test gives it one.
#include "platform/AddressLookup.h"
#include "testkit/TestApp.h"
#include "ui/CommandWiring.h"
#include "ui/MainWindowHost.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QPushButton>
#include <gtest/gtest.h>

namespace steward::testing {

/// Looks the host up under hostName at these addresses; without a name the lookup fails.
class FixedAddressLookup : public AddressLookup {
public:
    QString name;
    QList<QByteArray> found;
    bool hostName(QString& h, int&) override
    {
        h = name;
        return !name.isEmpty();
    }
    QList<QByteArray> addresses(const QString&) override { return found; }
};

class WiredMainWindow : public ::testing::Test {
protected:
    /// Loads and shows the main window.
    void openMainWindow()
    {
        profile = host.loadMainWindow();
        window = host.mainWindow();
        ASSERT_NE(window, nullptr);
        host.showMainWindow();
    }
    void TearDown() override
    {
        host.closeAllForms();
        QApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void click(const QString& button)
    {
        auto* b = window->findChild<QPushButton*>(button);
        ASSERT_NE(b, nullptr) << button.toStdString();
        b->click();
    }
    /// An entry of the menu bar of the main window that is open, by its name.
    QAction* action(const QString& id) const { return host.mainWindow()->menuBar()->findChild<QAction*>(id); }

    TestApp t;
    QtWindowHost host{*t.app};
    FixedAddressLookup lookup;
    CommandWiring wiring{*t.app, host, lookup};
    ServerProfile* profile = nullptr;
    frmMain* window = nullptr;
};

} // namespace steward::testing
