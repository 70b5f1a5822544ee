#pragma once
// What the window tests share: the widgets, the events they send, and the fixture that
// drives the main window with its real command wiring (a whole program context, the
// window host, and a host without a name unless a test gives it one).
#include "../console/FakeServer.h"
#include "model/ServerProfile.h"
#include "platform/AddressLookup.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"
#include "ui/CommandWiring.h"
#include "ui/FormServices.h"
#include "ui/MainWindowHost.h"
#include "ui/frmMain.h"

#include <QtWidgets>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace steward::testing {

/// Runs the events and the deletions that closing left for the event loop.
inline void settle()
{
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
}

/// A key pressed and released on a widget.
inline void sendKey(QWidget* w, int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent e(type, key, modifiers, text);
        QCoreApplication::sendEvent(w, &e);
    }
}

/// A mouse event of one button at a point of a widget.
inline void sendMouse(QWidget* w, QEvent::Type type, QPointF at, Qt::MouseButton button = Qt::LeftButton)
{
    QMouseEvent e(type, at, w->mapToGlobal(at), button,
                  type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button), Qt::NoModifier);
    QApplication::sendEvent(w, &e);
}

/// A top-level window by its name that is loaded and not on its way out, or null.
inline QWidget* form(const QString& name)
{
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == name && !isUnloading(w))
            return w;
    return nullptr;
}

/// A named child of a window; a missing one fails the test that asks.
template <typename T = QPushButton>
T* child(const QObject* parent, const QString& name)
{
    T* w = parent ? parent->findChild<T*>(name) : nullptr;
    EXPECT_NE(w, nullptr) << name.toStdString();
    return w;
}

inline QByteArray oob(const QByteArray& rest) { return QByteArray(4, '\xff') + rest; }

/// Looks the host up under hostName at these addresses; without a name the lookup fails.
class FixedAddressLookup : public AddressLookup {
public:
    QString name;
    QList<QByteArray> found;
    bool hostName(QString& h, int&) override { return !(h = name).isEmpty(); }
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
        settle();
    }
    void click(const QString& button)
    {
        if (auto* b = child(window, button))
            b->click();
    }
    /// An entry of the menu bar of the main window that is open, by its name.
    QAction* action(const QString& id) const { return host.mainWindow()->menuBar()->findChild<QAction*>(id); }
    void tool(const QString& id) { wiring.dispatcher().SSActiveToolBars1_ToolClick(id); }
    TestApp t;
    QtWindowHost host{*t.app};
    FixedAddressLookup lookup;
    CommandWiring wiring{*t.app, host, lookup};
    ServerProfile* profile = nullptr;
    frmMain* window = nullptr;
};

} // namespace steward::testing
