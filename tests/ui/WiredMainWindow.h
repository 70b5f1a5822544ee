#pragma once
// The fixture of the window tests that drive the main window with its real command
// wiring: a whole program context, the window host, and a host without a name.
#include "testkit/NoAddressLookup.h"
#include "testkit/TestApp.h"
#include "ui/CommandWiring.h"
#include "ui/MainWindowHost.h"
#include "ui/frmMain.h"

#include <QApplication>
#include <gtest/gtest.h>

namespace steward::testing {

class WiredMainWindow : public ::testing::Test {
protected:
    /// Loads and shows the main window.
    void openMainWindow()
    {
        profile = host.loadMainWindow();
        window = host.mainWindow();
        host.showMainWindow();
    }
    void TearDown() override
    {
        host.closeAllForms();
        QApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    TestApp t;
    QtWindowHost host{*t.app};
    NoAddressLookup lookup;
    CommandWiring wiring{*t.app, host, lookup};
    ServerProfile* profile = nullptr;
    frmMain* window = nullptr;
};

} // namespace steward::testing
