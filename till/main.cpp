#include "till/console/console.h"
#include "till/console/consolepresenter.h"
#include "till/console/salecommands.h"
#include "till/core/catalogue.h"
#include "till/core/numbers.h"
#include "till/core/sale.h"
#include "till/core/settings.h"
#include "till/core/settingtable.h"
#include "till/core/till.h"
#include "till/core/toldtexts.h"
#include "till/core/utf8locale.h"
#include "till/office/commands.h"
#include "till/office/finding.h"
#include "till/options.h"

#include <host/logging.h>
#include <host/privatefile.h>

#include <QCoreApplication>

#include <algorithm>
#include <csignal>
#include <iostream>
#include <limits>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int success = 0;
constexpr int failure = 1;
constexpr int badSetup = 2;

int refuseToStart(const QString &reason)
{
    std::cerr << "till: " << reason.toStdString() << '\n';
    return badSetup;
}

/// Prints the faults of the settings, one a line. \return Whether the till may start.
bool tellProblems(bool isAtWork)
{
    till::Findings findings;
    till::checkSettings(findings);
    const auto problems = till::findProblems();
    const auto mayStart = std::none_of(problems.cbegin(), problems.cend(),
                                       [](const auto &problem) { return problem.isFatal; });
    for (const auto &finding : std::as_const(findings.list)) {
        if (finding.level != till::Finding::Level::Ok && (isAtWork || !mayStart))
            std::cerr << "till: " << finding.found.toStdString() << '\n';
    }
    return mayStart;
}

int runSale(const till::Settings &settings, bool deliversInBackground, till::Console &console)
{
    till::ConsolePresenter presenter(console);
    till::Till till(settings, presenter);
    const auto started = till.start();
    if (!started)
        return refuseToStart(started.error());
    if (!started->isEmpty()) {
        till::logTold(*started);
        console.line(*started);
    }
    till::SaleCommands commands(till, console);
    till.sale().recover();
    if (deliversInBackground)
        till.startDelivery();
    return commands.run() ? success : failure;
}

till::ReceiptFilter filterOf(const QCommandLineParser &options)
{
    till::ReceiptFilter filter;
    if (options.isSet(u"refused"_s))
        filter.outcome = till::Report::Refused;
    filter.since = QDate::fromString(options.value(u"since"_s), Qt::ISODate);
    return filter;
}

/// The numbers of the receipts to report again, oldest first.
tl::expected<QList<int>, QString> receiptsToReport(till::Store &store,
                                                   const QCommandLineParser &options)
{
    constexpr auto largest = std::numeric_limits<int>::max();
    QList<int> numbers;
    for (const auto &text : options.positionalArguments().mid(1)) {
        const auto number = till::parseWhole(text, 1, largest);
        if (!number)
            return tl::unexpected(
                till::SaleCommands::tr("expected a receipt's number, not \"%1\"").arg(text));
        numbers.append(*number);
    }
    auto filter = filterOf(options);
    if (!filter.outcome)
        return numbers;
    filter.limit = largest;
    return store.list(filter).map([](const auto &records) {
        QList<int> found;
        for (const auto &record : records)
            found.prepend(record.header.num);
        return found;
    });
}

/// May run beside a selling till, because it opens no receipt.
int runReport(const till::Settings &settings, const QCommandLineParser &options,
              till::Console &console)
{
    till::ConsolePresenter presenter(console);
    till::Till till(settings, presenter, till::Till::Work::ReportOnly);
    const auto numbers = receiptsToReport(till.store(), options);
    if (!numbers)
        return refuseToStart(numbers.error());
    if (numbers->size() > 1 && !options.isSet(u"yes"_s) &&
        !till::SaleCommands::mayReport(numbers->size()))
        return failure;
    if (const auto started = till.start(); !started)
        return refuseToStart(started.error());
    const till::SaleCommands told(till, console);
    int failed = 0;
    for (const auto number : *numbers)
        failed += till.sale().report(number) ? 0 : 1;
    return failed == 0 && till.onlyInMemory().isEmpty() ? success : failure;
}

int runOffice(const till::Settings &settings, const QCommandLineParser &options)
{
    const auto arguments = options.positionalArguments();
    const auto &name = arguments.first();
    if (name == "deliver"_L1)
        return till::runDelivery(settings, options.isSet(u"once"_s), std::cout);
    if (name == "metrics"_L1)
        return till::runMetrics(settings, options.value(u"output"_s), std::cout);
    const auto changes = arguments.contains(u"park"_s) || arguments.contains(u"retry"_s);
    till::Store store(settings.dataDirectory,
                      changes ? till::Store::Access::Full : till::Store::Access::ReadOnly);
    const auto asJson = options.isSet(u"json"_s);
    if (name == "queue"_L1)
        return till::runQueueCommand(store, std::cout, arguments.mid(1), asJson);
    return till::runReceiptsCommand(store, std::cout, arguments.mid(1), filterOf(options), asJson);
}

int run(const QCommandLineParser &options, till::Console &console)
{
    const auto value = [&options](const char *name) {
        return options.value(QLatin1StringView(name));
    };
    const auto name = options.positionalArguments().value(0);
    const till::SettingsOverrides overrides{value("config"), value("plugin"), value("data"),
                                            value("language"), value("log")};
    // The option's language, until the settings are read.
    std::ignore = till::installLanguage(overrides.language);
    if (name == "check"_L1)
        return till::runCheck(
            overrides, {value("phone"), value("metrics"), options.isSet(u"json"_s)}, std::cout);
    const auto loaded = till::loadSettings(overrides);
    if (!loaded)
        return refuseToStart(loaded.error().text());
    const auto &settings = *loaded;
    std::ignore = till::installLanguage(settings.language); // an unknown language is told below
    if (!tellProblems(name.isEmpty() || name == "deliver"_L1))
        return badSetup;
    if (const auto made = privatefile::createDirectory(settings.dataDirectory); !made)
        return refuseToStart(made.error());
    // A full disk or a read-only directory must not keep the till from selling.
    if (const auto log = logging::start(settings.logFile, settings.logFile.isEmpty()); !log)
        std::cerr << "till: " << log.error().toStdString() << '\n';
    if (name.isEmpty())
        return runSale(settings, !options.isSet(u"no-delivery"_s), console);
    if (name == "report"_L1)
        return runReport(settings, options, console);
    return runOffice(settings, options);
}

} // namespace

int main(int argc, char *argv[])
{
    // A closed connection or output must be an error at its use, not the end of the program.
    std::signal(SIGPIPE, SIG_IGN);
    ::umask(077);
    till::chooseUtf8();
    const QCoreApplication application(argc, argv);
    QCommandLineParser options;
    if (const auto ended = till::parseCommandLine(options))
        return *ended;
    till::Console console(STDIN_FILENO, std::cout);
    console.setEcho(options.isSet(u"echo"_s));
    const auto exitCode = run(options, console);
    logging::stop();
    return std::cout.flush() || exitCode != success ? exitCode : failure;
}
