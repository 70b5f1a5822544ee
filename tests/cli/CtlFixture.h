#pragma once
// The program without a window run in this process, on a test's folders and fakes: a
// real settings file, a game folder with a base folder and an executable, a fixed
// clock and a launcher that records what it would start.
#include "cli/Ctl.h"
#include "cli/CtlSystem.h"
#include "model/ServerProfile.h"
#include "testkit/FakeWindows.h"
#include "testkit/TestApp.h"

#include <QMap>
#include <QTextStream>
#include <functional>
#include <gtest/gtest.h>

namespace steward::testing {

class CtlFixture : public ::testing::Test {
protected:
    CtlFixture();

    /// Runs arena-stewardctl with these arguments; its output lands in out and err.
    int ctl(const QStringList& arguments);
    /// A LAN server on port 28070 with a rotation of two maps, a saved cycle that starts
    /// on the first, a host name and a bot.
    void serverSettings(ServerProfile& profile);
    /// Saves the profile as the window's Defaults do, with the game's folder and executable.
    void saveAsTheWindow(ServerProfile& profile);
    /// serverSettings, changed by more, saved as the window's Defaults.
    void saveSettings(const std::function<void(ServerProfile&)>& more = {});
    /// Every file of the base folder with its bytes.
    QMap<QString, QByteArray> baseFiles() const;
    void clearBase();

public:
    QString savedCycle() const;
    TestApp t;
    QString out;
    QString err;
    CtlSystem system;

private:
    QTextStream m_out{&out};
    QTextStream m_err{&err};
};

} // namespace steward::testing
