#include "till/office/commands.h"

#include "till/core/deliverer.h"
#include "till/core/retention.h"
#include "till/office/answer.h"

#include <unistd.h>

namespace till {

namespace {

int deliverOnce(Store &store, Deliverer &deliverer, std::ostream &output)
{
    using Outcome = Deliverer::Outcome;
    constexpr qint64 worthShowing = 100;
    const auto total = store.deliveryState().waiting;
    const auto showsProgress = total >= worthShowing && ::isatty(STDOUT_FILENO) != 0;
    Deliverer::Step step{.outcome = Outcome::Settled};
    auto hasParked = false;
    for (qint64 sent = 0; step.outcome == Outcome::Settled; ++sent) {
        if (showsProgress && sent % worthShowing == 0)
            output << '\r' << sent << " / " << total << std::flush;
        step = deliverer.step();
        hasParked = hasParked || step.isParked;
    }
    if (showsProgress)
        output << '\n';
    if (step.outcome != Outcome::Empty)
        printLine(output, step.error);
    const auto state = store.deliveryState();
    if (!state.error.isEmpty())
        return state.error == step.error ? 1 : fail(output, state.error);
    printLine(output, textOf(state));
    if (state.parked > 0 && state.waiting == 0)
        return parkedExit;
    return step.outcome == Outcome::Empty && !hasParked ? 0 : 1;
}

} // namespace

int runDelivery(const Settings &settings, bool once, std::ostream &output)
{
    Store store(settings.dataDirectory);
    RestClient::setObserver([&store](const auto &exchange) { store.count(exchange); });
    Deliverer deliverer(store, settings.dataDirectory, settings.backoff);
    if (const auto held = deliverer.acquire(); !held)
        return fail(output, held.error());
    // Without a store the system service must fail visibly instead of waiting.
    if (const auto state = store.deliveryState(); !state.error.isEmpty())
        return fail(output, state.error);
    if (once)
        return deliverOnce(store, deliverer, output);
    Retention retention(store);
    deliverer.run([&] {
        retention.step();
        store.reopen();
    });
    return 0;
}

} // namespace till
