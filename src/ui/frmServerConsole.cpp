#include "ui/frmServerConsole.h"

#include "commands/ServerControlCommands.h"
#include "console/ColourText.h"
#include "console/ConsoleClient.h"
#include "model/FieldIndexes.h"
#include "support/AppContext.h"
#include "model/ServerProfile.h"
#include "platform/Clock.h"
#include "platform/Prompts.h"
#include "support/ProductText.h"
#include "support/Strings.h"
#include "ui/QtPrompts.h"

#include <QCloseEvent>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QTableWidget>
#include <QTextEdit>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace steward {

namespace {

constexpr auto kConfig = F::txtServerConfig;
constexpr int kDefaultInterval = 5;

QLabel* valueLabel(const char* name, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::RichText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QPushButton* button(const char* name, const QString& caption, QWidget* parent)
{
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(QString::fromLatin1(name));
    b->setAutoDefault(false);
    return b;
}

QTableWidgetItem* cell(const QString& text, bool rich = false)
{
    auto* item = new QTableWidgetItem(rich ? stripColourCodes(text) : text);
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    return item;
}

} // namespace

frmServerConsole::frmServerConsole(AppContext& app, ServerProfile& profile, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_app(app),
      m_profile(profile),
      m_client(new ConsoleClient(this)),
      m_historyFile(CommandHistory::fileIn(app.programFolder)),
      m_statusTimer(new QTimer(this))
{
    setObjectName(QStringLiteral("frmServerConsole"));
    setWindowTitle(QStringLiteral("Server Console"));
    setAttribute(Qt::WA_DeleteOnClose);
    m_history.load(m_historyFile);

    QGroupBox* status = buildStatus();
    QGroupBox* console = buildConsole();
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(status, 2);
    layout->addWidget(console, 3);
    resize(900, 520);
    connectClient();

    m_serverState->setText(serverStateText(m_app, m_profile));
    m_state->setText(QStringLiteral("Asking..."));
    m_statusTimer->setInterval(kDefaultInterval * 1000);
    m_statusTimer->start();
    QTimer::singleShot(0, this, &frmServerConsole::refresh);
}

QGroupBox* frmServerConsole::buildStatus()
{
    auto* status = new QGroupBox(QStringLiteral("Status"), this);
    QFormLayout* form = statusForm(status);

    m_grid = new QTableWidget(0, 3, status);
    m_grid->setObjectName(QStringLiteral("grdPlayers"));
    m_grid->setHorizontalHeaderLabels({QStringLiteral("Name"), QStringLiteral("Score"), QStringLiteral("Ping")});
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->verticalHeader()->hide();
    m_grid->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);

    m_showCvars = new QToolButton(status);
    m_showCvars->setObjectName(QStringLiteral("cmdShowCvars"));
    m_showCvars->setText(QStringLiteral("All server settings"));
    m_showCvars->setCheckable(true);
    m_showCvars->setArrowType(Qt::RightArrow);
    m_showCvars->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_cvars = new QTableWidget(0, 2, status);
    m_cvars->setObjectName(QStringLiteral("grdServerCvars"));
    m_cvars->setHorizontalHeaderLabels({QStringLiteral("Setting"), QStringLiteral("Value")});
    m_cvars->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_cvars->verticalHeader()->hide();
    m_cvars->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    m_cvars->hide();
    connect(m_showCvars, &QToolButton::toggled, this, [this](bool on) {
        m_cvars->setVisible(on);
        m_showCvars->setArrowType(on ? Qt::DownArrow : Qt::RightArrow);
    });

    auto* statusLayout = new QVBoxLayout(status);
    statusLayout->addLayout(form);
    statusLayout->addWidget(m_grid, 1);
    statusLayout->addWidget(m_showCvars);
    statusLayout->addWidget(m_cvars, 1);
    return status;
}

QFormLayout* frmServerConsole::statusForm(QGroupBox* status)
{
    auto* form = new QFormLayout;
    m_serverState = valueLabel("lblServerState", status);
    m_serverState->setTextFormat(Qt::PlainText);
    m_state = valueLabel("lblServerAnswer", status);
    m_name = valueLabel("lblServerName", status);
    m_map = valueLabel("lblServerMap", status);
    m_gameType = valueLabel("lblServerGameType", status);
    m_players = valueLabel("lblServerPlayers", status);
    m_ping = valueLabel("lblServerPing", status);
    QHBoxLayout* process = serverRow(status);
    m_lastAnswer = valueLabel("lblLastAnswer", status);
    m_lastAnswer->setTextFormat(Qt::PlainText);
    form->addRow(QStringLiteral("Server:"), process);
    form->addRow(QStringLiteral("Answer:"), m_state);
    form->addRow(QString(), m_lastAnswer);
    form->addRow(QStringLiteral("Name:"), m_name);
    form->addRow(QStringLiteral("Map:"), m_map);
    form->addRow(QStringLiteral("Game type:"), m_gameType);
    form->addRow(QStringLiteral("Players:"), m_players);
    form->addRow(QStringLiteral("Ping:"), m_ping);

    m_interval = new QSpinBox(status);
    m_interval->setObjectName(QStringLiteral("spnStatusInterval"));
    m_interval->setRange(2, 60);
    m_interval->setValue(kDefaultInterval);
    m_interval->setSuffix(QStringLiteral(" s"));
    auto* refresh = button("cmdRefresh", QStringLiteral("&Refresh"), status);
    auto* every = new QHBoxLayout;
    every->addWidget(new QLabel(QStringLiteral("Every"), status));
    every->addWidget(m_interval);
    every->addWidget(refresh);
    every->addStretch();
    form->addRow(QStringLiteral("Update:"), every);
    connect(refresh, &QPushButton::clicked, this, &frmServerConsole::refresh);
    connect(m_interval, &QSpinBox::valueChanged, this,
            [this](int seconds) { m_statusTimer->setInterval(seconds * 1000); });
    connect(m_statusTimer, &QTimer::timeout, this, &frmServerConsole::refresh);
    return form;
}

QHBoxLayout* frmServerConsole::serverRow(QGroupBox* status)
{
    auto* serverStop = button("cmdServerStop", QStringLiteral("S&top"), status);
    auto* serverRestart = button("cmdServerRestart", QStringLiteral("Res&tart"), status);
    serverStop->setToolTip(QStringLiteral("Stop the server that OK started"));
    serverRestart->setToolTip(QStringLiteral("Stop the server and start it again"));
    auto* process = new QHBoxLayout;
    process->addWidget(m_serverState, 1);
    process->addWidget(serverRestart);
    process->addWidget(serverStop);
    connect(serverStop, &QPushButton::clicked, this, [this] {
        {
            const AskingWindow asking(this);
            cmdServerStop_Click(m_app, m_profile);
        }
        this->refresh();
    });
    connect(serverRestart, &QPushButton::clicked, this, [this] {
        {
            const AskingWindow asking(this);
            cmdServerRestart_Click(m_app, m_profile);
        }
        this->refresh();
    });
    return process;
}

QGroupBox* frmServerConsole::buildConsole()
{
    auto* console = new QGroupBox(QStringLiteral("Remote console"), this);
    m_output = new QTextEdit(console);
    m_output->setObjectName(QStringLiteral("txtConsoleOutput"));
    m_output->setReadOnly(true);
    m_output->setAcceptRichText(true);
    // The server lays out its tables in blanks for a fixed-width console.
    m_output->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_output->setLineWrapMode(QTextEdit::NoWrap);
    m_command = new QLineEdit(console);
    m_command->setObjectName(QStringLiteral("txtConsoleCommand"));
    m_command->setPlaceholderText(QStringLiteral("Command, Return sends; Up and Down browse the history"));
    m_command->installEventFilter(this);
    auto* send = button("cmdConsoleSend", QStringLiteral("&Send"), console);
    auto* line = new QHBoxLayout;
    line->addWidget(m_command, 1);
    line->addWidget(send);
    auto* consoleLayout = new QVBoxLayout(console);
    consoleLayout->addWidget(m_output, 1);
    consoleLayout->addLayout(line);
    consoleLayout->addLayout(quickCommands(console));
    connect(m_command, &QLineEdit::returnPressed, this, &frmServerConsole::sendLine);
    connect(send, &QPushButton::clicked, this, &frmServerConsole::sendLine);
    return console;
}

QHBoxLayout* frmServerConsole::quickCommands(QGroupBox* console)
{
    auto* quick = new QHBoxLayout;
    auto* say = button("cmdServerSay", QStringLiteral("Sa&y"), console);
    auto* kick = button("cmdServerKick", QStringLiteral("&Kick"), console);
    auto* nextMap = button("cmdServerNextMap", QStringLiteral("&Next map"), console);
    auto* restart = button("cmdServerRestartMap", QStringLiteral("Restart &map"), console);
    say->setToolTip(QStringLiteral("Say the command line's text to all players"));
    kick->setToolTip(QStringLiteral("Kick the player selected in the player table"));
    for (QPushButton* b : {say, kick, nextMap, restart})
        quick->addWidget(b);
    quick->addStretch();
    connect(say, &QPushButton::clicked, this, [this] {
        const QString text = m_command->text();
        if (text.trimmed().isEmpty())
            return;
        m_command->clear();
        sendCommand(QStringLiteral("say ") + text);
    });
    connect(kick, &QPushButton::clicked, this, &frmServerConsole::kickSelected);
    connect(nextMap, &QPushButton::clicked, this,
            [this] { sendMapCommand(QStringLiteral("Change to the next map?"), QStringLiteral("vstr nextmap")); });
    connect(restart, &QPushButton::clicked, this,
            [this] { sendMapCommand(QStringLiteral("Restart the map?"), QStringLiteral("map_restart")); });
    return quick;
}

void frmServerConsole::connectClient()
{
    connect(m_client, &ConsoleClient::statusArrived, this, &frmServerConsole::showStatus);
    connect(m_client, &ConsoleClient::statusUnanswered, this, &frmServerConsole::showNoAnswer);
    connect(m_client, &ConsoleClient::unreadableReply, this, &frmServerConsole::showUnreadable);
    connect(m_client, &ConsoleClient::printArrived, this, &frmServerConsole::showPrint);
    connect(m_client, &ConsoleClient::commandUnanswered, this,
            [this] { appendOutput(QStringLiteral("<i>No answer</i>")); });
    connect(m_client, &ConsoleClient::hostNotFound, this, [this](const QString& name) {
        m_state->setText(QStringLiteral("Unknown host ") + name.toHtmlEscaped());
        showAnswerCurrent(false);
    });
}

frmServerConsole::~frmServerConsole() { stopTraffic(); }

QString frmServerConsole::host() const { return trimBlanks(m_profile.text(kConfig(ServerBox::Address))); }

quint16 frmServerConsole::port() const
{
    const double port = leadingNumber(m_profile.text(kConfig(ServerBox::Port)));
    return port >= 1 && port <= 65535 ? static_cast<quint16>(port) : 28070;
}

QString frmServerConsole::password() const { return m_profile.text(kConfig(ServerBox::RemotePassword)); }

void frmServerConsole::refresh()
{
    m_serverState->setText(serverStateText(m_app, m_profile));
    m_client->requestStatus(host(), port());
}

void frmServerConsole::sendCommand(const QString& command)
{
    if (command.trimmed().isEmpty())
        return;
    m_history.add(command, password());
    m_history.save(m_historyFile);
    m_reply.clear();
    appendOutput(QStringLiteral("<b>] ") + command.toHtmlEscaped() + QStringLiteral("</b>"));
    m_client->sendCommand(host(), port(), password(), command);
}

QString frmServerConsole::outputText() const { return m_output->toPlainText(); }

void frmServerConsole::sendLine()
{
    const QString command = m_command->text();
    m_command->clear();
    sendCommand(command);
}

void frmServerConsole::kickSelected()
{
    const int row = m_grid->currentRow();
    if (row < 0 || !m_grid->item(row, 0))
        return;
    // The slot is the one "status" printed for that name when it has been asked; else
    // the row, which is the slot while no lower slot is empty.
    int client = row;
    const QString name = m_grid->item(row, 0)->data(Qt::UserRole).toString();
    for (const StatusTableRow& r : m_table)
        if (stripColourCodes(r.name) == stripColourCodes(name))
            client = r.client;
    if (!confirm(QStringLiteral("Kick %1 off the server?").arg(stripColourCodes(name))))
        return;
    sendCommand(QStringLiteral("clientkick %1").arg(client));
}

bool frmServerConsole::confirm(const QString& question)
{
    const AskingWindow asking(this);
    MessageBoxRequest request;
    request.text = question + kTail;
    request.title = kProductTitle;
    request.icon = Icon::Question;
    request.buttons = Buttons::YesNo;
    request.defaultButton = 1;
    return m_app.prompts().messageBox(request) == Answer::Yes;
}

QString frmServerConsole::playersOnServer() const
{
    return m_playerCount == 1 ? QStringLiteral("1 player is on the server.")
                              : QStringLiteral("%1 players are on the server.").arg(m_playerCount);
}

void frmServerConsole::sendMapCommand(const QString& question, const QString& command)
{
    if (m_playerCount > 0 && !confirm(question + kTail + kCrLf + playersOnServer()))
        return;
    sendCommand(command);
}

void frmServerConsole::showStatus(const ServerStatus& status, int roundTripMs)
{
    m_state->setText(QStringLiteral("Answers"));
    m_ping->setText(QStringLiteral("%1 ms").arg(roundTripMs));
    m_lastAnswerAt = m_app.clock().now();
    m_hostName = status.hostName();
    m_playerCount = static_cast<int>(status.players.size());
    showAnswerCurrent(true);
    m_name->setText(colourCodesToHtml(status.hostName()));
    m_map->setText(status.mapName().toHtmlEscaped());
    m_gameType->setText(gameTypeName(status.gameTypeNumber()).toHtmlEscaped());
    m_players->setText(QStringLiteral("%1 / %2").arg(status.players.size()).arg(status.maxClients().toHtmlEscaped()));

    const int keep = m_grid->currentRow();
    m_grid->setRowCount(static_cast<int>(status.players.size()));
    for (int i = 0; i < status.players.size(); ++i) {
        const PlayerStatus& p = status.players[i];
        QTableWidgetItem* name = cell(p.name, true);
        name->setData(Qt::UserRole, p.name);
        name->setToolTip(stripColourCodes(p.name));
        if (const int first = static_cast<int>(p.name.indexOf(QLatin1Char('^'))); first == 0 && p.name.size() > 1) {
            const QString colour = colourOfCode(p.name[1]);
            if (!colour.isEmpty())
                name->setForeground(QColor(colour));
        }
        m_grid->setItem(i, 0, name);
        m_grid->setItem(i, 1, cell(QString::number(p.score)));
        m_grid->setItem(i, 2, cell(QString::number(p.ping)));
    }
    if (keep >= 0 && keep < m_grid->rowCount())
        m_grid->selectRow(keep);

    m_cvars->setRowCount(static_cast<int>(status.cvars.size()));
    for (int i = 0; i < status.cvars.size(); ++i) {
        m_cvars->setItem(i, 0, cell(status.cvars[i].first));
        m_cvars->setItem(i, 1, cell(status.cvars[i].second));
    }
}

void frmServerConsole::showNoAnswer()
{
    m_state->setText(QStringLiteral("No answer"));
    m_ping->clear();
    showAnswerCurrent(false);
}

void frmServerConsole::showAnswerCurrent(bool current)
{
    for (QWidget* value : std::initializer_list<QWidget*>{m_name, m_map, m_players, m_grid})
        value->setEnabled(current);
    if (current || !m_lastAnswerAt.isValid()) {
        m_lastAnswer->clear();
        return;
    }
    m_lastAnswer->setText(QStringLiteral("Last answer at ") +
                          m_lastAnswerAt.time().toString(QStringLiteral("HH:mm:ss")));
    // The name's colours would stay bright on a greyed label.
    m_name->setText(stripColourCodes(m_hostName).toHtmlEscaped());
}

void frmServerConsole::showUnreadable() { appendOutput(QStringLiteral("<i>unreadable reply</i>")); }

void frmServerConsole::showPrint(const QString& text)
{
    if (const RconNote note = rconNote(text); note != RconNote::None) {
        appendOutput(QStringLiteral("<i>") + rconNoteText(note).toHtmlEscaped() + QStringLiteral("</i>"));
        return;
    }
    m_reply += text;
    const QList<StatusTableRow> table = parseStatusTable(m_reply);
    if (!table.isEmpty())
        m_table = table;
    QString body = text;
    if (body.endsWith(QLatin1Char('\n')))
        body.chop(1);
    appendOutput(QStringLiteral("<span style=\"white-space:pre\">") + colourCodesToHtml(body) +
                 QStringLiteral("</span>"));
}

void frmServerConsole::appendOutput(const QString& html)
{
    m_output->append(html);
    m_output->verticalScrollBar()->setValue(m_output->verticalScrollBar()->maximum());
}

bool frmServerConsole::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_command && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up) {
            m_command->setText(m_history.older());
            return true;
        }
        if (key == Qt::Key_Down) {
            m_command->setText(m_history.newer());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmServerConsole::stopTraffic()
{
    m_statusTimer->stop();
    m_client->stop();
}

void frmServerConsole::closeEvent(QCloseEvent* event)
{
    stopTraffic();
    QWidget::closeEvent(event);
}

frmServerConsole* showServerConsole(AppContext& app, ServerProfile& profile, QWidget* mainWindow)
{
    frmServerConsole* window = mainWindow ? mainWindow->findChild<frmServerConsole*>(QStringLiteral("frmServerConsole"),
                                                                                     Qt::FindDirectChildrenOnly)
                                          : nullptr;
    if (!window)
        window = new frmServerConsole(app, profile, mainWindow);
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

} // namespace steward
