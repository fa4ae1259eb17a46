#include "benchmarks/comparison.h"
#include "benchmarks/filledstore.h"
#include "benchmarks/setup.h"
#include "interface/interface.h"
#include "till/core/deliverer.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/dbqueuebroker.h>
#include <host/session.h>

#include <QCoreApplication>
#include <QFile>

#include <array>
#include <chrono>
#include <cstdio>
#include <malloc.h>
#include <memory>
#include <unistd.h>
#include <vector>

namespace bench {

namespace {

/// Seconds that loading takes in a fresh process; negative when it fails.
double loadInNewProcess(const QString &file)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--load"), file});
    if (!process.waitForFinished() || process.exitCode() != 0)
        return -1;
    return process.readAllStandardOutput().trimmed().toDouble();
}

void load(benchmark::State &state)
{
    std::vector<double> ours;
    std::vector<double> floor;
    for ([[maybe_unused]] auto iteration : state) {
        ours.push_back(loadInNewProcess(QStringLiteral(PLUGIN_FILE)));
        floor.push_back(loadInNewProcess(QStringLiteral(EMPTY_PLUGIN_FILE)));
        if (ours.back() < 0 || floor.back() < 0) {
            fail(state, "a plugin was not loaded");
            return;
        }
        state.SetIterationTime(ours.back());
    }
    setCounters(state, "ours", std::move(ours));
    setCounters(state, "floor", std::move(floor));
}

/// Bytes of physical memory that a process takes.
qint64 residentMemory(qint64 process)
{
    QFile file(QStringLiteral("/proc/%1/statm").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    return file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
}

struct Start
{
    double seconds = -1; ///< Negative when it failed.
    double memory = 0;   ///< Bytes of physical memory afterwards.
};

/// Starts the till on a directory. It has started when it has answered its first command.
Start startTill(const QString &settingsFile, const QString &directory)
{
    Start start;
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const auto begin = std::chrono::steady_clock::now();
    process.start(QStringLiteral(TILL_FILE),
                  {QStringLiteral("--config"), settingsFile, QStringLiteral("--data"), directory,
                   QStringLiteral("--no-delivery")});
    process.write("show\n");
    if (process.waitForReadyRead()) {
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
        start = {time.count(), static_cast<double>(residentMemory(process.processId()))};
    }
    process.closeWriteChannel();
    return process.waitForFinished() && process.exitCode() == 0 ? start : Start();
}

/// A till's start with many receipts kept and messages waiting, against that with none.
void start(benchmark::State &state, Setup &setup)
{
    const auto full = setup.newFile();
    const auto empty = setup.newFile();
    const auto settingsFile = setup.newSettingsFile();
    const auto receipts = setup.isQuick() ? 1'000 : 100'000;
    const auto waiting = receipts / 10; // messages, two a receipt
    FilledStore filled(full, 1);
    if (!filled.add(receipts - waiting / 2, false) || !filled.add(waiting / 2, true)) {
        fail(state, "the store is not filled");
        return;
    }
    (void)startTill(settingsFile, empty); // makes its store
    std::array<std::vector<double>, 2> times;
    std::array<std::vector<double>, 2> memory;
    for ([[maybe_unused]] auto iteration : state) {
        for (const size_t isFull : {0, 1}) {
            const auto once = startTill(settingsFile, isFull ? full : empty);
            times.at(isFull).push_back(once.seconds);
            memory.at(isFull).push_back(once.memory);
            if (once.seconds < 0) {
                fail(state, "the till does not start");
                return;
            }
        }
        state.SetIterationTime(times[1].back());
    }
    setCounters(state, "ours", std::move(times[1]));
    setCounters(state, "floor", std::move(times[0]));
    setCounters(state, "resident_after", std::move(memory[1]));
    setCounters(state, "resident_before", std::move(memory[0]));
}

/// Sells one receipt; what the queue holds then is delivered as a till does in the background.
bool sell(const LoadedPlugin &plugin, till::Deliverer &deliverer, int number)
{
    constexpr int lines = 5;
    const auto receipt = makeReceipt(lines, number);
    plugin.attach(receipt);
    const auto sold = plugin.identify(confirmedPhone) && plugin.system()->commit(receipt);
    plugin.system()->clearAfterClose();
    plugin.system()->clearLoyaltyData();
    plugin.attach({});
    const auto round = deliverer.deliver([] { return false; });
    return sold && round.outcome == till::Deliverer::Outcome::Emptied && round.settled == 1;
}

void noteMemory(benchmark::State &state, const std::string &when)
{
    // The simulator's dump of a thousand orders has just been let go of.
    ::malloc_trim(0);
    state.counters["resident_" + when] = static_cast<double>(residentMemory(::getpid()));
    state.counters["heap_" + when] = static_cast<double>(::mallinfo2().uordblks);
}

/// The files are kept in memory that is not the process's own, so that the disk sets no pace.
void sales(benchmark::State &state, Setup &setup)
{
    constexpr int warmUp = 1'000;
    const auto count = setup.isQuick() ? 2 * warmUp : 100 * warmUp;
    const QTemporaryDir directory(QStringLiteral("/dev/shm/bench-XXXXXX"));
    auto *const broker = Singleton<DBQueueBroker>::instance();
    const auto fileBefore = broker->file();
    broker->setFile(directory.filePath(QStringLiteral("till.db")));
    setup.resetSimulator();
    for ([[maybe_unused]] auto iteration : state) {
        const LoadedPlugin plugin;
        lmmindbox::Interface service;
        till::Deliverer deliverer(*broker, service);
        for (int number = 1; number <= count; ++number) {
            if (!sell(plugin, deliverer, number)) {
                fail(state, "a sale failed");
                break;
            }
            // The simulator would run out of memory long before us.
            if (number % warmUp == 0) {
                if (setup.countSettledOrders() != warmUp) {
                    fail(state, "the simulator lacks orders");
                    break;
                }
                setup.resetSimulator();
            }
            if (number == warmUp)
                noteMemory(state, "before");
        }
        noteMemory(state, "after");
        state.counters["sales"] = count;
        if (!broker->parked(till::loyaltyQueue()).isEmpty())
            fail(state, "messages were refused");
    }
    broker->setFile(fileBefore);
}

} // namespace

int loadOnce(const QString &file)
{
    const auto begin = std::chrono::steady_clock::now();
    QPluginLoader loader(file);
    const std::unique_ptr<QObject> instance(loader.instance());
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    std::printf("%.9f\n", time.count());
    return instance ? 0 : 1;
}

void registerProcess(Setup &setup)
{
    benchmark::RegisterBenchmark("load", load)
        ->UseManualTime()
        ->Iterations(setup.isQuick() ? 2 : 100);
    benchmark::RegisterBenchmark("start", [&setup](auto &state) { start(state, setup); })
        ->UseManualTime()
        ->Iterations(setup.isQuick() ? 2 : 50);
    benchmark::RegisterBenchmark("sales", [&setup](auto &state) {
        sales(state, setup);
    })->Iterations(1);
}

} // namespace bench
