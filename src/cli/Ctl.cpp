#include "cli/Ctl.h"

#include "cli/CtlStart.h"
#include "cli/CtlStatus.h"
#include "cli/CtlUnit.h"
#include "cli/CtlSystem.h"
#include "settings/Profiles.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <functional>
#include <map>

namespace steward {

namespace {

const QString kDescription =
    QStringLiteral("Arena Steward without a window: starts, watches, stops and reports the Jedi Outcast server\n"
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

// The options of the command line, with their help texts.
struct OptionSet {
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")};
    QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the version.")};
    QCommandLineOption profile{QStringLiteral("profile"),
                               QStringLiteral("Work on the named profile instead of the default one."),
                               QStringLiteral("name")};
    QCommandLineOption config{QStringLiteral("config"),
                              QStringLiteral("Use a saved configuration (.asc) instead of the window's settings."),
                              QStringLiteral("file")};
    QCommandLineOption roster{QStringLiteral("roster"),
                              QStringLiteral("run, start: the bot roster to use instead of lastbots.csv."),
                              QStringLiteral("file")};
    QCommandLineOption noMessages{QStringLiteral("no-messages"),
                                  QStringLiteral("run: leave the timed messages to the window.")};
    QCommandLineOption json{QStringLiteral("json"), QStringLiteral("status: answer in JSON.")};
    QCommandLineOption install{QStringLiteral("install"),
                               QStringLiteral("unit: write the service under ~/.config/systemd/user.")};
    QCommandLineOption delay{QStringLiteral("restart-delay"),
                             QStringLiteral("run: seconds between a crash and the restart (default 5)."),
                             QStringLiteral("seconds"), QStringLiteral("5")};
    QCommandLineOption timeout{QStringLiteral("timeout"),
                               QStringLiteral("status: milliseconds to wait for the server's answer (default 1000)."),
                               QStringLiteral("ms"), QStringLiteral("1000")};
};

// The options of a parsed command line; a wrong value is said, with the usage, and its
// exit code comes back in exitCode.
bool readOptions(CtlSystem& system, const QCommandLineParser& parser, const OptionSet& o, CtlOptions* options,
                 int* exitCode)
{
    auto refuse = [&](const QString& problem) {
        *exitCode = usage(system, parser, problem);
        return false;
    };
    options->profile = parser.value(o.profile);
    if (parser.isSet(o.profile) && options->profile != kDefaultProfile && !validProfileName(options->profile))
        return refuse(profileNameRule());
    if (options->profile == kDefaultProfile)
        options->profile.clear();
    options->config = parser.value(o.config);
    options->roster = parser.value(o.roster);
    options->noMessages = parser.isSet(o.noMessages);
    options->json = parser.isSet(o.json);
    options->install = parser.isSet(o.install);
    bool ok = false;
    const double seconds = parser.value(o.delay).toDouble(&ok);
    if (!ok || seconds < 0 || seconds > 3600)
        return refuse(QStringLiteral("--restart-delay takes seconds from 0 to 3600"));
    options->restartDelayMs = static_cast<int>(seconds * 1000);
    options->timeoutMs = parser.value(o.timeout).toInt(&ok);
    if (!ok || options->timeoutMs < 1 || options->timeoutMs > 60000)
        return refuse(QStringLiteral("--timeout takes milliseconds from 1 to 60000"));
    return true;
}

} // namespace

int runCtl(const QStringList& arguments, CtlSystem& system)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(kDescription);
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("start, run, status, stop or unit"));
    const OptionSet o;
    parser.addOptions(
        {o.help, o.version, o.profile, o.config, o.roster, o.noMessages, o.json, o.install, o.delay, o.timeout});

    if (!parser.parse(arguments))
        return usage(system, parser, parser.errorText());
    if (parser.isSet(o.help)) {
        *system.out << parser.helpText();
        system.out->flush();
        return ctl_exit::Ok;
    }
    if (parser.isSet(o.version)) {
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
    int exitCode = ctl_exit::Usage;
    if (!readOptions(system, parser, o, &options, &exitCode))
        return exitCode;
    return command->second(system, options);
}

} // namespace steward
