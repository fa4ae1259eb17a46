#include "benchmarks/comparison.h"
#include "benchmarks/setup.h"
#include "benchmarks/tillatwork.h"

#include "till/core/deliverer.h"
#include "till/core/sale.h"

#include "interface/interface.h"

#include <host/abstractdocument.h>
#include <host/dbqueuebroker.h>

#include <atomic>
#include <dlfcn.h>
#include <memory>

namespace {

std::atomic<int> syncs = 0;

int synchronise(const char *name, int descriptor)
{
    ++syncs;
    return reinterpret_cast<int (*)(int)>(::dlsym(RTLD_NEXT, name))(descriptor);
}

} // namespace

// These stand before the C library's own, for the database, too.
extern "C" __attribute__((visibility("default"))) int fsync(int descriptor)
{
    return synchronise("fsync", descriptor);
}

extern "C" __attribute__((visibility("default"))) int fdatasync(int descriptor)
{
    return synchronise("fdatasync", descriptor);
}

namespace bench {

namespace {

/// How many syncs each step of a sale costs, the average of many. The floor is one for each
/// transaction; the rest is SQLite's own writing back, once in a thousand pages.
void countSyncs(benchmark::State &state, Setup &setup, bool isServiceUp)
{
    constexpr int sales = 100;
    const auto down = isServiceUp ? nullptr : std::make_unique<ServiceElsewhere>();
    const auto count = [&state](const char *name, const auto &step) {
        const auto before = syncs.load();
        step();
        state.counters[name] += static_cast<double>(syncs - before) / sales;
    };
    for ([[maybe_unused]] auto iteration : state) {
        TillAtWork till(setup);
        if (!till.error().isEmpty()) {
            fail(state, "the till does not start");
            return;
        }
        till.sale().open(DocumentHeader::sale); // the file's first transaction writes more
        for (int i = 0; i < sales; ++i) {
            till.sale().cancel();
            count("opening", [&] { till.sale().open(DocumentHeader::sale); });
            if (isServiceUp)
                count("card", [&] { till.sale().enterCard(confirmedPhone); });
            count("position", [&] {
                till.sale().add(QStringLiteral("4600"), QStringLiteral("Milk"), 89.9, 1);
            });
            count("discount", [&] { till.sale().discount(1, 1, 7, 0, 0); });
            count("commit", [&] { till.sale().commit(); });
            till.sale().open(DocumentHeader::sale);
        }
        DBQueueBroker broker(till::Store::fileIn(till.directory()));
        lmmindbox::Interface service;
        till::Deliverer deliverer(broker, service);
        if (isServiceUp)
            count("delivery", [&] { deliverer.deliver([] { return false; }); });
        if (broker.state(till::loyaltyQueue())->waiting != (isServiceUp ? 0 : 2 * sales))
            fail(state, "the queue does not hold what it should");
    }
}

} // namespace

void registerSyncs(Setup &setup)
{
    for (const auto isServiceUp : {true, false})
        benchmark::RegisterBenchmark(isServiceUp ? "syncs/up" : "syncs/down", [&setup, isServiceUp](
                                                                                  auto &state) {
            countSyncs(state, setup, isServiceUp);
        })->Iterations(1);
}

} // namespace bench
