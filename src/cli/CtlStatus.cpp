// status and stop: the server that the program started, found through its state file.
#include "cli/CtlStatus.h"

#include "cli/CtlSession.h"
#include "cli/CtlSystem.h"
#include "console/ConsoleClient.h"
#include "model/FieldIndexes.h"
#include "platform/ProcessIdentity.h"
#include "settings/Profiles.h"
#include "watch/ServerControl.h"
#include "watch/WatchState.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <QTimer>

#include <optional>

namespace steward {

namespace {

constexpr int kStopWaitMs = 5000;

/// The server's answer to getstatus, or none within the time.
std::optional<ServerStatus> askStatus(const QString& host, int port, int timeoutMs)
{
    if (port <= 0 || port > 65535)
        return std::nullopt;
    ConsoleClient client;
    client.setTimeout(timeoutMs);
    std::optional<ServerStatus> answer;
    QEventLoop loop;
    QObject::connect(&client, &ConsoleClient::statusArrived, &loop, [&](const ServerStatus& status, int) {
        answer = status;
        loop.quit();
    });
    QObject::connect(&client, &ConsoleClient::hostNotFound, &loop, &QEventLoop::quit);
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    // An empty address means every interface, this computer's included. A datagram may
    // be lost, and a server drops requests that come too often: the request goes again
    // every 200 ms until an answer comes.
    const QString target = host.isEmpty() ? QStringLiteral("127.0.0.1") : host;
    client.requestStatus(target, static_cast<quint16>(port));
    QTimer again;
    again.setInterval(200);
    QObject::connect(&again, &QTimer::timeout, &loop,
                     [&] { client.requestStatus(target, static_cast<quint16>(port)); });
    again.start();
    loop.exec();
    return answer;
}

QJsonObject stateJson(const QString& session, const std::optional<WatchState>& state, ServerCondition condition)
{
    QJsonObject o;
    o[QStringLiteral("session")] = session;
    o[QStringLiteral("running")] = condition == ServerCondition::Running;
    o[QStringLiteral("restarting")] = condition == ServerCondition::Restarting;
    o[QStringLiteral("summary")] = watchSummary(state);
    if (!state)
        return o;
    o[QStringLiteral("port")] = state->port;
    o[QStringLiteral("watched")] = state->watched;
    if (condition != ServerCondition::NotRunning) {
        o[QStringLiteral("pid")] = state->server.pid;
        if (state->watched)
            o[QStringLiteral("watcherPid")] = state->watcher.pid;
        o[QStringLiteral("since")] = state->since.toString(Qt::ISODate);
    }
    o[QStringLiteral("restarts")] = state->restarts;
    if (state->lastCrash.isValid())
        o[QStringLiteral("lastCrash")] = QJsonObject{{QStringLiteral("time"), state->lastCrash.toString(Qt::ISODate)},
                                                     {QStringLiteral("cause"), state->lastCrashCause}};
    if (condition == ServerCondition::NotRunning && !state->stoppedReason.isEmpty())
        o[QStringLiteral("stoppedReason")] = state->stoppedReason;
    return o;
}

QJsonObject answerJson(const ServerStatus& status)
{
    QJsonArray players;
    for (const PlayerStatus& p : status.players)
        players.append(QJsonObject{
            {QStringLiteral("name"), p.name}, {QStringLiteral("score"), p.score}, {QStringLiteral("ping"), p.ping}});
    return {{QStringLiteral("hostName"), status.hostName()},
            {QStringLiteral("map"), status.mapName()},
            {QStringLiteral("players"), players}};
}

} // namespace

/// One line for each profile, the default first: its name, its port and its state.
int listProfiles(CtlSystem& system, const CtlOptions& options, const QStringList& named)
{
    QJsonArray all;
    QTextStream& out = *system.out;
    for (const QString& name : QStringList{QString()} + named) {
        CtlSession session(system, name, {});
        if (!session.load())
            continue;
        const QString portText = session.profile().text(F::txtServerConfig(ServerBox::Port)).trimmed();
        const int port = portText.isEmpty() ? 28070 : portText.toInt();
        const std::optional<WatchState> state = readWatchState(session.folder().stateFile());
        const ServerCondition condition = state ? serverCondition(*state) : ServerCondition::NotRunning;
        if (options.json) {
            QJsonObject o = stateJson(session.sessionName(), state, condition);
            o[QStringLiteral("profile")] = session.profileName();
            o[QStringLiteral("port")] = port;
            all.append(o);
        } else {
            out << session.profileName().leftJustified(20) << ' ' << QString::number(port).leftJustified(6) << ' '
                << watchSummary(state) << Qt::endl;
        }
    }
    if (options.json)
        out << QJsonDocument(all).toJson(QJsonDocument::Indented);
    out.flush();
    return ctl_exit::Ok;
}

int ctlStatus(CtlSystem& system, const CtlOptions& options)
{
    if (options.profile.isEmpty() && options.config.isEmpty()) {
        const QStringList named = namedProfiles(QFileInfo(system.settingsFile).absolutePath());
        if (!named.isEmpty())
            return listProfiles(system, options, named);
    }
    CtlSession session(system, options.profile, options.config);
    if (!session.load())
        return ctl_exit::Refused;
    const std::optional<WatchState> state = readWatchState(session.folder().stateFile());
    const ServerCondition condition = state ? serverCondition(*state) : ServerCondition::NotRunning;

    std::optional<ServerStatus> answer;
    if (condition == ServerCondition::Running)
        answer = askStatus(state->host, state->port, options.timeoutMs);

    QTextStream& out = *system.out;
    if (options.json) {
        QJsonObject o = stateJson(session.sessionName(), state, condition);
        if (condition == ServerCondition::Running)
            o[QStringLiteral("answer")] = answer ? QJsonValue(answerJson(*answer)) : QJsonValue();
        out << QJsonDocument(o).toJson(QJsonDocument::Indented);
    } else {
        out << session.sessionName() << ": " << watchSummary(state) << Qt::endl;
        if (condition != ServerCondition::NotRunning) {
            out << "Process: " << state->server.pid;
            if (state->watched)
                out << ", watched by " << state->watcher.pid;
            out << Qt::endl;
        }
        if (condition == ServerCondition::Running) {
            if (answer)
                out << "Answer: " << answer->hostName() << " · " << answer->mapName() << " · " << answer->players.size()
                    << (answer->players.size() == 1 ? " player" : " players") << Qt::endl;
            else
                out << "Answer: none on port " << state->port << Qt::endl;
        }
        out.flush();
    }
    if (condition == ServerCondition::NotRunning)
        return ctl_exit::NotRunning;
    return answer ? ctl_exit::Ok : ctl_exit::Silent;
}

int ctlStop(CtlSystem& system, const CtlOptions& options)
{
    CtlSession session(system, options.profile, options.config);
    if (!session.load())
        return ctl_exit::Refused;
    const QString stateFile = session.folder().stateFile();
    switch (stopRecordedServer(stateFile, kStopWaitMs)) {
    case ControlOutcome::Done:
        *system.out << session.sessionName() << ": stopped" << Qt::endl;
        return ctl_exit::Ok;
    case ControlOutcome::NoEnd:
        session.fail(QStringLiteral("The server of %1 did not end").arg(session.sessionName()));
        return ctl_exit::Failed;
    case ControlOutcome::NotRunning:
        break;
    }
    *system.out << session.sessionName() << ": " << watchSummary(readWatchState(stateFile)) << Qt::endl;
    return ctl_exit::NotRunning;
}

} // namespace steward
