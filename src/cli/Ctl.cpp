#include "cli/Ctl.h"

#include "cli/CtlCommands.h"
#include "cli/CtlSystem.h"
#include "settings/Profiles.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <functional>
#include <map>

namespace steward {

namespace {

const QString kDescription = QStringLiteral(
    "Arena Steward without a window: starts, watches, stops and reports the Jedi Outcast server\n"
    "set up in Arena Steward, and makes a systemd user service of it.\n"
    "\n"
    "Commands:\n"
    "  start        write the server's files and start it, as OK does\n"
    "  run          the same, then watch the server in the foreground until it ends\n"
    "  status       whether the server runs, and what it answers on its port; without\n"
    "               --profile, when there are named profiles, one line for each\n"
    "  stop         stop the server (through its watcher when it has one)\n"
    "  unit         print the systemd user service; --install writes it\n"
    "\n"
    "Exit codes: 0 done (status: running and answering), 1 status: running but silent,\n"
    "run: the watch ended after a crash, 2 refused (the reason is on standard error),\n"
    "3 not running, 64 a wrong command line.");

using Command = std::function<int(CtlSystem&, const CtlOptions&)>;

const std::map<QString, Command>& commands()
{
    static const std::map<QString, Command> table = {
        {QStringLiteral("start"), ctlStart}, {QStringLiteral("run"), ctlRun},   {QStringLiteral("status"), ctlStatus},
        {QStringLiteral("stop"), ctlStop},   {QStringLiteral("unit"), ctlUnit},
    };
    return table;
}

int usage(CtlSystem& system, const QCommandLineParser& parser, const QString& problem)
{
    *system.err << problem << Qt::endl << Qt::endl << parser.helpText();
    system.err->flush();
    return ctl_exit::Usage;
}

} // namespace

int runCtl(const QStringList& arguments, CtlSystem& system)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(kDescription);
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("start, run, status, stop or unit"));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Show the version."));
    const QCommandLineOption profile(QStringLiteral("profile"),
                                     QStringLiteral("Work on the named profile instead of the default one."),
                                     QStringLiteral("name"));
    const QCommandLineOption config(QStringLiteral("config"),
                                    QStringLiteral("Use a saved configuration (.asc) instead of the window's settings."),
                                    QStringLiteral("file"));
    const QCommandLineOption roster(QStringLiteral("roster"),
                                    QStringLiteral("run, start: the bot roster to use instead of lastbots.csv."),
                                    QStringLiteral("file"));
    const QCommandLineOption noMessages(QStringLiteral("no-messages"),
                                        QStringLiteral("run: leave the timed messages to the window."));
    const QCommandLineOption json(QStringLiteral("json"), QStringLiteral("status: answer in JSON."));
    const QCommandLineOption install(QStringLiteral("install"),
                                     QStringLiteral("unit: write the service under ~/.config/systemd/user."));
    const QCommandLineOption delay(QStringLiteral("restart-delay"),
                                   QStringLiteral("run: seconds between a crash and the restart (default 5)."),
                                   QStringLiteral("seconds"), QStringLiteral("5"));
    const QCommandLineOption timeout(QStringLiteral("timeout"),
                                     QStringLiteral("status: milliseconds to wait for the server's answer (default 1000)."),
                                     QStringLiteral("ms"), QStringLiteral("1000"));
    parser.addOptions({help, version, profile, config, roster, noMessages, json, install, delay, timeout});

    if (!parser.parse(arguments))
        return usage(system, parser, parser.errorText());
    if (parser.isSet(help)) {
        *system.out << parser.helpText();
        system.out->flush();
        return ctl_exit::Ok;
    }
    if (parser.isSet(version)) {
        *system.out << "arena-stewardctl " << QCoreApplication::applicationVersion() << Qt::endl;
        return ctl_exit::Ok;
    }
    const QStringList words = parser.positionalArguments();
    if (words.size() != 1)
        return usage(system, parser,
                     words.isEmpty() ? QStringLiteral("No command given.")
                                     : QStringLiteral("One command at a time: %1").arg(words.join(QLatin1Char(' '))));
    const auto command = commands().find(words.first());
    if (command == commands().end())
        return usage(system, parser, QStringLiteral("Unknown command: %1").arg(words.first()));

    CtlOptions options;
    options.profile = parser.value(profile);
    if (parser.isSet(profile) && options.profile != kDefaultProfile && !validProfileName(options.profile))
        return usage(system, parser, profileNameRule());
    if (options.profile == kDefaultProfile)
        options.profile.clear();
    options.config = parser.value(config);
    options.roster = parser.value(roster);
    options.noMessages = parser.isSet(noMessages);
    options.json = parser.isSet(json);
    options.install = parser.isSet(install);
    bool ok = false;
    const double seconds = parser.value(delay).toDouble(&ok);
    if (!ok || seconds < 0 || seconds > 3600)
        return usage(system, parser, QStringLiteral("--restart-delay takes seconds from 0 to 3600"));
    options.restartDelayMs = static_cast<int>(seconds * 1000);
    options.timeoutMs = parser.value(timeout).toInt(&ok);
    if (!ok || options.timeoutMs < 1 || options.timeoutMs > 60000)
        return usage(system, parser, QStringLiteral("--timeout takes milliseconds from 1 to 60000"));
    return command->second(system, options);
}

} // namespace steward
