#include "benchmarks/barestore.h"
#include "benchmarks/comparison.h"
#include "benchmarks/filledstore.h"
#include "benchmarks/tillatwork.h"

#include "interface/interface.h"
#include "till/core/sale.h"

#include <host/config.h>
#include <host/serviceavailability.h>

#include <QTcpServer>

#include <chrono>
#include <thread>
#include <vector>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

/// A card entered at the till, which keeps the receipt with its holder.
void identifyKept(benchmark::State &state, Setup &setup)
{
    TillAtWork till(setup);
    if (!till.error().isEmpty()) {
        fail(state, "the till does not start");
        return;
    }
    till.sell(usualLines);
    BareStore bareStore(setup.newFile());
    BareExchange bare;
    const auto lookUp = record([](auto &service) { (void)service.getCustomer(confirmedPhone); });
    const auto letter = record([](auto &service) {
        (void)service.emailConfirmationLetter(QStringLiteral("anna01@example.org"));
    });
    auto identified = 0;
    QObject::connect(&till.sale(), &till::Sale::happened, [&](const till::SaleEvent &event) {
        identified += event.kind == till::SaleEvent::Kind::Identified ? 1 : 0;
    });
    compare(
        state, 1,
        [&] {
            const auto before = identified;
            till.sale().enterCard(confirmedPhone);
            return identified == before + 1;
        },
        [&, document = documentOf(1)] {
            return bare.post(lookUp) && bare.post(letter) && bareStore.update(document);
        });
}

/// The cashier's commit, whose two transactions the floor does without the till.
void commitAtTill(benchmark::State &state, Setup &setup)
{
    const ServiceElsewhere down;
    TillAtWork till(setup);
    if (!till.error().isEmpty()) {
        fail(state, "the till does not start");
        return;
    }
    BareStore bare(setup.newFile());
    const auto document = documentOf(1);
    const auto messages = messagesOf(1);
    const auto creation = toBytes(messages.first());
    const auto change = toBytes(messages.last());
    compare(
        state, 1,
        [&] {
            till.sale().commit();
            return !till.sale().receipt();
        },
        [&] {
            return bare.update(document) && bare.execute("BEGIN IMMEDIATE") &&
                   bare.insert(creation) && bare.insert(change) && bare.update(document) &&
                   bare.execute("COMMIT");
        },
        [&] { till.sell(usualLines); });
}

/// How ten sales against a hung service come.
struct Rush
{
    int scale;                       ///< All usual times are divided by it.
    std::chrono::milliseconds pause; ///< Between two sales.
};

/// What the cashier waits for in ten sales with a card each, against one time-out of a bare
/// exchange. The till delivers in the background, as it does in a shop.
void sellToHungService(benchmark::State &state, Setup &setup, const Rush &rush)
{
    using std::chrono::milliseconds;
    constexpr int usualTimeout = 5;
    constexpr int sales = 10;
    // Nobody takes what comes: the system alone lets clients connect.
    QTcpServer hung;
    hung.listen(QHostAddress::LocalHost);
    const ServiceElsewhere elsewhere(hung.serverPort());
    const auto set = [](const char *key, int value) {
        Singleton<Config>::instance()->set(QLatin1String(key), QString::number(value));
    };
    set("LmMindbox:timeout", usualTimeout / rush.scale);
    set("Http:retryFirst", 1'000 / rush.scale);
    set("Http:retryMax", 30'000 / rush.scale);
    BareExchange bare;
    bare.setTimeout(milliseconds(usualTimeout * 1'000 / rush.scale));
    const auto request = record([](auto &service) { (void)service.getCustomer(confirmedPhone); });

    std::vector<double> ours;
    std::vector<double> floor;
    for ([[maybe_unused]] auto iteration : state) {
        Singleton<ServiceAvailability>::instance()->clear();
        TillAtWork till(setup,
                        {milliseconds(1'000 / rush.scale), milliseconds(60'000 / rush.scale)});
        if (!till.error().isEmpty()) {
            fail(state, "the till does not start");
            return;
        }
        till.startDelivery();
        ours.push_back(0);
        for (int sale = 0; sale < sales; ++sale) {
            std::this_thread::sleep_for(rush.pause);
            const auto begin = Clock::now();
            till.sell(1);
            till.sale().enterCard(confirmedPhone);
            till.sale().commit();
            ours.back() += secondsSince(begin);
        }
        const auto begin = Clock::now();
        if (till.sale().receipt() || bare.post(request))
            fail(state, "a sale failed, or the service answers");
        floor.push_back(secondsSince(begin));
    }
    setCounters(state, "ours", std::move(ours));
    setCounters(state, "floor", std::move(floor));
}

} // namespace

void registerSale(Setup &setup)
{
    using namespace std::chrono_literals;
    benchmark::RegisterBenchmark("identifyKept", [&setup](auto &state) {
        identifyKept(state, setup);
    })->UseManualTime();
    benchmark::RegisterBenchmark("commitAtTill", [&setup](auto &state) {
        commitAtTill(state, setup);
    })->UseManualTime();
    const auto add = [&setup](const char *name, const Rush &rush, int times) {
        benchmark::RegisterBenchmark(name, [&setup, rush](auto &state) {
            sellToHungService(state, setup, rush);
        })->Iterations(times);
    };
    add("hungService/atOnce", {setup.isQuick() ? 5 : 1, 0ms}, setup.isQuick() ? 1 : 3);
    if (!setup.isQuick())
        add("hungService/halfMinuteApart", {5, 6s}, 1);
}

} // namespace bench
