#include "till/core/deliveryrhythm.h"

namespace till {

DeliveryRhythm::DeliveryRhythm(const Backoff &backoff)
    : backoff(backoff)
{}

DeliveryRhythm::Rest DeliveryRhythm::after(const Deliverer::Round &round,
                                           std::chrono::milliseconds asked)
{
    using Outcome = Deliverer::Outcome;
    if (round.settled > 0 || round.outcome == Outcome::Emptied)
        backoff.reset();
    if (round.outcome == Outcome::Unreachable && asked.count() > 0)
        return {backoff.atLeast(asked), false};
    if (round.outcome == Outcome::Unreachable || round.outcome == Outcome::Unusable)
        return {backoff.next(), false};
    return {idleTime, true};
}

} // namespace till
