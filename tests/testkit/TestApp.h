#pragma once
// A whole program context for a test: fakes for every seam, a real settings file,
// a program folder and a game folder with a base child ("base" unless the test spells
// it otherwise), all in a temporary folder.
#include "platform/UdpSocket.h"
#include "settings/SettingsStore.h"
#include "support/AppContext.h"
#include "testkit/Fakes.h"

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>

namespace steward::testing {

class TestApp {
public:
    explicit TestApp(const QString& baseName = QStringLiteral("base"));

    QString root() const { return m_dir.path(); }
    QString gameFolder() const { return root() + QStringLiteral("/game/"); }
    QString baseFolder() const { return gameFolder() + m_baseName; }
    QString programFolder() const { return root() + QStringLiteral("/program"); }
    QString storeFile() const { return root() + QStringLiteral("/config/ArenaSteward.conf"); }

    FakePrompts prompts;
    FixedClock clock;
    FakeNames names;
    RecordingOpener opener;
    RecordingLauncher launcher;
    CountingBeeper beeper;
    FakeInstanceGuard instances;
    /// Real UDP sockets: tests receive what is sent on 127.0.0.1.
    QtDatagramSockets sockets;
    RecordingWait blockingWait;
    std::unique_ptr<IniSettingsStore> store;
    std::unique_ptr<AppContext> app;

private:
    QTemporaryDir m_dir;
    QString m_baseName;
};

/// The bytes of a file, or an empty array.
QByteArray fileBytes(const QString& path);
/// Lines joined by CR LF, each line ended by one: what a generated file holds.
QByteArray crlfText(const QStringList& lines);
/// A file's text split at CR LF, for line-by-line comparison.
QStringList crlfLines(const QString& path);
/// Writes a file with these bytes, creating its folder.
void writeFile(const QString& path, const QByteArray& bytes);

} // namespace steward::testing
