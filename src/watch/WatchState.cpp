#include "watch/WatchState.h"

#include "watch/PrivateFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <csignal>
#include <cstring>

namespace steward {

namespace {

const char* phaseName(WatchState::Phase phase)
{
    switch (phase) {
    case WatchState::Phase::Running:
        return "running";
    case WatchState::Phase::Restarting:
        return "restarting";
    case WatchState::Phase::Stopped:
        break;
    }
    return "stopped";
}

WatchState::Phase phaseOf(const QString& name)
{
    if (name == QLatin1String("running"))
        return WatchState::Phase::Running;
    if (name == QLatin1String("restarting"))
        return WatchState::Phase::Restarting;
    return WatchState::Phase::Stopped;
}

QJsonObject identityJson(const ProcessIdentity& identity)
{
    return {{QStringLiteral("pid"), identity.pid}, {QStringLiteral("start"), identity.startTicks}};
}

ProcessIdentity identityOf(const QJsonValue& value)
{
    const QJsonObject o = value.toObject();
    return {o.value(QStringLiteral("pid")).toInteger(), o.value(QStringLiteral("start")).toInteger()};
}

QString timeText(const QDateTime& when) { return when.toString(Qt::ISODate); }

QDateTime timeOf(const QJsonValue& value) { return QDateTime::fromString(value.toString(), Qt::ISODate); }

QString clockText(const QDateTime& when) { return when.toLocalTime().toString(QStringLiteral("HH:mm")); }

} // namespace

QJsonObject WatchState::toJson() const
{
    QJsonObject o;
    o[QStringLiteral("session")] = session;
    o[QStringLiteral("profile")] = profile;
    o[QStringLiteral("host")] = host;
    o[QStringLiteral("port")] = port;
    o[QStringLiteral("watched")] = watched;
    o[QStringLiteral("watcher")] = identityJson(watcher);
    o[QStringLiteral("server")] = identityJson(server);
    o[QStringLiteral("program")] = program;
    o[QStringLiteral("arguments")] = QJsonArray::fromStringList(arguments);
    o[QStringLiteral("workingFolder")] = workingFolder;
    o[QStringLiteral("phase")] = QString::fromLatin1(phaseName(phase));
    o[QStringLiteral("since")] = timeText(since);
    o[QStringLiteral("restarts")] = restarts;
    o[QStringLiteral("lastCrash")] = timeText(lastCrash);
    o[QStringLiteral("lastCrashCause")] = lastCrashCause;
    o[QStringLiteral("stoppedReason")] = stoppedReason;
    return o;
}

WatchState WatchState::fromJson(const QJsonObject& o)
{
    WatchState s;
    s.session = o.value(QStringLiteral("session")).toString();
    s.profile = o.value(QStringLiteral("profile")).toString();
    s.host = o.value(QStringLiteral("host")).toString();
    s.port = o.value(QStringLiteral("port")).toInt();
    s.watched = o.value(QStringLiteral("watched")).toBool();
    s.watcher = identityOf(o.value(QStringLiteral("watcher")));
    s.server = identityOf(o.value(QStringLiteral("server")));
    s.program = o.value(QStringLiteral("program")).toString();
    for (const QJsonValue& a : o.value(QStringLiteral("arguments")).toArray())
        s.arguments << a.toString();
    s.workingFolder = o.value(QStringLiteral("workingFolder")).toString();
    s.phase = phaseOf(o.value(QStringLiteral("phase")).toString());
    s.since = timeOf(o.value(QStringLiteral("since")));
    s.restarts = o.value(QStringLiteral("restarts")).toInt();
    s.lastCrash = timeOf(o.value(QStringLiteral("lastCrash")));
    s.lastCrashCause = o.value(QStringLiteral("lastCrashCause")).toString();
    s.stoppedReason = o.value(QStringLiteral("stoppedReason")).toString();
    return s;
}

bool writeWatchState(const QString& file, const WatchState& state, QString* error)
{
    return writePrivateFile(file, QJsonDocument(state.toJson()).toJson(QJsonDocument::Indented), error);
}

std::optional<WatchState> readWatchState(const QString& file)
{
    QFile in(file);
    // A state file is small; anything larger is not one of ours.
    if (!in.open(QIODevice::ReadOnly) || in.size() > 1024 * 1024)
        return std::nullopt;
    QJsonParseError parse;
    const QJsonDocument document = QJsonDocument::fromJson(in.readAll(), &parse);
    if (parse.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    return WatchState::fromJson(document.object());
}

ServerCondition serverCondition(const WatchState& state)
{
    if (state.phase == WatchState::Phase::Running && stillRuns(state.server))
        return ServerCondition::Running;
    // Between a crash and the next start only the watcher runs.
    if (state.phase == WatchState::Phase::Restarting && state.watched && stillRuns(state.watcher))
        return ServerCondition::Restarting;
    if (state.watched && stillRuns(state.watcher) && stillRuns(state.server))
        return ServerCondition::Running;
    return ServerCondition::NotRunning;
}

QString watchSummary(const std::optional<WatchState>& state)
{
    if (!state)
        return QStringLiteral("Not running");
    const QString crash = state->lastCrash.isValid()
                              ? clockText(state->lastCrash) + QStringLiteral(", ") + state->lastCrashCause
                              : QString();
    switch (serverCondition(*state)) {
    case ServerCondition::Running: {
        QString text = QStringLiteral("Running since ") + clockText(state->since);
        if (state->restarts == 1)
            text += QStringLiteral(" · 1 restart");
        else if (state->restarts > 1)
            text += QStringLiteral(" · %1 restarts").arg(state->restarts);
        if (!crash.isEmpty())
            text += QStringLiteral(" · last crash ") + crash;
        return text;
    }
    case ServerCondition::Restarting:
        return QStringLiteral("Restarting after a crash at ") + crash;
    case ServerCondition::NotRunning:
        break;
    }
    if (state->phase == WatchState::Phase::Stopped && !state->stoppedReason.isEmpty())
        return state->stoppedReason;
    return QStringLiteral("Not running");
}

QString endCause(bool bySignal, int code)
{
    if (!bySignal)
        return QStringLiteral("exit status %1").arg(code);
    const char* name = sigabbrev_np(code);
    if (name)
        return QStringLiteral("signal %1 (SIG%2)").arg(code).arg(QString::fromLatin1(name));
    return QStringLiteral("signal %1").arg(code);
}

} // namespace steward
