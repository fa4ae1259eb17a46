#include "till/core/backgrounddelivery.h"
#include "till/core/catalogue.h"
#include "till/console/console.h"
#include "till/console/consolepresenter.h"
#include "till/core/deliverer.h"
#include "till/core/filelock.h"
#include "till/core/loyaltyplugin.h"
#include "till/options.h"
#include "till/office/queuecommands.h"
#include "till/receiptcounter.h"
#include "till/receiptstore.h"
#include "till/console/salecommands.h"
#include "till/core/settings.h"
#include "till/core/signalpause.h"

#include "interface/interface.h"

#include <host/config.h>
#include <host/dbqueuebroker.h>
#include <host/dialog.h>
#include <host/heap.h>
#include <host/logging.h>
#include <host/privatefile.h>
#include <host/session.h>

#include <QCoreApplication>
#include <QFile>

#include <csignal>
#include <iostream>
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
class DialogsOnConsole
{
public:
    explicit DialogsOnConsole(till::Console &console)
        : presenter(console)
    {
        Dialog::setPresenter(&presenter);
        Singleton<Session>::instance()->setProgressDisplay(
            QSharedPointer<till::ConsoleProgressDisplay>::create(console));
    }
    ~DialogsOnConsole()
    {
        Singleton<Session>::instance()->setProgressDisplay({});
        Dialog::setPresenter(nullptr);
    }
    Q_DISABLE_COPY_MOVE(DialogsOnConsole)

private:
    till::ConsolePresenter presenter;
};

/// Has the counter go on where the receipts kept so far ended, when its own file cannot say.
void loadCounter(till::ReceiptCounter &counter, const QString &file, till::ReceiptStore &store,
                 till::Console &console)
{
    const auto isMissing = !QFile::exists(file);
    const auto error = counter.load();
    if (error)
        console.line(QStringLiteral("%1; %2").arg(*error, store.setAside(file)));
    if (error || isMissing) {
        const auto [shift, number] = store.highestNumbers();
        counter.continueFrom(shift, number);
    }
}

/// The loyalty plugin starts without these, but the service then refuses every order.
void warnOfMissingSettings()
{
    for (const auto &key : {QStringLiteral("LmMindbox:url"), QStringLiteral("LmMindbox:endpoint"),
                            QStringLiteral("LmMindbox:secretKey")}) {
        if (Singleton<Config>::instance()->getText(key).isEmpty())
            std::cerr << "till: " << key.toStdString()
                      << " is not set; no order will reach the service" << std::endl;
    }
}

int runSale(const till::Settings &settings, bool deliversInBackground, till::Console &console)
{
    till::FileLock lock(settings.dataDirectory + QLatin1String("/till.lock"));
    const auto state = lock.acquire();
    if (state == till::FileLock::State::Busy)
        return refuseToStart(
            QStringLiteral("%1: another till is selling here").arg(settings.dataDirectory));
    if (state == till::FileLock::State::Unavailable)
        console.line(lock.lastError());

    auto *const broker = Singleton<DBQueueBroker>::instance();
    broker->setFile(settings.queueFile());
    if (!broker->state(till::loyaltyQueue()))
        console.line(broker->lastError());
    const DialogsOnConsole dialogs(console);
    till::LoyaltyPlugin plugin;
    if (const auto error = plugin.load(settings.pluginFile))
        return refuseToStart(*error);

    till::ReceiptStore store(settings.dataDirectory);
    if (const auto error = store.prepare())
        console.line(*error);
    const auto counterFile = settings.dataDirectory + QLatin1String("/counter.json");
    till::ReceiptCounter counter(counterFile);
    loadCounter(counter, counterFile, store, console);
    till::Sale sale({plugin.getSystem(), store, counter, console, settings.place});
    sale.recover();
    std::optional<till::BackgroundDelivery> delivery;
    if (deliversInBackground) {
        delivery.emplace(settings.queueFile(), settings.backoff);
        sale.setAfterCommit([&delivery] { delivery->wake(); });
    }
    till::SaleCommands commands(sale, console, plugin.description());
    return commands.run() ? success : failure;
}

int runDelivery(const till::Settings &settings, bool once, till::Console &console)
{
    till::SignalPause pause;
    DBQueueBroker broker(settings.queueFile());
    lmmindbox::Interface service;
    till::Deliverer deliverer(broker, service);
    till::DeliveryLoop loop(deliverer, till::Backoff(settings.backoff), pause);
    if (!once) {
        loop.run();
        return success;
    }
    const auto isDone = loop.runOnce();
    const auto state = till::queueStateText(broker);
    // A queue that cannot be read says the same in its state.
    if (!isDone && deliverer.lastError() != state)
        console.line(deliverer.lastError());
    console.line(state);
    return isDone ? success : failure;
}

int runQueue(const till::Settings &settings, const QStringList &arguments, till::Console &console)
{
    DBQueueBroker broker(settings.queueFile());
    return till::runQueueCommand(broker, console, arguments);
}

int run(const till::Options &options, till::Console &console)
{
    QString error;
    const auto settings = till::loadSettings(options, error);
    if (!error.isEmpty())
        return refuseToStart(error);
    if (const auto problem = privatefile::createDirectory(settings.dataDirectory))
        return refuseToStart(*problem);
    if (const auto problem = logging::start(settings.logFile, settings.logFile.isEmpty())) {
        // A full disk or a read-only directory must not keep the till from selling.
        std::cerr << "till: " << problem->toStdString() << std::endl;
    }
    if (const auto problem = till::installLanguage(settings.language))
        return refuseToStart(*problem);
    const auto name = options.command.value(0);
    if (name != QLatin1String("queue"))
        warnOfMissingSettings();
    if (name == QLatin1String("deliver"))
        return runDelivery(settings, options.once, console);
    if (name == QLatin1String("queue"))
        return runQueue(settings, options.command.mid(1), console);
    return runSale(settings, options.deliversInBackground, console);
}

} // namespace

int main(int argc, char *argv[])
{
    keepFreedMemory();
    // A connection or an output that has gone is an error where it is used, not the till's end.
    std::signal(SIGPIPE, SIG_IGN);
    const QCoreApplication application(argc, argv);
    const auto commandLine = till::parseCommandLine(QCoreApplication::arguments());
    if (!commandLine.options) {
        auto &stream = commandLine.exitCode == success ? std::cout : std::cerr;
        stream << commandLine.text.toStdString() << std::endl;
        return commandLine.exitCode;
    }
    till::ConsoleInput input(STDIN_FILENO);
    till::Console console(input, std::cout);
    console.setEcho(commandLine.options->echo);
    const auto exitCode = run(*commandLine.options, console);
    logging::stop();
    return std::cout.flush() || exitCode != success ? exitCode : failure;
}
