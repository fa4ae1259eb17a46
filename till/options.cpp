#include "till/options.h"

#include "till/console/salecommands.h"

#include <QCommandLineParser>

#include <array>

namespace till {

namespace {

struct KnownOption
{
    const char *name;
    const char *value;    ///< What its value is called; empty for a switch.
    const char *commands; ///< It goes with these only; empty for all.
    const char *meaning;
};

constexpr std::array knownOptions{
    KnownOption{"config", "file", "",
                "Settings file. Default: the environment variable TILL_CONFIG, else till/till.conf "
                "in the user's configuration directory or in /etc/xdg."},
    KnownOption{"plugin", "file", "",
                "Plugin module. Default: the setting Till:plugin, else lmmindbox.so beside the "
                "program, in ../lib or where an installation has it."},
    KnownOption{"data", "directory", "",
                "Data directory. Default: the setting Till:dataDir, else till in the user's data "
                "directory."},
    KnownOption{"language", "code", "",
                "Language of the texts: ru or en. Default: the setting Till:language, else ru."},
    KnownOption{"log", "file", "",
                "Log file, \"-\" for standard error. Default: the setting Till:log, else till.log "
                "in the data directory."},
    KnownOption{"no-delivery", "", "", "Do not deliver the queue while selling."},
    KnownOption{"echo", "", "", "Show every line read, for the output of a script."},
    KnownOption{"once", "", "deliver",
                "End when nothing is waiting or the service cannot be reached."},
    KnownOption{"json", "", "check queue receipts", "Answer as JSON."},
    KnownOption{"refused", "", "receipts", "Only those that the service did not take."},
    KnownOption{"since", "date", "receipts", "Only those begun on that day, YYYY-MM-DD, or later."},
    KnownOption{"phone", "number", "check", "The phone to look up. Default: one that nobody has."},
    KnownOption{"metrics", "file", "check", "Write the result into the file as metrics, too."},
    KnownOption{"output", "file", "metrics", "Write into the file, not to standard output."},
};

constexpr auto commandHelp =
    "  check                   says whether this till will work\n"
    "  deliver                 brings the waiting messages to the service until it is stopped\n"
    "  metrics                 shows the till's figures as OpenMetrics text\n"
    "  queue [list | parked]   shows what waits for delivery, or what is put aside\n"
    "  queue park ID           puts a waiting message aside\n"
    "  queue retry ID          puts one back; \"all\" instead of ID: all of them\n"
    "  queue export FILE       writes all messages into a new file\n"
    "  receipts [show NUMBER]  lists the receipts, or shows one\n"
    "  report NUMBER           reports a committed receipt once more";

constexpr auto exitCodeHelp =
    "Exit code when selling: 0 when every line was understood (a step that the sale refuses is\n"
    "understood), 1 otherwise. check: 0, 1 with a warning, 2 when something failed. queue, "
    "deliver\n"
    "--once: 1 when the store cannot be used or something is still waiting, else 3 when something\n"
    "is parked. Other commands: 1 when they could not do it. Everywhere: 2 for bad options,\n"
    "settings or a plugin that cannot be loaded.";

/// A command with as many arguments as it takes.
struct KnownCommand
{
    const char *name; ///< Empty for selling.
    int least;
    int most;
};

constexpr std::array knownCommands{KnownCommand{"", 0, 0},        KnownCommand{"check", 0, 0},
                                   KnownCommand{"deliver", 0, 0}, KnownCommand{"metrics", 0, 0},
                                   KnownCommand{"queue", 0, 2},   KnownCommand{"receipts", 0, 2},
                                   KnownCommand{"report", 1, 1}};

QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

void addTo(QCommandLineParser &parser)
{
    for (const auto &[name, value, commands, meaning] : knownOptions) {
        auto text = latin1(meaning);
        if (*commands != '\0')
            text = QStringLiteral("With %1: %2")
                       .arg(latin1(commands).replace(u' ', QStringLiteral(", ")), text);
        parser.addOption({latin1(name), text, latin1(value)});
    }
    parser.addOption(
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this text.")});
    parser.addOption({QStringLiteral("version"), QStringLiteral("Show the version.")});
    parser.addPositionalArgument(QStringLiteral("command"),
                                 QStringLiteral("See below; none: sell, with commands from "
                                                "standard input."),
                                 QStringLiteral("[command]"));
    parser.setApplicationDescription(QStringLiteral("Till emulator for the loyalty plugin."));
}

QString helpText(const QCommandLineParser &parser)
{
    return parser.helpText() +
           QStringLiteral("\nCommands:\n%1\n\n"
                          "Commands when selling, one a line, each with an example:\n%2\n"
                          "A line that begins with # is a comment. In a dialog each line is one "
                          "answer; /cancel cancels it.\n"
                          "The end of the input ends the program; an open receipt stays open.\n\n")
               .arg(latin1(commandHelp), SaleCommands::help()) +
           latin1(exitCodeHelp);
}

/// Why there is no such command with these options; empty when there is.
QString commandProblem(const QCommandLineParser &parser)
{
    const auto arguments = parser.positionalArguments();
    const auto name = arguments.value(0);
    const auto *const command =
        std::find_if(knownCommands.begin(), knownCommands.end(),
                     [&name](const KnownCommand &known) { return name == latin1(known.name); });
    if (command == knownCommands.end())
        return QStringLiteral("unknown command \"%1\"").arg(name);
    const auto count = arguments.size() - 1;
    if (!name.isEmpty() && (count < command->least || count > command->most))
        return QStringLiteral("\"%1\" with %2 arguments, expected %3 to %4")
            .arg(name)
            .arg(count)
            .arg(command->least)
            .arg(command->most);
    for (const auto &option : knownOptions) {
        const auto commands = latin1(option.commands).split(u' ', Qt::SkipEmptyParts);
        if (parser.isSet(latin1(option.name)) && !commands.isEmpty() && !commands.contains(name))
            return QStringLiteral("--%1 goes with %2 only")
                .arg(latin1(option.name), commands.join(QStringLiteral(", ")));
    }
    return {};
}

Options read(const QCommandLineParser &parser, QString &problem)
{
    const auto value = [&parser](const char *name) { return parser.value(latin1(name)); };
    const auto isSet = [&parser](const char *name) { return parser.isSet(latin1(name)); };
    Options options;
    options.settings = {value("config"), value("plugin"), value("data"), value("language"),
                        value("log")};
    options.deliversInBackground = !isSet("no-delivery");
    options.once = isSet("once");
    options.echo = isSet("echo");
    options.json = isSet("json");
    if (isSet("refused"))
        options.receipts.outcome = Report::Refused;
    options.receipts.since = QDate::fromString(value("since"), Qt::ISODate);
    if (isSet("since") && !options.receipts.since.isValid())
        problem = QStringLiteral("--since %1: expected YYYY-MM-DD").arg(value("since"));
    options.phone = value("phone");
    options.output = value("output") + value("metrics");
    options.command = parser.positionalArguments();
    return options;
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    constexpr int badOptions = 2;
    QCommandLineParser parser;
    addTo(parser);
    if (!parser.parse(arguments))
        return {{}, QStringLiteral("till: ") + parser.errorText(), badOptions};
    if (parser.isSet(QStringLiteral("help")))
        return {{}, helpText(parser), 0};
    if (parser.isSet(QStringLiteral("version")))
        return {{}, QStringLiteral("till %1").arg(QStringLiteral(TILL_VERSION)), 0};
    auto problem = commandProblem(parser);
    const auto options = read(parser, problem);
    if (!problem.isEmpty())
        return {{}, QStringLiteral("till: %1; --help says more").arg(problem), badOptions};
    return {options, {}, 0};
}

} // namespace till
