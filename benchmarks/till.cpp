#include "benchmarks/measure.h"
#include "benchmarks/rows.h"
#include "benchmarks/tillatwork.h"

#include "interface/interface.h"
#include "till/core/deliverer.h"
#include "till/core/store.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QLocale>
#include <QThread>

#include <malloc.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// valgrind counts this function; scripts/bench names it.
extern "C" __attribute__((noinline)) void countedCall(const std::function<void()> &call)
{
    call();
}

namespace bench {

namespace {

constexpr int times = 100;

/// The baseline of every transaction: a text appended to a file and synced.
bool write(QFile &file, const QByteArray &text)
{
    return (file.isOpen() || file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) &&
           file.write(text) == text.size() && ::fdatasync(file.handle()) == 0;
}

/// Commits that many receipts while the service is down. \return Their directory.
QString fillQueue(const Service &service, int receipts)
{
    const auto directory = service.newFile();
    service.setReachable(false);
    TillAtWork till(directory);
    for (int i = 0; i < receipts; ++i) {
        till.sell(usualLines);
        if (!till.commit())
            fail(u"a receipt is not committed"_s);
    }
    service.setReachable(true);
    return directory;
}

/// \return The number of delivered messages.
int deliverAll(const QString &directory)
{
    till::Store store(directory);
    till::Deliverer deliverer(store, directory, {});
    int settled = 0;
    while (deliverer.step().outcome == till::Deliverer::Outcome::Settled)
        ++settled;
    return settled;
}

void measureCommit(const Service &service, bool isUp)
{
    TillAtWork till(service.newFile());
    QFile file(service.newFile());
    UsualExchange usual;
    const auto sent = sentOrder();
    service.setReachable(isUp);
    compare(
        {isUp ? u"commit, service up"_s : u"commit, service down"_s,
         isUp ? u"an exchange and two synced writes"_s : u"two synced writes"_s, 500},
        [&] { return till.commit(); },
        [&] {
            return write(file, sent.body) && write(file, sent.body) && (!isUp || usual.post(sent));
        },
        [&] { till.sell(usualLines); });
    service.setReachable(true);
}

void measureDelivery(const Service &service)
{
    constexpr int receipts = 500;
    UsualExchange usual;
    const auto sent = sentOrder();
    std::vector<double> ours;
    std::vector<double> baseline;
    const Row row{u"delivery of a message, 1,000 waiting"_s, u"an exchange"_s};
    for (int i = 0; i < 5; ++i) {
        const auto directory = fillQueue(service, receipts);
        service.reset();
        ours.push_back(timeOf(row, [&] { return deliverAll(directory) == 2 * receipts; }) /
                       receipts / 2);
        if (service.countSettledOrders() != receipts)
            fail(u"the simulator lacks orders"_s);
        baseline.push_back(timeOf({{}, {}, 1, 2 * receipts}, [&] { return usual.post(sent); }));
    }
    print(row, std::move(ours), std::move(baseline));
}

/// This process's physical memory, in bytes.
qint64 memory()
{
    ::malloc_trim(0); // returns a just freed dump of the simulator to the system
    QFile file(u"/proc/self/statm"_s);
    (void)file.open(QIODevice::ReadOnly);
    return file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
}

/// Starts the till on a directory and waits for the answer to its first command.
bool startTill(const QString &settingsFile, const QString &directory)
{
    QProcess process;
    process.start(QStringLiteral(TILL_FILE),
                  {u"--config"_s, settingsFile, u"--data"_s, directory, u"--no-delivery"_s});
    process.write("show\n");
    const auto isStarted = process.waitForReadyRead();
    process.kill();
    process.waitForFinished();
    return isStarted;
}

bool waitForOrders(const Service &service, int orders)
{
    const QDeadlineTimer deadline(60'000);
    while (service.countSettledOrders() != orders && !deadline.hasExpired())
        QThread::msleep(20);
    return !deadline.hasExpired();
}

} // namespace

void measureTill(const Service &service)
{
    {
        TillAtWork till(service.newFile());
        QFile file(service.newFile());
        UsualExchange usual;
        const auto lookUp =
            record([](auto &interface) { (void)interface.getCustomer(confirmedPhone); });
        const auto letter = record([](auto &interface) {
            (void)interface.emailConfirmationLetter(u"anna01@example.org"_s);
        });
        till.sell(usualLines);
        compare(
            {u"identification, with its letter"_s, u"two exchanges and a synced write"_s},
            [&] { return till.identify(confirmedPhone); },
            [&] { return usual.post(lookUp) && usual.post(letter) && write(file, lookUp.body); });
    }
    measureCommit(service, true);
    measureCommit(service, false);
    measureDelivery(service);
}

void measureSales(const Service &service, int sales)
{
    const QTemporaryDir directory(
        u"/dev/shm/bench-XXXXXX"_s); // in memory, so the disk does not limit it
    const auto full = directory.filePath(u"full"_s);
    constexpr int atATime = 1'000; // then the simulator is reset
    qint64 before = 0;
    qint64 after = 0;
    {
        TillAtWork till(full);
        till.startDelivery();
        service.reset();
        for (int sale = 1; sale <= sales; ++sale) {
            till.sell(1);
            if (!till.identify(confirmedPhone) || !till.commit())
                fail(u"a sale"_s);
            if (sale % atATime != 0)
                continue;
            if (!waitForOrders(service, atATime))
                fail(u"orders did not arrive"_s);
            service.reset();
            after = memory();
            if (sale == atATime)
                before = after;
        }
    }
    const auto megabytes = [](qint64 bytes) {
        return u"%1 MiB"_s.arg(static_cast<double>(bytes) / (1 << 20), 0, 'f', 2);
    };
    const auto count = QLocale(QLocale::English).toString(sales);
    print(u"memory after %1 sales"_s.arg(count), megabytes(after),
          u"after 1,000: "_s + megabytes(before),
          QString::number(static_cast<double>(after) / static_cast<double>(before), 'f', 2));
    const auto settings = service.newSettingsFile();
    const auto empty = directory.filePath(u"empty"_s);
    (void)startTill(settings, empty); // creates its store
    compare(
        {u"start of the till, %1 receipts"_s.arg(count), u"with none"_s, 30},
        [&] { return startTill(settings, full); }, [&] { return startTill(settings, empty); });
}

bool count(const QString &what, const Service &service)
{
    // A first call outside the count takes the one-time costs.
    const auto countTimes = [](
                                const std::function<void()> &call,
                                const std::function<void()> &prepare = [] {}) {
        for (int i = 0; i < 2 * times; ++i) {
            prepare();
            i < times ? call() : countedCall(call);
        }
    };
    if (what == u"look-up"_s) {
        lmmindbox::Interface interface;
        countTimes([&] { (void)interface.getCustomer(confirmedPhone); });
    } else if (what == u"identification"_s) {
        TillAtWork till(service.newFile());
        till.sell(usualLines);
        countTimes([&] { till.identify(confirmedPhone); });
    } else if (what == u"commit"_s) {
        service.setReachable(false);
        TillAtWork till(service.newFile());
        countTimes([&] { till.commit(); }, [&] { till.sell(usualLines); });
    } else if (what == u"delivery"_s) {
        const auto first = fillQueue(service, times / 2);
        const auto second = fillQueue(service, times / 2);
        deliverAll(first);
        countedCall([&] { deliverAll(second); });
    } else {
        return false;
    }
    return true;
}

} // namespace bench
