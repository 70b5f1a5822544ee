#pragma once
// What the launch tests share: a stub server that records how it was started, a
// launcher that counts starts and hands them to the real one, and a window host that
// records what OK did to the windows.
#include "platform/System.h"
#include "commands/Startup.h"

#include <QString>
#include <QStringList>
#include <optional>

namespace steward::testing {

/// How the stub server was started.
struct StartRecord {
    QString workingFolder; ///< the physical folder it ran in
    QString program;       ///< its $0
    QStringList arguments;
};

/// A small sh script in the game folder that writes its working folder, $0 and every
/// argument, one to a line, into a record file outside the game folder.
class StubServer {
public:
    StubServer(const QString& gameFolder, const QString& name, const QString& recordFile, bool executable = true);
    QString path() const { return m_path; }
    /// The record, once the stub has written it; none after timeoutMs.
    std::optional<StartRecord> waitForRecord(int timeoutMs = 10000) const;

private:
    QString m_path;
    QString m_record;
};

/// Counts the starts and lets the real detached launcher do them.
class CountingLauncher : public ProcessLauncher {
public:
    bool startDetached(const LaunchRequest& request, QString* error, qint64* pid = nullptr) override;
    int starts = 0;
    std::vector<LaunchRequest> requests;

private:
    DetachedProcessLauncher m_real;
};

/// Records what is done to the windows.
class RecordingWindows : public WindowHost {
public:
    ServerProfile* loadMainWindow() override { return nullptr; }
    void showMainWindow() override {}
    void unloadMainWindow() override {}
    void closeAllForms() override { ++closed; }
    void unloadScanner() override {}
    void minimizeMainWindow() override { ++minimized; }
    int closed = 0;
    int minimized = 0;
};

/// The folder's canonical form, for comparison with a recorded physical folder.
QString canonical(const QString& folder);

} // namespace steward::testing
