#include "till/console/console.h"
#include "till/console/consolepresenter.h"
#include "till/console/salecommands.h"
#include "till/core/catalogue.h"
#include "till/core/legacydata.h"
#include "till/core/logrotation.h"
#include "till/core/numbers.h"
#include "till/core/sale.h"
#include "till/core/settings.h"
#include "till/core/settingscheck.h"
#include "till/core/till.h"
#include "till/office/commands.h"
#include "till/options.h"

#include <host/config.h>
#include <host/dbqueuebroker.h>
#include <host/logging.h>
#include <host/privatefile.h>
#include <host/session.h>

#include <QCoreApplication>

#include <csignal>
#include <iostream>
#include <limits>
#include <unistd.h>

namespace {

constexpr int success = 0;
constexpr int failure = 1;
constexpr int badSetup = 2;

int refuseToStart(const QString &reason)
{
    std::cerr << "till: " << reason.toStdString() << std::endl;
    return badSetup;
}

/// The console as the place of all dialogs, for as long as this object lives.
struct DialogsOnConsole
{
    explicit DialogsOnConsole(till::Console &console)
        : presenter(console)
    {
        Singleton<Session>::instance()->setProgressDisplay(
            QSharedPointer<till::ConsoleProgressDisplay>::create(console));
    }
    ~DialogsOnConsole() { Singleton<Session>::instance()->setProgressDisplay({}); }
    Q_DISABLE_COPY_MOVE(DialogsOnConsole)

    till::ConsolePresenter presenter;
};

/// Names what is wrong with the settings, each on a line. \return Whether the till may start.
bool tellComplaints(const QList<till::SettingComplaint> &complaints,
                    till::SettingComplaint::Weight least)
{
    bool isUsable = true;
    for (const auto &complaint : complaints) {
        if (complaint.weight < least)
            continue;
        std::cerr << "till: " << till::textOf(complaint).toStdString() << std::endl;
        isUsable = isUsable && complaint.weight != till::SettingComplaint::Weight::Fatal;
    }
    return isUsable;
}

int runSale(const till::Settings &settings, bool deliversInBackground, till::Console &console)
{
    DialogsOnConsole dialogs(console);
    till::Till till(settings, dialogs.presenter);
    if (const auto error = till.start())
        return refuseToStart(*error);
    till::SaleCommands commands(till, console);
    till.sale().recover();
    if (deliversInBackground)
        till.startDelivery();
    return commands.run() ? success : failure;
}

int runReport(const till::Settings &settings, const QString &which, till::Console &console)
{
    const auto number = till::parseWhole(which, 1, std::numeric_limits<int>::max());
    if (!number)
        return refuseToStart(QStringLiteral("expected a receipt's number, not \"%1\"").arg(which));
    DialogsOnConsole dialogs(console);
    till::Till till(settings, dialogs.presenter);
    if (const auto error = till.start())
        return refuseToStart(*error);
    const till::SaleCommands told(till, console);
    return till.sale().report(*number) && till.onlyInMemory().isEmpty() ? success : failure;
}

int runOffice(const till::Settings &settings, const till::Options &options)
{
    const auto arguments = options.command.mid(1);
    const auto name = options.command.value(0);
    if (name == QLatin1String("deliver"))
        return till::runDelivery(settings, options.once, std::cout);
    if (name == QLatin1String("queue")) {
        DBQueueBroker broker(till::Store::fileIn(settings.dataDirectory));
        return till::runQueueCommand(broker, std::cout, arguments, options.json);
    }
    if (name == QLatin1String("metrics"))
        return till::runMetrics(settings, options.output, std::cout);
    till::Store store(settings.dataDirectory);
    return till::runReceiptsCommand(store, std::cout, arguments, options.receipts, options.json);
}

int run(const till::Options &options, till::Console &console)
{
    const auto name = options.command.value(0);
    if (name == QLatin1String("check"))
        return till::runCheck(options.settings, {options.phone, options.output, options.json},
                              std::cout);
    QString error;
    const auto settings = till::loadSettings(options.settings, error);
    if (!error.isEmpty())
        return refuseToStart(error);
    const auto languageProblem = till::installLanguage(settings.language);
    const auto works = name.isEmpty() || name == QLatin1String("deliver");
    using Weight = till::SettingComplaint::Weight;
    if (!tellComplaints(till::checkSettings(*Singleton<Config>::instance()),
                        works ? Weight::Doubtful : Weight::Fatal))
        return badSetup;
    if (languageProblem)
        return refuseToStart(*languageProblem);
    if (const auto problem = privatefile::createDirectory(settings.dataDirectory))
        return refuseToStart(*problem);
    if (const auto problem = logging::start(settings.logFile, settings.logFile.isEmpty())) {
        // A full disk or a read-only directory must not keep the till from selling.
        std::cerr << "till: " << problem->toStdString() << std::endl;
    }
    if (const auto problem = till::legacydata::adoptQueue(settings.dataDirectory))
        return refuseToStart(*problem);
    if (name.isEmpty())
        return runSale(settings, options.deliversInBackground, console);
    if (name == QLatin1String("report"))
        return runReport(settings, options.command.value(1), console);
    return runOffice(settings, options);
}

} // namespace

int main(int argc, char *argv[])
{
    // A connection or an output that has gone is an error where it is used, not the till's end.
    std::signal(SIGPIPE, SIG_IGN);
    const till::LogRotation rotation;
    const QCoreApplication application(argc, argv);
    const auto commandLine = till::parseCommandLine(QCoreApplication::arguments());
    if (!commandLine.options) {
        auto &stream = commandLine.exitCode == success ? std::cout : std::cerr;
        stream << commandLine.text.toStdString() << std::endl;
        return commandLine.exitCode;
    }
    till::Console console(STDIN_FILENO, std::cout);
    console.setEcho(commandLine.options->echo);
    const auto exitCode = run(*commandLine.options, console);
    logging::stop();
    return std::cout.flush() || exitCode != success ? exitCode : failure;
}
