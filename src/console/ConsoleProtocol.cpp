#include "console/ConsoleProtocol.h"

namespace steward {

namespace {

const QByteArray kPrefix(4, '\xff');
const QByteArray kStatusHeader = QByteArrayLiteral("statusResponse");
const QByteArray kPrintHeader = QByteArrayLiteral("print\n");

bool hasHeader(const QByteArray& datagram, const QByteArray& header)
{
    return datagram.size() <= kMaxReplyBytes && datagram.startsWith(kPrefix) &&
           datagram.mid(kPrefix.size(), header.size()) == header;
}

// A whole decimal number of at most nine digits, with an optional minus sign.
std::optional<int> wholeNumber(QByteArrayView text)
{
    qsizetype i = 0;
    bool negative = false;
    if (i < text.size() && text[i] == '-') {
        negative = true;
        ++i;
    }
    if (i == text.size() || text.size() - i > 9)
        return std::nullopt;
    int value = 0;
    for (; i < text.size(); ++i) {
        if (text[i] < '0' || text[i] > '9')
            return std::nullopt;
        value = value * 10 + (text[i] - '0');
    }
    return negative ? -value : value;
}

// "score ping \"name\"": the name runs from the first quote to the last one.
std::optional<PlayerStatus> playerLine(QByteArrayView line)
{
    const qsizetype first = line.indexOf(' ');
    if (first <= 0)
        return std::nullopt;
    const qsizetype second = line.indexOf(' ', first + 1);
    if (second <= first + 1)
        return std::nullopt;
    const auto score = wholeNumber(line.sliced(0, first));
    const auto ping = wholeNumber(line.sliced(first + 1, second - first - 1));
    const QByteArrayView quoted = line.sliced(second + 1);
    if (!score || !ping || quoted.size() < 2 || !quoted.startsWith('"') || !quoted.endsWith('"'))
        return std::nullopt;
    PlayerStatus player;
    player.score = *score;
    player.ping = *ping;
    player.name = QString::fromLatin1(quoted.sliced(1, quoted.size() - 2));
    return player;
}

} // namespace

QByteArray getstatusDatagram() { return kPrefix + QByteArrayLiteral("getstatus"); }

QByteArray rconDatagram(const QString& password, const QString& command)
{
    QString line = command;
    line.replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
    return kPrefix + QByteArrayLiteral("rcon ") + password.toLatin1() + ' ' + line.toLatin1();
}

QString ServerStatus::value(const QString& key) const
{
    for (const auto& [k, v] : cvars)
        if (k.compare(key, Qt::CaseInsensitive) == 0)
            return v;
    return {};
}

ReplyKind replyKind(const QByteArray& datagram)
{
    if (hasHeader(datagram, kStatusHeader))
        return ReplyKind::Status;
    if (hasHeader(datagram, kPrintHeader))
        return ReplyKind::Print;
    return ReplyKind::Unreadable;
}

std::optional<ServerStatus> parseStatusResponse(const QByteArray& datagram)
{
    if (replyKind(datagram) != ReplyKind::Status)
        return std::nullopt;
    QByteArrayView rest = QByteArrayView(datagram).sliced(kPrefix.size() + kStatusHeader.size());
    // The header line ends here; a blank or other bytes behind the word make it another word.
    if (!rest.startsWith('\n'))
        return std::nullopt;
    rest = rest.sliced(1);

    qsizetype end = rest.indexOf('\n');
    const QByteArrayView info = end < 0 ? rest : rest.sliced(0, end);
    rest = end < 0 ? QByteArrayView() : rest.sliced(end + 1);

    ServerStatus status;
    if (info.isEmpty() || info[0] != '\\')
        return std::nullopt;
    // Key, backslash, value, backslash, ...; a backslash at the very end is allowed.
    QByteArrayView fields = info.sliced(1);
    while (!fields.isEmpty()) {
        const qsizetype keyEnd = fields.indexOf('\\');
        if (keyEnd <= 0)
            return std::nullopt;
        const QByteArrayView key = fields.sliced(0, keyEnd);
        fields = fields.sliced(keyEnd + 1);
        const qsizetype valueEnd = fields.indexOf('\\');
        const QByteArrayView value = valueEnd < 0 ? fields : fields.sliced(0, valueEnd);
        status.cvars.append({QString::fromLatin1(key), QString::fromLatin1(value)});
        fields = valueEnd < 0 ? QByteArrayView() : fields.sliced(valueEnd + 1);
    }
    if (status.cvars.isEmpty())
        return std::nullopt;

    while (!rest.isEmpty()) {
        end = rest.indexOf('\n');
        const QByteArrayView line = end < 0 ? rest : rest.sliced(0, end);
        rest = end < 0 ? QByteArrayView() : rest.sliced(end + 1);
        if (line.isEmpty())
            continue;
        if (status.players.size() >= kMaxStatusPlayers)
            return std::nullopt;
        const auto player = playerLine(line);
        if (!player)
            return std::nullopt;
        status.players.append(*player);
    }
    return status;
}

std::optional<QString> parsePrintReply(const QByteArray& datagram)
{
    if (replyKind(datagram) != ReplyKind::Print)
        return std::nullopt;
    return QString::fromLatin1(datagram.constData() + kPrefix.size() + kPrintHeader.size(),
                               datagram.size() - kPrefix.size() - kPrintHeader.size());
}

QList<StatusTableRow> parseStatusTable(const QString& printText)
{
    QList<StatusTableRow> rows;
    const QStringList lines = printText.split(QLatin1Char('\n'));
    qsizetype dashes = -1;
    for (qsizetype i = 1; i < lines.size() && dashes < 0; ++i)
        if (lines[i].startsWith(QLatin1String("--")) && !lines[i - 1].trimmed().isEmpty() &&
            lines[i].count(QLatin1Char(' ')) >= 3)
            dashes = i;
    if (dashes < 0)
        return rows;
    // The column starts are where a run of dashes starts.
    QList<qsizetype> starts;
    const QString& rule = lines[dashes];
    for (qsizetype c = 0; c < rule.size(); ++c)
        if (rule[c] == QLatin1Char('-') && (c == 0 || rule[c - 1] == QLatin1Char(' ')))
            starts << c;
    if (starts.size() < 4)
        return rows;
    const auto number = [](const QString& text) -> std::optional<int> {
        bool ok = false;
        const int n = text.trimmed().toInt(&ok);
        return ok ? std::optional<int>(n) : std::nullopt;
    };
    for (qsizetype i = dashes + 1; i < lines.size() && rows.size() < kMaxStatusPlayers; ++i) {
        const QString& line = lines[i];
        if (line.trimmed().isEmpty())
            break;
        const auto client = number(line.mid(0, starts[1]));
        const auto score = number(line.mid(starts[1], starts[2] - starts[1]));
        const auto ping = number(line.mid(starts[2], starts[3] - starts[2]));
        if (!client || !score || !ping)
            continue;
        QString name = starts.size() > 4 ? line.mid(starts[3], starts[4] - starts[3]) : line.mid(starts[3]);
        name = name.trimmed();
        if (name.endsWith(QLatin1String("^7")))
            name.chop(2);
        rows.append({*client, *score, *ping, name});
    }
    return rows;
}

RconNote rconNote(const QString& printText)
{
    const QString text = printText.trimmed();
    if (text == QLatin1String("Bad rconpassword."))
        return RconNote::BadPassword;
    if (text == QLatin1String("No rconpassword set on the server."))
        return RconNote::NoPassword;
    return RconNote::None;
}

QString rconNoteText(RconNote note)
{
    switch (note) {
    case RconNote::BadPassword:
        return QStringLiteral("The server refused the remote console password (Bad rconpassword.)");
    case RconNote::NoPassword:
        return QStringLiteral("The server has no remote console password set (No rconpassword set on the server.)");
    case RconNote::None:
        break;
    }
    return {};
}

QString gameTypeName(const QString& number)
{
    static const char* const names[] = {"Free For All", "Holocron",         "Jedi Master",
                                        "Duel",         "Single Player",    "Team Free For All",
                                        "Saga",         "Capture the Flag", "Capture the Ysalimari"};
    bool ok = false;
    const int n = number.trimmed().toInt(&ok);
    if (ok && n >= 0 && n < static_cast<int>(std::size(names)))
        return QString::fromLatin1(names[n]);
    return number;
}

} // namespace steward
