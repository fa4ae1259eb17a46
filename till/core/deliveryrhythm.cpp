#include "till/core/deliveryrhythm.h"

#include <algorithm>

namespace till {

DeliveryRhythm::DeliveryRhythm(const Backoff &backoff)
    : backoff(backoff)
{}

DeliveryRhythm::Rest DeliveryRhythm::after(const Deliverer::Round &round,
                                           std::chrono::milliseconds took,
                                           std::chrono::milliseconds asked)
{
    switch (round.outcome) {
    case Deliverer::Outcome::Unreachable:
        catchingUp = true;
        return {std::max(backoff.next(), backoff.atLeast(asked)), false};
    case Deliverer::Outcome::Unusable:
        return {backoff.next(), false};
    case Deliverer::Outcome::Stopped:
        if (catchingUp)
            return {backoff.ease(took), false};
        break;
    case Deliverer::Outcome::Emptied:
        catchingUp = false;
        backoff.reset();
        break;
    case Deliverer::Outcome::Busy:
        break;
    }
    return {idleTime, true};
}

} // namespace till
