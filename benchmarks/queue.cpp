#include "benchmarks/barestore.h"
#include "benchmarks/comparison.h"
#include "benchmarks/filledstore.h"
#include "benchmarks/setup.h"

#include "interface/interface.h"
#include "till/core/deliverer.h"
#include "till/core/store.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/config.h>
#include <host/dbqueuebroker.h>
#include <host/session.h>

#include <algorithm>
#include <vector>

namespace bench {

namespace {

constexpr int atATime = 100; ///< Messages delivered in one sample.

void put(benchmark::State &state, Setup &setup)
{
    const auto queue = till::loyaltyQueue();
    const auto message = messagesOf(1).constLast();
    const auto bytes = toBytes(message);
    DBQueueBroker broker(setup.newFile());
    BareStore bare(setup.newFile());
    compare(
        state, 1, [&] { return broker.put(queue, message.message, {}); },
        [&] { return bare.insert(bytes); });
}

/// What is sent for the messages of so many receipts.
std::vector<SentRequest> requestsOf(int firstReceipt, int receipts)
{
    std::vector<SentRequest> requests;
    for (int i = 0; i < receipts; ++i) {
        const auto payloads = payloadsOf(firstReceipt + i);
        requests.push_back(record([&](lmmindbox::Interface &interface) {
            (void)interface.createAuthorizedOrder(payloads.first, true);
        }));
        requests.push_back(record([&](lmmindbox::Interface &interface) {
            (void)interface.changeOrderStatus(payloads.second, true);
        }));
    }
    return requests;
}

/// Delivers from a queue with so many messages, some at a time in turn with as many bare exchanges;
/// each time is one iteration, before which the queue is filled up again. The service answers later
/// by `delay` milliseconds.
void deliver(benchmark::State &state, Setup &setup, int delay)
{
    constexpr int receiptsAtATime = atATime / 2;
    constexpr int firstOfFloor = 500'000; // far above ours
    const auto waiting = static_cast<int>(state.range(0));
    setup.resetSimulator();
    if (delay > 0)
        setup.delayAnswers(delay);
    const auto directory = setup.newFile();
    FilledStore filled(directory, 1);
    auto isFilled = filled.add((waiting - atATime) / 2, true);

    DBQueueBroker broker(till::Store::fileIn(directory));
    lmmindbox::Interface service;
    till::Deliverer deliverer(broker, service);
    const auto ours = [&] {
        auto left = atATime;
        return deliverer.deliver([&left] { return left-- == 0; }).settled == atATime;
    };
    BareExchange bareExchange;
    std::vector<SentRequest> requests;
    const auto floor = [&] {
        return std::ranges::all_of(requests,
                                   [&](const auto &request) { return bareExchange.post(request); });
    };
    const auto prepare = [&, receipt = firstOfFloor]() mutable {
        isFilled =
            isFilled && filled.add(receiptsAtATime, true) && filled.countWaiting() == waiting;
        requests = requestsOf(receipt, receiptsAtATime);
        receipt += receiptsAtATime;
    };
    compare(state, 1, ours, floor, prepare);
    for (auto &[name, counter] : state.counters)
        counter.value /= atATime;
    if (!isFilled)
        fail(state, "the queue is not filled");
    else if (!broker.parked(till::loyaltyQueue()).isEmpty())
        fail(state, "messages were refused");
    else if (setup.countSettledOrders() != atATime * state.iterations())
        fail(state, "the simulator lacks orders");
}

/// From the loyalty system's commit to the store's. The floor stores as much in one transaction.
void commitWhileDown(benchmark::State &state, Setup &setup)
{
    const ServiceElsewhere down;
    const auto directory = setup.newFile();
    till::Store store(directory);
    auto *const broker = Singleton<DBQueueBroker>::instance();
    const LoadedPlugin plugin;
    till::StoredReceipt receipt;
    const auto prepare = [&, number = 0]() mutable {
        receipt = {};
        receipt.document = makeReceipt(usualLines, ++number);
        plugin.attach(receipt.document);
        if (!store.save(receipt, till::ReceiptState::Committing))
            fail(state, "the receipt is not stored");
    };
    const auto ours = [&] {
        broker->beginBatch();
        const auto isCommitted = plugin.system()->commit(receipt.document);
        return isCommitted &&
               store.saveCommitted(receipt, {till::Report::Queued, {}, {}}, broker->takeBatch());
    };
    BareStore bare(setup.newFile());
    const auto messages = messagesOf(1);
    const auto floor = [&, creation = toBytes(messages.first()), change = toBytes(messages.last()),
                        document = documentOf(1)] {
        return bare.execute("BEGIN IMMEDIATE") && bare.insert(creation) && bare.insert(change) &&
               bare.update(document) && bare.execute("COMMIT");
    };
    compare(state, 1, ours, floor, prepare);
    const auto left = DBQueueBroker(till::Store::fileIn(directory)).state(till::loyaltyQueue());
    if (!left || left->waiting != 2 * state.iterations())
        fail(state, "the queue lacks messages");
}

} // namespace

void registerQueue(Setup &setup)
{
    benchmark::RegisterBenchmark("put", [&setup](auto &state) {
        put(state, setup);
    })->UseManualTime();
    benchmark::RegisterBenchmark("commitWhileDown", [&setup](auto &state) {
        commitWhileDown(state, setup);
    })->UseManualTime();
    for (auto waiting = 100; waiting <= (setup.isQuick() ? 100 : 100'000); waiting *= 10) {
        benchmark::RegisterBenchmark("deliver", [&setup](auto &state) { deliver(state, setup, 0); })
            ->Arg(waiting)
            ->Iterations(setup.isQuick() ? 2 : 100)
            ->UseManualTime();
    }
    // A service in the same country.
    benchmark::RegisterBenchmark("deliverFarther",
                                 [&setup](auto &state) {
                                     constexpr int delay = 20;
                                     deliver(state, setup, delay);
                                     setup.resetSimulator(); // the others measure without
                                 })
        ->Arg(1'000)
        ->Iterations(setup.isQuick() ? 1 : 10)
        ->UseManualTime();
}

} // namespace bench
