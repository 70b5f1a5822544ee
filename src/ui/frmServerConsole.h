#pragma once
// frmServerConsole: the running server's live status and a remote console. It targets
// the address, port and password of the main window's fields, read at each use, and
// binds to the console protocol; it never blocks.
#include "console/CommandHistory.h"
#include "console/ConsoleProtocol.h"

#include <QDateTime>
#include <QWidget>

class QFormLayout;
class QGroupBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QTableWidget;
class QTextEdit;
class QTimer;
class QToolButton;

namespace steward {

class AppContext;
class ConsoleClient;
class ServerProfile;

class frmServerConsole : public QWidget {
    Q_OBJECT
public:
    frmServerConsole(AppContext& app, ServerProfile& profile, QWidget* parent = nullptr);
    ~frmServerConsole() override;

    ConsoleClient& client() const { return *m_client; }
    /// Sends getstatus now.
    void refresh();
    /// Sends a command through the remote console and keeps it in the history.
    void sendCommand(const QString& command);
    /// The text the output pane shows, without its markup.
    QString outputText() const;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// The status side: the server's state and commands, the last answer, the players
    /// and the server's settings.
    QGroupBox* buildStatus();
    QFormLayout* statusForm(QGroupBox* status);
    /// The server's state with its Restart and Stop buttons.
    QHBoxLayout* serverRow(QGroupBox* status);
    /// The remote console side: the output, the command line and the quick commands.
    QGroupBox* buildConsole();
    QHBoxLayout* quickCommands(QGroupBox* console);
    void connectClient();

    QString host() const;
    quint16 port() const;
    QString password() const;
    void showStatus(const ServerStatus& status, int roundTripMs);
    void showNoAnswer();
    /// Greys the values of the last answer and says when it came, or shows them as
    /// current again.
    void showAnswerCurrent(bool current);
    /// Asks in a question box whether to go on; true on Yes.
    bool confirm(const QString& question);
    /// The players line of a question: how many are on the server by the last answer.
    QString playersOnServer() const;
    /// Sends a map command, asking first while players are on the server.
    void sendMapCommand(const QString& question, const QString& command);
    void showUnreadable();
    void showPrint(const QString& text);
    void appendOutput(const QString& html);
    void sendLine();
    void kickSelected();
    void stopTraffic();

    AppContext& m_app;
    ServerProfile& m_profile;
    ConsoleClient* m_client;
    CommandHistory m_history;
    QString m_historyFile;
    QString m_reply; ///< the text of the replies since the last command
    QList<StatusTableRow> m_table;
    QTimer* m_statusTimer;
    QLabel* m_serverState;
    QLabel* m_state;
    QLabel* m_name;
    QLabel* m_map;
    QLabel* m_gameType;
    QLabel* m_players;
    QLabel* m_ping;
    QLabel* m_lastAnswer;
    QDateTime m_lastAnswerAt;
    QString m_hostName; ///< as the last answer gave it, with its colour codes
    int m_playerCount = 0;
    QTableWidget* m_grid;
    QToolButton* m_showCvars;
    QTableWidget* m_cvars;
    QSpinBox* m_interval;
    QLineEdit* m_command;
    QTextEdit* m_output;
};

/// Opens the console window of the main window, or raises the one that is open.
frmServerConsole* showServerConsole(AppContext& app, ServerProfile& profile, QWidget* mainWindow);

} // namespace steward
