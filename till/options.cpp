#include "till/options.h"

#include "till/console/salecommands.h"
#include "till/core/settingtable.h"

#include <QDate>

#include <algorithm>
#include <array>
#include <iostream>

using namespace Qt::StringLiterals;

namespace till {

namespace {

struct KnownOption
{
    const char *name;
    const char *value;    ///< The name of its value in the help; empty for a switch.
    const char *commands; ///< The commands that take it; empty for all.
    const char *meaning;
};

constexpr std::array knownOptions{
    KnownOption{"config", "file", "",
                "Settings file. Default: the environment variable TILL_CONFIG, else till/till.conf "
                "in the user's configuration directory or in /etc/xdg."},
    KnownOption{"plugin", "file", "", "Instead of the setting Till:plugin."},
    KnownOption{"data", "directory", "", "Instead of the setting Till:dataDir."},
    KnownOption{"language", "code", "", "Instead of the setting Till:language."},
    KnownOption{"log", "file", "", "Instead of the setting Till:log."},
    KnownOption{"no-delivery", "", "", "Do not deliver the queue while selling."},
    KnownOption{"echo", "", "", "Show every line after reading it, for a script's output."},
    KnownOption{"once", "", "deliver",
                "End when no message waits or the service cannot be reached."},
    KnownOption{"json", "", "check queue receipts", "Answer as JSON."},
    KnownOption{"refused", "", "receipts report", "Only receipts that the service refused."},
    KnownOption{"since", "date", "receipts report",
                "Only receipts begun on that day, YYYY-MM-DD, or later."},
    KnownOption{"yes", "", "report", "Do not ask before reporting several receipts."},
    KnownOption{"phone", "number", "check",
                "The phone to look up. Default: a number that nobody has."},
    KnownOption{"metrics", "file", "check", "Also write the result into the file as metrics."},
    KnownOption{"output", "file", "metrics", "Write into the file instead of standard output."},
};

constexpr auto commandHelp =
    "  check                   tells whether this till will work\n"
    "  deliver                 delivers the waiting messages until it is stopped\n"
    "  metrics                 prints the till's figures as Prometheus' text\n"
    "  queue [list | parked]   lists the waiting or the parked messages (dead letters)\n"
    "  queue park ID           parks a waiting message\n"
    "  queue retry ID          puts a parked message back; \"all\" instead of ID: all of them\n"
    "  queue export FILE       writes all messages into a new file\n"
    "  receipts [show NUMBER]  lists the receipts, or shows one\n"
    "  report NUMBER...        reports committed receipts again, even beside a selling till;\n"
    "                          --refused instead of numbers: all that the service refused"_L1;

constexpr auto exitCodeHelp =
    "Exit code when selling: 0 when every line was understood, even if the sale refused the step;\n"
    "1 otherwise. check: 1 with a warning, 2 with a failure. deliver --once: 1 when the store "
    "cannot\n"
    "be used or a message still waits, else 3 when one is parked. queue: 1 on failure, else 3 "
    "when\n"
    "a message is parked. Other commands: 1 on failure. Everywhere: 2 for bad options or "
    "settings,\n"
    "or a plugin that cannot be loaded."_L1;

/// The commands with the most arguments that each takes.
constexpr std::array knownCommands{std::pair{"check"_L1, 0},    std::pair{"deliver"_L1, 0},
                                   std::pair{"metrics"_L1, 0},  std::pair{"queue"_L1, 2},
                                   std::pair{"receipts"_L1, 2}, std::pair{"report"_L1, 1'000}};

QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

void addTo(QCommandLineParser &parser)
{
    for (const auto &[name, value, commands, meaning] : knownOptions) {
        auto text = latin1(meaning);
        if (*commands != '\0')
            text = u"With %1: %2"_s.arg(latin1(commands).replace(u' ', u", "_s), text);
        parser.addOption({latin1(name), text, latin1(value)});
    }
    parser.addOption({{u"h"_s, u"help"_s}, u"Show this text."_s});
    parser.addOption({u"version"_s, u"Show the version."_s});
    parser.addPositionalArgument(u"command"_s,
                                 u"See below; none: sell, with commands from standard input."_s,
                                 u"[command]"_s);
    parser.setApplicationDescription(u"Till emulator for the loyalty plugin."_s);
}

/// The key, default and meaning of each setting.
QString settingsHelp()
{
    QStringList lines;
    for (const auto &setting : settingTable()) {
        const QLatin1StringView usual(setting.usual);
        const auto unset = usual.isEmpty() ? QString() : u" [%1]"_s.arg(usual);
        lines.append(u"  %1%2\n      %3"_s.arg(setting.key, unset, latin1(setting.meaning)));
    }
    return lines.join(u'\n');
}

QString helpText(const QCommandLineParser &parser)
{
    return parser.helpText() +
           u"\nCommands:\n%1\n\n"
           "Commands when selling, one a line, each with an example:\n%2\n"
           "A line that begins with # is a comment. In a dialog each line is one answer; /cancel "
           "cancels it.\n"
           "The end of the input ends the program; an open receipt stays open.\n\n"
           "Settings, in the file as key=value, with their [defaults]:\n%3\n\n%4"_s.arg(
               commandHelp, SaleCommands::help(), settingsHelp(), exitCodeHelp);
}

/// What is wrong with the command and its options; empty when nothing is.
QString problemOf(const QCommandLineParser &parser)
{
    const auto arguments = parser.positionalArguments();
    const auto name = arguments.value(0);
    const auto count = arguments.size() - 1;
    const auto *const command = std::ranges::find(
        knownCommands, name, [](const auto &known) { return QString(known.first); });
    if (!name.isEmpty() && command == knownCommands.end())
        return u"unknown command \"%1\""_s.arg(name);
    if (!name.isEmpty() && count > command->second)
        return u"\"%1\" with %2 arguments, expected at most %3"_s.arg(name).arg(count).arg(
            command->second);
    if (name == "report"_L1 && (count > 0) == parser.isSet(u"refused"_s))
        return u"\"report\": expected receipts' numbers or --refused"_s;
    for (const auto &option : knownOptions) {
        const auto commands = latin1(option.commands).split(u' ', Qt::SkipEmptyParts);
        if (parser.isSet(latin1(option.name)) && !commands.isEmpty() && !commands.contains(name))
            return u"--%1 goes with %2 only"_s.arg(latin1(option.name), commands.join(", "_L1));
    }
    const auto since = parser.value(u"since"_s);
    if (parser.isSet(u"since"_s) && !QDate::fromString(since, Qt::ISODate).isValid())
        return u"--since %1: expected YYYY-MM-DD"_s.arg(since);
    return {};
}

int end(std::ostream &output, const QString &text, int exitCode)
{
    output << text.toStdString() << '\n' << std::flush;
    return exitCode;
}

} // namespace

std::optional<int> parseCommandLine(QCommandLineParser &options)
{
    constexpr int badOptions = 2;
    addTo(options);
    if (!options.parse(QCoreApplication::arguments()))
        return end(std::cerr, u"till: "_s + options.errorText(), badOptions);
    if (options.isSet(u"help"_s))
        return end(std::cout, helpText(options), 0);
    if (options.isSet(u"version"_s))
        return end(std::cout, u"till " TILL_VERSION ""_s, 0);
    if (const auto problem = problemOf(options); !problem.isEmpty())
        return end(std::cerr, u"till: %1; --help says more"_s.arg(problem), badOptions);
    return std::nullopt;
}

} // namespace till
