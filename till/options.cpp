#include "till/options.h"

#include "till/console/salecommands.h"

#include <QCommandLineParser>

namespace till {

namespace {

struct Parser
{
    QCommandLineParser parser;
    QCommandLineOption config{QStringLiteral("config"),
                              QStringLiteral("Settings file. Default: the environment variable "
                                             "TILL_CONFIG, else till/till.conf in the user's "
                                             "configuration directory or in /etc/xdg."),
                              QStringLiteral("file")};
    QCommandLineOption plugin{QStringLiteral("plugin"),
                              QStringLiteral("Plugin module. Default: the setting Till:plugin, "
                                             "else lmmindbox.so beside the program or in ../lib."),
                              QStringLiteral("file")};
    QCommandLineOption data{QStringLiteral("data"),
                            QStringLiteral("Data directory. Default: the setting Till:dataDir, "
                                           "else till in the user's data directory."),
                            QStringLiteral("directory")};
    QCommandLineOption language{QStringLiteral("language"),
                                QStringLiteral("Language of the loyalty texts: ru or en. Default: "
                                               "the setting Till:language, else ru."),
                                QStringLiteral("code")};
    QCommandLineOption log{QStringLiteral("log"),
                           QStringLiteral("Log file, \"-\" for standard error. Default: the "
                                          "setting Till:log, else till.log in the data directory."),
                           QStringLiteral("file")};
    QCommandLineOption noDelivery{QStringLiteral("no-delivery"),
                                  QStringLiteral("Do not deliver the queue while selling.")};
    QCommandLineOption once{QStringLiteral("once"),
                            QStringLiteral("With \"deliver\": end when nothing is waiting or the "
                                           "service cannot be reached.")};
    QCommandLineOption echo{QStringLiteral("echo"),
                            QStringLiteral("Show every line read, for the output of a script.")};
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                            QStringLiteral("Show this text.")};
    QCommandLineOption version{QStringLiteral("version"), QStringLiteral("Show the version.")};

    Parser()
    {
        parser.addOptions(
            {config, plugin, data, language, log, noDelivery, echo, once, help, version});
        parser.addPositionalArgument(
            QStringLiteral("command"),
            QStringLiteral("Nothing: sell, with commands from standard input.\n"
                           "deliver: bring the waiting messages to the service until stopped.\n"
                           "queue [list | parked | park ID | retry ID | retry all | export FILE]: "
                           "look after the waiting messages."),
            QStringLiteral("[command]"));
        parser.setApplicationDescription(QStringLiteral("Till emulator for the loyalty plugin."));
    }
};

QString helpText(const Parser &parser)
{
    return parser.parser.helpText() +
           QStringLiteral(
               "\nCommands when selling, one a line, each with an example:\n%1\n"
               "A line that begins with # is a comment. In a dialog each line is one answer; "
               "/cancel cancels it.\n"
               "The end of the input ends the program; an open receipt stays open.\n"
               "\nExit code: 0 when every line was understood (a step that the sale refuses is "
               "understood),\n1 otherwise; \"deliver --once\": 1 when messages are still "
               "waiting or were parked; 2 for bad options,\nsettings or a plugin that cannot be "
               "loaded.")
               .arg(SaleCommands::help());
}

/// Why the command is none; empty when it is one.
QString commandProblem(const Options &options)
{
    const auto name = options.command.value(0);
    if (options.once && name != QLatin1String("deliver"))
        return QStringLiteral("--once goes with the command \"deliver\" only");
    if (name == QLatin1String("deliver") && options.command.size() > 1)
        return QStringLiteral("\"deliver\" takes no arguments");
    if (!name.isEmpty() && name != QLatin1String("deliver") && name != QLatin1String("queue"))
        return QStringLiteral("unknown command \"%1\", expected deliver or queue").arg(name);
    return {};
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    constexpr int badOptions = 2;
    Parser parser;
    if (!parser.parser.parse(arguments))
        return {{}, QStringLiteral("till: ") + parser.parser.errorText(), badOptions};
    if (parser.parser.isSet(parser.help))
        return {{}, helpText(parser), 0};
    if (parser.parser.isSet(parser.version))
        return {{}, QStringLiteral("till %1").arg(QStringLiteral(TILL_VERSION)), 0};
    Options options;
    const auto &read = parser.parser;
    options.settings.config = read.value(parser.config);
    options.settings.plugin = read.value(parser.plugin);
    options.settings.data = read.value(parser.data);
    options.settings.language = read.value(parser.language);
    options.settings.log = read.value(parser.log);
    options.deliversInBackground = !read.isSet(parser.noDelivery);
    options.once = read.isSet(parser.once);
    options.echo = read.isSet(parser.echo);
    options.command = read.positionalArguments();
    if (const auto problem = commandProblem(options); !problem.isEmpty())
        return {{}, QStringLiteral("till: %1; --help says more").arg(problem), badOptions};
    return {options, {}, 0};
}

} // namespace till
